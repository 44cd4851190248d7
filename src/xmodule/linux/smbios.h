#ifndef KESTRO_XMODULE_LINUX_SMBIOS_H
#define KESTRO_XMODULE_LINUX_SMBIOS_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// SMBIOS structure types that readers ask for by name.
enum SmbiosType {
    SMBIOS_BIOS_INFORMATION = 0,
    SMBIOS_SYSTEM_INFORMATION = 1,
    SMBIOS_BASEBOARD_INFORMATION = 2,
    SMBIOS_SYSTEM_ENCLOSURE = 3,
    SMBIOS_PROCESSOR_INFORMATION = 4,
    SMBIOS_CACHE_INFORMATION = 7,
    SMBIOS_SYSTEM_SLOTS = 9,
    SMBIOS_ONBOARD_DEVICES = 10,
    SMBIOS_PHYSICAL_MEMORY_ARRAY = 16,
    SMBIOS_MEMORY_DEVICE = 17,
    SMBIOS_COOLING_DEVICE = 27,
    SMBIOS_SYSTEM_POWER_SUPPLY = 39,
    SMBIOS_ONBOARD_DEVICES_EXTENDED = 41,
    SMBIOS_MANAGEMENT_HOST_INTERFACE = 42,
    SMBIOS_END_OF_TABLE = 127
};

// The version the firmware claims for its table; some fields mean different things before a version.
struct SmbiosVersion {
    int major = 0;
    int minor = 0;
    int docrev = 0;
    bool AtLeast(int wantedMajor, int wantedMinor) const;
};

// One structure of the table: the formatted area (header included) and its string set.
struct SmbiosStructure {
    std::uint8_t type = 0;
    std::uint8_t length = 0;
    std::uint16_t handle = 0;
    std::string formatted;              // `length` bytes from the structure's first byte
    std::vector<std::string> strings;   // strings[0] is string number 1
};

// Every structure of a raw table, in table order, up to the end-of-table structure.
// A structure that would run past the end of `bytes`, or whose header is too short to
// step over, ends the walk: what parsed before it is kept.
std::vector<SmbiosStructure> ParseSmbiosTable(const std::string& bytes);

// String number `number` of the structure; "" for 0 (no string) and for a number beyond the set.
std::string GetSmbiosString(const SmbiosStructure& structure, std::size_t number);
// The string whose number stands in the formatted-area byte at `offset`; "" when the area is
// shorter (an older SMBIOS version) or the byte names no string.
std::string GetSmbiosStringAt(const SmbiosStructure& structure, std::size_t offset);

// A little-endian field of the formatted area; false when the structure is too short to hold it
// (an older SMBIOS version), and `value` is left alone.
bool GetSmbiosByte(const SmbiosStructure& structure, std::size_t offset, std::uint8_t& value);
bool GetSmbiosWord(const SmbiosStructure& structure, std::size_t offset, std::uint16_t& value);
bool GetSmbiosDword(const SmbiosStructure& structure, std::size_t offset, std::uint32_t& value);
bool GetSmbiosQword(const SmbiosStructure& structure, std::size_t offset, std::uint64_t& value);

// The first structure of `type`, or null.
const SmbiosStructure* FindSmbiosStructure(const std::vector<SmbiosStructure>& table, std::uint8_t type);

// The version of a 2.x ("_SM_") or 3.x ("_SM3_") entry point. False, with a log line, when the
// anchor, the length or the checksum is wrong.
bool ParseSmbiosEntryPoint(const std::string& bytes, SmbiosVersion& version);

// The raw structure table as the kernel exports it, under the root prefix. False when it is
// missing or unreadable (it is readable by root only); the source is then noted as unreadable.
bool ReadSmbiosTable(std::string& bytes);
// The entry point beside the table; false, without a note, when it cannot be read.
bool ReadSmbiosEntryPoint(std::string& bytes);

}  // namespace Linux
}  // namespace XModule

#endif
