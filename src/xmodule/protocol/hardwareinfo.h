#ifndef KESTRO_XMODULE_PROTOCOL_HARDWAREINFO_H
#define KESTRO_XMODULE_PROTOCOL_HARDWAREINFO_H

#include <string>
#include <vector>

// The hardware records a host's readers hand to the inventory modules. Every field is text,
// already formatted (see linux/valueformat.h); a fact that could not be learnt reads "N/A".
namespace XModule {
namespace protocol {

extern const char* const UNKNOWN_VALUE;

struct ComputerSystem {
    std::string Manufacturer = UNKNOWN_VALUE;
    std::string ProductName = UNKNOWN_VALUE;
    std::string Model = UNKNOWN_VALUE;
    std::string SerialNumber = UNKNOWN_VALUE;
    std::string SystemUUID = UNKNOWN_VALUE;
    std::string Version = UNKNOWN_VALUE;
    std::string CurrentNodeIndex = UNKNOWN_VALUE;
};

// One processor package.
struct Processor {
    std::string Core = UNKNOWN_VALUE;  // socket and its core and thread counts
    std::string Manufacturer = UNKNOWN_VALUE;
    std::string Version = UNKNOWN_VALUE;
    std::string Stepping = UNKNOWN_VALUE;
    std::string CurrentClockSpeed = UNKNOWN_VALUE;
    std::string Status = UNKNOWN_VALUE;
    std::string HyperThreadingSupported = UNKNOWN_VALUE;
    std::string HyperThreadingStatus = UNKNOWN_VALUE;
    std::string Level1CacheOperationalMode = UNKNOWN_VALUE;
    std::string Level1CacheEnabled = UNKNOWN_VALUE;
    std::string Level2CacheOperationalMode = UNKNOWN_VALUE;
    std::string Level2CacheEnabled = UNKNOWN_VALUE;
    std::string Level3CacheOperationalMode = UNKNOWN_VALUE;
    std::string Level3CacheEnabled = UNKNOWN_VALUE;
    std::string SerialNumber = UNKNOWN_VALUE;  // PPIN
};

// One installed memory module (an empty slot is not one).
struct Memory {
    std::string Tag = UNKNOWN_VALUE;
    std::string BankLabel = UNKNOWN_VALUE;
    std::string Capacity = UNKNOWN_VALUE;
    std::string MemoryTypeA = UNKNOWN_VALUE;
    std::string MaxSpeed = UNKNOWN_VALUE;
    std::string ErrorCorrectionType = UNKNOWN_VALUE;
    std::string Manufacturer = UNKNOWN_VALUE;
    std::string PartNumber = UNKNOWN_VALUE;
    std::string SerialNumber = UNKNOWN_VALUE;
};

struct FanInband {
    std::string ElementName = UNKNOWN_VALUE;
    std::string HealthState = UNKNOWN_VALUE;
    std::string DesiredSpeed = UNKNOWN_VALUE;
};

struct PowerInband {
    std::string ElementName = UNKNOWN_VALUE;
    std::string HealthState = UNKNOWN_VALUE;
    std::string TotalOutputPower = UNKNOWN_VALUE;
};

struct Partition {
    std::string Name = UNKNOWN_VALUE;
    std::string Type = UNKNOWN_VALUE;
    std::string PartitionSubType = UNKNOWN_VALUE;
    std::string Offset = UNKNOWN_VALUE;
    std::string FaultTolerant = UNKNOWN_VALUE;
    std::string Format = UNKNOWN_VALUE;
};

// One disk as the operating system sees it, with its partitions.
struct VirtualDisk {
    std::string Name = UNKNOWN_VALUE;
    std::string Type = UNKNOWN_VALUE;
    std::string Status = UNKNOWN_VALUE;
    std::string Size = UNKNOWN_VALUE;
    std::string NumberOfPartitions = UNKNOWN_VALUE;
    std::vector<Partition> partitions;
};

struct Volumes_MountPoints {
    std::string Volume = UNKNOWN_VALUE;
    std::string Label = UNKNOWN_VALUE;
    std::string Layout = UNKNOWN_VALUE;
    std::string FileSystemName = UNKNOWN_VALUE;
    std::string VolumeStatus = UNKNOWN_VALUE;
    std::string FreeSpace = UNKNOWN_VALUE;
    std::string TotalCapacity = UNKNOWN_VALUE;
    std::string QuotaStatus = UNKNOWN_VALUE;
    std::string UserQuota = UNKNOWN_VALUE;
    std::string UserFreeSpace = UNKNOWN_VALUE;
};

// One output of a video controller (a connector) and the mode it shows.
struct VideoHead {
    std::string DisplayID = UNKNOWN_VALUE;
    std::string Monitor = UNKNOWN_VALUE;
    std::string HorizontalResolution = UNKNOWN_VALUE;
    std::string VerticalResolution = UNKNOWN_VALUE;
    std::string ColorQuality = UNKNOWN_VALUE;
    std::string RefreshRate = UNKNOWN_VALUE;
    std::string ScanMode = UNKNOWN_VALUE;
    std::string MaximumRefreshRate = UNKNOWN_VALUE;
    std::string MinimumRefreshRate = UNKNOWN_VALUE;
};

struct VideoController {
    std::string Name = UNKNOWN_VALUE;
    std::string Status = UNKNOWN_VALUE;
    std::string BiosString = UNKNOWN_VALUE;
    std::string MemorySize = UNKNOWN_VALUE;
    std::string ChipType = UNKNOWN_VALUE;
    std::string DACType = UNKNOWN_VALUE;
    std::vector<VideoHead> heads;
};

// One display adapter (a PCI display function) and its controllers.
struct Graphics {
    std::string Name = UNKNOWN_VALUE;
    std::string Location = UNKNOWN_VALUE;  // PCI address
    std::string Driver = UNKNOWN_VALUE;
    std::vector<VideoController> controllers;
};

struct Resolution {
    std::string HorizontalResolution = UNKNOWN_VALUE;
    std::string VerticalResolution = UNKNOWN_VALUE;
    std::string RefreshRate = UNKNOWN_VALUE;
    std::string ScanMode = UNKNOWN_VALUE;
};

struct Monitor {
    std::string Description = UNKNOWN_VALUE;
    std::string Manufacturer = UNKNOWN_VALUE;
    std::string ManufacturingDate = UNKNOWN_VALUE;
    std::string OperationalStatus = UNKNOWN_VALUE;
    std::string StatusDescriptions = UNKNOWN_VALUE;
    std::string DpmsActiveOff = UNKNOWN_VALUE;
    std::string DpmsStandby = UNKNOWN_VALUE;
    std::string DpmsSuspend = UNKNOWN_VALUE;
    std::string EdidVersion = UNKNOWN_VALUE;
    std::vector<Resolution> resolutions;
};

// A board, an enclosure, a slot or an onboard device.
struct SystemCard {
    std::string Type = UNKNOWN_VALUE;
    std::string Manufacturer = UNKNOWN_VALUE;
    std::string Version = UNKNOWN_VALUE;
    std::string SerialNumber = UNKNOWN_VALUE;
};

// A SCSI device (disks, tapes, enclosures and the like behind any SCSI-speaking host).
struct SystemDevice {
    std::string Name = UNKNOWN_VALUE;
    std::string DeviceType = UNKNOWN_VALUE;
    std::string ProductName = UNKNOWN_VALUE;
    std::string SerialNumber = UNKNOWN_VALUE;
    std::string Revision = UNKNOWN_VALUE;
    std::string HostAdapterID = UNKNOWN_VALUE;
    std::string TargetID = UNKNOWN_VALUE;
    std::string Bus = UNKNOWN_VALUE;
    std::string Lun = UNKNOWN_VALUE;
};

struct UsbHub {
    std::string Description = UNKNOWN_VALUE;
    std::string NumberOfPorts = UNKNOWN_VALUE;
};

struct UsbDevice {
    std::string VendorID = UNKNOWN_VALUE;
    std::string USBDeviceID = UNKNOWN_VALUE;
    std::string Manufacturer = UNKNOWN_VALUE;
    std::string Description = UNKNOWN_VALUE;
    std::string Speed = UNKNOWN_VALUE;
};

struct OpticalDevice {
    std::string DeviceID = UNKNOWN_VALUE;
    std::string Manufacturer = UNKNOWN_VALUE;
    std::string ProductName = UNKNOWN_VALUE;
    std::string DvdRamRead = UNKNOWN_VALUE;
    std::string DvdRRead = UNKNOWN_VALUE;
    std::string DvdRomRead = UNKNOWN_VALUE;
    std::string DvdRamWrite = UNKNOWN_VALUE;
    std::string DvdRWrite = UNKNOWN_VALUE;
    std::string CdRwRead = UNKNOWN_VALUE;
    std::string CdRRead = UNKNOWN_VALUE;
    std::string CdRwWrite = UNKNOWN_VALUE;
    std::string CdRWrite = UNKNOWN_VALUE;
};

// A PCI function that no other list shows.
struct OtherDevice {
    std::string DeviceName = UNKNOWN_VALUE;
    std::string DeviceID = UNKNOWN_VALUE;
    std::string VendorInfo = UNKNOWN_VALUE;
    std::string Description = UNKNOWN_VALUE;
    std::string Class = UNKNOWN_VALUE;
};

// Everything but the computer systems and the volumes, in the order the module shows them.
struct Hardwareinfo {
    std::vector<Processor> processors;
    std::vector<Memory> memory;
    std::vector<FanInband> fans;
    std::vector<PowerInband> power;
    std::vector<VirtualDisk> virtualDisks;
    std::vector<Graphics> graphics;
    std::vector<Monitor> monitors;
    std::vector<SystemDevice> systemDevices;
    std::vector<OpticalDevice> opticalDevices;
    std::vector<SystemCard> systemCards;
    std::vector<UsbHub> usbHubs;
    std::vector<UsbDevice> usbDevices;
    std::vector<OtherDevice> otherDevices;
};

}  // namespace protocol
}  // namespace XModule

#endif
