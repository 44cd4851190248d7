#include "xmodule/linux/otherdevices.h"

#include "support/fixturehost.h"
#include "support/pcifixture.h"

#include <gtest/gtest.h>

#include <sstream>

TEST(OtherDevicesTest, ListsEveryPciFunctionButDisplays)
{
    FixtureHost host("");
    WritePciFixture(host.Dir());
    std::vector<XModule::protocol::OtherDevice> devices;
    XModule::Linux::CollectOtherPciDevices(devices);

    std::ostringstream seen;
    for (const auto& d : devices)
        seen << d.DeviceName << " | " << d.DeviceID << " | " << d.VendorInfo << " | " << d.Description << " | "
             << d.Class << "\n";
    EXPECT_EQ("2021 | 0000:00:00.0 [8086:2021] | Intel Corporation | Driver: none; Subsystem: Dell [1028:0716];"
              " Revision: 04 | Host bridge\n"
              "C620 Series Chipset Family SATA Controller [AHCI mode] | 0000:00:17.0 [8086:a182] | Intel Corporation"
              " | Driver: ahci; Subsystem: Dell [1028:0716]; Revision: 09 | SATA controller\n"
              "NetXtreme BCM5720 Gigabit Ethernet PCIe | 0000:19:00.0 [14e4:165f] | Broadcom Inc. and subsidiaries"
              " | Driver: tg3; Subsystem: Dell [1028:04f7]; Revision: 00 | Ethernet controller\n",
              seen.str());
}
