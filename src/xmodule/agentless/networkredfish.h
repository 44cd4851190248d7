#ifndef KESTRO_XMODULE_AGENTLESS_NETWORKREDFISH_H
#define KESTRO_XMODULE_AGENTLESS_NETWORKREDFISH_H

#include "xmodule/agentless/networkadapter.h"

#include <boost/json/value.hpp>

#include <string>
#include <vector>

namespace XModule {
namespace Agentless {

class BmcReader;

// The network adapters of a BMC's first chassis: each adapter resource, its ports ("Ports", or
// the older "NetworkPorts"), the addresses of its device functions, and the firmware of its
// controllers with the software images they link.
class NetworkRedfish {
public:
    explicit NetworkRedfish(BmcReader& reader);

    // The chassis' "NetworkAdapters" collection; empty when there is no chassis or no such link.
    std::string AdaptersCollection();
    // Network::Result codes. A part that cannot be read is left out and the rest kept.
    int ReadAdapters(std::vector<NetworkAdapter>& adapters);

    // The parts of one answer, apart from the requests.
    static NetworkAdapter ParseAdapter(const boost::json::value& doc);
    static NetworkPort ParsePort(const boost::json::value& doc);
    // The port a device function is assigned to; empty when it names none.
    static std::string AssignedPort(const boost::json::value& function);
    // The permanent and the current address of a device function (MAC, or WWPN for Fibre Channel).
    static void ApplyFunctionAddresses(const boost::json::value& function, NetworkPort& port);
    static NetworkSoftwareIdentity ParseControllerFirmware(const boost::json::value& controller, std::size_t index,
                                                           const NetworkAdapter& adapter);
    static NetworkSoftwareIdentity ParseSoftwareIdentity(const boost::json::value& doc, const std::string& role,
                                                         const NetworkAdapter& adapter);

private:
    bool ReadAdapter(const std::string& path, NetworkAdapter& adapter);
    bool ReadPorts(const boost::json::value& doc, NetworkAdapter& adapter, std::vector<std::string>& portPaths);
    bool ReadFunctions(const boost::json::value& doc, NetworkAdapter& adapter,
                       const std::vector<std::string>& portPaths);
    bool ReadSoftwareIdentities(const boost::json::value& doc, NetworkAdapter& adapter);
    bool ReadLinkedIdentity(const std::string& path, const std::string& role, NetworkAdapter& adapter);

    BmcReader& reader;
};

}  // namespace Agentless
}  // namespace XModule

#endif
