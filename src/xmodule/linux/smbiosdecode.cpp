#include "xmodule/linux/smbiosdecode.h"

#include "kestro/xmodule/log.h"
#include "xmodule/linux/valueformat.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/predicate.hpp>
#include <boost/algorithm/string/split.hpp>

#include <cstdio>
#include <cstdlib>

namespace XModule {
namespace Linux {

namespace {

struct CodeName {
    unsigned code;
    const char* name;
};

// Code 2, "Unknown" in most tables, is left out of them: it reads as no value.
template <std::size_t N>
std::string NameOf(const CodeName (&table)[N], unsigned code)
{
    for (const CodeName& entry : table)
        if (entry.code == code) return entry.name;
    return std::string();
}

// Code 1 is this table's "Unknown".
const CodeName kBoardTypes[] = {
    {0x02, "Other"}, {0x03, "Server Blade"}, {0x04, "Connectivity Switch"}, {0x05, "System Management Module"},
    {0x06, "Processor Module"}, {0x07, "I/O Module"}, {0x08, "Memory Module"}, {0x09, "Daughter Board"},
    {0x0A, "Motherboard"}, {0x0B, "Processor/Memory Module"}, {0x0C, "Processor/IO Module"},
    {0x0D, "Interconnect Board"},
};

const CodeName kChassisTypes[] = {
    {0x01, "Other"}, {0x03, "Desktop"}, {0x04, "Low Profile Desktop"}, {0x05, "Pizza Box"}, {0x06, "Mini Tower"},
    {0x07, "Tower"}, {0x08, "Portable"}, {0x09, "Laptop"}, {0x0A, "Notebook"}, {0x0B, "Hand Held"},
    {0x0C, "Docking Station"}, {0x0D, "All in One"}, {0x0E, "Sub Notebook"}, {0x0F, "Space-saving"},
    {0x10, "Lunch Box"}, {0x11, "Main Server Chassis"}, {0x12, "Expansion Chassis"}, {0x13, "SubChassis"},
    {0x14, "Bus Expansion Chassis"}, {0x15, "Peripheral Chassis"}, {0x16, "RAID Chassis"},
    {0x17, "Rack Mount Chassis"}, {0x18, "Sealed-case PC"}, {0x19, "Multi-system Chassis"}, {0x1A, "Compact PCI"},
    {0x1B, "Advanced TCA"}, {0x1C, "Blade"}, {0x1D, "Blade Enclosure"}, {0x1E, "Tablet"}, {0x1F, "Convertible"},
    {0x20, "Detachable"}, {0x21, "IoT Gateway"}, {0x22, "Embedded PC"}, {0x23, "Mini PC"}, {0x24, "Stick PC"},
};

const CodeName kProcessorStatuses[] = {
    {1, "CPU Enabled"}, {2, "CPU Disabled By User"}, {3, "CPU Disabled By BIOS (POST Error)"},
    {4, "CPU Idle"}, {7, "Other"},
};

const CodeName kCacheModes[] = {
    {0, "Write Through"}, {1, "Write Back"}, {2, "Varies with Memory Address"}, {3, "Unknown"},
};

const CodeName kSlotTypes[] = {
    {0x01, "Other"}, {0x03, "ISA"}, {0x04, "MCA"}, {0x05, "EISA"}, {0x06, "PCI"}, {0x07, "PC Card (PCMCIA)"},
    {0x08, "VL-VESA"}, {0x09, "Proprietary"}, {0x0A, "Processor Card"}, {0x0B, "Proprietary Memory Card"},
    {0x0C, "I/O Riser Card"}, {0x0D, "NuBus"}, {0x0E, "PCI-66"}, {0x0F, "AGP"}, {0x10, "AGP 2x"},
    {0x11, "AGP 4x"}, {0x12, "PCI-X"}, {0x13, "AGP 8x"}, {0x14, "M.2 Socket 1-DP"}, {0x15, "M.2 Socket 1-SD"},
    {0x16, "M.2 Socket 2"}, {0x17, "M.2 Socket 3"}, {0x18, "MXM Type I"}, {0x19, "MXM Type II"},
    {0x1A, "MXM Type III (standard connector)"}, {0x1B, "MXM Type III (HE connector)"}, {0x1C, "MXM Type IV"},
    {0x1D, "MXM 3.0 Type A"}, {0x1E, "MXM 3.0 Type B"}, {0x1F, "PCI Express 2 SFF-8639 (U.2)"},
    {0x20, "PCI Express 3 SFF-8639 (U.2)"}, {0x21, "PCI Express Mini 52-pin with bottom-side keep-outs"},
    {0x22, "PCI Express Mini 52-pin without bottom-side keep-outs"}, {0x23, "PCI Express Mini 76-pin"},
    {0x24, "PCI Express 4 SFF-8639 (U.2)"}, {0x25, "PCI Express 5 SFF-8639 (U.2)"},
    {0x26, "OCP NIC 3.0 Small Form Factor"}, {0x27, "OCP NIC 3.0 Large Form Factor"},
    {0x28, "OCP NIC Prior to 3.0"}, {0x30, "CXL Flexbus 1.0"}, {0xA0, "PC-98/C20"}, {0xA1, "PC-98/C24"},
    {0xA2, "PC-98/E"}, {0xA3, "PC-98/Local Bus"}, {0xA4, "PC-98/Card"}, {0xC4, "PCI Express 6+"},
    {0xC5, "EDSFF E1"}, {0xC6, "EDSFF E3"},
};

// PCI Express slots come in runs of six codes per generation: any width, then x1 to x16.
const CodeName kPcieGenerations[] = {
    {0xA5, "PCI Express"}, {0xAB, "PCI Express 2"}, {0xB1, "PCI Express 3"}, {0xB8, "PCI Express 4"},
    {0xBE, "PCI Express 5"},
};
const char* const kPcieWidths[] = {"", " x1", " x2", " x4", " x8", " x16"};
const unsigned kPcieWidthCount = sizeof kPcieWidths / sizeof kPcieWidths[0];

const CodeName kSlotUsages[] = {{1, "Other"}, {3, "Available"}, {4, "In Use"}, {5, "Unavailable"}};

const CodeName kErrorCorrections[] = {
    {1, "Other"}, {3, "None"}, {4, "Parity"}, {5, "Single-bit ECC"}, {6, "Multi-bit ECC"}, {7, "CRC"},
};

const CodeName kMemoryTypes[] = {
    {0x01, "Other"}, {0x03, "DRAM"}, {0x04, "EDRAM"}, {0x05, "VRAM"}, {0x06, "SRAM"}, {0x07, "RAM"},
    {0x08, "ROM"}, {0x09, "Flash"}, {0x0A, "EEPROM"}, {0x0B, "FEPROM"}, {0x0C, "EPROM"}, {0x0D, "CDRAM"},
    {0x0E, "3DRAM"}, {0x0F, "SDRAM"}, {0x10, "SGRAM"}, {0x11, "RDRAM"}, {0x12, "DDR"}, {0x13, "DDR2"},
    {0x14, "DDR2 FB-DIMM"}, {0x18, "DDR3"}, {0x19, "FBD2"}, {0x1A, "DDR4"}, {0x1B, "LPDDR"}, {0x1C, "LPDDR2"},
    {0x1D, "LPDDR3"}, {0x1E, "LPDDR4"}, {0x1F, "Logical non-volatile device"}, {0x20, "HBM"}, {0x21, "HBM2"},
    {0x22, "DDR5"}, {0x23, "LPDDR5"}, {0x24, "HBM3"},
};

const CodeName kCoolingTypes[] = {
    {0x01, "Other"}, {0x03, "Fan"}, {0x04, "Centrifugal Blower"}, {0x05, "Chip Fan"}, {0x06, "Cabinet Fan"},
    {0x07, "Power Supply Fan"}, {0x08, "Heat Pipe"}, {0x09, "Integrated Refrigeration"},
    {0x10, "Active Cooling"}, {0x11, "Passive Cooling"},
};

const CodeName kCoolingStatuses[] = {
    {1, "Other"}, {3, "OK"}, {4, "Non-critical"}, {5, "Critical"}, {6, "Non-recoverable"},
};

// A power supply has no "Non-recoverable" status.
const CodeName kPowerSupplyStatuses[] = {{1, "Other"}, {3, "OK"}, {4, "Non-critical"}, {5, "Critical"}};

const CodeName kOnboardDeviceTypes[] = {
    {0x01, "Other"}, {0x03, "Video"}, {0x04, "SCSI Controller"}, {0x05, "Ethernet"}, {0x06, "Token Ring"},
    {0x07, "Sound"}, {0x08, "PATA Controller"}, {0x09, "SATA Controller"}, {0x0A, "SAS Controller"},
    {0x0B, "Wireless LAN"}, {0x0C, "Bluetooth"}, {0x0D, "WWAN"}, {0x0E, "eMMC"}, {0x0F, "NVMe Controller"},
    {0x10, "UFS Controller"},
};

// Compared without regard to case.
const char* const kPlaceholders[] = {
    "Not Specified", "Not Available", "Not Provided", "Not Installed", "Not Present", "Unknown", "Undefined",
    "NO DIMM", "[Empty]", "Empty", "None", "N/A", "NA", "To Be Filled By O.E.M.", "Default string", "O.E.M.",
    "System Serial Number", "System Product Name", "System Version", "Base Board Serial Number", "0123456789",
};
// Numbered placeholders of empty slots: "Manufacturer0", "SerNum3".
const char* const kNumberedPlaceholders[] = {"Manufacturer", "SerNum", "PartNum", "AssetTagNum"};

// Makers whose processor ID holds the CPUID signature, stepping in its lowest four bits.
const char* const kX86Makers[] = {"Intel", "AMD", "Advanced Micro", "Hygon", "Zhaoxin", "Centaur", "VIA"};

template <typename Record>
struct TextField {
    std::size_t offset;
    std::string Record::*member;
};

void LogMissingString(const SmbiosStructure& structure, std::size_t offset)
{
    std::uint8_t number = 0;
    if (GetSmbiosByte(structure, offset, number) && number > structure.strings.size())
        XLOG(LOG_WARN) << "[repo] SMBIOS structure of type " << int(structure.type) << ", handle " << structure.handle
                       << ", names string " << int(number) << " at offset " << offset << " but has "
                       << structure.strings.size();
}

// Control bytes would break the XML file; they become blanks, which trimming folds.
std::string TextAt(const SmbiosStructure& structure, std::size_t offset)
{
    LogMissingString(structure, offset);
    std::string text = GetSmbiosStringAt(structure, offset);
    for (char& c : text)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
    text = TrimText(text);
    return IsPlaceholderText(text) ? std::string() : text;
}

template <typename Record, std::size_t N>
void ReadTexts(const SmbiosStructure& structure, const TextField<Record> (&fields)[N], Record& record)
{
    for (const TextField<Record>& field : fields) record.*(field.member) = TextAt(structure, field.offset);
}

std::uint8_t ByteOr(const SmbiosStructure& structure, std::size_t offset, std::uint8_t fallback)
{
    GetSmbiosByte(structure, offset, fallback);
    return fallback;
}

std::uint16_t WordOr(const SmbiosStructure& structure, std::size_t offset, std::uint16_t fallback)
{
    GetSmbiosWord(structure, offset, fallback);
    return fallback;
}

bool IsRepeated(const std::string& text, char c) { return !text.empty() && text.find_first_not_of(c) == std::string::npos; }

bool IsNumberedPlaceholder(const std::string& text)
{
    const std::size_t digits = text.find_last_not_of("0123456789");
    if (digits == std::string::npos || digits + 1 == text.size()) return false;
    const std::string word = text.substr(0, digits + 1);
    for (const char* placeholder : kNumberedPlaceholders)
        if (boost::algorithm::iequals(word, placeholder)) return true;
    return false;
}

// "0000:17:00.0"; "" where the firmware gives none (bus and device-function all ones).
std::string BusAddressAt(const SmbiosStructure& structure, std::size_t segmentOffset)
{
    std::uint16_t segment = 0;
    std::uint8_t bus = 0xFF;
    std::uint8_t deviceFunction = 0xFF;
    if (!GetSmbiosWord(structure, segmentOffset, segment) || !GetSmbiosByte(structure, segmentOffset + 2, bus) ||
        !GetSmbiosByte(structure, segmentOffset + 3, deviceFunction) || (bus == 0xFF && deviceFunction == 0xFF))
        return std::string();
    char text[32];
    std::snprintf(text, sizeof text, "%04x:%02x:%02x.%x", segment, bus, deviceFunction >> 3, deviceFunction & 7);
    return text;
}

std::string UuidAt(const SmbiosStructure& structure, std::size_t offset, bool littleEndianFields)
{
    static const int kLittleEndianOrder[16] = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
    if (offset > structure.formatted.size() || structure.formatted.size() - offset < 16) return std::string();
    const std::string raw = structure.formatted.substr(offset, 16);
    // All ones: the system has no UUID; all zeros: it has one that is not set.
    if (IsRepeated(raw, '\xFF') || IsRepeated(raw, '\0')) return std::string();
    std::string text;
    for (int i = 0; i < 16; ++i) {
        char hex[4];
        std::snprintf(hex, sizeof hex, "%02x", static_cast<std::uint8_t>(raw[littleEndianFields ? kLittleEndianOrder[i] : i]));
        if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
        text += hex;
    }
    return text;
}

bool IsX86Maker(const std::string& manufacturer)
{
    for (const char* maker : kX86Makers)
        if (boost::algorithm::icontains(manufacturer, maker)) return true;
    return false;
}

// A count of 0xFF stands for "see the 2-byte field" where the structure has one (3.0), and for 255
// before; 0 and the 2-byte field's 0xFFFF are unknown.
unsigned CountAt(const SmbiosStructure& structure, std::size_t byteOffset, std::size_t wordOffset)
{
    const std::uint8_t count = ByteOr(structure, byteOffset, 0);
    std::uint16_t wide = 0;
    if (count != 0xFF || !GetSmbiosWord(structure, wordOffset, wide)) return count;
    return wide == 0xFFFF ? 0 : wide;
}

std::string NameSlotType(unsigned code)
{
    for (const CodeName& generation : kPcieGenerations)
        if (code >= generation.code && code < generation.code + kPcieWidthCount)
            return std::string(generation.name) + kPcieWidths[code - generation.code];
    return NameOf(kSlotTypes, code);
}

// A size word's bit 15 (or a size dword's bit 31) selects 64 KiB units over 1 KiB ones.
std::uint64_t CacheBytes(std::uint32_t units, unsigned granularityBit)
{
    const std::uint64_t unit = (units >> granularityBit) & 1 ? 64 * 1024 : 1024;
    return (units & ((1u << granularityBit) - 1)) * unit;
}

struct VersionClue {
    std::uint8_t type;
    std::uint8_t length;
    SmbiosVersion version;
};

// The length each version gave these structures.
const VersionClue kVersionClues[] = {
    {SMBIOS_SYSTEM_INFORMATION, 0x19, {2, 1, 0}},    {SMBIOS_PROCESSOR_INFORMATION, 0x23, {2, 3, 0}},
    {SMBIOS_SYSTEM_INFORMATION, 0x1B, {2, 4, 0}},    {SMBIOS_PROCESSOR_INFORMATION, 0x28, {2, 5, 0}},
    {SMBIOS_PROCESSOR_INFORMATION, 0x2A, {2, 6, 0}}, {SMBIOS_MEMORY_DEVICE, 0x22, {2, 7, 0}},
    {SMBIOS_MEMORY_DEVICE, 0x28, {2, 8, 0}},         {SMBIOS_PROCESSOR_INFORMATION, 0x30, {3, 0, 0}},
    {SMBIOS_MEMORY_DEVICE, 0x5C, {3, 3, 0}},
};

}  // namespace

bool IsPlaceholderText(const std::string& text)
{
    if (text.empty() || IsRepeated(text, '0') || IsRepeated(text, '\xFF')) return true;
    for (const char* placeholder : kPlaceholders)
        if (boost::algorithm::iequals(text, placeholder)) return true;
    return IsNumberedPlaceholder(text);
}

std::string NameChassisType(unsigned code) { return NameOf(kChassisTypes, code); }

std::string ParseBiosDate(const std::string& text)
{
    std::vector<std::string> parts;
    boost::algorithm::split(parts, text, boost::algorithm::is_any_of("/"));
    if (parts.size() != 3) return std::string();
    int numbers[3];
    for (int i = 0; i < 3; ++i) {
        const bool digits = !parts[i].empty() && parts[i].size() <= 4 &&
                            parts[i].find_first_not_of("0123456789") == std::string::npos;
        if (!digits) return std::string();
        numbers[i] = std::atoi(parts[i].c_str());
    }
    int year = numbers[2];
    if (parts[2].size() == 2) year += year < 80 ? 2000 : 1900;
    else if (parts[2].size() != 4) return std::string();
    if (numbers[0] < 1 || numbers[0] > 12 || numbers[1] < 1 || numbers[1] > 31) return std::string();
    return FormatDate(year, numbers[0], numbers[1]);
}

SmbiosVersion GuessSmbiosVersion(const std::vector<SmbiosStructure>& table)
{
    SmbiosVersion guess;
    guess.major = 2;
    for (const SmbiosStructure& structure : table)
        for (const VersionClue& clue : kVersionClues)
            if (structure.type == clue.type && structure.length >= clue.length &&
                !guess.AtLeast(clue.version.major, clue.version.minor))
                guess = clue.version;
    return guess;
}

SmbiosBios DecodeBios(const SmbiosStructure& structure)
{
    static const TextField<SmbiosBios> kFields[] = {{0x04, &SmbiosBios::vendor}, {0x05, &SmbiosBios::version}};
    SmbiosBios bios;
    ReadTexts(structure, kFields, bios);
    bios.releaseDate = ParseBiosDate(TextAt(structure, 0x08));
    return bios;
}

SmbiosSystem DecodeSystem(const SmbiosStructure& structure, const SmbiosVersion& version)
{
    static const TextField<SmbiosSystem> kFields[] = {
        {0x04, &SmbiosSystem::manufacturer}, {0x05, &SmbiosSystem::productName}, {0x06, &SmbiosSystem::version},
        {0x07, &SmbiosSystem::serialNumber}, {0x19, &SmbiosSystem::skuNumber},   {0x1A, &SmbiosSystem::family},
    };
    SmbiosSystem system;
    ReadTexts(structure, kFields, system);
    system.uuid = UuidAt(structure, 0x08, version.AtLeast(2, 6));
    return system;
}

SmbiosBaseboard DecodeBaseboard(const SmbiosStructure& structure)
{
    static const TextField<SmbiosBaseboard> kFields[] = {
        {0x04, &SmbiosBaseboard::manufacturer}, {0x05, &SmbiosBaseboard::productName},
        {0x06, &SmbiosBaseboard::version},      {0x07, &SmbiosBaseboard::serialNumber},
    };
    SmbiosBaseboard board;
    ReadTexts(structure, kFields, board);
    board.boardType = NameOf(kBoardTypes, ByteOr(structure, 0x0D, 0));
    return board;
}

SmbiosChassis DecodeChassis(const SmbiosStructure& structure)
{
    static const TextField<SmbiosChassis> kFields[] = {
        {0x04, &SmbiosChassis::manufacturer}, {0x06, &SmbiosChassis::version}, {0x07, &SmbiosChassis::serialNumber}};
    SmbiosChassis chassis;
    ReadTexts(structure, kFields, chassis);
    chassis.chassisType = NameChassisType(ByteOr(structure, 0x05, 0) & 0x7F);  // bit 7: a lock is present
    return chassis;
}

SmbiosProcessor DecodeProcessor(const SmbiosStructure& structure)
{
    static const TextField<SmbiosProcessor> kFields[] = {
        {0x04, &SmbiosProcessor::socket}, {0x07, &SmbiosProcessor::manufacturer}, {0x10, &SmbiosProcessor::version},
        {0x20, &SmbiosProcessor::serialNumber}};
    static const std::size_t kCacheHandleOffsets[3] = {0x1A, 0x1C, 0x1E};
    SmbiosProcessor processor;
    processor.handle = structure.handle;
    ReadTexts(structure, kFields, processor);

    std::uint32_t signature = 0;
    if (GetSmbiosDword(structure, 0x08, signature) && signature != 0 && IsX86Maker(processor.manufacturer))
        processor.stepping = std::to_string(signature & 0x0F);
    processor.currentMegahertz = WordOr(structure, 0x16, 0);

    const std::uint8_t status = ByteOr(structure, 0x18, 0);
    processor.populated = (status & 0x40) != 0;
    processor.status = NameOf(kProcessorStatuses, status & 0x07);

    for (int level = 0; level < 3; ++level) GetSmbiosWord(structure, kCacheHandleOffsets[level], processor.cacheHandles[level]);
    processor.cores = CountAt(structure, 0x23, 0x2A);
    processor.coresEnabled = CountAt(structure, 0x24, 0x2C);
    processor.threads = CountAt(structure, 0x25, 0x2E);
    processor.hardwareThreads = (WordOr(structure, 0x26, 0) & 0x0010) != 0;
    return processor;
}

SmbiosCache DecodeCache(const SmbiosStructure& structure)
{
    SmbiosCache cache;
    cache.handle = structure.handle;
    cache.designation = TextAt(structure, 0x04);
    std::uint16_t configuration = 0;
    if (GetSmbiosWord(structure, 0x05, configuration)) {
        cache.level = (configuration & 0x07) + 1;
        cache.enabled = (configuration & 0x80) != 0;
        cache.operationalMode = NameOf(kCacheModes, (configuration >> 8) & 0x03);
    }
    std::uint16_t installed = 0;
    std::uint32_t installedWide = 0;
    if (GetSmbiosWord(structure, 0x09, installed)) {
        // 0xFFFF: the size is too large for the word, see the dword of 3.1; before it, a size like any other.
        if (installed == 0xFFFF && GetSmbiosDword(structure, 0x17, installedWide))
            cache.installedBytes = CacheBytes(installedWide, 31);
        else
            cache.installedBytes = CacheBytes(installed, 15);
    }
    return cache;
}

SmbiosSlot DecodeSlot(const SmbiosStructure& structure)
{
    SmbiosSlot slot;
    slot.designation = TextAt(structure, 0x04);
    slot.slotType = NameSlotType(ByteOr(structure, 0x05, 0));
    slot.usage = NameOf(kSlotUsages, ByteOr(structure, 0x07, 0));
    slot.busAddress = BusAddressAt(structure, 0x0D);
    return slot;
}

SmbiosMemoryArray DecodeMemoryArray(const SmbiosStructure& structure)
{
    static const std::uint8_t kSystemMemoryUse = 0x03;
    SmbiosMemoryArray array;
    array.handle = structure.handle;
    array.systemMemory = ByteOr(structure, 0x05, 0) == kSystemMemoryUse;
    array.errorCorrection = NameOf(kErrorCorrections, ByteOr(structure, 0x06, 0));
    return array;
}

SmbiosMemoryDevice DecodeMemoryDevice(const SmbiosStructure& structure)
{
    static const TextField<SmbiosMemoryDevice> kFields[] = {
        {0x10, &SmbiosMemoryDevice::locator},      {0x11, &SmbiosMemoryDevice::bankLocator},
        {0x17, &SmbiosMemoryDevice::manufacturer}, {0x18, &SmbiosMemoryDevice::serialNumber},
        {0x1A, &SmbiosMemoryDevice::partNumber}};
    SmbiosMemoryDevice device;
    GetSmbiosWord(structure, 0x04, device.arrayHandle);
    ReadTexts(structure, kFields, device);
    device.memoryType = NameOf(kMemoryTypes, ByteOr(structure, 0x12, 0));

    // 0: an empty slot; 0xFFFF: a module of unknown size; 0x7FFF: see the extended size in MiB where
    // the structure has one (2.7), 32767 MiB before.
    const std::uint16_t size = WordOr(structure, 0x0C, 0);
    std::uint32_t extendedSize = 0;
    device.installed = size != 0;
    if (size == 0x7FFF && GetSmbiosDword(structure, 0x1C, extendedSize))
        device.sizeBytes = std::uint64_t(extendedSize & 0x7FFFFFFF) << 20;
    else if (size != 0xFFFF)
        device.sizeBytes = std::uint64_t(size & 0x7FFF) << (size & 0x8000 ? 10 : 20);

    // 0xFFFF: see the extended speed of 3.3.
    const std::uint16_t speed = WordOr(structure, 0x15, 0);
    std::uint32_t extendedSpeed = 0;
    if (speed != 0xFFFF) device.speedMts = speed;
    else if (GetSmbiosDword(structure, 0x54, extendedSpeed)) device.speedMts = extendedSpeed & 0x7FFFFFFF;
    return device;
}

SmbiosCoolingDevice DecodeCoolingDevice(const SmbiosStructure& structure)
{
    SmbiosCoolingDevice cooling;
    const std::uint8_t typeAndStatus = ByteOr(structure, 0x06, 0);
    cooling.deviceType = NameOf(kCoolingTypes, typeAndStatus & 0x1F);
    cooling.status = NameOf(kCoolingStatuses, typeAndStatus >> 5);
    const std::uint16_t speed = WordOr(structure, 0x0C, 0x8000);
    cooling.nominalRpm = speed == 0x8000 ? 0 : speed;
    cooling.description = TextAt(structure, 0x0E);
    return cooling;
}

SmbiosPowerSupply DecodePowerSupply(const SmbiosStructure& structure)
{
    static const TextField<SmbiosPowerSupply> kFields[] = {
        {0x05, &SmbiosPowerSupply::location},     {0x06, &SmbiosPowerSupply::deviceName},
        {0x07, &SmbiosPowerSupply::manufacturer}, {0x08, &SmbiosPowerSupply::serialNumber},
        {0x0A, &SmbiosPowerSupply::modelPartNumber}};
    SmbiosPowerSupply supply;
    ReadTexts(structure, kFields, supply);
    const std::uint16_t capacity = WordOr(structure, 0x0C, 0x8000);
    supply.maxWatts = capacity == 0x8000 ? 0 : capacity;
    std::uint16_t characteristics = 0;
    if (GetSmbiosWord(structure, 0x0E, characteristics)) {
        supply.present = (characteristics & 0x0002) != 0;
        supply.unplugged = (characteristics & 0x0004) != 0;
        supply.status = NameOf(kPowerSupplyStatuses, (characteristics >> 7) & 0x07);
    }
    return supply;
}

SmbiosOnboardDevice DecodeOnboardDevice(const SmbiosStructure& structure)
{
    SmbiosOnboardDevice device;
    device.designation = TextAt(structure, 0x04);
    std::uint8_t typeAndState = 0;
    if (GetSmbiosByte(structure, 0x05, typeAndState)) {
        device.enabled = (typeAndState & 0x80) != 0;
        device.deviceType = NameOf(kOnboardDeviceTypes, typeAndState & 0x7F);
    }
    device.busAddress = BusAddressAt(structure, 0x07);
    return device;
}

std::vector<SmbiosOnboardDevice> DecodeOnboardDevices(const SmbiosStructure& structure)
{
    std::vector<SmbiosOnboardDevice> devices;
    for (std::size_t at = 0x04; at + 1 < structure.formatted.size(); at += 2) {
        const std::uint8_t typeAndState = ByteOr(structure, at, 0);
        SmbiosOnboardDevice device;
        device.enabled = (typeAndState & 0x80) != 0;
        device.deviceType = NameOf(kOnboardDeviceTypes, typeAndState & 0x7F);
        device.designation = TextAt(structure, at + 1);
        devices.push_back(device);
    }
    return devices;
}

}  // namespace Linux
}  // namespace XModule
