#include "xmodule/agentless/redfishstoragereader.h"

#include "rest/jsonread.h"
#include "rest/jsonreaderror.h"
#include "xmodule/rlog.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/predicate.hpp>
#include <boost/json/array.hpp>

#include <algorithm>
#include <set>

namespace XModule {
namespace Agentless {

namespace {

namespace opt = XMOptions;
using Rest::ReadJsonText;

const char* const kNone = "N/A";
const double kLargestVolts = 1e6;

// What kind of adapter a storage resource is; the first row that fits decides.
//
// | RAID types | name holds | drives        | ControllerType             |
// |------------|------------|---------------|----------------------------|
// | some       | "m.2"      | any           | "M.2"                      |
// | some       | "7mm"      | any           | "7MM"                      |
// | some       |            | any           | "RAID"                     |
// | none       | "u.2"      | any           | "U.2"                      |
// | none       | "m.2"      | all NVMe      | "M.2_Direct_Attached_NVMe" |
// | none       | "7mm"      | all NVMe      | "7MM_Direct_Attached_NVMe" |
// | none       |            | all NVMe      | "Direct_Attached_NVMe"     |
// | none       |            | any           | "Direct_Attached_SATA"     |
//
// Name marks are matched in lower case. A storage with no drives is not "all NVMe".
struct ControllerRule {
    bool raid;
    const char* nameMark;
    bool nvmeOnly;
    const char* type;
};

const ControllerRule kControllerRules[] = {
    {true, "m.2", false, "M.2"},
    {true, "7mm", false, "7MM"},
    {true, "", false, "RAID"},
    {false, "u.2", false, "U.2"},
    {false, "m.2", true, "M.2_Direct_Attached_NVMe"},
    {false, "7mm", true, "7MM_Direct_Attached_NVMe"},
    {false, "", true, "Direct_Attached_NVMe"},
    {false, "", false, "Direct_Attached_SATA"},
};

// A drive's state in the words RAID utilities use; the first row that fits decides. Redfish
// says whether a drive is healthy, enabled and spare; membership in a volume tells the rest.
struct DriveStateRule {
    const char* health;  // "": any
    const char* state;   // "": any
    bool spare;
    int inVolume;        // 1 yes, 0 no, -1 either
    const char* word;
};

const DriveStateRule kDriveStateRules[] = {
    {"Critical", "", false, -1, "Failed"},
    {"", "Updating", false, -1, "Rebuild"},
    {"", "StandbyOffline", false, -1, "Offline"},
    {"", "Disabled", false, -1, "Offline"},
    {"", "", true, -1, "Hot spare"},
    {"", "Enabled", false, 1, "Online"},
    {"", "Enabled", false, 0, "Unconfigured good"},
};

// The state of an array from its volume's health.
const std::pair<const char*, const char*> kArrayStates[] = {
    {"OK", "Online"},
    {"Warning", "Degraded"},
    {"Critical", "Offline"},
};

bool IsTypeOf(const ControllerRule& rule, const std::string& lowerName, bool raid, bool allNvme)
{
    return rule.raid == raid && boost::algorithm::contains(lowerName, rule.nameMark) && (!rule.nvmeOnly || allNvme);
}

bool Fits(const DriveStateRule& rule, const std::string& health, const std::string& state, bool spare, bool inVolume)
{
    if (*rule.health != '\0' && health != rule.health) return false;
    if (*rule.state != '\0' && state != rule.state) return false;
    if (rule.spare && !spare) return false;
    return rule.inVolume < 0 || rule.inVolume == (inVolume ? 1 : 0);
}

std::string Link(const boost::json::value& doc, const std::string& pointer)
{
    return ReadJsonText(doc, pointer + "/@odata.id", "");
}

std::vector<std::string> Links(const boost::json::value& doc, const std::string& arrayPointer)
{
    std::vector<std::string> links;
    if (const boost::json::array* list = Rest::FindJsonArray(doc, arrayPointer))
        for (const boost::json::value& entry : *list) {
            const std::string link = ReadJsonText(entry, "/@odata.id", "");
            if (!link.empty()) links.push_back(link);
        }
    return links;
}

// A size in bytes; 0, which reads as not given, also for a number no size can be (some services
// send -1 for a size they do not know).
std::uint64_t Bytes(const boost::json::value& doc, const std::string& pointer)
{
    try {
        return Rest::ReadJsonUint(doc, pointer, 0);
    } catch (const Rest::JsonReadError&) {
        return 0;
    }
}

std::string Blocks(const boost::json::value& drive)
{
    const std::uint64_t bytes = Bytes(drive, "/CapacityBytes");
    const std::uint64_t block = Bytes(drive, "/BlockSizeBytes");
    return bytes == 0 || block == 0 ? kNone : std::to_string(bytes / block);
}

// "true" for a self-encrypting drive, the form the module normalises.
std::string SelfEncrypting(const boost::json::value& drive)
{
    return ReadJsonText(drive, "/EncryptionAbility", "") == "SelfEncryptingDrive" ? "true" : "false";
}

std::string Slot(const boost::json::value& drive)
{
    const std::string ordinal = ReadJsonText(drive, "/PhysicalLocation/PartLocation/LocationOrdinalValue", "");
    return ordinal.empty() ? ReadJsonText(drive, "/PhysicalLocation/PartLocation/ServiceLabel") : ordinal;
}

std::string ArrayStateOf(const boost::json::value& volume)
{
    const std::string health = ReadJsonText(volume, "/Status/Health", "");
    for (const auto& entry : kArrayStates)
        if (health == entry.first) return entry.second;
    return kNone;
}

opt::StorageVolume VolumeOf(const boost::json::value& volume)
{
    opt::StorageVolume record;
    record.Name = ReadJsonText(volume, "/Name");
    record.BlockSize = ReadJsonText(volume, "/BlockSizeBytes");
    record.NumOfBlocks = Blocks(volume);
    record.VolumeStatus = ReadJsonText(volume, "/Status/Health");
    record.StripeSize = ReadJsonText(volume, "/StripSizeBytes");
    record.PrimaryPartition = kNone;
    record.Bootable = ReadJsonText(volume, "/BootVolume", kNone);
    record.ConsumableBlocks = record.NumOfBlocks;
    record.FreeSpace = kNone;
    record.CapacityBytes = ReadJsonText(volume, "/CapacityBytes");
    record.RAIDLevel = ReadJsonText(volume, "/RAIDType");
    return record;
}

// A drive's firmware, as its revision tells it.
opt::SoftwareIdentity DriveFirmwareOf(const boost::json::value& drive)
{
    opt::SoftwareIdentity identity;
    identity.Name = ReadJsonText(drive, "/Name") + " Firmware";
    identity.Description = "Drive firmware";
    identity.Manufacturer = ReadJsonText(drive, "/Manufacturer");
    identity.VersionString = identity.IdentityInfoValue = ReadJsonText(drive, "/Revision");
    identity.Classifications = identity.SoftwareRole = "Firmware";
    identity.SoftwareID = identity.ProductName = ReadJsonText(drive, "/Model");
    identity.ReleaseDate = identity.SubDeviceID = kNone;
    identity.ElementName = ReadJsonText(drive, "/Name");
    identity.ClassificationDescriptions = "Drive firmware";
    identity.SoftwareStatus = ReadJsonText(drive, "/Status/State");
    identity.IdentityInfoType = "Revision";
    return identity;
}

// Free space of a pool: what it holds less what its volumes use; "N/A" when it does not say.
std::string Remaining(const boost::json::value& pool)
{
    const std::uint64_t allocated = Bytes(pool, "/Capacity/Data/AllocatedBytes");
    const std::uint64_t consumed = Bytes(pool, "/Capacity/Data/ConsumedBytes");
    return allocated == 0 || consumed > allocated ? kNone : std::to_string(allocated - consumed);
}

// An array from a StoragePool resource or, where the service has none, from a RAID volume:
// its volumes and the drives among `drives` that `members` names.
opt::StoragePool PoolOf(const boost::json::value& source, const std::vector<boost::json::value>& volumes,
                        const std::vector<std::string>& members, const std::vector<boost::json::value>& drives)
{
    opt::StoragePool pool;
    pool.Name = ReadJsonText(source, "/Name");
    pool.TotalManagedSpace =
        ReadJsonText(source, "/CapacityBytes", ReadJsonText(source, "/Capacity/Data/AllocatedBytes"));
    pool.ArrayStatus = ArrayStateOf(source);
    pool.RemainingManagedSpace = Remaining(source);
    pool.RAIDLevel = volumes.empty() ? kNone : ReadJsonText(volumes.front(), "/RAIDType");
    pool.Span = "255";  // Redfish does not tell a spanned array's depth
    for (const boost::json::value& volume : volumes) pool.volumes.push_back(VolumeOf(volume));
    for (const boost::json::value& drive : drives)
        if (std::find(members.begin(), members.end(), Link(drive, "")) != members.end())
            pool.drives.push_back(RedfishStorageReader::DriveOf(drive, true));
    return pool;
}

// One member of the firmware inventory (a SoftwareInventory resource).
opt::SoftwareIdentity InventoryIdentityOf(const boost::json::value& image)
{
    opt::SoftwareIdentity identity;
    identity.Name = ReadJsonText(image, "/Name");
    identity.Description = ReadJsonText(image, "/Description");
    identity.Manufacturer = ReadJsonText(image, "/Manufacturer");
    identity.VersionString = identity.IdentityInfoValue = ReadJsonText(image, "/Version");
    identity.Classifications = "Firmware";
    identity.SoftwareID = ReadJsonText(image, "/SoftwareId");
    identity.ReleaseDate = ReadJsonText(image, "/ReleaseDate");
    identity.ElementName = ReadJsonText(image, "/Id");
    identity.ProductName = identity.Name;
    identity.ClassificationDescriptions = ReadJsonText(image, "/Description");
    identity.SubDeviceID = kNone;
    identity.SoftwareStatus = ReadJsonText(image, "/Status/State");
    identity.SoftwareRole = ReadJsonText(image, "/Updateable", "") == "true" ? "Updateable firmware" : "Firmware";
    identity.IdentityInfoType = "Version";
    return identity;
}

opt::SoftwareIdentity FirmwareOf(const boost::json::value& controller)
{
    opt::SoftwareIdentity identity;
    identity.Name = ReadJsonText(controller, "/Name") + " Firmware";
    identity.Description = "Controller firmware";
    identity.Manufacturer = ReadJsonText(controller, "/Manufacturer");
    identity.VersionString = ReadJsonText(controller, "/FirmwareVersion");
    identity.Classifications = "Firmware";
    identity.SoftwareID = ReadJsonText(controller, "/Model");
    identity.ReleaseDate = kNone;
    identity.ElementName = ReadJsonText(controller, "/Name");
    identity.ProductName = ReadJsonText(controller, "/Model");
    identity.ClassificationDescriptions = "Controller firmware";
    identity.SubDeviceID = ReadJsonText(controller, "/PCIeInterface/PCIeType", kNone);
    identity.IdentityInfoValue = ReadJsonText(controller, "/Identifiers/0/DurableName");
    identity.SoftwareStatus = ReadJsonText(controller, "/Status/State");
    identity.SoftwareRole = "Firmware";
    identity.IdentityInfoType = ReadJsonText(controller, "/Identifiers/0/DurableNameFormat");
    return identity;
}

void FillAdapter(const boost::json::value& controller, opt::RaidAdapter& adapter)
{
    adapter.Name = ReadJsonText(controller, "/Name");
    adapter.Model = ReadJsonText(controller, "/Model");
    adapter.SerialNum = ReadJsonText(controller, "/SerialNumber");
    adapter.Manufacturer = ReadJsonText(controller, "/Manufacturer");
    adapter.PartNumber = ReadJsonText(controller, "/PartNumber");
    adapter.FRUNumber = ReadJsonText(controller, "/SKU");
    adapter.UUID = ReadJsonText(controller, "/Identifiers/0/DurableName");
    adapter.CacheStatus = ReadJsonText(controller, "/CacheSummary/Status/Health");
    adapter.CacheSerialNum = kNone;
    const std::string cache = ReadJsonText(controller, "/CacheSummary/TotalCacheSizeMiB", "");
    adapter.CacheMemorySize = cache.empty() ? kNone : cache + " MiB";
}

bool SupportsRaid(const boost::json::value& controller)
{
    const boost::json::array* types = Rest::FindJsonArray(controller, "/SupportedRAIDTypes");
    if (types == nullptr) return false;
    return std::any_of(types->begin(), types->end(), [](const boost::json::value& type) {
        return type.is_string() && type.get_string() != "None";
    });
}

bool IsDirectAttached(const std::string& controllerType)
{
    return boost::algorithm::contains(controllerType, "Direct_Attached_NVMe") || controllerType == "U.2";
}

// Intel VROC arrays are shown by their SSDs, as directly attached ones are.
bool IsVroc(const opt::RaidAdapter& adapter)
{
    return boost::algorithm::istarts_with(adapter.Name, "vroc") &&
           !boost::algorithm::contains(adapter.ControllerType, "Direct_Attached_SATA");
}

// Volts as whole millivolts; "N/A" for a reading no battery gives, which would not fit the number.
std::string Millivolts(double volts)
{
    if (!(volts >= 0 && volts <= kLargestVolts)) return kNone;
    return std::to_string(static_cast<long>(volts * 1000 + 0.5));
}

bool IsBootAdapter(const std::string& controllerType) { return controllerType == "M.2" || controllerType == "7MM"; }

}  // namespace

RedfishStorageReader::RedfishStorageReader(const ConnectionInfo& bmc) : reader(bmc) {}

std::string RedfishStorageReader::ControllerTypeOf(const std::string& name, bool supportsRaid,
                                                   const std::vector<std::string>& driveProtocols)
{
    const std::string lowerName = boost::algorithm::to_lower_copy(name);
    const bool allNvme = !driveProtocols.empty() &&
                         std::all_of(driveProtocols.begin(), driveProtocols.end(),
                                     [](const std::string& protocol) { return protocol == "NVMe"; });
    for (const ControllerRule& rule : kControllerRules)
        if (IsTypeOf(rule, lowerName, supportsRaid, allNvme)) return rule.type;
    return "Direct_Attached_SATA";
}

std::string RedfishStorageReader::DriveStateOf(const boost::json::value& drive, bool inVolume)
{
    const std::string health = ReadJsonText(drive, "/Status/Health", "");
    const std::string state = ReadJsonText(drive, "/Status/State", "");
    const std::string spareType = ReadJsonText(drive, "/HotspareType", "None");
    const bool spare = spareType != "None";
    for (const DriveStateRule& rule : kDriveStateRules)
        if (Fits(rule, health, state, spare, inVolume)) return rule.word;
    return state.empty() ? kNone : state;
}

opt::DiskDrive RedfishStorageReader::DriveOf(const boost::json::value& drive, bool inVolume)
{
    opt::DiskDrive record;
    record.Name = ReadJsonText(drive, "/Name");
    record.Model = ReadJsonText(drive, "/Model");
    record.DefaultBlockSize = ReadJsonText(drive, "/BlockSizeBytes");
    record.Type = ReadJsonText(drive, "/Protocol");
    record.SlotNum = Slot(drive);
    record.Manufacturer = ReadJsonText(drive, "/Manufacturer");
    record.SerialNum = ReadJsonText(drive, "/SerialNumber");
    record.FRUNum = ReadJsonText(drive, "/SKU");
    record.PartNum = ReadJsonText(drive, "/PartNumber");
    record.EncryptionAbility = SelfEncrypting(drive);
    record.EncryptionStatus = ReadJsonText(drive, "/EncryptionStatus");
    record.RemainingLifePercent = ReadJsonText(drive, "/PredictedMediaLifeLeftPercent");
    record.DriveStatus = ReadJsonText(drive, "/Status/Health");
    record.Temperature = ReadJsonText(drive, "/Oem/TemperatureCelsius");
    record.MaxBlockSize = record.DefaultBlockSize;
    record.MaxMediaSize = ReadJsonText(drive, "/CapacityBytes");
    record.MinBlockSize = record.DefaultBlockSize;
    record.UUID = ReadJsonText(drive, "/Identifiers/0/DurableName");
    record.DiskSpeed = ReadJsonText(drive, "/RotationSpeedRPM");
    record.NumberOfBlocks = Blocks(drive);
    record.VersionString = ReadJsonText(drive, "/Revision");
    record.DiskFormat = ReadJsonText(drive, "/NegotiatedSpeedGbs");
    record.MediaType = ReadJsonText(drive, "/MediaType");
    record.DiskState = DriveStateOf(drive, inVolume);
    if (ReadJsonText(drive, "/Revision", "") != "") record.softwareIdentities.push_back(DriveFirmwareOf(drive));
    return record;
}

opt::SSD RedfishStorageReader::SsdOf(const boost::json::value& drive)
{
    opt::SSD record;
    record.Bay = ReadJsonText(drive, "/PhysicalLocation/PartLocation/LocationOrdinalValue");
    record.Type = ReadJsonText(drive, "/Protocol");
    record.SerialNumber = ReadJsonText(drive, "/SerialNumber");
    record.PartNumber = ReadJsonText(drive, "/PartNumber");
    record.FRUNumber = ReadJsonText(drive, "/SKU");
    record.ProductName = ReadJsonText(drive, "/Model");
    record.Manufacturer = ReadJsonText(drive, "/Manufacturer");
    record.Location = ReadJsonText(drive, "/PhysicalLocation/PartLocation/ServiceLabel");
    record.FirmwareVersion = ReadJsonText(drive, "/Revision");
    record.Capacity = ReadJsonText(drive, "/CapacityBytes");
    record.EncryptionAbility = SelfEncrypting(drive);
    record.EncryptionStatus = ReadJsonText(drive, "/EncryptionStatus");
    record.RemainingLifePercent = ReadJsonText(drive, "/PredictedMediaLifeLeftPercent");
    record.DriveStatus = ReadJsonText(drive, "/Status/Health");
    record.Temperature = ReadJsonText(drive, "/Oem/TemperatureCelsius");
    return record;
}

std::string RedfishStorageReader::StorageCollection()
{
    const std::string system = reader.FirstMember("/redfish/v1/Systems");
    if (system.empty()) return std::string();
    boost::json::value doc;
    if (!reader.Get(system, doc)) return std::string();
    return Link(doc, "/Storage");
}

bool RedfishStorageReader::HasStorage() { return !StorageCollection().empty(); }

bool RedfishStorageReader::Read(std::vector<opt::RaidAdapter>& adapters)
{
    const std::string collection = StorageCollection();
    std::vector<std::string> members;
    if (collection.empty() || !reader.Members(collection, members)) {
        XLOG(2) << "The storage of the BMC's system cannot be read";
        return false;
    }
    for (const std::string& member : members) {
        opt::RaidAdapter adapter;
        if (ReadStorage(member, adapter))
            adapters.push_back(adapter);
        else
            XLOG(2) << "Storage " << member << " is left out: it cannot be read";
    }
    return true;
}

std::vector<boost::json::value> RedfishStorageReader::ReadLinked(const boost::json::value& doc,
                                                                 const std::string& arrayPointer)
{
    std::vector<boost::json::value> docs;
    for (const std::string& link : Links(doc, arrayPointer)) {
        boost::json::value linked;
        if (reader.Get(link, linked)) docs.push_back(linked);
    }
    return docs;
}

std::vector<boost::json::value> RedfishStorageReader::ReadCollection(const boost::json::value& doc,
                                                                     const std::string& linkPointer)
{
    std::vector<boost::json::value> docs;
    std::vector<std::string> members;
    const std::string link = Link(doc, linkPointer);
    if (link.empty() || !reader.Members(link, members)) return docs;
    for (const std::string& member : members) {
        boost::json::value linked;
        if (reader.Get(member, linked)) docs.push_back(linked);
    }
    return docs;
}

// The storage's first controller: inline in older services, a collection member in newer ones;
// the storage itself when it names none.
boost::json::value RedfishStorageReader::ControllerOf(const boost::json::value& storage)
{
    if (const boost::json::array* inline_ = Rest::FindJsonArray(storage, "/StorageControllers"))
        if (!inline_->empty()) return inline_->front();
    const std::vector<boost::json::value> controllers = ReadCollection(storage, "/Controllers");
    return controllers.empty() ? storage : controllers.front();
}

bool RedfishStorageReader::ReadStorage(const std::string& path, opt::RaidAdapter& adapter)
{
    boost::json::value storage;
    if (!reader.Get(path, storage)) return false;
    const boost::json::value controller = ControllerOf(storage);
    const std::vector<boost::json::value> drives = ReadLinked(storage, "/Drives");
    const std::vector<boost::json::value> volumes = ReadCollection(storage, "/Volumes");
    std::vector<std::string> protocols;
    for (const boost::json::value& drive : drives) protocols.push_back(ReadJsonText(drive, "/Protocol", ""));
    FillAdapter(controller, adapter);
    adapter.ControllerType = ControllerTypeOf(adapter.Name, SupportsRaid(controller), protocols);
    ReadBatteries(controller, storage, adapter);
    ReadFirmware(controller, adapter);

    std::set<std::string> pooled;
    if (IsDirectAttached(adapter.ControllerType) || IsVroc(adapter)) {
        for (const boost::json::value& drive : drives) adapter.ssds.push_back(SsdOf(drive));
        return true;
    }
    if (IsBootAdapter(adapter.ControllerType)) {
        for (const boost::json::value& volume : volumes) {
            adapter.storageVolumes.push_back(VolumeOf(volume));
            const std::vector<std::string> members = Links(volume, "/Links/Drives");
            pooled.insert(members.begin(), members.end());
        }
        for (const boost::json::value& drive : drives)
            adapter.diskDrives.push_back(DriveOf(drive, pooled.count(Link(drive, "")) != 0));
        return true;
    }
    ReadPools(storage, volumes, drives, adapter, pooled);
    for (const boost::json::value& drive : drives)
        if (pooled.count(Link(drive, "")) == 0) adapter.diskDrives.push_back(DriveOf(drive, false));
    return true;
}

// The service's own pools when it has them; otherwise each RAID volume stands for its array.
void RedfishStorageReader::ReadPools(const boost::json::value& storage, const std::vector<boost::json::value>& volumes,
                                     const std::vector<boost::json::value>& drives, opt::RaidAdapter& adapter,
                                     std::set<std::string>& pooled)
{
    const std::vector<boost::json::value> pools = ReadCollection(storage, "/StoragePools");
    for (const boost::json::value& pool : pools) {
        std::vector<std::string> members;
        const std::string providing = Link(pool, "/CapacitySources/0/ProvidingDrives");
        if (!providing.empty()) reader.Members(providing, members);
        pooled.insert(members.begin(), members.end());
        adapter.storagePools.push_back(PoolOf(pool, ReadCollection(pool, "/AllocatedVolumes"), members, drives));
    }
    if (!pools.empty()) return;
    for (const boost::json::value& volume : volumes) {
        const std::vector<std::string> members = Links(volume, "/Links/Drives");
        pooled.insert(members.begin(), members.end());
        adapter.storagePools.push_back(PoolOf(volume, std::vector<boost::json::value>(1, volume), members, drives));
    }
}

// The firmware inventory entries the controller links, else the version it states itself.
void RedfishStorageReader::ReadFirmware(const boost::json::value& controller, opt::RaidAdapter& adapter)
{
    for (const boost::json::value& image : ReadLinked(controller, "/Links/SoftwareImages"))
        adapter.softwareIdentities.push_back(InventoryIdentityOf(image));
    if (adapter.softwareIdentities.empty() && ReadJsonText(controller, "/FirmwareVersion", "") != "")
        adapter.softwareIdentities.push_back(FirmwareOf(controller));
}

void RedfishStorageReader::ReadBatteries(const boost::json::value& controller, const boost::json::value& storage,
                                         opt::RaidAdapter& adapter)
{
    std::vector<boost::json::value> batteries = ReadLinked(controller, "/Links/Batteries");
    if (batteries.empty()) batteries = ReadLinked(storage, "/Links/Batteries");
    for (const boost::json::value& battery : batteries) adapter.batteries.push_back(BatteryOf(battery));
}

opt::Battery RedfishStorageReader::BatteryOf(const boost::json::value& battery)
{
    boost::json::value metrics;
    const std::string metricsLink = Link(battery, "/Metrics");
    if (metricsLink.empty() || !reader.Get(metricsLink, metrics)) metrics = boost::json::object();
    opt::Battery record;
    record.Name = ReadJsonText(battery, "/Name");
    record.Manufacturer = ReadJsonText(battery, "/Manufacturer");
    record.PartNum = ReadJsonText(battery, "/PartNumber");
    record.BatteryType = ReadJsonText(battery, "/Model");
    record.Voltage = Millivolts(Rest::ReadJsonDouble(metrics, "/InputVoltage", -1));
    record.Current = ReadJsonText(metrics, "/InputCurrentAmps");
    record.Temperature = ReadJsonText(metrics, "/TemperatureCelsius");
    record.BatteryStatus = ReadJsonText(battery, "/ChargeState");
    record.RemainingCapacity = ReadJsonText(metrics, "/ChargePercent");
    record.FullChargeCapacity = ReadJsonText(battery, "/CapacityActualWattHours");
    record.EnabledState = ReadJsonText(battery, "/Status/State");
    record.FirmwareDescription = ReadJsonText(battery, "/Version");
    record.VoltageType = kNone;
    record.DesignCapacity = ReadJsonText(battery, "/CapacityRatedWattHours");
    record.HealthStatus = ReadJsonText(battery, "/Status/Health");
    record.Chemistry = ReadJsonText(battery, "/ChemistryType");
    return record;
}

}  // namespace Agentless
}  // namespace XModule
