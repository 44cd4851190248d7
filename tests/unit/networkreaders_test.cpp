#include "xmodule/agentless/networkredfish.h"
#include "xmodule/linux/networkfunctions.h"
#include "xmodule/linux/pcivpd.h"

#include <gtest/gtest.h>

#include <boost/json/parse.hpp>

#include <functional>
#include <string>

using XModule::Agentless::NetworkPort;
using XModule::Agentless::NetworkRedfish;

TEST(NetworkReadersTest, SysfsAttributesAsShown)
{
    namespace L = XModule::Linux;
    struct Case {
        std::function<std::string()> read;
        const char* expected;
    };
    const Case cases[] = {
        {[] { return L::AdapterAddressOf("0000:19:00.1"); }, "0000:19:00"},
        {[] { return L::AdapterAddressOf("0000:19:00.8"); }, ""},
        {[] { return L::AdapterAddressOf("virtio2"); }, ""},
        {[] { return L::PciFunctionAbove("/sys/devices/pci0000:00/0000:00:03.0/virtio2"); }, "0000:00:03.0"},
        {[] { return L::PciFunctionAbove("/sys/devices/pci0000:00/0000:00:1c.0/0000:3b:00.1"); }, "0000:3b:00.1"},
        {[] { return L::PciFunctionAbove("/sys/devices/virtual/net/lo"); }, ""},
        {[] { return L::LinkTechnologyOf("1"); }, "Ethernet"},
        {[] { return L::LinkTechnologyOf("32"); }, "InfiniBand"},
        {[] { return L::LinkTechnologyOf("65534"); }, "ARPHRD 65534"},
        {[] { return L::LinkTechnologyOf(""); }, "N/A"},
        {[] { return L::LinkStatusOf("up", "0"); }, "Up"},
        {[] { return L::LinkStatusOf("lowerlayerdown", "1"); }, "Down"},
        {[] { return L::LinkStatusOf("unknown", "1"); }, "Up"},
        {[] { return L::LinkStatusOf("unknown", ""); }, "N/A"},
        {[] { return L::SpeedOf("25000"); }, "25000 Mbps"},
        {[] { return L::SpeedOf("-1"); }, "N/A"},
        {[] { return L::SpeedOf("4294967295"); }, "N/A"},
        {[] { return L::SpeedOf("10G"); }, "N/A"},
        {[] { return L::SpeedOf(""); }, "N/A"},
        {[] { return L::EnabledStateOf("0x1003"); }, "Enabled"},
        {[] { return L::EnabledStateOf("0x1002"); }, "Disabled"},
        {[] { return L::EnabledStateOf("up"); }, "N/A"},
    };
    for (std::size_t i = 0; i < sizeof cases / sizeof cases[0]; ++i) EXPECT_EQ(cases[i].read(), cases[i].expected) << i;
}

TEST(NetworkReadersTest, RedfishPortsAndFunctions)
{
    struct Case {
        const char* port;
        const char* function;  // "" for a port without one
        const char* expected;  // speed, max speed, technology, number, permanent, current, configured
    };
    const Case cases[] = {
        {R"({"CurrentSpeedGbps": 25, "MaxSpeedGbps": 100, "LinkNetworkTechnology": "Ethernet", "PortId": "1"})",
         R"({"Ethernet": {"PermanentMACAddress": "AA:00:00:00:00:01", "MACAddress": "AA:00:00:00:00:01"}})",
         "25000 Mbps|100000 Mbps|Ethernet|1|AA:00:00:00:00:01|AA:00:00:00:00:01|N/A"},
        {R"({"CurrentLinkSpeedMbps": 2500.5, "ActiveLinkTechnology": "Ethernet", "PhysicalPortNumber": 2})",
         R"({"Ethernet": {"PermanentMACAddress": "AA:00:00:00:00:02", "MACAddress": "02:00:00:00:00:02"}})",
         "2500.5 Mbps|N/A|Ethernet|2|AA:00:00:00:00:02|02:00:00:00:00:02|02:00:00:00:00:02"},
        {R"({"CurrentSpeedGbps": "fast", "MaxSpeedGbps": null, "PortId": {"x": 1}})", "",
         "N/A|N/A|N/A|N/A|N/A|N/A|N/A"},
        {R"({"Ethernet": {"AssociatedMACAddresses": ["AA:00:00:00:00:03"]}})", R"({"Ethernet": {"MACAddress": null}})",
         "N/A|N/A|N/A|N/A|N/A|AA:00:00:00:00:03|N/A"},
        {"[1, 2]", R"({"FibreChannel": {"PermanentWWPN": "10:00:00:00:00:00:00:01"}})",
         "N/A|N/A|N/A|N/A|10:00:00:00:00:00:00:01|N/A|N/A"},
    };
    for (const Case& c : cases) {
        NetworkPort port = NetworkRedfish::ParsePort(boost::json::parse(c.port));
        if (*c.function) NetworkRedfish::ApplyFunctionAddresses(boost::json::parse(c.function), port);
        EXPECT_EQ(port.Speed + "|" + port.MaxSpeed + "|" + port.LinkTechnology + "|" + port.PortNumber + "|" +
                      port.PermanentAddress + "|" + port.OtherIdentifyingInfo + "|" + port.ConfiguredLAMA,
                  c.expected)
            << c.port;
    }
}

TEST(NetworkReadersTest, VitalProductData)
{
    struct Case {
        std::string bytes;
        bool decoded;
        const char* expected;  // name|part number|serial number
    };
    const std::string identifier("\x82\x04\x00NIC\0", 7);
    const std::string readOnly("\x90\x0f\x00PN\x04" "P-01SN\x05" "S0001", 18);
    const Case cases[] = {
        {identifier + readOnly + "\x78", true, "NIC|P-01|S0001"},
        {readOnly + identifier, true, "NIC|P-01|S0001"},
        {identifier + readOnly.substr(0, 12), true, "NIC||"},
        {identifier + std::string("\x90\x06\x00PN\x09" "P-0", 9), true, "NIC||"},
        {std::string("\xff\xff\xff\xff", 4), false, "||"},
        {"", false, "||"},
    };
    for (const Case& c : cases) {
        XModule::Linux::PciVpd vpd;
        EXPECT_EQ(XModule::Linux::ParsePciVpd(c.bytes, vpd), c.decoded);
        EXPECT_EQ(vpd.name + "|" + vpd.partNumber + "|" + vpd.serialNumber, c.expected);
    }
}
