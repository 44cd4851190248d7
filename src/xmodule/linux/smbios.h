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
    SMBIOS_PROCESSOR_INFORMATION = 4,
    SMBIOS_END_OF_TABLE = 127
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

// The first structure of `type`, or null.
const SmbiosStructure* FindSmbiosStructure(const std::vector<SmbiosStructure>& table, std::uint8_t type);

// The raw structure table as the kernel exports it, under the root prefix. False, with a
// log line, when it is missing or unreadable (it is readable by root only).
bool ReadSmbiosTable(std::string& bytes);

}  // namespace Linux
}  // namespace XModule

#endif
