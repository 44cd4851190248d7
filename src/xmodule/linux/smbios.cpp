#include "xmodule/linux/smbios.h"

#include "kestro/xmodule/log.h"
#include "kestro/xmodule/unreadable.h"
#include "xmodule/linux/hostfiles.h"

#include <cstring>

namespace XModule {
namespace Linux {

namespace {

const char kDmiTable[] = "/sys/firmware/dmi/tables/DMI";
const char kEntryPoint[] = "/sys/firmware/dmi/tables/smbios_entry_point";

// Where each form of entry point keeps its length and version bytes.
struct EntryPointForm {
    const char* anchor;
    std::size_t lengthOffset;
    std::size_t shortestLength;  // some 2.x firmware writes 0x1E for 0x1F
    std::size_t majorOffset;
    std::size_t minorOffset;
    std::size_t docrevOffset;  // 0: the form has none
};

const EntryPointForm kEntryPointForms[] = {
    {"_SM3_", 0x06, 0x18, 0x07, 0x08, 0x09},
    {"_SM_", 0x05, 0x1E, 0x06, 0x07, 0},
};

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

bool HasChecksumZero(const std::string& bytes, std::size_t length)
{
    unsigned sum = 0;
    for (std::size_t at = 0; at < length; ++at) sum += ByteAt(bytes, at);
    return (sum & 0xFF) == 0;
}

bool ParseEntryPointForm(const std::string& bytes, const EntryPointForm& form, SmbiosVersion& version)
{
    if (bytes.size() <= form.lengthOffset) {
        XLOG(LOG_WARN) << "[repo] SMBIOS entry point " << form.anchor << " is cut short at " << bytes.size() << " bytes";
        return false;
    }
    const std::size_t length = ByteAt(bytes, form.lengthOffset);
    if (length < form.shortestLength || length > bytes.size()) {
        XLOG(LOG_WARN) << "[repo] SMBIOS entry point " << form.anchor << " claims " << length << " bytes of "
                       << bytes.size();
        return false;
    }
    if (!HasChecksumZero(bytes, length)) {
        XLOG(LOG_WARN) << "[repo] SMBIOS entry point " << form.anchor << " has a wrong checksum";
        return false;
    }
    version.major = ByteAt(bytes, form.majorOffset);
    version.minor = ByteAt(bytes, form.minorOffset);
    version.docrev = form.docrevOffset ? ByteAt(bytes, form.docrevOffset) : 0;
    return true;
}

template <typename Number>
bool GetLittleEndian(const SmbiosStructure& structure, std::size_t offset, Number& value)
{
    if (offset > structure.formatted.size() || structure.formatted.size() - offset < sizeof(Number)) return false;
    Number read = 0;
    for (std::size_t i = sizeof(Number); i-- > 0;) read = static_cast<Number>((read << 8) | ByteAt(structure.formatted, offset + i));
    value = read;
    return true;
}

}  // namespace

bool SmbiosVersion::AtLeast(int wantedMajor, int wantedMinor) const
{
    return major > wantedMajor || (major == wantedMajor && minor >= wantedMinor);
}

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

bool GetSmbiosByte(const SmbiosStructure& structure, std::size_t offset, std::uint8_t& value)
{
    return GetLittleEndian(structure, offset, value);
}

bool GetSmbiosWord(const SmbiosStructure& structure, std::size_t offset, std::uint16_t& value)
{
    return GetLittleEndian(structure, offset, value);
}

bool GetSmbiosDword(const SmbiosStructure& structure, std::size_t offset, std::uint32_t& value)
{
    return GetLittleEndian(structure, offset, value);
}

bool GetSmbiosQword(const SmbiosStructure& structure, std::size_t offset, std::uint64_t& value)
{
    return GetLittleEndian(structure, offset, value);
}

const SmbiosStructure* FindSmbiosStructure(const std::vector<SmbiosStructure>& table, std::uint8_t type)
{
    for (std::size_t i = 0; i < table.size(); ++i)
        if (table[i].type == type) return &table[i];
    return nullptr;
}

bool ParseSmbiosEntryPoint(const std::string& bytes, SmbiosVersion& version)
{
    for (const EntryPointForm& form : kEntryPointForms)
        if (bytes.compare(0, std::strlen(form.anchor), form.anchor) == 0) return ParseEntryPointForm(bytes, form, version);
    XLOG(LOG_WARN) << "[repo] SMBIOS entry point of " << bytes.size() << " bytes has no known anchor";
    return false;
}

bool ReadSmbiosTable(std::string& bytes)
{
    std::string why;
    if (HostFiles::Read(kDmiTable, bytes, &why)) return true;
    // Present but refused is the normal user's case; absent is the virtual machine's.
    const char* hint = HostFiles::Exists(kDmiTable) ? "; run as root for serial numbers, DIMMs, slots, fans and power supplies"
                                                    : "; the firmware gives the kernel no SMBIOS table";
    NoteUnreadable(kDmiTable, why + hint);
    return false;
}

bool ReadSmbiosEntryPoint(std::string& bytes) { return HostFiles::Read(kEntryPoint, bytes); }

}  // namespace Linux
}  // namespace XModule
