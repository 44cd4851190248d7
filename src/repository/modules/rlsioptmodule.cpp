#include "repository/modules/rlsioptmodule.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rinstanceswrapper.h"
#include "kestro/repository/rrepository.h"
#include "kestro/repository/rtooltip.h"
#include "repository/modules/resxinodes.h"
#include "repository/modules/rrawdatarows.h"
#include "repository/modules/rrecordfields.h"
#include "xmodule/agentless/qmmtypeacquire.h"
#include "xmodule/agentless/raidlink.h"
#include "xmodule/ihv/arcconfopt.h"
#include "xmodule/ihv/lsiopt.h"
#include "xmodule/ihv/marvell.h"
#include "xmodule/ihv/vendorutility.h"
#include "xmodule/rlog.h"
#include "xmodule/service/serviceraid.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/predicate.hpp>
#include <boost/bind/bind.hpp>

#include <algorithm>

namespace kestro {
namespace repository {

namespace {

namespace opt = XModule::XMOptions;
using XModule::XModuleIHV::RawData_;

const char* const kGroup = "storage_devices";
const int kNoId = -1;

// Numbered from the start of the process: a second repository in the same run goes on counting,
// so that references never meet an older instance of the same number.
int adapterId = 0;
int poolId = 0;
int diskId = 0;
int nonRaidId = 0;

const RXmlRecordField<opt::RaidAdapter> kAdapterFields[] = {
    {"Name", "Name", &opt::RaidAdapter::Name, false},
    {"Model", "Model", &opt::RaidAdapter::Model, false},
    {"SerialNum", "Serial Number", &opt::RaidAdapter::SerialNum, false},
    {"Manufacturer", "Manufacturer", &opt::RaidAdapter::Manufacturer, false},
    {"PartNumber", "Part Number", &opt::RaidAdapter::PartNumber, false},
    {"FRUNumber", "FRU Number", &opt::RaidAdapter::FRUNumber, false},
    {"UUID", "UUID", &opt::RaidAdapter::UUID, true},
    {"CacheStatus", "Cache Status", &opt::RaidAdapter::CacheStatus, true},
    {"CacheSerialNum", "Cache Serial Number", &opt::RaidAdapter::CacheSerialNum, true},
    {"CacheMemorySize", "Cache Memory Size", &opt::RaidAdapter::CacheMemorySize, true},
};

const RXmlRecordField<opt::Battery> kBatteryFields[] = {
    {"Name", "Name", &opt::Battery::Name, false},
    {"Manufacturer", "Manufacturer", &opt::Battery::Manufacturer, false},
    {"PartNum", "Part Number", &opt::Battery::PartNum, false},
    {"BatteryType", "Battery Type", &opt::Battery::BatteryType, false},
    {"Voltage", "Voltage(mV)", &opt::Battery::Voltage, false},
    {"Current", "Current", &opt::Battery::Current, false},
    {"Temperature", "Temperature(Degree Celsius)", &opt::Battery::Temperature, false},
    {"BatteryStatus", "Battery Status", &opt::Battery::BatteryStatus, false},
    {"RemainingCapacity", "Remaining Capacity", &opt::Battery::RemainingCapacity, false},
    {"FullChargeCapacity", "Full Charge Capacity", &opt::Battery::FullChargeCapacity, false},
    {"EnabledState", "Enabled State", &opt::Battery::EnabledState, true},
    {"FirmwareDescription", "Firmware Description", &opt::Battery::FirmwareDescription, true},
    {"VoltageType", "Voltage Type", &opt::Battery::VoltageType, true},
    {"DesignCapacity", "Design Capacity", &opt::Battery::DesignCapacity, true},
    {"HealthStatus", "Health Status", &opt::Battery::HealthStatus, true},
    {"Chemistry", "Chemistry", &opt::Battery::Chemistry, true},
};

// A drive's rows before the encryption rows, whose keys depend on the system family.
const RXmlRecordField<opt::DiskDrive> kDriveLeadingFields[] = {
    {"Name", "Name", &opt::DiskDrive::Name, false},
    {"Model", "Model", &opt::DiskDrive::Model, false},
    {"DefaultBlockSize", "Default Block Size", &opt::DiskDrive::DefaultBlockSize, false},
    {"Type", "Type", &opt::DiskDrive::Type, false},
    {"SlotNum", "Slot Num", &opt::DiskDrive::SlotNum, false},
    {"Manufacturer", "Manufacturer", &opt::DiskDrive::Manufacturer, false},
    {"SerialNum", "Serial Number", &opt::DiskDrive::SerialNum, false},
    {"FRUNum", "FRU Number", &opt::DiskDrive::FRUNum, false},
    {"PartNum", "Part Number", &opt::DiskDrive::PartNum, false},
};

const RXmlRecordField<opt::DiskDrive> kDriveTrailingFields[] = {
    {"RemainingLifePercent", "Remaining Life(%)", &opt::DiskDrive::RemainingLifePercent, false},
    {"DriveStatus", "Drive Status", &opt::DiskDrive::DriveStatus, false},
    {"Temperature", "Temperature(Degree Celsius)", &opt::DiskDrive::Temperature, false},
    {"MaxBlockSize", "Max Block Size", &opt::DiskDrive::MaxBlockSize, true},
    {"MaxMediaSize", "Max Media Size", &opt::DiskDrive::MaxMediaSize, true},
    {"MinBlockSize", "Min Block Size", &opt::DiskDrive::MinBlockSize, true},
    {"UUID", "UUID", &opt::DiskDrive::UUID, true},
    {"DiskSpeed", "Disk Speed", &opt::DiskDrive::DiskSpeed, true},
    {"NumberOfBlocks", "Number Of Blocks", &opt::DiskDrive::NumberOfBlocks, true},
    {"VersionString", "Firmware Version", &opt::DiskDrive::VersionString, true},
    {"DiskFormat", "Disk Format", &opt::DiskDrive::DiskFormat, true},
    {"MediaType", "Media Type", &opt::DiskDrive::MediaType, true},
    {"DiskState", "DiskState", &opt::DiskDrive::DiskState, true},
};

// The encryption rows: Whitley firmware names them by ability and status, older firmware by
// FDE capability and lock state; both read the same two fields.
struct EncryptionRows {
    bool whitley;
    const char* abilityKey;
    const char* abilityDisplay;
    const char* statusKey;
    const char* statusDisplay;
};

const EncryptionRows kEncryptionRows[] = {
    {true, "EncryptionAbility", "Encryption Ability", "EncryptionStatus", "Encryption Status"},
    {false, "FdeCapable", "FDE Capable", "Secured", "Secured"},
};

const RXmlRecordField<opt::StoragePool> kPoolFields[] = {
    {"Name", "Name", &opt::StoragePool::Name, false},
    {"TotalManagedSpace", "Total Managed Space", &opt::StoragePool::TotalManagedSpace, false},
    {"ArrayStatus", "Array Status", &opt::StoragePool::ArrayStatus, false},
    {"RemainingManagedSpace", "Remaining Managed Space", &opt::StoragePool::RemainingManagedSpace, false},
};

const RXmlRecordField<opt::StorageVolume> kVolumeFields[] = {
    {"Name", "Name", &opt::StorageVolume::Name, false},
    {"BlockSize", "Block Size", &opt::StorageVolume::BlockSize, false},
    {"NumOfBlocks", "Number Of Blocks", &opt::StorageVolume::NumOfBlocks, false},
    {"VolumeStatus", "Volume Status", &opt::StorageVolume::VolumeStatus, false},
    {"StripeSize", "Stripe Size", &opt::StorageVolume::StripeSize, false},
    {"PrimaryPartition", "Primary Partition", &opt::StorageVolume::PrimaryPartition, true},
    {"Bootable", "Bootable", &opt::StorageVolume::Bootable, true},
    {"ConsumableBlocks", "Consumable Blocks", &opt::StorageVolume::ConsumableBlocks, true},
    {"FreeSpace", "Free Space", &opt::StorageVolume::FreeSpace, true},
};

// A boot adapter's volume names its stripe size "StripSize", unlike a pool's volume.
const RXmlRecordField<opt::StorageVolume> kBootVolumeFields[] = {
    {"Name", "Name", &opt::StorageVolume::Name, false},
    {"CapacityBytes", "Capacity Bytes", &opt::StorageVolume::CapacityBytes, false},
    {"RAIDLevel", "RAID Level", &opt::StorageVolume::RAIDLevel, false},
    {"VolumeStatus", "Volume Status", &opt::StorageVolume::VolumeStatus, false},
    {"StripSize", "Stripe Size", &opt::StorageVolume::StripeSize, false},
};

// The identity rows; a non-RAID SSD's identity puts IdentityInfoValue before SubDeviceID.
const RXmlRecordField<opt::SoftwareIdentity> kIdentityLeadingFields[] = {
    {"Name", "Name", &opt::SoftwareIdentity::Name, false},
    {"Description", "Description", &opt::SoftwareIdentity::Description, false},
    {"Manufacturer", "Manufacturer", &opt::SoftwareIdentity::Manufacturer, false},
    {"VersionString", "Version String", &opt::SoftwareIdentity::VersionString, false},
    {"Classifications", "Classifications", &opt::SoftwareIdentity::Classifications, false},
    {"SoftwareID", "Software ID", &opt::SoftwareIdentity::SoftwareID, false},
    {"ReleaseDate", "Release Date", &opt::SoftwareIdentity::ReleaseDate, false},
    {"ElementName", "Element Name", &opt::SoftwareIdentity::ElementName, true},
    {"ProductName", "Product Name", &opt::SoftwareIdentity::ProductName, true},
    {"ClassificationDescriptions", "Classification Descriptions", &opt::SoftwareIdentity::ClassificationDescriptions,
     true},
};

const RXmlRecordField<opt::SoftwareIdentity> kSubDeviceField[] = {
    {"SubDeviceID", "Sub Device ID", &opt::SoftwareIdentity::SubDeviceID, true},
};

const RXmlRecordField<opt::SoftwareIdentity> kIdentityValueField[] = {
    {"IdentityInfoValue", "Identity Information Value", &opt::SoftwareIdentity::IdentityInfoValue, true},
};

const RXmlRecordField<opt::SoftwareIdentity> kIdentityTrailingFields[] = {
    {"SoftwareStatus", "Software Status", &opt::SoftwareIdentity::SoftwareStatus, true},
    {"SoftwareRole", "Software Role", &opt::SoftwareIdentity::SoftwareRole, true},
    {"IdentityInfoType", "IdentityInfoType", &opt::SoftwareIdentity::IdentityInfoType, true},
};

// An SSD's rows around its encryption ability, which is shown as "YES" or "NO".
const RXmlRecordField<opt::SSD> kSsdLeadingFields[] = {
    {"Bay", "Bay", &opt::SSD::Bay, false},
    {"Type", "Type Name", &opt::SSD::Type, false},
    {"SerialNumber", "Serial Number", &opt::SSD::SerialNumber, false},
    {"PartNumber", "Part Number", &opt::SSD::PartNumber, false},
    {"FRUNumber", "FRU Number", &opt::SSD::FRUNumber, false},
    {"ProductName", "Product Name", &opt::SSD::ProductName, false},
    {"Manufacturer", "Manufacturer", &opt::SSD::Manufacturer, false},
    {"Location", "Location", &opt::SSD::Location, false},
    {"FirmwareVersion", "Firmware Version", &opt::SSD::FirmwareVersion, false},
    {"Capacity", "Capacity", &opt::SSD::Capacity, false},
};

const RXmlRecordField<opt::SSD> kSsdTrailingFields[] = {
    {"EncryptionStatus", "Encryption Status", &opt::SSD::EncryptionStatus, false},
    {"RemainingLifePercent", "Remaining Life(%)", &opt::SSD::RemainingLifePercent, false},
    {"DriveStatus", "Drive Status", &opt::SSD::DriveStatus, false},
    {"Temperature", "Temperature(Degree Celsius)", &opt::SSD::Temperature, false},
};

// Older firmware gives these properties as numeric codes; the table of each turns them to words.
struct CodeTableSource {
    const char* property;
    std::vector<const char*> words;  // the word of code "0", "1", ...
};

const CodeTableSource kCodeTables[] = {
    {"BatteryType", {"Unknown", "IBBU", "BBU", "ZCR Legacy", "iTBBU3", "iBBU08", "TMMC"}},
    {"ArrayStatus", {"Unknown", "Other", "Online", "Partially Degraded", "Degraded", "Offline"}},
    {"DiskFormat", {"Unknown", "Other", "1.5Gb/s", "3.0Gb/s", "6.0Gb/s", "12.0Gb/s"}},
    {"MediaType", {"Unknown", "Other", "Rotational", "SSD", "Flash"}},
    {"DiskState",
     {"Unknown", "Other", "Unconfigured good", "Unconfigured bad", "Hot spare", "Offline", "Failed", "Rebuild",
      "Online", "Copyback", "System", "Shield unconfigured", "Shield hot spare", "Shield configured"}},
};

// How each type's table looks: its wrap callback's name for the log, the widths of its rows, the
// child types shown under each record.
struct StorageForm {
    const char* type;
    const char* wrapName;  // null: the wrap logs nothing
    std::vector<unsigned> widths;
    std::vector<const char*> references;
};

const StorageForm kForms[] = {
    {"StorageDevice", "WrapAdapterInstances", {20, 16, 16, 16, 16, 16},
     {"StorageBattery", "StoragePool", "StorageSoftwareIdentity", "StorageVolume", "StorageDiskDrive", "LSIRawData",
      "SEACHESTRawData", "SSD", "M2_7MM_StorageVolume"}},
    {"StoragePool", "WrapStoragePoolInstances", {20, 20, 20, 20, 20}, {}},
    {"StorageVolume", "WrapStorageVolumeInstances", {20, 20, 20, 20, 20}, {}},
    {"M2_7MM_StorageVolume", "WrapStorageVolumeInstances_M2_7MM", {20, 20, 20, 20, 20}, {}},
    {"StorageSoftwareIdentity", "WrapSoftwareIdentityInstances", {15, 15, 15, 15, 15, 15, 10}, {}},
    {"StorageBattery", "WrapBatteryInstances", {10, 10, 10, 10, 10, 10, 10, 10, 10, 10}, {}},
    {"StorageDiskDrive", "WrapDiskDriveInstances", {12, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8}, {}},
    {"SSD", "WrapSSDInfoInstances", {10, 10, 10, 10, 10, 10, 10, 10, 10, 10, 10, 10, 10, 10, 10}, {}},
    {"NonRaidOrDirect", "WrapNonRaidOrDirectSSDInstances", {9, 10, 12, 10, 10, 10, 10, 10, 10, 10, 10, 10, 9, 9, 9},
     {"StorageSoftwareIdentity"}},
    {"LSIRawData", "WrapRawDataInstances", {20, 50, 30}, {}},
    {"SEACHESTRawData", "WrapSeaChestRawDataInstances", {20, 50, 30}, {}},
    {"ARCCONFRawData", "WrapArcconfRawDataInstances", {20, 50, 30}, {}},
    {"MARVELLRawData", "WrapMarvellRawDataInstances", {20, 50, 30}, {}},
    {"RAIDSHOWRawData", nullptr, {20, 50, 30}, {}},
};

void WrapStorageTable(const StorageForm& form, RInstancesWrapper& wrapper)
{
    if (form.wrapName != nullptr) RLOG(4) << form.wrapName << " begin";
    wrapper.SetRowHeaders(std::vector<std::string>(), form.widths, false);
    for (const char* type : form.references) wrapper.AddReferenceType(type);
    if (form.wrapName != nullptr) RLOG(4) << form.wrapName << " end";
}

// How a vendor's raw-data type is filled: its display name, in which connect modes its utility
// is run here, and whether the utility and device rows are shown.
struct RawDataForm {
    const char* type;
    const char* display;
    std::vector<int> modes;
    bool utilityRows;
};

const RawDataForm kLsiRawData = {"LSIRawData", "LSI Raw Data", {1, 13}, true};
const RawDataForm kArcconfRawData = {"ARCCONFRawData", "Microsemi Raw Data", {1, 13}, true};
const RawDataForm kMarvellRawData = {"MARVELLRawData", "Marvell Raw Data", {1, 9, 13}, false};

bool RunsIn(const RawDataForm& form, int mode)
{
    return std::find(form.modes.begin(), form.modes.end(), mode) != form.modes.end();
}

RInstance MakeStorageInstance(const std::string& type, const std::string& display, int id)
{
    RInstance instance(type, display, id);
    instance.AddToolTip(RToolTip::Instance()->GetTypeTip(kGroup, type));
    RLOG(4) << "Calling EnumAdapterInstancesCallback" << kGroup << "->" << type;
    return instance;
}

void AddSsdFields(RInstance& instance, const opt::SSD& ssd)
{
    AddRecordFields(instance, ssd, kSsdLeadingFields);
    instance.AddProperty("EncryptionAbility", "Encryption Ability", RLSIOptModule::YesNo(ssd.EncryptionAbility), false);
    AddRecordFields(instance, ssd, kSsdTrailingFields);
}

RInstance MakeRawDataInstance(const RawDataForm& form, const RawData_& record, const std::string& command)
{
    RInstance instance = MakeStorageInstance(form.type, form.display, kNoId);
    AddRawDataRows(instance, record, command, form.utilityRows);
    return instance;
}

void AddRawDataInstances(RRepository& repo, const RawDataForm& form, const std::vector<RawData_>& records)
{
    for (const RawData_& record : records) MakeRawDataInstance(form, record, record.command).AddToRepository(repo);
}

// The text from the first "Bay" on, or the whole text.
std::string FromBay(const std::string& location)
{
    const std::size_t at = location.find("Bay");
    return at == std::string::npos ? location : location.substr(at);
}

struct NonRaidName {
    const char* controllerMark;
    const char* nvmeDisplay;
    const char* sataDisplay;
    const char* missingLog;
};

const NonRaidName kNonRaidNames[] = {
    {"M.2", "M.2 NVMe SSD", "M.2 SATA SSD", "For Non Raid M.2, NVMe and SATA SSD are not found"},
    {"7MM", "7MM NVMe SSD", "7MM SATA SSD", "For Non Raid 7MM, NVMe and SATA SSD are not found"},
};

}  // namespace

RLSIOptModule::RLSIOptModule() : enumerated(false), isWhitley(false) { FillTables(); }

std::string RLSIOptModule::GetName() { return "LSIOptModule"; }

std::string RLSIOptModule::GetDisplay() { return "LSIOpt Module"; }

void RLSIOptModule::InitCallbacks()
{
    using boost::placeholders::_1;
    typedef RLSIOptModule M;
    for (const StorageForm& form : kForms) {
        TypeCallbacks& callbacks = typeCallbacks[form.type];
        callbacks.enumCallback = boost::bind(&M::EnumAdapterInstances, this, _1);
        callbacks.wrapCallback = boost::bind(&WrapStorageTable, boost::cref(form), _1);
    }
    typeCallbacks["LSIRawData"].enumCallback = boost::bind(&M::EnumRawDataInstances, this, _1);
    typeCallbacks["SEACHESTRawData"].enumCallback = boost::bind(&M::EnumSeaChestRawDataInstances, this, _1);
    typeCallbacks["ARCCONFRawData"].enumCallback = boost::bind(&M::EnumArcconfRawDataInstances, this, _1);
    typeCallbacks["MARVELLRawData"].enumCallback = boost::bind(&M::EnumMarvellRawDataInstances, this, _1);
    typeCallbacks["RAIDSHOWRawData"].enumCallback = boost::bind(&M::EnumRaidShowRawData, this, _1);
}

bool RLSIOptModule::IsNonRaid(const opt::RaidAdapter& adapter)
{
    const std::string name = boost::algorithm::to_lower_copy(adapter.Name);
    const bool vroc = name.size() >= 4 && name.compare(0, 4, "vroc") == 0;
    return (vroc && !boost::algorithm::contains(adapter.ControllerType, "Direct_Attached_SATA")) ||
           boost::algorithm::contains(adapter.ControllerType, "Direct_Attached_NVMe");
}

bool RLSIOptModule::LocationBefore(const opt::SSD& a, const opt::SSD& b)
{
    return FromBay(a.Location) < FromBay(b.Location);
}

std::string RLSIOptModule::AdapterDisplay(const std::string& adapterName)
{
    if (boost::algorithm::contains(adapterName, "M.2")) return "M.2 Adapter";
    if (boost::algorithm::contains(adapterName, "7mm")) return "7MM Adapter";
    return "Storage Device";
}

std::string RLSIOptModule::BootVolumeDisplay(const std::string& adapterName)
{
    if (boost::algorithm::contains(adapterName, "M.2")) return "M.2 Storage Volume";
    if (boost::algorithm::contains(adapterName, "7mm")) return "7MM Storage Volume";
    return "Storage Volume";
}

std::string RLSIOptModule::NonRaidDisplay(const std::string& controllerType, const std::string& firstSsdType)
{
    for (const NonRaidName& name : kNonRaidNames) {
        if (!boost::algorithm::contains(controllerType, name.controllerMark)) continue;
        if (boost::algorithm::contains(firstSsdType, "NVMe")) return name.nvmeDisplay;
        if (boost::algorithm::contains(firstSsdType, "SATA")) return name.sataDisplay;
        RLOG(2) << name.missingLog;
        return std::string();
    }
    if (boost::algorithm::contains(controllerType, "Direct_Attached_NVMe") || controllerType == "U.2")
        return "Direct Attached NVMe SSD";
    RLOG(2) << "For Non Raid, M.2 and 7MM or Direct_Attached_NVMe adapter are not found";
    return std::string();
}

std::string RLSIOptModule::PoolRaidLevel(const opt::StoragePool& pool)
{
    if (boost::algorithm::contains(pool.Span, "255")) return pool.RAIDLevel;
    return pool.RAIDLevel + pool.Span;
}

std::string RLSIOptModule::YesNo(const std::string& text)
{
    return boost::algorithm::to_upper_copy(text) == "TRUE" ? "YES" : "NO";
}

void RLSIOptModule::EnumAdapterInstances(RRepository& repo)
{
    RLOG(4) << "Entering RLSIOptModule::EnumAdapterInstances";
    if (enumerated) return;
    enumerated = true;
    isWhitley = repo.GetSystemIsWhitley();
    RLOG(3) << "repo.GetSystemIsWhitley()=" << isWhitley;
    switch (repo.GetConnectMode()) {
    case 1:
        EnumInBand(repo);
        break;
    case 2:
        EnumOutOfBand(repo);
        break;
    case 4:
        if (repo.GetCIMConnectionList().empty()) {
            RLOG(2) << "in RLSIOptModule::EnumAdapterInstances(), the connect_list_cim is empty.";
            return;
        }
        EnumEsxi(repo);
        break;
    default:
        RLOG(2) << "LSI for [mode=" << repo.GetConnectMode() << "] not implemented.";
        break;
    }
    RLOG(4) << "Exit RLSIOptModule::EnumAdapterInstances";
}

void RLSIOptModule::EnumInBand(RRepository& repo)
{
    RLOG(3) << "Entering InBand Mode";
    const std::vector<XModule::ConnectionInfo> cim = repo.GetCIMConnectionList();
    const std::vector<XModule::ConnectionInfo> rest = repo.GetRestConnectionList();
    if (isWhitley && !rest.empty()) {
        for (std::size_t i = 0; i < rest.size(); ++i) {
            RLOG(3) << "The node id in usbinfos[i] is: " << i;
            XModule::Agentless::RAIDLink link(rest[i]);
            EnumRaidLink(repo, link);
        }
    } else if (IsAgentlessSupportedFunLsi(cim) && !cim.empty()) {
        RLOG(3) << "Entering InBand Agentless Mode";
        for (std::size_t i = 0; i < cim.size(); ++i) {
            RLOG(3) << "The node id in usbinfos[i] is: " << i;
            XModule::Agentless::RAIDLink link(cim[i], repo.GetRedfishConnection());
            EnumRaidLink(repo, link);
        }
    } else {
        RLOG(2) << "This system is non-Agentless supported. Quantrel Essentials Kestro depends on the QMM Agentless "
                   "interface, customers should update xFW and options FW to above certain levels then AC. (xFW:  "
                   "2Q15 QUSP or above, Options fw:  2Q15 QUSP or above) ";
    }
}

void RLSIOptModule::EnumOutOfBand(RRepository& repo)
{
    RLOG(3) << "Entering OOB Mode";
    const std::vector<XModule::ConnectionInfo> cim = repo.GetCIMConnectionList();
    const std::vector<XModule::ConnectionInfo> rest = repo.GetRestConnectionList();
    if (isWhitley && !rest.empty()) {
        XModule::Agentless::RAIDLink link(rest.front());
        RLOG(3) << "Entering OOBand Agentless Mode";
        EnumRaidLink(repo, link);
        return;
    }
    if (cim.empty() || XModule::Agentless::RAIDLink(cim.front()).IsAgentlessSupported() != true) {
        RLOG(2) << "LSI for [mode=" << repo.GetConnectMode() << "] Agentless not implemented.";
        return;
    }
    XModule::Agentless::RAIDLink link(cim.front(), repo.GetRedfishConnection());
    RLOG(3) << "Entering OOBand Agentless Mode";
    EnumRaidLink(repo, link);
}

void RLSIOptModule::EnumEsxi(RRepository& repo)
{
    RLOG(3) << "Entering ESXi Mode";
    const XModule::ConnectionInfo redfish = repo.GetRedfishConnection();
    for (const XModule::ConnectionInfo& node : REsxiNodes::Of(repo.GetCIMConnectionList().front())) {
        XModule::Agentless::RAIDLink link(node, redfish);
        if (link.IsAgentlessSupported() == true) {
            RLOG(3) << "Entering ESXI Agentless Mode";
            EnumRaidLink(repo, link);
        }
    }
}

bool RLSIOptModule::IsAgentlessSupportedFunLsi(const std::vector<XModule::ConnectionInfo>& connections)
{
    RLOG(4) << "Enter IsAgentlessSupportedFunLsi";
    if (connections.empty()) {
        RLOG(4) << "Exit IsAgentlessSupportedFunLsi";
        return false;
    }
    XModule::Agentless::RAIDLink link(connections.front());
    return link.IsAgentlessSupported() == true;
}

void RLSIOptModule::EnumRaidLink(RRepository& repo, XModule::Agentless::RAIDLink& link)
{
    std::vector<opt::RaidAdapter> adapters;
    const int ret = link.GetAllRaidAdapterInfo(adapters);
    RLOG(3) << "raid_adap_group.size():" << adapters.size();
    if (ret != 0) {
        RLOG(2) << "RAIDLink::GetAdapterInfo() returns empty";
        return;
    }
    for (const opt::RaidAdapter& adapter : adapters) {
        ShowAdapter(repo, adapter);
        ++adapterId;
    }
}

void RLSIOptModule::FillTables()
{
    CodeTable* const tables[] = {&batteryTypes, &arrayStates, &linkSpeeds, &mediaTypes, &driveStates};
    for (std::size_t t = 0; t < sizeof(tables) / sizeof(tables[0]); ++t) {
        tables[t]->clear();
        for (std::size_t code = 0; code < kCodeTables[t].words.size(); ++code)
            (*tables[t])[std::to_string(code)] = kCodeTables[t].words[code];
    }
}

std::string RLSIOptModule::ShownValue(const std::string& property, const std::string& value) const
{
    const CodeTable* const tables[] = {&batteryTypes, &arrayStates, &linkSpeeds, &mediaTypes, &driveStates};
    for (std::size_t t = 0; t < sizeof(tables) / sizeof(tables[0]); ++t) {
        if (property != kCodeTables[t].property) continue;
        if (isWhitley) return value;
        const CodeTable::const_iterator found = tables[t]->find(value);
        return found == tables[t]->end() ? "Other" : found->second;
    }
    return value;
}

void RLSIOptModule::ShowAdapter(RRepository& repo, const opt::RaidAdapter& adapter)
{
    if (IsNonRaid(adapter)) {
        RLOG(3) << "it->ControllerType = " << adapter.ControllerType;
        ShowNonRaidAndDirectAttachedNVMeSSDInfo(repo, adapter.ssds, adapter.softwareIdentities, adapter.ControllerType);
        return;
    }
    if (adapter.ControllerType == "U.2") {
        ShowNonRaidAndDirectAttachedNVMeSSDInfo(repo, adapter.ssds, adapter.softwareIdentities, adapter.ControllerType);
        return;
    }
    ShowAdapterInfoInstances(repo, adapter);
    ShowStorageVolumeInfoInstances(repo, adapter);
    ShowBatteryInfoInstances(repo, adapter);
    ShowStoragePoolInfoInstances(repo, adapter);
    ShowDiskDriveInfoInstances(repo, adapter);
    ShowSoftwareIdentityInfoInstances(repo, adapter);
    ShowSSDInfoInstances(repo, adapter);
}

void RLSIOptModule::ShowNonRaidAndDirectAttachedNVMeSSDInfo(RRepository& repo, const std::vector<opt::SSD>& ssds,
                                                            const std::vector<opt::SoftwareIdentity>& identities,
                                                            std::string controllerType)
{
    std::vector<opt::SSD> sorted = ssds;
    std::stable_sort(sorted.begin(), sorted.end(), &RLSIOptModule::LocationBefore);
    if (sorted.empty()) return;
    const std::string display = NonRaidDisplay(controllerType, sorted.front().Type);
    if (display.empty()) return;
    for (const opt::SSD& ssd : sorted) {
        RInstance instance = MakeStorageInstance("NonRaidOrDirect", display, nonRaidId);
        AddSsdFields(instance, ssd);
        instance.AddToRepository(repo);
        for (const opt::SoftwareIdentity& identity : identities)
            AddSoftwareIdentity(repo, identity, "NonRaidOrDirect", nonRaidId, true);
        ++nonRaidId;
    }
}

void RLSIOptModule::ShowAdapterInfoInstances(RRepository& repo, const opt::RaidAdapter& adapter)
{
    RInstance instance = MakeStorageInstance("StorageDevice", AdapterDisplay(adapter.Name), adapterId);
    AddRecordFields(instance, adapter, kAdapterFields);
    instance.AddToRepository(repo);
}

void RLSIOptModule::ShowStorageVolumeInfoInstances(RRepository& repo, const opt::RaidAdapter& adapter)
{
    for (const opt::StorageVolume& volume : adapter.storageVolumes) {
        RInstance instance = MakeStorageInstance("M2_7MM_StorageVolume", BootVolumeDisplay(adapter.Name), kNoId);
        instance.AddReference("StorageDevice", adapterId);
        AddRecordFields(instance, volume, kBootVolumeFields);
        instance.AddToRepository(repo);
    }
    RLOG(4) << "Exit RLSIOptModule::ShowStorageVolumeInfoInstances";
}

void RLSIOptModule::ShowBatteryInfoInstances(RRepository& repo, const opt::RaidAdapter& adapter)
{
    for (const opt::Battery& battery : adapter.batteries) {
        opt::Battery shown = battery;
        shown.BatteryType = ShownValue("BatteryType", battery.BatteryType);
        RInstance instance = MakeStorageInstance("StorageBattery", "Battery", kNoId);
        instance.AddReference("StorageDevice", adapterId);
        AddRecordFields(instance, shown, kBatteryFields);
        instance.AddToRepository(repo);
    }
}

void RLSIOptModule::ShowStoragePoolInfoInstances(RRepository& repo, const opt::RaidAdapter& adapter)
{
    for (const opt::StoragePool& pool : adapter.storagePools) {
        opt::StoragePool shown = pool;
        shown.ArrayStatus = ShownValue("ArrayStatus", pool.ArrayStatus);
        RInstance instance = MakeStorageInstance("StoragePool", "Storage Pool", poolId);
        instance.AddReference("StorageDevice", adapterId);
        AddRecordFields(instance, shown, kPoolFields);
        instance.AddProperty("RAIDLevel", "RAIDLevel", PoolRaidLevel(pool), false);
        instance.AddToRepository(repo);
        for (const opt::StorageVolume& volume : pool.volumes) {
            RInstance volumeInstance = MakeStorageInstance("StorageVolume", "Storage Volume", kNoId);
            volumeInstance.AddReference("StoragePool", poolId);
            AddRecordFields(volumeInstance, volume, kVolumeFields);
            volumeInstance.AddToRepository(repo);
        }
        for (const opt::DiskDrive& drive : pool.drives) AddDiskDrive(repo, drive, "StoragePool", poolId);
        ++poolId;
    }
}

void RLSIOptModule::ShowDiskDriveInfoInstances(RRepository& repo, const opt::RaidAdapter& adapter)
{
    for (const opt::DiskDrive& drive : adapter.diskDrives) AddDiskDrive(repo, drive, "StorageDevice", adapterId);
}

void RLSIOptModule::AddDiskDrive(RRepository& repo, const opt::DiskDrive& drive, const std::string& parentType,
                                 int parentId)
{
    opt::DiskDrive shown = drive;
    shown.DiskFormat = ShownValue("DiskFormat", drive.DiskFormat);
    shown.MediaType = ShownValue("MediaType", drive.MediaType);
    shown.DiskState = ShownValue("DiskState", drive.DiskState);
    RInstance instance = MakeStorageInstance("StorageDiskDrive", "Disk Drive", diskId);
    instance.AddReference(parentType, parentId);
    AddRecordFields(instance, shown, kDriveLeadingFields);
    const EncryptionRows& rows = kEncryptionRows[isWhitley ? 0 : 1];
    instance.AddProperty(rows.abilityKey, rows.abilityDisplay, YesNo(drive.EncryptionAbility), false);
    instance.AddProperty(rows.statusKey, rows.statusDisplay, drive.EncryptionStatus, false);
    AddRecordFields(instance, shown, kDriveTrailingFields);
    instance.AddToRepository(repo);
    // A drive's firmware belongs to the adapter in the report, whichever list the drive is in.
    for (const opt::SoftwareIdentity& identity : drive.softwareIdentities)
        AddSoftwareIdentity(repo, identity, "StorageDevice", adapterId, false);
    ++diskId;
}

void RLSIOptModule::ShowSoftwareIdentityInfoInstances(RRepository& repo, const opt::RaidAdapter& adapter)
{
    for (const opt::SoftwareIdentity& identity : adapter.softwareIdentities)
        AddSoftwareIdentity(repo, identity, "StorageDevice", adapterId, false);
}

void RLSIOptModule::AddSoftwareIdentity(RRepository& repo, const opt::SoftwareIdentity& identity,
                                        const std::string& parentType, int parentId, bool valueBeforeSubDevice)
{
    RInstance instance = MakeStorageInstance("StorageSoftwareIdentity", "Software Identity", kNoId);
    instance.AddReference(parentType, parentId);
    AddRecordFields(instance, identity, kIdentityLeadingFields);
    if (valueBeforeSubDevice) {
        AddRecordFields(instance, identity, kIdentityValueField);
        AddRecordFields(instance, identity, kSubDeviceField);
    } else {
        AddRecordFields(instance, identity, kSubDeviceField);
        AddRecordFields(instance, identity, kIdentityValueField);
    }
    AddRecordFields(instance, identity, kIdentityTrailingFields);
    instance.AddToRepository(repo);
}

void RLSIOptModule::ShowSSDInfoInstances(RRepository& repo, const opt::RaidAdapter& adapter)
{
    for (const opt::SSD& ssd : adapter.ssds) {
        std::string display;
        if (boost::algorithm::contains(ssd.Type, "NVMe"))
            display = "NVMe SSD";
        else if (boost::algorithm::contains(ssd.Type, "SATA"))
            display = "SATA SSD";
        RInstance instance = MakeStorageInstance("SSD", display, kNoId);
        instance.AddReference("StorageDevice", adapterId);
        AddSsdFields(instance, ssd);
        instance.AddToRepository(repo);
    }
}

bool RLSIOptModule::IsQccBmc(RRepository& repo)
{
    const std::vector<XModule::ConnectionInfo> cim = repo.GetCIMConnectionList();
    if (cim.empty()) {
        RLOG(3) << "Connection Info is none, set BMC type as QCC";
        return true;
    }
    XModule::Agentless::QMMTypeValue type = XModule::Agentless::QMM_TYPE_QCC;
    if (XModule::Agentless::QMMTypeAcquire(cim.front()).GetQMMType(type) != 0) {
        RLOG(2) << "Failed to get QMM type, set BMC type as QCC";
        return true;
    }
    RLOG(3) << "Get QMM type successfully, BMC type: " << type;
    return type == XModule::Agentless::QMM_TYPE_QCC;
}

void RLSIOptModule::EnumRawDataInstances(RRepository& repo)
{
    if (!RunsIn(kLsiRawData, repo.GetConnectMode())) return;
    const std::string fullpath = XModule::XModuleIHV::VendorUtility::FolderOf("lsi");
    RLOG(3) << "RLSIOptModule::EnumRawDataInstances, the fullpath is : " << fullpath;
    std::vector<RawData_> records;
    XModule::LSI::LSIOpt().GetRawData(records, IsQccBmc(repo));
    for (const RawData_& record : records) {
        const std::size_t at = record.command.find(fullpath);
        const std::string command =
            at == std::string::npos ? record.command : record.command.substr(at + fullpath.size());
        MakeRawDataInstance(kLsiRawData, record, command).AddToRepository(repo);
    }
}

// Instances of this type only come back from XML files written elsewhere.
void RLSIOptModule::EnumSeaChestRawDataInstances(RRepository&) {}

void RLSIOptModule::EnumArcconfRawDataInstances(RRepository& repo)
{
    if (!RunsIn(kArcconfRawData, repo.GetConnectMode())) return;
    std::vector<RawData_> records;
    XModule::ARCCONF::ArcconfOpt().GetRawData(records);
    AddRawDataInstances(repo, kArcconfRawData, records);
}

void RLSIOptModule::EnumMarvellRawDataInstances(RRepository& repo)
{
    if (!RunsIn(kMarvellRawData, repo.GetConnectMode())) return;
    std::vector<RawData_> records;
    XModule::MARVELL::Marvell().GetRawData(records);
    AddRawDataInstances(repo, kMarvellRawData, records);
}

void RLSIOptModule::EnumRaidShowRawData(RRepository& repo)
{
    XModule::ConnectOption connectOption;
    XModule::ConvertUserContextToConnectOption(repo.GetUserContext(), connectOption);
    RaidConfig::RaidConfigOption option;
    option.connectOption = connectOption;
    RawData_ record;
    record.rawData = service::ServiceRaid(option).GetRaidShowResult();
    record.command = record.description = "raid show";
    record.fileName = "raid_show.txt";
    RInstance instance = MakeStorageInstance("RAIDSHOWRawData", "Raid Show Raw Data", kNoId);
    AddRawDataRows(instance, record, record.command, false);
    instance.AddToRepository(repo);
}

}  // namespace repository
}  // namespace kestro
