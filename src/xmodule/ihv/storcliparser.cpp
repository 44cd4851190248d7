#include "xmodule/ihv/storcliparser.h"

#include "rest/jsonread.h"
#include "xmodule/rlog.h"

#include <boost/algorithm/string/predicate.hpp>
#include <boost/algorithm/string/trim.hpp>
#include <boost/json/array.hpp>
#include <boost/json/object.hpp>

#include <map>

namespace XModule {
namespace LSI {

namespace {

namespace opt = XMOptions;

const char* const kNone = "N/A";
const char* const kDetailSuffix = " - Detailed Information";

// storcli's abbreviations of drive and virtual-drive states.
const std::map<std::string, std::string> kStateWords = {
    {"Onln", "Online"},         {"UGood", "Unconfigured good"}, {"UGUnsp", "Unconfigured good"},
    {"UBad", "Unconfigured bad"}, {"UBUnsp", "Unconfigured bad"}, {"GHS", "Hot spare"},
    {"DHS", "Hot spare"},       {"Offln", "Offline"},          {"Failed", "Failed"},
    {"Rbld", "Rebuild"},        {"CpyBck", "Copyback"},        {"JBOD", "System"},
    {"Optl", "Online"},         {"Pdgd", "Partially Degraded"}, {"Dgrd", "Degraded"},
    {"OfLn", "Offline"},
};

// The firmware a controller reports, one identity each.
const std::pair<const char*, const char*> kFirmwareKeys[] = {
    {"Firmware Version", "Controller firmware"},
    {"Bios Version", "Controller BIOS"},
    {"Firmware Package Build", "Firmware package"},
};

// A value by its storcli key, which may hold "/" or ":"; numbers come back as text.
std::string Field(const boost::json::value& object, const std::string& key)
{
    return boost::algorithm::trim_copy(Rest::ReadJsonText(object, "/" + Rest::EscapePointerToken(key)));
}

// A value two levels down: `key` inside the object `parent`.
std::string Field(const boost::json::value& object, const std::string& parent, const std::string& key)
{
    return boost::algorithm::trim_copy(Rest::ReadJsonText(object, Rest::MakeJsonPointer({parent, key})));
}

const boost::json::array* List(const boost::json::value& object, const std::string& key)
{
    return Rest::FindJsonArray(object, "/" + Rest::EscapePointerToken(key));
}

bool Succeeded(const boost::json::value& controller)
{
    return Rest::ReadJsonText(controller, "/Command Status/Status", "") == "Success";
}

// "Drive /c0/e252/s3" from controller 0 and "252:3"; a drive without enclosure reads ":3".
std::string DriveName(const std::string& controller, const std::string& enclosureSlot)
{
    const std::size_t colon = enclosureSlot.find(':');
    if (colon == std::string::npos) return "Drive /c" + controller + "/s" + enclosureSlot;
    const std::string enclosure = enclosureSlot.substr(0, colon);
    const std::string slot = enclosureSlot.substr(colon + 1);
    return "Drive /c" + controller + (enclosure.empty() ? "" : "/e" + enclosure) + "/s" + slot;
}

opt::DiskDrive DriveOf(const std::string& controller, const boost::json::value& row)
{
    opt::DiskDrive drive;
    drive.Name = DriveName(controller, Field(row, "EID:Slt"));
    drive.Model = Field(row, "Model");
    drive.DefaultBlockSize = drive.MaxBlockSize = drive.MinBlockSize = Field(row, "SeSz");
    drive.Type = Field(row, "Intf");
    drive.SlotNum = Field(row, "EID:Slt");
    drive.Manufacturer = drive.SerialNum = drive.FRUNum = drive.PartNum = kNone;
    drive.EncryptionAbility = Field(row, "SED") == "Y" ? "true" : "false";
    drive.EncryptionStatus = kNone;
    drive.RemainingLifePercent = drive.DriveStatus = drive.Temperature = kNone;
    drive.MaxMediaSize = Field(row, "Size");
    drive.UUID = drive.DiskSpeed = drive.NumberOfBlocks = drive.VersionString = drive.DiskFormat = kNone;
    drive.MediaType = Field(row, "Med");
    drive.DiskState = StorcliParser::StateWord(Field(row, "State"));
    drive.DriveStatus = drive.DiskState;
    return drive;
}

opt::StorageVolume VolumeOf(const boost::json::value& row)
{
    opt::StorageVolume volume;
    volume.Name = Field(row, "Name");
    volume.BlockSize = volume.NumOfBlocks = volume.StripeSize = volume.PrimaryPartition = kNone;
    volume.VolumeStatus = StorcliParser::StateWord(Field(row, "State"));
    volume.Bootable = volume.ConsumableBlocks = volume.FreeSpace = kNone;
    volume.CapacityBytes = Field(row, "Size");
    volume.RAIDLevel = Field(row, "TYPE");
    return volume;
}

// The drive group of "DG/VD" ("0/1" gives "0").
std::string GroupOf(const std::string& groupAndVolume) { return groupAndVolume.substr(0, groupAndVolume.find('/')); }

opt::StoragePool& PoolOf(opt::RaidAdapter& adapter, std::map<std::string, std::size_t>& pools,
                         const std::string& group)
{
    const auto found = pools.find(group);
    if (found != pools.end()) return adapter.storagePools[found->second];
    opt::StoragePool pool;
    pool.Name = "Drive Group " + group;
    pool.RemainingManagedSpace = kNone;
    pool.Span = "255";  // "show all" gives no span depth
    pools[group] = adapter.storagePools.size();
    adapter.storagePools.push_back(pool);
    return adapter.storagePools.back();
}

void AddVolumesAndDrives(const std::string& controller, const boost::json::value& data, opt::RaidAdapter& adapter)
{
    std::map<std::string, std::size_t> pools;
    if (const boost::json::array* volumes = List(data, "VD LIST"))
        for (const boost::json::value& row : *volumes) {
            opt::StoragePool& pool = PoolOf(adapter, pools, GroupOf(Field(row, "DG/VD")));
            const opt::StorageVolume volume = VolumeOf(row);
            if (pool.volumes.empty()) {
                pool.RAIDLevel = volume.RAIDLevel;
                pool.ArrayStatus = volume.VolumeStatus;
                pool.TotalManagedSpace = volume.CapacityBytes;
            }
            pool.volumes.push_back(volume);
        }
    if (const boost::json::array* drives = List(data, "PD LIST"))
        for (const boost::json::value& row : *drives) {
            const auto group = pools.find(Field(row, "DG"));
            if (group == pools.end())
                adapter.diskDrives.push_back(DriveOf(controller, row));
            else
                adapter.storagePools[group->second].drives.push_back(DriveOf(controller, row));
        }
}

void AddCacheVaults(const boost::json::value& data, opt::RaidAdapter& adapter)
{
    const boost::json::array* vaults = List(data, "Cachevault_Info");
    if (vaults == nullptr) return;
    for (const boost::json::value& row : *vaults) {
        opt::Battery battery;
        battery.Name = "CacheVault";
        battery.Manufacturer = battery.PartNum = battery.Voltage = battery.Current = kNone;
        battery.BatteryType = Field(row, "Model");
        battery.Temperature = boost::algorithm::trim_right_copy_if(Field(row, "Temp"), boost::is_any_of("C"));
        battery.BatteryStatus = battery.HealthStatus = Field(row, "State");
        battery.RemainingCapacity = battery.FullChargeCapacity = battery.EnabledState = kNone;
        battery.FirmwareDescription = battery.VoltageType = battery.DesignCapacity = battery.Chemistry = kNone;
        adapter.batteries.push_back(battery);
    }
}

void AddFirmware(const boost::json::value& data, opt::RaidAdapter& adapter)
{
    for (const auto& key : kFirmwareKeys) {
        const std::string version = Field(data, "Version", key.first);
        if (version == kNone) continue;
        opt::SoftwareIdentity identity;
        identity.Name = key.second;
        identity.Description = key.second;
        identity.Manufacturer = "Broadcom";
        identity.VersionString = version;
        identity.Classifications = "Firmware";
        identity.SoftwareID = adapter.Model;
        identity.ReleaseDate = identity.SubDeviceID = identity.SoftwareStatus = kNone;
        identity.ElementName = key.first;
        identity.ProductName = adapter.Model;
        identity.ClassificationDescriptions = key.second;
        identity.IdentityInfoValue = version;
        identity.SoftwareRole = "Firmware";
        identity.IdentityInfoType = key.first;
        adapter.softwareIdentities.push_back(identity);
    }
}

opt::RaidAdapter AdapterOf(const boost::json::value& controller)
{
    const boost::json::value* data = Rest::FindJsonValue(controller, "/Response Data");
    const boost::json::value empty = boost::json::object();
    const boost::json::value& d = data != nullptr ? *data : empty;
    opt::RaidAdapter adapter;
    adapter.ControllerType = "RAID";
    adapter.Name = adapter.Model = Field(d, "Basics", "Model");
    adapter.SerialNum = Field(d, "Basics", "Serial Number");
    adapter.Manufacturer = "Broadcom";
    adapter.PartNumber = adapter.FRUNumber = kNone;
    adapter.UUID = Field(d, "Basics", "SAS Address");
    adapter.CacheStatus = Field(d, "Status", "Controller Status");
    adapter.CacheSerialNum = kNone;
    adapter.CacheMemorySize = Field(d, "HwCfg", "On Board Memory Size");
    AddFirmware(d, adapter);
    AddVolumesAndDrives(Rest::ReadJsonText(controller, "/Command Status/Controller", "0"), d, adapter);
    AddCacheVaults(d, adapter);
    return adapter;
}

bool ParseRoot(const std::string& json, const boost::json::array*& controllers, boost::json::value& doc)
{
    std::string error;
    if (!Rest::TryParseJson(json, doc, error)) {
        RLOG(2) << "storcli output is not JSON: " << error;
        return false;
    }
    controllers = Rest::FindJsonArray(doc, "/Controllers");
    if (controllers == nullptr) {
        RLOG(2) << "storcli output has no Controllers list";
        return false;
    }
    return true;
}

opt::DiskDrive* FindDrive(std::vector<opt::RaidAdapter>& adapters, const std::string& name)
{
    for (opt::RaidAdapter& adapter : adapters) {
        for (opt::DiskDrive& drive : adapter.diskDrives)
            if (drive.Name == name) return &drive;
        for (opt::StoragePool& pool : adapter.storagePools)
            for (opt::DiskDrive& drive : pool.drives)
                if (drive.Name == name) return &drive;
    }
    return nullptr;
}

void ApplyDetails(const std::string& name, const boost::json::value& details, opt::DiskDrive& drive)
{
    const std::string attributes = name + " Device attributes";
    drive.SerialNum = Field(details, attributes, "SN");
    drive.Manufacturer = Field(details, attributes, "Manufacturer Id");
    drive.VersionString = Field(details, attributes, "Firmware Revision");
    drive.DiskFormat = Field(details, attributes, "Link Speed");
    drive.UUID = Field(details, attributes, "WWN");
    const std::string temperature = Field(details, name + " State", "Drive Temperature");
    drive.Temperature = temperature.substr(0, temperature.find('C'));
}

}  // namespace

std::string StorcliParser::StateWord(const std::string& abbreviation)
{
    const auto found = kStateWords.find(abbreviation);
    return found == kStateWords.end() ? abbreviation : found->second;
}

bool StorcliParser::ParseControllers(const std::string& json, std::vector<opt::RaidAdapter>& adapters)
{
    boost::json::value doc;
    const boost::json::array* controllers = nullptr;
    if (!ParseRoot(json, controllers, doc)) return false;
    for (const boost::json::value& controller : *controllers) {
        if (Succeeded(controller))
            adapters.push_back(AdapterOf(controller));
        else
            RLOG(2) << "storcli: controller " << Rest::ReadJsonText(controller, "/Command Status/Controller")
                    << " did not answer: " << Rest::ReadJsonText(controller, "/Command Status/Description");
    }
    return true;
}

bool StorcliParser::ParseDriveDetails(const std::string& json, std::vector<opt::RaidAdapter>& adapters)
{
    boost::json::value doc;
    const boost::json::array* controllers = nullptr;
    if (!ParseRoot(json, controllers, doc)) return false;
    for (const boost::json::value& controller : *controllers) {
        const boost::json::object* data = Rest::FindJsonObject(controller, "/Response Data");
        if (data == nullptr) continue;
        for (const auto& entry : *data) {
            const std::string key(entry.key());
            if (!boost::algorithm::ends_with(key, kDetailSuffix)) continue;
            const std::string name = key.substr(0, key.size() - std::string(kDetailSuffix).size());
            opt::DiskDrive* drive = FindDrive(adapters, name);
            if (drive != nullptr) ApplyDetails(name, entry.value(), *drive);
        }
    }
    return true;
}

}  // namespace LSI
}  // namespace XModule
