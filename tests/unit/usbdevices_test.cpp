#include "xmodule/linux/usbdevices.h"

#include "support/fixturehost.h"
#include "support/logcapture.h"
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
    EXPECT_EQ("xHCI Host Controller (Linux 6.1.0-18-amd64 xhci-hcd) | 2\n"
              "Hub (Genesys Logic, Inc.) | 4\n"
              "xHCI Host Controller (Linux 6.1.0-18-amd64 xhci-hcd) | 2\n"
              "046d:c31c | Logitech, Inc. | USB Keyboard | 1.5 Mbit/s (Low Speed)\n"
              "0781:5583 | SanDisk | Ultra Fit | 480 Mbit/s (High Speed)\n"
              "0557:2419 | N/A | N/A | 12 Mbit/s (Full Speed)\n"
              "0bda:8153 | Realtek | USB 10/100/1000 LAN | 5000 Mbit/s (SuperSpeed)\n",
              seen.str());
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
