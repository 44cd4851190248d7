#include "xmodule/linux/redfishhostinterface.h"

#include "support/smbiosbuilder.h"

#include <gtest/gtest.h>

using XModule::Linux::FindRedfishHostInterfaces;
using XModule::Linux::ParseSmbiosTable;
using XModule::Linux::RedfishHostInterface;

namespace {

// A Redfish-over-IP protocol record: the service's address, port and host name at their offsets.
std::string RedfishOverIp(int format, const std::string& address, int port, const std::string& name)
{
    std::string data(91, '\0');
    data[51] = static_cast<char>(format);
    data.replace(52, address.size(), address);
    data[84] = static_cast<char>(port & 0xff);
    data[85] = static_cast<char>(port >> 8);
    data[90] = static_cast<char>(name.size());
    data += name;
    return std::string(1, '\x04') + std::string(1, static_cast<char>(data.size())) + data;
}

// A type 42 structure: interface type, three bytes of device data, then the protocol records.
std::string HostInterface(int interfaceType, const std::vector<std::string>& records, std::uint16_t handle)
{
    std::string body = std::string(1, static_cast<char>(interfaceType)) + std::string("\x03\x01\x02\x03", 4);
    body += static_cast<char>(records.size());
    for (const std::string& record : records) body += record;
    return SmbiosStructureBytes(42, handle, body, {});
}

}  // namespace

TEST(RedfishHostInterfaceTest, ReadsEveryRedfishRecordAndSkipsOthersAndShortOnes)
{
    const std::string ipmiRecord("\x02\x01\x00", 3);
    const std::string v6(std::string("\xfe\x80", 2) + std::string(13, '\0') + "\x01");
    const std::string table =
        HostInterface(0x40, {ipmiRecord, RedfishOverIp(1, std::string("\xa9\xfe\x5f\x76", 4), 443, "bmc-a")}, 1) +
        HostInterface(0x02, {RedfishOverIp(1, std::string("\x0a\0\0\x01", 4), 443, "")}, 2) +
        HostInterface(0x40, {RedfishOverIp(2, v6, 8443, "")}, 3) +
        HostInterface(0x40, {RedfishOverIp(1, std::string("\x0a\0\0\x02", 4), 443, "").substr(0, 40)}, 4) +
        EndOfTableBytes(5);

    const std::vector<RedfishHostInterface> found = FindRedfishHostInterfaces(ParseSmbiosTable(table));
    ASSERT_EQ(2u, found.size());
    EXPECT_EQ("169.254.95.118", found[0].address);
    EXPECT_FALSE(found[0].isIPv6);
    EXPECT_EQ(443, found[0].port);
    EXPECT_EQ("bmc-a", found[0].hostName);
    EXPECT_EQ("fe80::1", found[1].address);
    EXPECT_TRUE(found[1].isIPv6);
    EXPECT_EQ(8443, found[1].port);
}
