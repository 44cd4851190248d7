#ifndef KESTRO_TESTS_SMBIOSBUILDER_H
#define KESTRO_TESTS_SMBIOSBUILDER_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

class TempDir;

// One structure built field by field, at offsets counted from its first byte as the standard gives
// them. A field past `length` is dropped, so one recipe builds the short structure of an old version.
class SmbiosBuilder {
public:
    SmbiosBuilder(std::uint8_t type, std::uint16_t handle, std::size_t length);
    SmbiosBuilder& Byte(std::size_t offset, std::uint8_t value);
    SmbiosBuilder& Word(std::size_t offset, std::uint16_t value);
    SmbiosBuilder& Dword(std::size_t offset, std::uint32_t value);
    SmbiosBuilder& Raw(std::size_t offset, const std::string& bytes);
    // Adds `text` to the string set and writes its number at `offset`.
    SmbiosBuilder& String(std::size_t offset, const std::string& text);
    std::string Bytes() const;

private:
    std::uint8_t type;
    std::uint16_t handle;
    std::string formatted;  // after the header
    std::vector<std::string> strings;
};

// One SMBIOS structure as firmware lays it out: type, length, handle, the rest of the formatted
// area (`body`), the strings each closed by a NUL, and the NUL that closes the set.
std::string SmbiosStructureBytes(std::uint8_t type, std::uint16_t handle, const std::string& body,
                                 const std::vector<std::string>& strings);
// A system information structure (type 1, 27 bytes); an empty text is left out (string number 0).
std::string SystemInformationBytes(const std::string& productName, const std::string& skuNumber);
std::string EndOfTableBytes(std::uint16_t handle);
// Entry points with their checksums right: "_SM_" of 31 bytes, "_SM3_" of 24.
std::string SmbiosEntryPoint2Bytes(int major, int minor);
std::string SmbiosEntryPoint3Bytes(int major, int minor, int docrev);
// Writes `bytes` as the kernel's DMI table file under the fixture root `root`.
void WriteDmiTable(const TempDir& root, const std::string& bytes);
void WriteSmbiosEntryPoint(const TempDir& root, const std::string& bytes);

#endif
