#ifndef KESTRO_XMODULE_LINUX_SMBIOSDECODE_H
#define KESTRO_XMODULE_LINUX_SMBIOSDECODE_H

#include "xmodule/linux/smbios.h"

#include <cstdint>
#include <string>
#include <vector>

// One decoder per structure type. A decoder reads a field only when the structure's length covers
// it, so the short structures of old versions give what they hold and no more. Texts are trimmed,
// and the words firmware writes where it knows nothing ("Not Specified", "NO DIMM", "0000") read
// as "", as does a code outside its table. A number of 0 is unknown.
namespace XModule {
namespace Linux {

// Handles of the cache structures a processor names; this one names none.
const std::uint16_t SMBIOS_NO_HANDLE = 0xFFFF;

struct SmbiosBios {
    std::string vendor;
    std::string version;
    std::string releaseDate;  // ISO 8601
};

struct SmbiosSystem {
    std::string manufacturer;
    std::string productName;
    std::string version;
    std::string serialNumber;
    std::string uuid;  // lower case, 8-4-4-4-12; "" when absent or not set
    std::string skuNumber;
    std::string family;
};

struct SmbiosBaseboard {
    std::string manufacturer;
    std::string productName;
    std::string version;
    std::string serialNumber;
    std::string boardType;  // "Motherboard"
};

struct SmbiosChassis {
    std::string manufacturer;
    std::string chassisType;  // "Rack Mount Chassis"
    std::string version;
    std::string serialNumber;
};

struct SmbiosProcessor {
    std::uint16_t handle = 0;
    std::string socket;
    std::string manufacturer;
    std::string version;
    std::string serialNumber;
    std::string stepping;
    unsigned currentMegahertz = 0;
    bool populated = false;
    std::string status;  // "CPU Enabled"
    unsigned cores = 0;
    unsigned coresEnabled = 0;
    unsigned threads = 0;
    bool hardwareThreads = false;  // the characteristics say the package runs more than one thread a core
    std::uint16_t cacheHandles[3] = {SMBIOS_NO_HANDLE, SMBIOS_NO_HANDLE, SMBIOS_NO_HANDLE};  // L1, L2, L3
};

struct SmbiosCache {
    std::uint16_t handle = 0;
    std::string designation;
    unsigned level = 0;
    bool enabled = false;
    std::string operationalMode;  // "Write Back"
    std::uint64_t installedBytes = 0;
};

struct SmbiosSlot {
    std::string designation;
    std::string slotType;  // "PCI Express 4 x16"
    std::string usage;     // "In Use"
    std::string busAddress;  // "0000:17:00.0"
};

struct SmbiosMemoryArray {
    std::uint16_t handle = 0;
    bool systemMemory = false;  // only such arrays hold DIMMs
    std::string errorCorrection;  // "Multi-bit ECC"
};

struct SmbiosMemoryDevice {
    std::uint16_t arrayHandle = SMBIOS_NO_HANDLE;
    bool installed = false;  // false for an empty slot
    std::uint64_t sizeBytes = 0;
    std::string locator;
    std::string bankLocator;
    std::string memoryType;  // "DDR4"
    unsigned speedMts = 0;
    std::string manufacturer;
    std::string serialNumber;
    std::string partNumber;
};

struct SmbiosCoolingDevice {
    std::string description;
    std::string deviceType;  // "Chip Fan"
    std::string status;      // "OK"
    unsigned nominalRpm = 0;
};

struct SmbiosPowerSupply {
    std::string location;
    std::string deviceName;
    std::string manufacturer;
    std::string serialNumber;
    std::string modelPartNumber;
    unsigned maxWatts = 0;
    bool present = false;
    bool unplugged = false;  // present, but not plugged into the mains
    std::string status;      // "OK"
};

struct SmbiosOnboardDevice {
    std::string designation;
    std::string deviceType;  // "Ethernet"
    bool enabled = false;
    std::string busAddress;
};

SmbiosBios DecodeBios(const SmbiosStructure& structure);
// The UUID's first three fields are little-endian from 2.6 on.
SmbiosSystem DecodeSystem(const SmbiosStructure& structure, const SmbiosVersion& version);
SmbiosBaseboard DecodeBaseboard(const SmbiosStructure& structure);
SmbiosChassis DecodeChassis(const SmbiosStructure& structure);
SmbiosProcessor DecodeProcessor(const SmbiosStructure& structure);
SmbiosCache DecodeCache(const SmbiosStructure& structure);
SmbiosSlot DecodeSlot(const SmbiosStructure& structure);
SmbiosMemoryArray DecodeMemoryArray(const SmbiosStructure& structure);
SmbiosMemoryDevice DecodeMemoryDevice(const SmbiosStructure& structure);
SmbiosCoolingDevice DecodeCoolingDevice(const SmbiosStructure& structure);
SmbiosPowerSupply DecodePowerSupply(const SmbiosStructure& structure);
SmbiosOnboardDevice DecodeOnboardDevice(const SmbiosStructure& structure);
// The older structure of onboard devices (type 10), a pair of bytes per device and no bus address.
std::vector<SmbiosOnboardDevice> DecodeOnboardDevices(const SmbiosStructure& structure);

// The chassis type name of a code (SMBIOS type 3, and /sys/class/dmi/id/chassis_type); "" when unknown.
std::string NameChassisType(unsigned code);
// The oldest version whose structures are as long as the table's: for a table without a usable
// entry point.
SmbiosVersion GuessSmbiosVersion(const std::vector<SmbiosStructure>& table);
// True for the texts firmware writes where it has no value (empty slots, unset fields).
bool IsPlaceholderText(const std::string& text);
// "03/15/2023" (or "03/15/98") as ISO 8601; "" when it is no such date.
std::string ParseBiosDate(const std::string& text);

}  // namespace Linux
}  // namespace XModule

#endif
