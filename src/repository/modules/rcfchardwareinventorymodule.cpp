#include "repository/modules/rcfchardwareinventorymodule.h"

#include "kestro/repository/rrepository.h"
#include "repository/modules/rcfcredfish.h"
#include "xmodule/rlog.h"
#include "rest/jsonread.h"
#include "rest/restsession.h"
#include "kestro/systemtype/systemcheck.h"

#include <boost/bind/bind.hpp>

#include <iterator>
#include <string>
#include <vector>

namespace kestro {
namespace repository {

namespace {

// Only the sizes, speeds and wattages are read as numbers; any other key is read as text, a number
// written in decimal.
const RCFCField kProcessorFields[] = {
    {"Id", "Id", KindText, AtTop},
    {"Manufacturer", "Manufacturer", KindText, AtTop},
    {"Model", "Model", KindText, AtTop},
    {"ProcessorType", "Processor Type", KindText, AtTop},
    {"ProcessorArchitecture", "Processor Architecture", KindText, AtTop},
    {"Socket", "Socket", KindText, AtTop},
    {"TotalCores", "Total Cores", KindScalar, AtTop},
    {"TotalThreads", "Total Threads", KindScalar, AtTop},
    {"MaxSpeedMHz", "Max Speed(MHz)", KindScalar, AtTop},
    {"L1CacheKiB", "L1 Cache(KiB)", KindNumber, UnderOemPublic},
    {"L2CacheKiB", "L2 Cache(KiB)", KindNumber, UnderOemPublic},
    {"L3CacheKiB", "L3 Cache(KiB)", KindNumber, UnderOemPublic},
    {"SerialNumber", "Serial Number", KindText, UnderOemPublic},
    {"Health", "Health", KindText, UnderStatus},
    {"State", "State", KindText, UnderStatus},
};

const RCFCField kMemoryFields[] = {
    {"Id", "Id", KindText, AtTop},
    {"DeviceLocator", "Device Locator", KindText, AtTop},
    {"MemoryDeviceType", "Memory Device Type", KindText, AtTop},
    {"BaseModuleType", "Base Module Type", KindText, AtTop},
    {"MemoryType", "Memory Type", KindText, AtTop},
    {"CapacityMiB", "Capacity (MiB)", KindNumber, AtTop},
    {"Manufacturer", "Manufacturer", KindText, AtTop},
    {"OperatingSpeedMhz", "OperatingSpeed (MHz)", KindNumber, AtTop},
    {"PartNumber", "Part Number", KindText, AtTop},
    {"SerialNumber", "Serial Number", KindText, AtTop},
    {"OperatingMemoryModes", "OperatingMemoryModes", KindJoin, AtTop},
    {"Channel", "Channel", KindScalar, UnderMemoryLocation},
    {"Slot", "Slot", KindScalar, UnderMemoryLocation},
    {"Socket", "Socket", KindScalar, UnderMemoryLocation},
    {"Health", "Health", KindText, UnderStatus},
    {"State", "State", KindText, UnderStatus},
};

// "Redundancy" is not read from the fan itself; see FanRedundancy.
const RCFCField kFanFields[] = {
    {"MemberId", "Id", KindText, AtTop},
    {"Name", "Name", KindText, AtTop},
    {"Reading", "Reading", KindScalar, AtTop},
    {"MaxReadingRange", "Max Reading Range", KindScalar, AtTop},
    {"SlotNumber", "Slot Number", KindScalar, AtTop},
    {"Redundancy", "Redundancy", KindText, AtTop},
    {"DutyCycle", "Duty Cycle", KindScalar, UnderLowerOemPublic},
    {"SpeedMode", "Speed Mode", KindText, UnderLowerOemPublic},
    {"State", "State", KindText, UnderStatus},
    {"Health", "Health", KindText, UnderStatus},
};

const RCFCField kPowerFields[] = {
    {"Name", "Name", KindText, AtTop},
    {"Model", "Model", KindText, AtTop},
    {"Manufacturer", "Manufacturer", KindText, AtTop},
    {"SerialNumber", "Serial Number", KindText, AtTop},
    {"FirmwareVersion", "Firmware Version", KindText, AtTop},
    {"PartNumber", "Part Number", KindText, AtTop},
    {"PowerCapacityWatts", "Power Capacity Watts", KindNumber, AtTop},
    {"PowerInputWatts", "Power Input Watts", KindNumber, AtTop},
    {"PowerOutputWatts", "Power Output Watts", KindNumber, AtTop},
    {"State", "State", KindText, UnderStatus},
    {"Health", "Health", KindText, UnderStatus},
};

const RCFCField kSystemBoardFields[] = {
    {"Name", "Name", KindText, AtTop},
    {"Manufacturer", "Manufacturer", KindText, UnderPlatformOem},
    {"Model", "Model", KindText, AtTop},
    {"PartNumber", "Part Number", KindText, AtTop},
    {"SerialNumber", "Serial Number", KindText, UnderPlatformOem},
};

const RCFCField kDriveFields[] = {
    {"Name", "Name", KindText, AtTop},
    {"Id", "Id", KindText, AtTop},
    {"Model", "Model", KindText, AtTop},
    {"BlockSizeBytes", "Block Size(Byte)", KindNumber, AtTop},
    {"CapableSpeedGbs", "Capable Speed(Gbs)", KindNumber, AtTop},
    {"CapacityBytes", "Capacity", KindCapacity, AtTop},
    {"Manufacturer", "Manufacturer", KindText, AtTop},
    {"Protocol", "Protocol", KindText, AtTop},
    {"MediaType", "MediaType", KindText, AtTop},
    {"SerialNumber", "Serial Number", KindText, AtTop},
    {"Health", "Health", KindText, UnderStatus},
    {"State", "State", KindText, UnderStatus},
};

const char* const kSystemUrl = "/redfish/v1/Systems/1";
const char* const kChassisUrl = "/redfish/v1/Chassis/1";

// What the walks below read, so that the module's first walk of a run fetches it all at once.
const Rest::AheadRead kReadPlan[] = {
    {kSystemUrl, 1, "/Processors", 1},
    {kSystemUrl, 1, "/Memory", 1},
    {kChassisUrl, 1, "/Thermal", 0},
    {kChassisUrl, 1, "/Power", 0},
    {kChassisUrl, 1, "/Links/Drives", 0},
    // The system board's platform check reads the service root.
    {"/redfish/v1", 0, nullptr, 0},
};
const Rest::AheadPlan kPlan = {kReadPlan, std::size(kReadPlan)};

const char* const kProcessorLabel = "Processor/Core";

std::string MemoryLabel(std::size_t total)
{
    return "Memory(total " + std::to_string(total) + ")";
}

void AddMemoryRecords(RRepository& repo, const std::vector<boost::json::value>& modules)
{
    const std::string label = MemoryLabel(modules.size());
    for (const boost::json::value& module : modules) RCFCAddRecord(repo, "Memory", label, module, kMemoryFields);
}

// The names of the thermal document's redundancy groups whose set holds the fan.
std::string FanRedundancy(const boost::json::value& thermal, const boost::json::value& fan)
{
    const std::string fanLink = Rest::ReadJsonString(fan, "/@odata.id");
    const boost::json::array* groups = Rest::FindJsonArray(thermal, "/Redundancy");
    if (groups == nullptr || fanLink == Rest::JSON_MISSING_TEXT) return Rest::JSON_MISSING_TEXT;
    std::string names;
    for (const boost::json::value& group : *groups) {
        const boost::json::array* set = Rest::FindJsonArray(group, "/RedundancySet");
        if (set == nullptr) continue;
        for (const boost::json::value& link : *set) {
            if (Rest::ReadJsonString(link, "/@odata.id") != fanLink) continue;
            if (!names.empty()) names += ", ";
            names += Rest::ReadJsonString(group, "/Name");
            break;
        }
    }
    return names.empty() ? std::string(Rest::JSON_MISSING_TEXT) : names;
}

}  // namespace

std::string RCFCHardwareInventoryModule::GetName() { return "CFCHardwareInventoryModule"; }

std::string RCFCHardwareInventoryModule::GetDisplay() { return "CFC HardwareInventory Module"; }

void RCFCHardwareInventoryModule::InitCallbacks()
{
    using boost::placeholders::_1;
    typedef RCFCHardwareInventoryModule M;
    typeCallbacks["Processor"].enumCallback = boost::bind(&M::EnumProcessorInstances, this, _1);
    typeCallbacks["Processor"].wrapCallback = RCFCTableForm(kProcessorFields);
    typeCallbacks["Memory"].enumCallback = boost::bind(&M::EnumMemoryInstances, this, _1);
    typeCallbacks["Memory"].wrapCallback = RCFCTableForm(kMemoryFields);
    typeCallbacks["Fan"].enumCallback = boost::bind(&M::EnumFanInstances, this, _1);
    typeCallbacks["Fan"].wrapCallback = RCFCTableForm(kFanFields);
    typeCallbacks["Power"].enumCallback = boost::bind(&M::EnumPowerInstances, this, _1);
    typeCallbacks["Power"].wrapCallback = RCFCTableForm(kPowerFields);
    typeCallbacks["SystemBoard"].enumCallback = boost::bind(&M::EnumSystemBoardInstances, this, _1);
    typeCallbacks["SystemBoard"].wrapCallback = RCFCTableForm(kSystemBoardFields);
    typeCallbacks["Drive"].enumCallback = boost::bind(&M::EnumDriveInstances, this, _1);
    typeCallbacks["Drive"].wrapCallback = RCFCTableForm(kDriveFields);
}

void RCFCHardwareInventoryModule::EnumProcessorInstances(RRepository& repo)
{
    RCFCRedfish::Enumerate(repo, "Try to enum processor instances.", kPlan,
                           [this, &repo](Rest::RestSession& session) { WalkProcessors(session, repo); });
}

void RCFCHardwareInventoryModule::EnumMemoryInstances(RRepository& repo)
{
    RCFCRedfish::Enumerate(repo, "Try to enum memory instances.", kPlan,
                           [this, &repo](Rest::RestSession& session) { WalkMemory(session, repo); });
}

void RCFCHardwareInventoryModule::EnumFanInstances(RRepository& repo)
{
    RCFCRedfish::Enumerate(repo, "Begin to enum Fan instances", kPlan,
                           [this, &repo](Rest::RestSession& session) { WalkFans(session, repo); });
}

void RCFCHardwareInventoryModule::EnumPowerInstances(RRepository& repo)
{
    RCFCRedfish::Enumerate(repo, "Begin to enum Power instances", kPlan,
                           [this, &repo](Rest::RestSession& session) { WalkPowerSupplies(session, repo); });
}

void RCFCHardwareInventoryModule::EnumSystemBoardInstances(RRepository& repo)
{
    RCFCRedfish::Enumerate(repo, "Begin to enum SystemBoard instances", kPlan,
                           [this, &repo](Rest::RestSession& session) { WalkSystemBoard(session, repo); });
}

void RCFCHardwareInventoryModule::EnumDriveInstances(RRepository& repo)
{
    RCFCRedfish::Enumerate(repo, "Begin to enum drive instances", kPlan,
                           [this, &repo](Rest::RestSession& session) { WalkDrives(session, repo); });
}

void RCFCHardwareInventoryModule::WalkProcessors(Rest::RestSession& session, RRepository& repo)
{
    const boost::json::value system = RCFCRedfish::FetchJson(session, kSystemUrl, 1);
    const std::string link = RCFCRedfish::LinkOf(system, "Processors");
    if (link == Rest::JSON_MISSING_TEXT) return;
    // A BMC may page a long collection; every page is walked.
    Rest::WalkCollection(session, link, Rest::WalkExpanded, [&repo](const boost::json::value& member) {
        RCFCAddRecord(repo, "Processor", kProcessorLabel, member, kProcessorFields);
    });
}

void RCFCHardwareInventoryModule::WalkMemory(Rest::RestSession& session, RRepository& repo)
{
    const boost::json::value system = RCFCRedfish::FetchJson(session, kSystemUrl, 1);
    const std::string link = RCFCRedfish::LinkOf(system, "Memory");
    if (link == Rest::JSON_MISSING_TEXT) return;
    // The table's title counts the modules of every page, so the records wait for the last page;
    // those read before a failed page are still added.
    std::vector<boost::json::value> modules;
    try {
        Rest::WalkCollection(session, link, Rest::WalkExpanded,
                             [&modules](const boost::json::value& member) { modules.push_back(member); });
    } catch (...) {
        AddMemoryRecords(repo, modules);
        throw;
    }
    AddMemoryRecords(repo, modules);
}

void RCFCHardwareInventoryModule::WalkFans(Rest::RestSession& session, RRepository& repo)
{
    const boost::json::value chassis = RCFCRedfish::FetchJson(session, kChassisUrl, 1);
    const std::string link = RCFCRedfish::LinkOf(chassis, "Thermal");
    if (link == Rest::JSON_MISSING_TEXT) return;
    const boost::json::value thermal = RCFCRedfish::FetchJson(session, link, 0);
    const boost::json::array* fans = Rest::FindJsonArray(thermal, "/Fans");
    if (fans == nullptr) return;
    for (const boost::json::value& fan : *fans) {
        const RCFCGivenValue redundancy = {"Redundancy", FanRedundancy(thermal, fan)};
        RCFCAddRecord(repo, "Fan", "Fan", fan, kFanFields, false, &redundancy);
    }
}

void RCFCHardwareInventoryModule::WalkPowerSupplies(Rest::RestSession& session, RRepository& repo)
{
    const boost::json::value chassis = RCFCRedfish::FetchJson(session, kChassisUrl, 1);
    const std::string link = RCFCRedfish::LinkOf(chassis, "Power");
    if (link == Rest::JSON_MISSING_TEXT) return;
    const boost::json::value power = RCFCRedfish::FetchJson(session, link, 0);
    const boost::json::array* supplies = Rest::FindJsonArray(power, "/PowerSupplies");
    if (supplies == nullptr) return;
    for (const boost::json::value& supply : *supplies) RCFCAddRecord(repo, "Power", "Power", supply, kPowerFields);
}

void RCFCHardwareInventoryModule::WalkSystemBoard(Rest::RestSession& session, RRepository& repo)
{
    const boost::json::value chassis = RCFCRedfish::FetchJson(session, kChassisUrl, 1);
    if (!chassis.is_object()) return;
    const bool platformV2 =
        XModule::SystemCheck::FromLibraryFolder().IsCFCPlatformV2(repo.GetRestConnectionList().front());
    RCFCAddRecord(repo, "SystemBoard", "SystemBoard", chassis, kSystemBoardFields, platformV2);
}

void RCFCHardwareInventoryModule::WalkDrives(Rest::RestSession& session, RRepository& repo)
{
    const boost::json::value chassis = RCFCRedfish::FetchJson(session, kChassisUrl, 1);
    const boost::json::array* links = Rest::FindJsonArray(chassis, "/Links/Drives");
    if (links == nullptr) return;
    Rest::GetLinksAhead(session.client, session.baseUrl, *links);
    for (const boost::json::value& entry : *links) {
        const std::string link = Rest::ReadJsonString(entry, "/@odata.id");
        if (link == Rest::JSON_MISSING_TEXT) continue;
        RLOG(3) << "Get drive info from url " << link;
        RCFCAddRecord(repo, "Drive", "Drive", RCFCRedfish::FetchJson(session, link, 0), kDriveFields);
    }
}

}  // namespace repository
}  // namespace kestro
