#include "xmodule/linux/redfishhostinterface.h"

#include <boost/asio/ip/address_v4.hpp>
#include <boost/asio/ip/address_v6.hpp>

#include <cstdint>

namespace XModule {
namespace Linux {

namespace {

const std::uint8_t kNetworkHostInterface = 0x40;
const std::uint8_t kRedfishOverIp = 0x04;
const std::uint8_t kFormatIPv4 = 1;
const std::uint8_t kFormatIPv6 = 2;

// Offsets inside a Redfish-over-IP protocol record's own data.
const std::size_t kServiceAddressFormat = 51;
const std::size_t kServiceAddress = 52;
const std::size_t kServicePort = 84;
const std::size_t kServiceHostNameLength = 90;
const std::size_t kServiceHostName = 91;

std::uint8_t ByteAt(const std::string& data, std::size_t offset) { return static_cast<std::uint8_t>(data[offset]); }

std::string AddressText(const std::string& data, bool isIPv6)
{
    if (isIPv6) {
        boost::asio::ip::address_v6::bytes_type bytes;
        for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = ByteAt(data, kServiceAddress + i);
        return boost::asio::ip::address_v6(bytes).to_string();
    }
    boost::asio::ip::address_v4::bytes_type bytes;
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = ByteAt(data, kServiceAddress + i);
    return boost::asio::ip::address_v4(bytes).to_string();
}

bool DecodeRedfishOverIp(const std::string& data, RedfishHostInterface& found)
{
    if (data.size() < kServiceHostName) return false;
    const std::uint8_t format = ByteAt(data, kServiceAddressFormat);
    if (format == kFormatIPv4 || format == kFormatIPv6) {
        found.isIPv6 = format == kFormatIPv6;
        found.address = AddressText(data, found.isIPv6);
    }
    found.port = ByteAt(data, kServicePort) | (ByteAt(data, kServicePort + 1) << 8);
    const std::size_t nameLength = ByteAt(data, kServiceHostNameLength);
    if (kServiceHostName + nameLength <= data.size()) found.hostName = data.substr(kServiceHostName, nameLength);
    return !found.address.empty() || !found.hostName.empty();
}

// The protocol records follow the interface's own data: a count, then type, length, data each.
void AppendProtocolRecords(const SmbiosStructure& structure, std::vector<RedfishHostInterface>& found)
{
    const std::string& bytes = structure.formatted;
    std::uint8_t interfaceType = 0;
    std::uint8_t interfaceDataLength = 0;
    if (!GetSmbiosByte(structure, 4, interfaceType) || interfaceType != kNetworkHostInterface) return;
    if (!GetSmbiosByte(structure, 5, interfaceDataLength)) return;
    std::size_t offset = 6 + interfaceDataLength;
    if (offset >= bytes.size()) return;
    const std::size_t count = ByteAt(bytes, offset++);
    for (std::size_t record = 0; record < count && offset + 2 <= bytes.size(); ++record) {
        const std::uint8_t protocol = ByteAt(bytes, offset);
        const std::size_t length = ByteAt(bytes, offset + 1);
        if (offset + 2 + length > bytes.size()) return;
        RedfishHostInterface candidate;
        if (protocol == kRedfishOverIp && DecodeRedfishOverIp(bytes.substr(offset + 2, length), candidate))
            found.push_back(candidate);
        offset += 2 + length;
    }
}

}  // namespace

std::vector<RedfishHostInterface> FindRedfishHostInterfaces(const std::vector<SmbiosStructure>& table)
{
    std::vector<RedfishHostInterface> found;
    for (const SmbiosStructure& structure : table)
        if (structure.type == SMBIOS_MANAGEMENT_HOST_INTERFACE) AppendProtocolRecords(structure, found);
    return found;
}

}  // namespace Linux
}  // namespace XModule
