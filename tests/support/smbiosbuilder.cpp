#include "support/smbiosbuilder.h"

#include "support/tempdir.h"

std::string SmbiosStructureBytes(std::uint8_t type, std::uint16_t handle, const std::string& body,
                                 const std::vector<std::string>& strings)
{
    std::string bytes;
    bytes += static_cast<char>(type);
    bytes += static_cast<char>(4 + body.size());
    bytes += static_cast<char>(handle & 0xff);
    bytes += static_cast<char>(handle >> 8);
    bytes += body;
    for (size_t i = 0; i < strings.size(); ++i) bytes += strings[i] + '\0';
    if (strings.empty()) bytes += '\0';
    bytes += '\0';
    return bytes;
}

std::string SystemInformationBytes(const std::string& productName, const std::string& skuNumber)
{
    SmbiosBuilder system(1, 0x0001, 0x1B);
    system.String(0x04, "Maker Inc.").Raw(0x08, std::string(16, '\x5a')).Byte(0x18, 6);  // UUID, woken by the power switch
    if (!productName.empty()) system.String(0x05, productName);
    if (!skuNumber.empty()) system.String(0x19, skuNumber);
    return system.Bytes();
}

std::string EndOfTableBytes(std::uint16_t handle)
{
    return SmbiosStructureBytes(127, handle, std::string(), std::vector<std::string>());
}

void WriteDmiTable(const TempDir& root, const std::string& bytes)
{
    root.Write("sys/firmware/dmi/tables/DMI", bytes);
}

SmbiosBuilder::SmbiosBuilder(std::uint8_t type, std::uint16_t handle, std::size_t length)
    : type(type), handle(handle), formatted(length - 4, '\0')
{
}

SmbiosBuilder& SmbiosBuilder::Raw(std::size_t offset, const std::string& bytes)
{
    for (size_t i = 0; i < bytes.size(); ++i)
        if (offset + i >= 4 && offset + i - 4 < formatted.size()) formatted[offset + i - 4] = bytes[i];
    return *this;
}

SmbiosBuilder& SmbiosBuilder::Byte(std::size_t offset, std::uint8_t value) { return Raw(offset, std::string(1, char(value))); }

SmbiosBuilder& SmbiosBuilder::Word(std::size_t offset, std::uint16_t value)
{
    return Byte(offset, value & 0xff).Byte(offset + 1, value >> 8);
}

SmbiosBuilder& SmbiosBuilder::Dword(std::size_t offset, std::uint32_t value)
{
    return Word(offset, value & 0xffff).Word(offset + 2, value >> 16);
}

SmbiosBuilder& SmbiosBuilder::String(std::size_t offset, const std::string& text)
{
    strings.push_back(text);
    return Byte(offset, static_cast<std::uint8_t>(strings.size()));
}

std::string SmbiosBuilder::Bytes() const { return SmbiosStructureBytes(type, handle, formatted, strings); }

namespace {

// The byte at `at` is set so that all bytes sum to zero.
std::string WithChecksum(std::string bytes, size_t at)
{
    unsigned sum = 0;
    for (char c : bytes) sum += static_cast<unsigned char>(c);
    bytes[at] = static_cast<char>(-(sum - static_cast<unsigned char>(bytes[at])) & 0xff);
    return bytes;
}

}  // namespace

std::string SmbiosEntryPoint2Bytes(int major, int minor)
{
    std::string bytes = std::string("_SM_") + std::string(27, '\0');
    bytes[0x05] = 0x1f;
    bytes[0x06] = static_cast<char>(major);
    bytes[0x07] = static_cast<char>(minor);
    bytes.replace(0x10, 5, "_DMI_");
    return WithChecksum(bytes, 0x04);
}

std::string SmbiosEntryPoint3Bytes(int major, int minor, int docrev)
{
    std::string bytes = std::string("_SM3_") + std::string(19, '\0');
    bytes[0x06] = 0x18;
    bytes[0x07] = static_cast<char>(major);
    bytes[0x08] = static_cast<char>(minor);
    bytes[0x09] = static_cast<char>(docrev);
    bytes[0x0a] = 0x01;
    return WithChecksum(bytes, 0x05);
}

void WriteSmbiosEntryPoint(const TempDir& root, const std::string& bytes)
{
    root.Write("sys/firmware/dmi/tables/smbios_entry_point", bytes);
}
