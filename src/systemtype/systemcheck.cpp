#include "kestro/systemtype/systemcheck.h"

#include "kestro/xmodule/kestrodirectory.h"
#include "xmodule/agentless/redfishhardwarereader.h"
#include "xmodule/hardwareinventory/hardwareinventory.h"
#include "xmodule/linux/redfishhostinterface.h"
#include "xmodule/transferdeadline.h"
#include "xmodule/rlog.h"
#include "rest/jsonread.h"
#include "rest/restsession.h"

namespace XModule {

namespace {

const char* const kServiceRoot = "/redfish/v1";
const char* const kCfcVendor = "Orvena";
const std::int64_t kSecondGeneration = 2;
// A host interface is a link-local USB or PCI network: an answer takes milliseconds or never comes.
const int kHostInterfaceProbeSeconds = 5;

// The service root as JSON, or false with a log line when it can't be had.
bool ReadServiceRoot(const ConnectionInfo& connection, boost::json::value& root, int timeoutSeconds = 0)
{
    try {
        Rest::RestSession session = Rest::MakeRestSession(connection);
        if (timeoutSeconds > 0) session.client.SetTimeout(timeoutSeconds);
        Rest::RestResult result;
        Rest::FetchUrl(session, result, kServiceRoot, 0);
        std::string error;
        if (Rest::TryParseJson(result.body, root, error)) return true;
        RLOG(2) << "Service root of " << connection.host << " is not JSON: " << error;
    } catch (const std::exception& error) {
        RLOG(2) << "Service root of " << connection.host << " can't be read: " << error.what();
    }
    return false;
}

ConnectionInfo HostInterfaceConnection(const Linux::RedfishHostInterface& record)
{
    ConnectionInfo bmc;
    bmc.host = record.address.empty() ? record.hostName : record.address;
    bmc.isIPv6 = record.isIPv6;
    bmc.port = record.port == 443 ? 0 : record.port;
    bmc.isBmc = true;
    return bmc;
}

}  // namespace

SystemCheck::SystemCheck(const std::string& corvaneList, const std::string& amdList, const std::string& cfcList,
                         const std::string& grantlyList)
    : corvaneList(corvaneList), amdList(amdList), cfcList(cfcList), grantlyList(grantlyList)
{
}

SystemCheck SystemCheck::FromLibraryFolder()
{
    // The lists live where the machine-type check reads them: the program's data folder.
    const std::string folder = KestroDirectory::GetExePath("data/");
    return SystemCheck(folder + "Corvane_systems_list.txt", folder + "AMD_systems_list.txt",
                       folder + "CFC_systems_list.txt", folder + "Grantly_systems_list.txt");
}

bool SystemCheck::IsCFCPlatformV2(const ConnectionInfo& connection)
{
    boost::json::value root;
    return ReadServiceRoot(connection, root) && ServiceRootIsCFCPlatformV2(root);
}

bool SystemCheck::IsRedfishSupported(const ConnectionInfo& connection)
{
    boost::json::value root;
    return ReadServiceRoot(connection, root) && ServiceRootIsRedfish(root);
}

bool SystemCheck::FindHostInterfaceBmc(ConnectionInfo& bmc)
{
    std::string bytes;
    if (!Linux::ReadSmbiosTable(bytes)) return false;
    for (const Linux::RedfishHostInterface& record : Linux::FindRedfishHostInterfaces(Linux::ParseSmbiosTable(bytes))) {
        const ConnectionInfo candidate = HostInterfaceConnection(record);
        boost::json::value root;
        RLOG(3) << "SMBIOS names a Redfish host interface at " << candidate.host << ":" << record.port;
        if (ReadServiceRoot(candidate, root, kHostInterfaceProbeSeconds) && ServiceRootIsRedfish(root)) {
            bmc = candidate;
            return true;
        }
    }
    return false;
}

bool SystemCheck::IsRedfishSupported(const ConnectionInfo& connection, int seconds)
{
    if (TransferDeadline::IsSet() || seconds <= 0) return IsRedfishSupported(connection);
    TransferDeadline::Set(TransferDeadline::Clock::now() + std::chrono::seconds(seconds));
    const bool supported = IsRedfishSupported(connection);
    TransferDeadline::Clear();
    return supported;
}

bool SystemCheck::IsWhitleyPlatform() { return Hardwareinventory::Hardwareinventory::IsWhitleyPlatform(); }

bool SystemCheck::IsWhitleyPlatform(const ConnectionInfo& connection)
{
    if (!connection.isBmc) return IsWhitleyPlatform();
    return Agentless::RedfishHardwareReader(connection).IsWhitleyPlatform();
}

std::string SystemCheck::GetReleaseName(const ConnectionInfo& connection)
{
    boost::json::value root;
    if (!ReadServiceRoot(connection, root)) return std::string();
    return ServiceRootReleaseName(root);
}

bool SystemCheck::ServiceRootIsCFCPlatformV2(const boost::json::value& root)
{
    if (Rest::ReadJsonString(root, "/Vendor") != kCfcVendor) return false;
    return Rest::ReadJsonInt(root, "/Oem/Orvena/PlatformGeneration", 0) >= kSecondGeneration;
}

bool SystemCheck::ServiceRootIsRedfish(const boost::json::value& root)
{
    return root.is_object() && Rest::FindJsonValue(root, "/RedfishVersion") != nullptr &&
           Rest::FindJsonValue(root, "/RedfishVersion")->is_string();
}

std::string SystemCheck::ServiceRootReleaseName(const boost::json::value& root)
{
    return Rest::ReadJsonString(root, "/Oem/Orvena/ReleaseName", std::string());
}

}  // namespace XModule
