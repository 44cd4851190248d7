#ifndef KESTRO_XMODULE_AGENTLESS_RAIDADAPTER_H
#define KESTRO_XMODULE_AGENTLESS_RAIDADAPTER_H

#include <string>
#include <vector>

namespace XModule {
namespace XMOptions {

// Records of one storage adapter as RAIDLink reads them. Every field is text: a value the source
// does not give is "N/A". The five coded fields (BatteryType, ArrayStatus, DiskFormat, MediaType,
// DiskState) hold words on a reader of one connection and numeric codes on one of two.

struct SoftwareIdentity {
    std::string Name;
    std::string Description;
    std::string Manufacturer;
    std::string VersionString;
    std::string Classifications;
    std::string SoftwareID;
    std::string ReleaseDate;
    std::string ElementName;
    std::string ProductName;
    std::string ClassificationDescriptions;
    std::string SubDeviceID;
    std::string IdentityInfoValue;
    std::string SoftwareStatus;
    std::string SoftwareRole;
    std::string IdentityInfoType;
};

struct DiskDrive {
    std::string Name;
    std::string Model;
    std::string DefaultBlockSize;
    std::string Type;
    std::string SlotNum;
    std::string Manufacturer;
    std::string SerialNum;
    std::string FRUNum;
    std::string PartNum;
    std::string EncryptionAbility;  // "true" or "false" as the source says it
    std::string EncryptionStatus;
    std::string RemainingLifePercent;
    std::string DriveStatus;
    std::string Temperature;
    std::string MaxBlockSize;
    std::string MaxMediaSize;
    std::string MinBlockSize;
    std::string UUID;
    std::string DiskSpeed;
    std::string NumberOfBlocks;
    std::string VersionString;
    std::string DiskFormat;
    std::string MediaType;
    std::string DiskState;
    std::vector<SoftwareIdentity> softwareIdentities;
};

struct Battery {
    std::string Name;
    std::string Manufacturer;
    std::string PartNum;
    std::string BatteryType;
    std::string Voltage;
    std::string Current;
    std::string Temperature;
    std::string BatteryStatus;
    std::string RemainingCapacity;
    std::string FullChargeCapacity;
    std::string EnabledState;
    std::string FirmwareDescription;
    std::string VoltageType;
    std::string DesignCapacity;
    std::string HealthStatus;
    std::string Chemistry;
};

struct StorageVolume {
    std::string Name;
    std::string BlockSize;
    std::string NumOfBlocks;
    std::string VolumeStatus;
    std::string StripeSize;
    std::string PrimaryPartition;
    std::string Bootable;
    std::string ConsumableBlocks;
    std::string FreeSpace;
    std::string CapacityBytes;
    std::string RAIDLevel;
};

struct StoragePool {
    std::string Name;
    std::string TotalManagedSpace;
    std::string ArrayStatus;
    std::string RemainingManagedSpace;
    std::string RAIDLevel;
    std::string Span;  // "255" when the array is not spanned
    std::vector<StorageVolume> volumes;
    std::vector<DiskDrive> drives;
};

struct SSD {
    std::string Bay;
    std::string Type;
    std::string SerialNumber;
    std::string PartNumber;
    std::string FRUNumber;
    std::string ProductName;
    std::string Manufacturer;
    std::string Location;
    std::string FirmwareVersion;
    std::string Capacity;
    std::string EncryptionAbility;
    std::string EncryptionStatus;
    std::string RemainingLifePercent;
    std::string DriveStatus;
    std::string Temperature;
};

struct RaidAdapter {
    std::string ControllerType;
    std::string Name;
    std::string Model;
    std::string SerialNum;
    std::string Manufacturer;
    std::string PartNumber;
    std::string FRUNumber;
    std::string UUID;
    std::string CacheStatus;
    std::string CacheSerialNum;
    std::string CacheMemorySize;
    std::vector<SoftwareIdentity> softwareIdentities;
    std::vector<DiskDrive> diskDrives;  // drives of no pool
    std::vector<Battery> batteries;
    std::vector<StoragePool> storagePools;
    std::vector<StorageVolume> storageVolumes;
    std::vector<SSD> ssds;
};

}  // namespace XMOptions
}  // namespace XModule

#endif
