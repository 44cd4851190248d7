#include "xmodule/agentless/raidlink.h"

#include "xmodule/agentless/raidcodes.h"
#include "xmodule/agentless/redfishstoragereader.h"
#include "xmodule/ihv/storcliparser.h"
#include "xmodule/ihv/vendorutility.h"
#include "xmodule/linux/hoststoragereader.h"
#include "xmodule/rlog.h"

namespace XModule {
namespace Agentless {

namespace {

const std::vector<std::string> kStorcliNames = {"storcli64", "storcli"};
const std::vector<std::string> kControllersCommand = {"/call", "show", "all", "J"};
const std::vector<std::string> kDrivesCommand = {"/call/eall/sall", "show", "all", "J"};

// The RAID controllers storcli finds on this host, when it is installed.
void ReadStorcli(std::vector<XMOptions::RaidAdapter>& adapters)
{
    const std::string storcli = XModuleIHV::VendorUtility::Find("lsi", kStorcliNames);
    if (storcli.empty()) return;
    XModuleIHV::RawData_ controllers;
    if (!XModuleIHV::VendorUtility::Run(storcli, kControllersCommand, controllers)) return;
    std::vector<XMOptions::RaidAdapter> found;
    if (!LSI::StorcliParser::ParseControllers(controllers.rawData, found)) return;
    XModuleIHV::RawData_ drives;
    if (XModuleIHV::VendorUtility::Run(storcli, kDrivesCommand, drives))
        LSI::StorcliParser::ParseDriveDetails(drives.rawData, found);
    adapters.insert(adapters.end(), found.begin(), found.end());
}

// The SSDs the kernel sees directly, then the RAID controllers.
void ReadThisHost(std::vector<XMOptions::RaidAdapter>& adapters)
{
    Linux::HostStorageReader::ReadNvmeControllers(adapters);
    Linux::HostStorageReader::ReadSolidStateDisks(adapters);
    ReadStorcli(adapters);
}

}  // namespace

RAIDLink::RAIDLink(const ConnectionInfo& connection) : connection(connection), numericCodes(false) {}

RAIDLink::RAIDLink(const ConnectionInfo& cim, const ConnectionInfo&) : connection(cim), numericCodes(true) {}

bool RAIDLink::IsAgentlessSupported()
{
    if (!connection.isBmc) return true;
    return RedfishStorageReader(connection).HasStorage();
}

int RAIDLink::GetAllRaidAdapterInfo(std::vector<XMOptions::RaidAdapter>& adapters)
{
    std::vector<XMOptions::RaidAdapter> found;
    if (connection.isBmc) {
        if (!RedfishStorageReader(connection).Read(found)) return RAID_UNREADABLE;
    } else {
        ReadThisHost(found);
    }
    if (numericCodes) RaidCodes::Encode(found);
    adapters.insert(adapters.end(), found.begin(), found.end());
    return RAID_OK;
}

}  // namespace Agentless
}  // namespace XModule
