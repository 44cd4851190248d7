#include "xmodule/linux/pcidevices.h"

#include "support/fixturehost.h"
#include "support/logcapture.h"
#include "support/pcifixture.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace XModule::Linux;

TEST(PciDevicesTest, ReadsFunctionsInAddressOrderAndNamesThem)
{
    FixtureHost host("");
    WritePciFixture(host.Dir());
    LogCapture log;

    std::ostringstream seen;
    for (const PciFunction& f : ReadPciFunctions())
        seen << f.address << " " << f.VendorName() << " | " << f.DeviceName() << " | " << f.ClassName() << " | "
             << std::hex << f.subsystemVendor << ":" << f.subsystemDevice << " rev " << f.revision << " "
             << (f.driver.empty() ? "-" : f.driver) << "\n";
    EXPECT_EQ(
        "0000:00:00.0 Intel Corporation | 2021 | Host bridge | 1028:716 rev 4 -\n"
        "0000:00:17.0 Intel Corporation | C620 Series Chipset Family SATA Controller [AHCI mode] | SATA controller"
        " | 1028:716 rev 9 ahci\n"
        "0000:03:00.0 Matrox Electronics Systems Ltd. | Integrated Matrox G200eW3 Graphics Controller"
        " | VGA compatible controller | 1028:716 rev 4 mgag200\n"
        "0000:19:00.0 Broadcom Inc. and subsidiaries | NetXtreme BCM5720 Gigabit Ethernet PCIe | Ethernet controller"
        " | 1028:4f7 rev 0 tg3\n",
        seen.str());
    EXPECT_EQ(1, log.Count("PCI function 0000:ff:00.0 left out")) << log.Dump();
}

TEST(PciDevicesTest, ParsesSysfsHexOnlyWhenTheWholeTextIsOne)
{
    struct Case {
        std::string text;
        bool ok;
        unsigned value;
    } cases[] = {
        {"0x8086\n", true, 0x8086}, {"010601", true, 0x010601}, {"0xffffffff", true, 0xffffffff},
        {"0x100000000", false, 0}, {"", false, 0}, {"0x", false, 0}, {"-1", false, 0}, {" 0x10", false, 0},
        {"0x10 junk", false, 0}, {std::string("0x12\0z", 6), false, 0},
    };
    for (const Case& c : cases) {
        unsigned value = 0;
        EXPECT_EQ(c.ok, ParseSysfsHex(c.text, value)) << c.text;
        EXPECT_EQ(c.value, value) << c.text;
    }
}
