#include "xmodule/linux/smbios.h"

#include "kestro/xmodule/log.h"
#include "kestro/xmodule/rootprefix.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>

namespace XModule {
namespace Linux {

namespace {

const char kDmiTable[] = "/sys/firmware/dmi/tables/DMI";

// Type, length and a 16-bit handle.
const std::size_t kHeaderSize = 4;

std::uint8_t ByteAt(const std::string& bytes, std::size_t at)
{
    return static_cast<std::uint8_t>(bytes[at]);
}

// Where the double NUL that closes the string set starting at `from` begins, or npos.
std::size_t FindStringSetEnd(const std::string& bytes, std::size_t from)
{
    for (std::size_t at = from; at + 1 < bytes.size(); ++at)
        if (bytes[at] == '\0' && bytes[at + 1] == '\0') return at;
    return std::string::npos;
}

std::vector<std::string> SplitStrings(const std::string& bytes, std::size_t from, std::size_t end)
{
    std::vector<std::string> strings;
    while (from < end) {
        const std::size_t nul = bytes.find('\0', from);
        strings.push_back(bytes.substr(from, nul - from));
        from = nul + 1;
    }
    return strings;
}

// Reads the structure at `at`; on success `next` is where the following one starts.
bool ParseStructure(const std::string& bytes, std::size_t at, SmbiosStructure& structure, std::size_t& next)
{
    if (bytes.size() - at < kHeaderSize) return false;
    const std::uint8_t length = ByteAt(bytes, at + 1);
    if (length < kHeaderSize || length > bytes.size() - at) return false;
    const std::size_t setEnd = FindStringSetEnd(bytes, at + length);
    if (setEnd == std::string::npos) return false;

    structure.type = ByteAt(bytes, at);
    structure.length = length;
    structure.handle = static_cast<std::uint16_t>(ByteAt(bytes, at + 2) | (ByteAt(bytes, at + 3) << 8));
    structure.formatted = bytes.substr(at, length);
    structure.strings = SplitStrings(bytes, at + length, setEnd);
    next = setEnd + 2;
    return true;
}

}  // namespace

std::vector<SmbiosStructure> ParseSmbiosTable(const std::string& bytes)
{
    std::vector<SmbiosStructure> table;
    std::size_t at = 0;
    while (at < bytes.size()) {
        SmbiosStructure structure;
        std::size_t next = 0;
        if (!ParseStructure(bytes, at, structure, next)) {
            XLOG(LOG_WARN) << "[repo] SMBIOS table is cut short or damaged at byte " << at << " of "
                           << bytes.size() << "; " << table.size() << " structures read";
            break;
        }
        table.push_back(structure);
        at = next;
        if (structure.type == SMBIOS_END_OF_TABLE) break;
    }
    return table;
}

std::string GetSmbiosString(const SmbiosStructure& structure, std::size_t number)
{
    if (number == 0 || number > structure.strings.size()) return std::string();
    return structure.strings[number - 1];
}

std::string GetSmbiosStringAt(const SmbiosStructure& structure, std::size_t offset)
{
    if (offset >= structure.formatted.size()) return std::string();
    return GetSmbiosString(structure, ByteAt(structure.formatted, offset));
}

const SmbiosStructure* FindSmbiosStructure(const std::vector<SmbiosStructure>& table, std::uint8_t type)
{
    for (std::size_t i = 0; i < table.size(); ++i)
        if (table[i].type == type) return &table[i];
    return nullptr;
}

bool ReadSmbiosTable(std::string& bytes)
{
    const std::string path = RootedPath(kDmiTable);
    std::ifstream in(path.c_str(), std::ios::binary);
    if (!in) {
        XLOG(LOG_WARN) << "[repo] Unable to read the SMBIOS table " << path << ": " << std::strerror(errno);
        return false;
    }
    bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    return true;
}

}  // namespace Linux
}  // namespace XModule
