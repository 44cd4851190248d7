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
    std::vector<std::string> strings(1, "Maker Inc.");
    char productIndex = 0;
    char skuIndex = 0;
    if (!productName.empty()) {
        strings.push_back(productName);
        productIndex = static_cast<char>(strings.size());
    }
    if (!skuNumber.empty()) {
        strings.push_back(skuNumber);
        skuIndex = static_cast<char>(strings.size());
    }
    std::string body;
    body += '\1';                       // manufacturer
    body += productIndex;               // product name
    body += std::string(2, '\0');       // version, serial number
    body += std::string(16, '\x5a');    // UUID
    body += '\6';                       // wake-up type: power switch
    body += skuIndex;                   // SKU number
    body += '\0';                       // family
    return SmbiosStructureBytes(1, 0x0001, body, strings);
}

std::string EndOfTableBytes(std::uint16_t handle)
{
    return SmbiosStructureBytes(127, handle, std::string(), std::vector<std::string>());
}

void WriteDmiTable(const TempDir& root, const std::string& bytes)
{
    root.Write("sys/firmware/dmi/tables/DMI", bytes);
}
