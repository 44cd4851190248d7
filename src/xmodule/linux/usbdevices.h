#ifndef KESTRO_XMODULE_LINUX_USBDEVICES_H
#define KESTRO_XMODULE_LINUX_USBDEVICES_H

#include "xmodule/protocol/hardwareinfo.h"

#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// Where a USB device sits: its bus and the ports from the root hub down. "1-1.2" is bus 1,
// ports 1 then 2; "usb1", the root hub, is bus 1 with no port.
struct UsbPortPath {
    unsigned bus = 0;
    std::vector<unsigned> ports;

    // By bus, then port by port as numbers, a hub before what hangs on it: 1-9 before 1-10.
    bool operator<(const UsbPortPath& other) const;
};

// The device's name under /sys/bus/usb/devices; false for an interface ("1-1.2:1.0") or any
// other name.
bool ParseUsbDeviceName(const std::string& name, UsbPortPath& path);
// bDeviceClass as sysfs writes it ("09" is a hub).
bool IsUsbHubClass(const std::string& deviceClass);
// The "speed" attribute, in Mbit/s, as shown: "480" gives "480 Mbit/s (High Speed)"; a number
// the table lacks keeps its bare unit; "unknown" and unreadable text give "N/A".
std::string FormatUsbSpeed(const std::string& speed);

// Every USB device of the host by its place on the bus. Hubs, root hubs included, go to `hubs`
// described as "<product> (<manufacturer>)" from the device's own strings, usb.ids' names
// standing in for missing ones; the rest go to `devices`. Interfaces are not devices.
void CollectUsbDevices(std::vector<protocol::UsbHub>& hubs, std::vector<protocol::UsbDevice>& devices);

}  // namespace Linux
}  // namespace XModule

#endif
