#include "xmodule/linux/hardwareids.h"

#include <gtest/gtest.h>

#include <sstream>

using XModule::Linux::HardwareIds;

TEST(HardwareIdsTest, ReadsVendorsDevicesAndClassesAndSkipsTheRest)
{
    // Shaped like the real files: pci.ids' vendors and classes, usb.ids' extra sections, then damage.
    std::istringstream text(
        "#\n#\tList of PCI ID's\n#\n\n"
        "8086  Intel Corporation\n"
        "# a comment inside a vendor keeps the vendor\n"
        "\ta182  C620 Series Chipset Family SATA Controller [AHCI mode]\n"
        "\t\t1028 0716  PowerEdge R740 SATA\n"
        "046d  Logitech, Inc.\r\n"
        "\tc31c  Keyboard K120\r\n"
        "0df6  Sitecom Europe B.V.\n"
        "\t001a  Bluetooth 2.0 adapter \n"
        "C 01  Mass storage controller\n"
        "\t06  SATA controller\n"
        "\t\t01  AHCI 1.0\n"
        "C 03  Display controller\n"
        "AT 0101  USB Streaming\n"
        "HID 21  HID\n"
        "HUT 01  Generic Desktop Controls\n"
        "\t006  Keyboard\n"
        "L 0409  English (US)\n"
        "\t01  English (US)\n"
        "10ec Realtek with one blank\n"
        "\t8168  dropped with its broken vendor\n"
        "zz12  Not hex\n"
        "\t1234\n"
        "14e4  Broadcom Inc. and subsidiaries\n"
        "\t165f  NetXtreme BCM5720 Gigabit Ethernet PCIe");
    HardwareIds ids;
    ids.Parse(text);

    // 'v' a vendor's name, 'd' a device's, 'c' a class's (subclass, else class).
    struct Case {
        char kind;
        unsigned id, sub;
        const char* expected;
    } cases[] = {
        {'v', 0x8086, 0, "Intel Corporation"},
        {'d', 0x8086, 0xa182, "C620 Series Chipset Family SATA Controller [AHCI mode]"},
        {'v', 0x1028, 0, ""},  // a subsystem line names no vendor
        {'v', 0x046d, 0, "Logitech, Inc."},    {'d', 0x046d, 0xc31c, "Keyboard K120"},
        {'d', 0x0df6, 0x001a, "Bluetooth 2.0 adapter"},  {'v', 0x0101, 0, ""},
        {'v', 0x0409, 0, ""},                  {'d', 0x0409, 0x0001, ""},
        {'v', 0x10ec, 0, ""},                  {'d', 0x10ec, 0x8168, ""},
        {'d', 0x14e4, 0x165f, "NetXtreme BCM5720 Gigabit Ethernet PCIe"},
        {'c', 0x01, 0x06, "SATA controller"},  {'c', 0x01, 0x07, "Mass storage controller"},
        {'c', 0x03, 0x00, "Display controller"}, {'c', 0x02, 0x00, ""},
    };
    for (const Case& c : cases) {
        const std::string name = c.kind == 'v'   ? ids.VendorName(c.id)
                                 : c.kind == 'd' ? ids.DeviceName(c.id, c.sub)
                                                 : ids.ClassName(c.id, c.sub);
        EXPECT_EQ(c.expected, name) << c.kind << " " << std::hex << c.id << ":" << c.sub;
    }
}
