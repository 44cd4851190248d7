#include "xmodule/linux/hardwareids.h"
#include "xmodule/linux/otherdevices.h"
#include "xmodule/linux/pcidevices.h"
#include "xmodule/linux/usbdevices.h"

#include "support/fixturehost.h"
#include "support/golden.h"
#include "support/logcapture.h"
#include "support/pcifixture.h"
#include "support/sysfsfixture.h"

#include <boost/filesystem.hpp>
#include <gtest/gtest.h>

#include <sstream>

using namespace XModule::Linux;

namespace {

struct FixtureUsbDevice {
    const char* folder;  // under the controller's PCI folder, as nested on a real host
    const char* files;   // "name=value;..."; an interface has its own
};

const FixtureUsbDevice kDevices[] = {
    {"usb1", "idVendor=1d6b;idProduct=0002;bDeviceClass=09;maxchild=2;speed=480;"
             "manufacturer=Linux 6.1.0-18-amd64 xhci-hcd;product=xHCI Host Controller"},
    {"usb1/1-0:1.0", "bInterfaceClass=09"},
    {"usb1/1-1", "idVendor=05e3;idProduct=0610;bDeviceClass=09;maxchild=4;speed=480"},
    {"usb1/1-1/1-1.2", "idVendor=046d;idProduct=c31c;bDeviceClass=00;maxchild=0;speed=1.5;product=USB Keyboard"},
    {"usb1/1-1/1-1.2/1-1.2:1.0", "bInterfaceClass=03"},
    {"usb1/1-10", "idVendor=0557;idProduct=2419;bDeviceClass=00;maxchild=0;speed=12"},
    {"usb1/1-9", "idVendor=0781;idProduct=5583;bDeviceClass=00;maxchild=0;speed=480;"
                 "manufacturer= SanDisk ;product=Ultra Fit"},
    {"usb2", "idVendor=1d6b;idProduct=0003;bDeviceClass=09;maxchild=2;speed=5000;"
             "manufacturer=Linux 6.1.0-18-amd64 xhci-hcd;product=xHCI Host Controller"},
    {"usb2/2-1", "idVendor=0bda;idProduct=8153;bDeviceClass=00;maxchild=0;speed=5000;"
                 "manufacturer=Realtek;product=USB 10/100/1000 LAN"},
    {"usb2/2-2", "bDeviceClass=00;speed=wrong"},
};

void WriteUsbFixture(const TempDir& dir)
{
    const std::string controller = "devices/pci0000:00/0000:00:14.0/";
    for (const FixtureUsbDevice& device : kDevices) {
        WriteSysfsAttributes(dir, "sys/" + controller + device.folder, device.files);
        const std::string name = boost::filesystem::path(device.folder).filename().string();
        WriteSysfsLink(dir, "sys/bus/usb/devices/" + name, "../../../" + controller + device.folder);
    }
    dir.Write("var/lib/usbutils/usb.ids",
              "046d  Logitech, Inc.\n\tc31c  Keyboard K120\n05e3  Genesys Logic, Inc.\n\t0610  Hub\n");
}

}  // namespace

// Every function read and named from the PCI fixture is an other device but the display function.
TEST(PciDevicesTest, ReadsFunctionsInAddressOrderNamesThemAndListsAllButDisplaysAsOtherDevices)
{
    FixtureHost host("");
    WritePciFixture(host.Dir());
    LogCapture log;
    std::vector<XModule::protocol::OtherDevice> devices;
    CollectOtherPciDevices(devices);
    std::ostringstream seen;
    for (const auto& d : devices)
        seen << d.DeviceName << " | " << d.DeviceID << " | " << d.VendorInfo << " | " << d.Description << " | "
             << d.Class << "\n";
    EXPECT_TRUE(MatchesGolden("devices/pci_other.txt", seen.str()));
    EXPECT_EQ(1, log.Count("PCI function 0000:ff:00.0 left out")) << log.Dump();
}

TEST(PciDevicesTest, ParsesSysfsHexOnlyWhenTheWholeTextIsOne)
{
    struct Case { std::string text; bool ok; unsigned value; } cases[] = {
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
    struct Case { char kind; unsigned id, sub; const char* expected; } cases[] = {
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

TEST(UsbDevicesTest, ListsHubsAndDevicesByBusAndPort)
{
    FixtureHost host("");
    WriteUsbFixture(host.Dir());
    LogCapture log;
    std::vector<XModule::protocol::UsbHub> hubs;
    std::vector<XModule::protocol::UsbDevice> devices;
    CollectUsbDevices(hubs, devices);

    std::ostringstream seen;
    for (const auto& hub : hubs) seen << hub.Description << " | " << hub.NumberOfPorts << "\n";
    for (const auto& d : devices)
        seen << d.VendorID << ":" << d.USBDeviceID << " | " << d.Manufacturer << " | " << d.Description << " | "
             << d.Speed << "\n";
    EXPECT_TRUE(MatchesGolden("devices/usb.txt", seen.str()));
    EXPECT_EQ(1, log.Count("USB device 2-2 has no readable idVendor")) << log.Dump();
}

TEST(UsbDevicesTest, RefusesOtherNamesAndShowsEverySpeed)
{
    for (const char* bad : {"1-1.2:1.0", "1-0:1.0", "usb", "usbmon", "1-", "-1", "1-1..2", "1-+1", "x-1", ""}) {
        UsbPortPath path;
        EXPECT_FALSE(ParseUsbDeviceName(bad, path)) << bad;
    }

    // Low, full, high and SuperSpeed are met in the tree above.
    const std::pair<const char*, const char*> speeds[] = {
        {"10000", "10000 Mbit/s (SuperSpeed+)"}, {"20000", "20000 Mbit/s (SuperSpeed+ x2)"},
        {"53.3-480", "53.3-480 Mbit/s (Wireless USB)"}, {"40000", "40000 Mbit/s"},
        {"unknown", "N/A"}, {"", "N/A"}, {"12\xff", "N/A"}};
    for (const auto& speed : speeds) EXPECT_EQ(speed.second, FormatUsbSpeed(speed.first)) << speed.first;
}
