#include "xmodule/agentless/raidlink.h"

#include "xmodule/agentless/raidcodes.h"
#include "xmodule/agentless/redfishstoragereader.h"
#include "xmodule/hardwareinventory/hardwareinventory.h"
#include "xmodule/ihv/arcconfparser.h"
#include "xmodule/ihv/marvellparser.h"
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
const std::vector<std::string> kArcconfNames = {"arcconf"};
const std::vector<std::string> kMvcliNames = {"mvcli"};
const std::vector<std::string> kMvcliLists[] = {{"info", "-o", "hba"}, {"info", "-o", "vd"}, {"info", "-o", "pd"}};

// What one run of `program` wrote; empty when it could not run.
std::string OutputOf(const std::string& program, const std::vector<std::string>& args)
{
    XModuleIHV::RawData_ record;
    return XModuleIHV::VendorUtility::Run(program, args, record) ? record.rawData : std::string();
}

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

// The Microsemi controllers arcconf finds, numbered from 1.
void ReadArcconf(std::vector<XMOptions::RaidAdapter>& adapters)
{
    const std::string arcconf = XModuleIHV::VendorUtility::Find("arcconf", kArcconfNames);
    if (arcconf.empty()) return;
    const int count = ARCCONF::ArcconfParser::ControllerCount(OutputOf(arcconf, {"GETVERSION"}));
    for (int controller = 1; controller <= count; ++controller) {
        XMOptions::RaidAdapter adapter;
        if (ARCCONF::ArcconfParser::ParseConfig(OutputOf(arcconf, {"GETCONFIG", std::to_string(controller), "AL"}),
                                                adapter))
            adapters.push_back(adapter);
    }
}

// The Marvell boot adapters mvcli finds.
void ReadMvcli(std::vector<XMOptions::RaidAdapter>& adapters)
{
    const std::string mvcli = XModuleIHV::VendorUtility::Find("marvell", kMvcliNames);
    if (mvcli.empty()) return;
    MARVELL::MarvellParser::Parse(OutputOf(mvcli, kMvcliLists[0]), OutputOf(mvcli, kMvcliLists[1]),
                                  OutputOf(mvcli, kMvcliLists[2]), adapters);
}

// The SSDs the kernel sees directly, then the RAID controllers of each vendor's utility.
void ReadThisHost(std::vector<XMOptions::RaidAdapter>& adapters)
{
    Linux::HostStorageReader::ReadNvmeControllers(adapters);
    Linux::HostStorageReader::ReadSolidStateDisks(adapters);
    ReadStorcli(adapters);
    ReadArcconf(adapters);
    ReadMvcli(adapters);
}

}  // namespace

RAIDLink::RAIDLink(const ConnectionInfo& connection) : connection(connection), numericCodes(false) {}

// A Whitley host shows the coded fields as they stand, so its own readers hand over words.
RAIDLink::RAIDLink(const ConnectionInfo& cim, const ConnectionInfo&)
    : connection(cim), numericCodes(cim.isBmc || !Hardwareinventory::Hardwareinventory::IsWhitleyPlatform())
{
}

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
