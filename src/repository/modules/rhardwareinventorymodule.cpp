#include "repository/modules/rhardwareinventorymodule.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rinstanceswrapper.h"
#include "kestro/repository/rrepository.h"
#include "repository/modules/rhostconnection.h"
#include "repository/modules/rrecordfields.h"
#include "repository/modules/rtableforms.h"
#include "xmodule/hardwareinventory/hardwareinventory.h"
#include "xmodule/rlog.h"

#include <boost/bind/bind.hpp>

namespace kestro {
namespace repository {

namespace {

namespace protocol = XModule::protocol;

const RRecordField<protocol::ComputerSystem> kComputerSystemFields[] = {
    {"Manufacturer", "Manufacturer", &protocol::ComputerSystem::Manufacturer},
    {"ProductName", "Product Name", &protocol::ComputerSystem::ProductName},
    {"Model", "Model", &protocol::ComputerSystem::Model},
    {"SerialNumber", "Serial Number", &protocol::ComputerSystem::SerialNumber},
    {"SystemUUID", "SystemUUID", &protocol::ComputerSystem::SystemUUID},
    {"Version", "Version", &protocol::ComputerSystem::Version},
    {"CurrentNodeIndex", "Current Node Index", &protocol::ComputerSystem::CurrentNodeIndex},
};

const RRecordField<protocol::Processor> kProcessorFields[] = {
    {"Core", "Processor/Core", &protocol::Processor::Core},
    {"Manufacturer", "Manufacturer", &protocol::Processor::Manufacturer},
    {"Version", "Version", &protocol::Processor::Version},
    {"Stepping", "Stepping", &protocol::Processor::Stepping},
    {"CurrentClockSpeed", "Current Frequency (MHz)", &protocol::Processor::CurrentClockSpeed, true},
    {"Status", "Status", &protocol::Processor::Status},
    {"Hyper-threadingSupported", "Hyper-threading Supported", &protocol::Processor::HyperThreadingSupported},
    {"Hyper-threadingStatus", "Hyper-threading Status", &protocol::Processor::HyperThreadingStatus},
    {"Level1CacheOperationalMode", "Level 1 Cache Operational Mode", &protocol::Processor::Level1CacheOperationalMode},
    {"Level1CacheEnabled", "Level 1 Cache Enabled (at boot time)", &protocol::Processor::Level1CacheEnabled},
    {"Level2CacheOperationalMode", "Level 2 Cache Operational Mode", &protocol::Processor::Level2CacheOperationalMode},
    {"Level2CacheEnabled", "Level 2 Cache Enabled (at boot time)", &protocol::Processor::Level2CacheEnabled},
    {"Level3CacheOperationalMode", "Level 3 Cache Operational Mode", &protocol::Processor::Level3CacheOperationalMode},
    {"Level3CacheEnabled", "Level 3 Cache Enabled (at boot time)", &protocol::Processor::Level3CacheEnabled},
    {"SerialNumber", "Protected Identification Number(PPIN)", &protocol::Processor::SerialNumber},
};

const RRecordField<protocol::Memory> kMemoryFields[] = {
    {"Tag", "Tag", &protocol::Memory::Tag},
    {"BankLabel", "Bank Label", &protocol::Memory::BankLabel},
    {"Capacity", "Capacity", &protocol::Memory::Capacity},
    {"MemoryTypeA", "Memory Type", &protocol::Memory::MemoryTypeA},
    {"MaxSpeed", "Max Speed (MHz)", &protocol::Memory::MaxSpeed},
    {"ErrorCorrectionType", "Error Correction Type", &protocol::Memory::ErrorCorrectionType},
    {"Manufacturer", "Manufacturer", &protocol::Memory::Manufacturer},
    {"PartNumber", "Part Number", &protocol::Memory::PartNumber},
    {"SerialNumber", "Serial Number", &protocol::Memory::SerialNumber},
};

const RRecordField<protocol::FanInband> kFanFields[] = {
    {"ElementName", "Element Name", &protocol::FanInband::ElementName},
    {"HealthState", "Health State", &protocol::FanInband::HealthState},
    {"DesiredSpeed", "Current Speed (RPM)", &protocol::FanInband::DesiredSpeed, true},
};

const RRecordField<protocol::PowerInband> kPowerFields[] = {
    {"ElementName", "Element Name", &protocol::PowerInband::ElementName},
    {"HealthState", "Health State", &protocol::PowerInband::HealthState},
    {"TotalOutputPower", "Total Output Power (W)", &protocol::PowerInband::TotalOutputPower, true},
};

const RRecordField<protocol::VirtualDisk> kVirtualDiskFields[] = {
    {"Name", "Name", &protocol::VirtualDisk::Name},
    {"Type", "Type", &protocol::VirtualDisk::Type},
    {"Status", "Status", &protocol::VirtualDisk::Status},
    {"Size", "Size ", &protocol::VirtualDisk::Size},
    {"NumberOfPartitions", "Number Of Partitions", &protocol::VirtualDisk::NumberOfPartitions},
};

const RRecordField<protocol::Partition> kPartitionFields[] = {
    {"Name", "Partition", &protocol::Partition::Name},
    {"Type", "Type", &protocol::Partition::Type},
    {"PartitionSubType", "Partition SubType", &protocol::Partition::PartitionSubType},
    {"Offset", "Offset", &protocol::Partition::Offset},
    {"FaultTolerant", "Fault Tolerant", &protocol::Partition::FaultTolerant},
    {"Format", "Format ", &protocol::Partition::Format},
};

const RRecordField<protocol::Volumes_MountPoints> kVolumeFields[] = {
    {"Volume", "Volume", &protocol::Volumes_MountPoints::Volume},
    {"Label", "Label", &protocol::Volumes_MountPoints::Label},
    {"Layout", "Layout", &protocol::Volumes_MountPoints::Layout},
    {"FileSystemName", "File System Name", &protocol::Volumes_MountPoints::FileSystemName},
    {"VolumeStatus", "Volume Status", &protocol::Volumes_MountPoints::VolumeStatus},
    {"FreeSpace", "Free Space", &protocol::Volumes_MountPoints::FreeSpace, true},
    {"TotalCapacity", "Total Capacity", &protocol::Volumes_MountPoints::TotalCapacity},
    {"QuotaStatus", "Quota Status", &protocol::Volumes_MountPoints::QuotaStatus},
    {"UserQuota", "User Quota", &protocol::Volumes_MountPoints::UserQuota},
    {"UserFreeSpace", "User Free Space", &protocol::Volumes_MountPoints::UserFreeSpace, true},
};

const RRecordField<protocol::Graphics> kGraphicsFields[] = {
    {"Name", "Name", &protocol::Graphics::Name},
    {"Location", "Location", &protocol::Graphics::Location},
    {"Driver", "Driver", &protocol::Graphics::Driver},
};

const RRecordField<protocol::VideoController> kVideoControllerFields[] = {
    {"Name", "Name", &protocol::VideoController::Name},
    {"Status", "Status", &protocol::VideoController::Status},
    {"BiosString", "Bios String", &protocol::VideoController::BiosString},
    {"MemorySize", "Memory Size ", &protocol::VideoController::MemorySize},
    {"ChipType", "Chip Type", &protocol::VideoController::ChipType},
    {"DACType", "DAC Type ", &protocol::VideoController::DACType},
};

const RRecordField<protocol::VideoHead> kVideoHeadFields[] = {
    {"DisplayID", "Display ID", &protocol::VideoHead::DisplayID},
    {"Monitor", "Monitor", &protocol::VideoHead::Monitor},
    {"HorizontalResolution", "Horizontal Resolution", &protocol::VideoHead::HorizontalResolution},
    {"VerticalResolution", "Vertical Resolution ", &protocol::VideoHead::VerticalResolution},
    {"ColorQuality", "Color Quality", &protocol::VideoHead::ColorQuality},
    {"RefreshRate", "Refresh Rate", &protocol::VideoHead::RefreshRate},
    {"ScanMode", "Scan Mode", &protocol::VideoHead::ScanMode},
    {"MaximumRefreshRate", "Maximum Refresh Rate", &protocol::VideoHead::MaximumRefreshRate},
    {"MinimumRefreshRate", "Minimum Refresh Rate", &protocol::VideoHead::MinimumRefreshRate},
};

const RRecordField<protocol::Monitor> kMonitorFields[] = {
    {"Description", "Description", &protocol::Monitor::Description},
    {"Manufacturer", "Manufacturer", &protocol::Monitor::Manufacturer},
    {"ManufacturingDate", "Manufacturing Date", &protocol::Monitor::ManufacturingDate},
    {"OperationalStatus", "Operational Status", &protocol::Monitor::OperationalStatus},
    {"StatusDescriptions", "Status Descriptions", &protocol::Monitor::StatusDescriptions},
    {"DpmsActiveOff", "Dpms Active Off", &protocol::Monitor::DpmsActiveOff},
    {"DpmsStandby", "Dpms Standby", &protocol::Monitor::DpmsStandby},
    {"DpmsSuspend", "Dpms Suspend", &protocol::Monitor::DpmsSuspend},
    {"EdidVersion", "Edid Version", &protocol::Monitor::EdidVersion},
};

const RRecordField<protocol::Resolution> kResolutionFields[] = {
    {"HorizontalResolution", "Horizontal Resolution", &protocol::Resolution::HorizontalResolution},
    {"VerticalResolution", "Vertical Resolution", &protocol::Resolution::VerticalResolution},
    {"RefreshRate", "Refresh Rate", &protocol::Resolution::RefreshRate},
    {"ScanMode", "Scan Mode", &protocol::Resolution::ScanMode},
};

const RRecordField<protocol::SystemCard> kSystemCardFields[] = {
    {"Type", "Type", &protocol::SystemCard::Type},
    {"Manufacturer", "Manufacturer", &protocol::SystemCard::Manufacturer},
    {"Version", "Version", &protocol::SystemCard::Version},
    {"SerialNumber", "Serial Number", &protocol::SystemCard::SerialNumber},
};

const RRecordField<protocol::SystemDevice> kSystemDeviceFields[] = {
    {"Name", "Name", &protocol::SystemDevice::Name},
    {"DeviceType", "Device Type", &protocol::SystemDevice::DeviceType},
    {"ProductName", "Product Name", &protocol::SystemDevice::ProductName},
    {"SerialNumber", "Serial Number", &protocol::SystemDevice::SerialNumber},
    {"Revision", "Revision", &protocol::SystemDevice::Revision},
    {"HostAdapterID", "Host Adapter ID", &protocol::SystemDevice::HostAdapterID},
    {"TargetID", "Target ID", &protocol::SystemDevice::TargetID},
    {"Bus", "Bus", &protocol::SystemDevice::Bus},
    {"Lun", "Lun", &protocol::SystemDevice::Lun},
};

const RRecordField<protocol::UsbHub> kUsbHubFields[] = {
    {"Description", "Description", &protocol::UsbHub::Description},
    {"NumberOfPorts", "Number Of Ports", &protocol::UsbHub::NumberOfPorts},
};

const RRecordField<protocol::UsbDevice> kUsbDeviceFields[] = {
    {"VendorID", "Vendor ID", &protocol::UsbDevice::VendorID},
    {"USBDeviceID", "USB Device ID", &protocol::UsbDevice::USBDeviceID},
    {"Manufacturer", "Manufacturer", &protocol::UsbDevice::Manufacturer},
    {"Description", "Description", &protocol::UsbDevice::Description},
    {"Speed", "Speed", &protocol::UsbDevice::Speed},
};

const RRecordField<protocol::OpticalDevice> kOpticalDeviceFields[] = {
    {"DeviceID", "Device ID", &protocol::OpticalDevice::DeviceID},
    {"Manufacturer", "Manufacturer", &protocol::OpticalDevice::Manufacturer},
    {"ProductName", "Product Name", &protocol::OpticalDevice::ProductName},
    {"DVD-RAMRead", "DVD-RAM Read", &protocol::OpticalDevice::DvdRamRead},
    {"DVDR-Read", "DVD R Read", &protocol::OpticalDevice::DvdRRead},
    {"DVD-ROMRead", "DVD-ROM Read", &protocol::OpticalDevice::DvdRomRead},
    {"DVD-RAMWrite", "DVD-RAM Write", &protocol::OpticalDevice::DvdRamWrite},
    {"DVDR-Write", "DVD R Write", &protocol::OpticalDevice::DvdRWrite},
    {"CD-RWRead", "CD-RW Read", &protocol::OpticalDevice::CdRwRead},
    {"CD-RRead", "CD-R Read", &protocol::OpticalDevice::CdRRead},
    {"CD-RWWrite", "CD-RW Write", &protocol::OpticalDevice::CdRwWrite},
    {"CD-RWrite", "CD-R Write", &protocol::OpticalDevice::CdRWrite},
};

const RRecordField<protocol::OtherDevice> kOtherDeviceFields[] = {
    {"DeviceName", "Device Name", &protocol::OtherDevice::DeviceName},
    {"DeviceID", "Device ID", &protocol::OtherDevice::DeviceID},
    {"VendorInfo", "Vendor Info", &protocol::OtherDevice::VendorInfo},
    {"Description", "Description", &protocol::OtherDevice::Description},
    {"Class", "Class", &protocol::OtherDevice::Class},
};

// An id an instance has no use for; parents get their place in the list instead, so that each
// child's reference names one parent.
const int kNoId = -1;

// In the order the types are registered.
const RTableForm kForms[] = {
    {"Processor", true, {30, 6}, false, nullptr},
    {"Memory", true, {30, 6}, false, nullptr},
    {"FanInband", false, {20, 40, 40}, false, nullptr},
    {"PowerInband", false, {20, 40, 40}, false, nullptr},
    {"Partition", false, {14, 14, 17, 18, 18, 19}, false, nullptr},
    {"VirtualDisk", false, {15, 15, 20, 15, 35}, false, "Partition"},
    {"Volumes_MountPoints", false, {15, 15, 10, 10, 7, 8, 10, 10, 7, 8}, false, nullptr},
    {"VideoHead", true, {28, 1}, false, nullptr},
    {"VideoController", false, {15, 15, 20, 15, 20, 15}, false, "VideoHead"},
    {"Graphics", false, {47, 18, 35}, false, "VideoController"},
    {"Resolution", false, {28, 22, 25, 25}, false, nullptr},
    {"Monitor", true, {30, 1}, false, "Resolution"},
    {"SystemCard", false, {20, 20, 20, 20, 20}, false, nullptr},
    {"SystemDevice", false, {20, 10, 10, 10, 10, 10, 10, 10, 10}, false, nullptr},
    {"UsbHub", false, {40, 60}, false, nullptr},
    {"UsbDevice", false, {10, 10, 20, 30, 30}, false, nullptr},
    {"OpticalDevice", false, {10, 10, 10, 10, 7, 8, 7, 8, 7, 8, 7, 8}, false, nullptr},
    {"OtherDevice", false, {10, 22, 23, 22, 23}, false, nullptr},
};

const RTableForm& FormOf(const std::string& type)
{
    for (const RTableForm& form : kForms)
        if (type == form.type) return form;
    return kForms[0];
}

}  // namespace

RHardwareInventoryModule::RHardwareInventoryModule() : computerSystemDone(false), hardwareDone(false), isWhitley(false) {}

std::string RHardwareInventoryModule::GetName() { return "HardwareInventoryModule"; }

std::string RHardwareInventoryModule::GetDisplay() { return "HardwareInventory Module"; }

std::string RHardwareInventoryModule::BracketText(const protocol::ComputerSystem& system)
{
    return "[" + system.Manufacturer + "]-[" + system.ProductName + "]-[" + system.SerialNumber + "]";
}

bool RHardwareInventoryModule::IsVolumeShown(const protocol::Volumes_MountPoints& volume)
{
    return volume.VolumeStatus.find("No Media") == std::string::npos;
}

void RHardwareInventoryModule::InitCallbacks()
{
    using boost::placeholders::_1;
    typedef RHardwareInventoryModule M;
    for (const RTableForm& form : kForms) {
        TypeCallbacks& callbacks = typeCallbacks[form.type];
        callbacks.enumCallback = boost::bind(&M::EnumHardwareInstances, this, _1);
        callbacks.wrapCallback = boost::bind(&RTableForms::Apply, boost::cref(form), _1);
    }
    typeCallbacks["Volumes_MountPoints"].enumCallback = boost::bind(&M::EnumVolumes_MountPoints, this, _1);
    typeCallbacks["Graphics"].wrapCallback = &M::WrapGraphicsInstances;
    typeCallbacks["VideoController"].wrapCallback = &M::WrapVideoControllerInstances;
    typeCallbacks["ComputerSystem"].enumCallback = boost::bind(&M::EnumComputerSystem, this, _1);
}

void RHardwareInventoryModule::WrapGraphicsInstances(RInstancesWrapper& wrapper)
{
    RTableForms::Apply(FormOf("Graphics"), wrapper);
    RLOG(4) << "Stop RHardwareInventoryModule::WrapGraphicsInstances";
}

void RHardwareInventoryModule::WrapVideoControllerInstances(RInstancesWrapper& wrapper)
{
    RLOG(4) << "Start to RHardwareInventoryModule::WrapVideoControllerInstances";
    RTableForms::Apply(FormOf("VideoController"), wrapper);
}

void RHardwareInventoryModule::EnumComputerSystem(RRepository& repo)
{
    XLOG(4) << "Entering  kestro::repository::RHardwareInventoryModule::EnumComputerSystem";
    if (!computerSystemDone) {
        XModule::Hardwareinventory::Hardwareinventory inventory(RHostConnection::Of(repo));
        std::vector<protocol::ComputerSystem> systems;
        const int ret = inventory.GetComputerSystems(systems);
        RLOG(3) << "Hardwareinventory::GetComputerSystems() returns ret = " << ret;
        FillComputerSystemInstances(repo, systems);
        computerSystemDone = true;
    }
    XLOG(4) << "Exiting  kestro::repository::RHardwareInventoryModule::EnumComputerSystem";
}

void RHardwareInventoryModule::FillComputerSystemInstances(RRepository& repo,
                                                           const std::vector<protocol::ComputerSystem>& systems)
{
    XLOG(4) << "Entering  kestro::repository::RHardwareInventoryModule::FillComputerSystemInstances";
    for (const protocol::ComputerSystem& system : systems) {
        const RInstance instance = MakeRecordInstance("ComputerSystem", "Computer System", kNoId, system, kComputerSystemFields);
        RLOG(3) << "Computer system: " << BracketText(system);
        instance.AddToRepository(repo);
    }
    XLOG(4) << "Exiting  kestro::repository::RHardwareInventoryModule::FillComputerSystemInstances";
}

void RHardwareInventoryModule::EnumHardwareInstances(RRepository& repo)
{
    if (hardwareDone) {
        RLOG(3) << "Hardware has been enumerated!";
        return;
    }
    isWhitley = repo.GetSystemIsWhitley();
    XModule::Hardwareinventory::Hardwareinventory inventory(RHostConnection::Of(repo));
    protocol::Hardwareinfo info;
    const int ret = inventory.GetHardwareInfo(info);
    RLOG(3) << "Hardwareinventory::GetHardwareInfo() returns ret = " << ret;
    FillHardwareInstances(repo, info);
    hardwareDone = true;
}

void RHardwareInventoryModule::FillHardwareInstances(RRepository& repo, const protocol::Hardwareinfo& info)
{
    AddRecordInstances(repo, "Processor", "Processor/Core", info.processors, kProcessorFields);
    AddRecordInstances(repo, "Memory", "Memory", info.memory, kMemoryFields);
    FillFanAndPowerInstances(repo, info);
    FillVirtualDiskInstances(repo, info.virtualDisks);
    FillGraphicsInstances(repo, info.graphics);
    FillMonitorInstances(repo, info.monitors);
    AddRecordInstances(repo, "SystemDevice", "System Devices", info.systemDevices, kSystemDeviceFields);
    AddRecordInstances(repo, "OpticalDevice", "Optical Device Capabilities", info.opticalDevices, kOpticalDeviceFields);
    AddRecordInstances(repo, "SystemCard", "System Card Information", info.systemCards, kSystemCardFields);
    AddRecordInstances(repo, "UsbHub", "USB Hub", info.usbHubs, kUsbHubFields);
    AddRecordInstances(repo, "UsbDevice", "USB Devices", info.usbDevices, kUsbDeviceFields);
    AddRecordInstances(repo, "OtherDevice", "Other Devices", info.otherDevices, kOtherDeviceFields);
}

void RHardwareInventoryModule::FillFanAndPowerInstances(RRepository& repo, const protocol::Hardwareinfo& info)
{
    RLOG(4) << "Entering kestro::repository::RHardwareInventoryModule::FillFanAndPowerInstances().";
    // Only a Whitley system reports these in band; elsewhere the BMC's own pages show them.
    if (isWhitley) {
        AddRecordInstances(repo, "FanInband", "Fan", info.fans, kFanFields);
        AddRecordInstances(repo, "PowerInband", "Power", info.power, kPowerFields);
    }
    RLOG(4) << "Exiting kestro::repository::RHardwareInventoryModule::FillFanAndPowerInstances().";
}

void RHardwareInventoryModule::FillVirtualDiskInstances(RRepository& repo,
                                                        const std::vector<protocol::VirtualDisk>& disks)
{
    for (std::size_t i = 0; i < disks.size(); ++i) {
        const int id = static_cast<int>(i);
        MakeRecordInstance("VirtualDisk", "VirtualDisk", id, disks[i], kVirtualDiskFields).AddToRepository(repo);
        for (const protocol::Partition& partition : disks[i].partitions) {
            RInstance instance = MakeRecordInstance("Partition", "Partition", kNoId, partition, kPartitionFields);
            instance.AddReference("VirtualDisk", id);
            instance.AddToRepository(repo);
        }
    }
}

void RHardwareInventoryModule::FillGraphicsInstances(RRepository& repo, const std::vector<protocol::Graphics>& graphics)
{
    int controllerId = 0;
    for (std::size_t i = 0; i < graphics.size(); ++i) {
        const int graphicsId = static_cast<int>(i);
        MakeRecordInstance("Graphics", "Graphics", graphicsId, graphics[i], kGraphicsFields).AddToRepository(repo);
        for (const protocol::VideoController& controller : graphics[i].controllers) {
            RInstance instance = MakeRecordInstance("VideoController", "Video Controller", controllerId, controller,
                                              kVideoControllerFields);
            instance.AddReference("Graphics", graphicsId);
            instance.AddToRepository(repo);
            for (const protocol::VideoHead& head : controller.heads) {
                RInstance headInstance = MakeRecordInstance("VideoHead", "VideoHead", kNoId, head, kVideoHeadFields);
                headInstance.AddReference("VideoController", controllerId);
                headInstance.AddToRepository(repo);
            }
            ++controllerId;
        }
    }
}

void RHardwareInventoryModule::FillMonitorInstances(RRepository& repo, const std::vector<protocol::Monitor>& monitors)
{
    for (std::size_t i = 0; i < monitors.size(); ++i) {
        const int id = static_cast<int>(i);
        MakeRecordInstance("Monitor", "Monitor", id, monitors[i], kMonitorFields).AddToRepository(repo);
        RLOG(3) << "Start to generate Resolution instances";
        for (const protocol::Resolution& resolution : monitors[i].resolutions) {
            RInstance instance = MakeRecordInstance("Resolution", "Supported Resolution", kNoId, resolution, kResolutionFields);
            instance.AddReference("Monitor", id);
            instance.AddToRepository(repo);
        }
    }
}

void RHardwareInventoryModule::EnumVolumes_MountPoints(RRepository& repo)
{
    XModule::Hardwareinventory::Hardwareinventory inventory(RHostConnection::Of(repo));
    std::vector<protocol::Volumes_MountPoints> volumes;
    const int ret = inventory.GetMountPoints(volumes);
    RLOG(3) << "Hardwareinventory::GetMountPoints() returns ret = " << ret;
    for (const protocol::Volumes_MountPoints& volume : volumes)
        if (IsVolumeShown(volume))
            MakeRecordInstance("Volumes_MountPoints", "Volumes/Mount Points", kNoId, volume, kVolumeFields).AddToRepository(repo);
}

}  // namespace repository
}  // namespace kestro
