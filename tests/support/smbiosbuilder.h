#ifndef KESTRO_TESTS_SMBIOSBUILDER_H
#define KESTRO_TESTS_SMBIOSBUILDER_H

#include <cstdint>
#include <string>
#include <vector>

class TempDir;

// One SMBIOS structure as firmware lays it out: type, length, handle, the rest of the formatted
// area (`body`), the strings each closed by a NUL, and the NUL that closes the set.
std::string SmbiosStructureBytes(std::uint8_t type, std::uint16_t handle, const std::string& body,
                                 const std::vector<std::string>& strings);
// A system information structure (type 1, 27 bytes); an empty text is left out (string number 0).
std::string SystemInformationBytes(const std::string& productName, const std::string& skuNumber);
std::string EndOfTableBytes(std::uint16_t handle);
// Writes `bytes` as the kernel's DMI table file under the fixture root `root`.
void WriteDmiTable(const TempDir& root, const std::string& bytes);

#endif
