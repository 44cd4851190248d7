#ifndef KESTRO_SYSTEMTYPE_SYSTEMCHECK_H
#define KESTRO_SYSTEMTYPE_SYSTEMCHECK_H

#include "kestro/xmodule/connectioninfo.h"

#include <boost/json/value.hpp>

#include <string>

namespace XModule {

// Questions about a target's platform. The list paths name the system lists of the tool family,
// in the order Corvane, AMD, CFC, Grantly; the Redfish queries ask the BMC's service root.
class SystemCheck {
public:
    SystemCheck(const std::string& corvaneList, const std::string& amdList, const std::string& cfcList,
                const std::string& grantlyList);

    // A second-generation CFC controller: its service root names the vendor "Orvena" and an
    // "Oem"/"Orvena"/"PlatformGeneration" of 2 or more. Earlier controllers carry no generation,
    // and they keep their vendor fields at the top level of a resource instead of under
    // "Oem"/"Public". False when the service root can't be read.
    static bool IsCFCPlatformV2(const ConnectionInfo& connection);
    // The service root answers 200 with a JSON object that states its "RedfishVersion".
    static bool IsRedfishSupported(const ConnectionInfo& connection);
    // The same within `seconds` in all, retries of a starting service included, when no time limit
    // of a run already bounds the transfers: a check before a run ends even when the BMC never does.
    static bool IsRedfishSupported(const ConnectionInfo& connection, int seconds);
    // The name of the firmware release the BMC runs, as its service root states it under
    // "Oem"/"Orvena"/"ReleaseName"; settings differ between releases. Empty when the root can't
    // be read or names none.
    static std::string GetReleaseName(const ConnectionInfo& connection);

    // The BMC that this host's SMBIOS names in a Redfish host interface record, when its service
    // root answers within a few seconds: https at the record's address and port, marked as a BMC,
    // without credentials. False when there is no record or none answers.
    static bool FindHostInterfaceBmc(ConnectionInfo& bmc);

    // This host's processors make it a Whitley platform (third-generation Xeon Scalable), the one
    // platform that reports its fans and power supplies in band.
    static bool IsWhitleyPlatform();
    // The same of the server behind `connection`: this host, or a BMC's system by its Redfish
    // processors.
    static bool IsWhitleyPlatform(const ConnectionInfo& connection);

    // The rules above over a service root document, apart from the request.
    static bool ServiceRootIsCFCPlatformV2(const boost::json::value& root);
    static bool ServiceRootIsRedfish(const boost::json::value& root);
    static std::string ServiceRootReleaseName(const boost::json::value& root);

    // The four list paths, in the data folder of the program's home.
    static SystemCheck FromLibraryFolder();

private:
    std::string corvaneList;
    std::string amdList;
    std::string cfcList;
    std::string grantlyList;
};

}  // namespace XModule

#endif
