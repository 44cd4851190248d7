#include "xmodule/linux/usbdevices.h"

#include "kestro/xmodule/log.h"
#include "kestro/xmodule/unreadable.h"
#include "xmodule/linux/hardwareids.h"
#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/pcidevices.h"
#include "xmodule/linux/valueformat.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <tuple>

namespace XModule {
namespace Linux {

namespace {

const char kUsbDevices[] = "/sys/bus/usb/devices";
const char kRootHubPrefix[] = "usb";
const char kHubClass[] = "09";

struct SpeedName {
    const char* megabits;
    const char* shown;
};

// The values the kernel writes to "speed", one per signalling rate.
const SpeedName kSpeeds[] = {
    {"1.5", "1.5 Mbit/s (Low Speed)"},
    {"12", "12 Mbit/s (Full Speed)"},
    {"480", "480 Mbit/s (High Speed)"},
    {"53.3-480", "53.3-480 Mbit/s (Wireless USB)"},
    {"5000", "5000 Mbit/s (SuperSpeed)"},
    {"10000", "10000 Mbit/s (SuperSpeed+)"},
    {"20000", "20000 Mbit/s (SuperSpeed+ x2)"},
};

// The sysfs attributes of one device, trimmed; "" when a file is missing.
struct UsbAttributes {
    std::string name;
    UsbPortPath path;
    std::string vendor;
    std::string product;
    std::string deviceClass;
    std::string manufacturerText;
    std::string productText;
    std::string speed;
    std::string maxchild;
};

bool ParseDecimal(const std::string& text, unsigned& value)
{
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    return !text.empty() && result.ec == std::errc() && result.ptr == end;
}

bool ParsePorts(const std::string& text, std::vector<unsigned>& ports)
{
    std::size_t start = 0;
    for (;;) {
        const std::size_t dot = text.find('.', start);
        unsigned port = 0;
        if (!ParseDecimal(text.substr(start, dot - start), port)) return false;
        ports.push_back(port);
        if (dot == std::string::npos) return true;
        start = dot + 1;
    }
}

std::string IdOrUnknown(const std::string& text)
{
    unsigned id = 0;
    return ParseSysfsHex(text, id) && id <= 0xFFFF ? FormatHexId(id) : std::string(protocol::UNKNOWN_VALUE);
}

// The device's own string, else the name usb.ids gives; "" when neither knows.
std::string ManufacturerName(const UsbAttributes& device)
{
    const std::string own = TrimText(device.manufacturerText);
    unsigned vendor = 0;
    if (!own.empty() || !ParseSysfsHex(device.vendor, vendor)) return own;
    return HardwareIds::Usb().VendorName(vendor);
}

std::string ProductName(const UsbAttributes& device)
{
    const std::string own = TrimText(device.productText);
    unsigned vendor = 0, product = 0;
    if (!own.empty() || !ParseSysfsHex(device.vendor, vendor) || !ParseSysfsHex(device.product, product)) return own;
    return HardwareIds::Usb().DeviceName(vendor, product);
}

protocol::UsbHub MakeUsbHub(const UsbAttributes& device)
{
    protocol::UsbHub hub;
    std::string name = ProductName(device);
    if (name.empty()) name = "USB hub " + IdOrUnknown(device.vendor) + ":" + IdOrUnknown(device.product);
    const std::string maker = ManufacturerName(device);
    hub.Description = maker.empty() ? name : name + " (" + maker + ")";
    unsigned ports = 0;
    if (ParseDecimal(device.maxchild, ports))
        hub.NumberOfPorts = std::to_string(ports);
    else
        XLOG(XModule::LOG_WARN) << "[repo] USB hub " << device.name << " gives no port count: \"" << device.maxchild
                                << "\"";
    return hub;
}

protocol::UsbDevice MakeUsbDevice(const UsbAttributes& device)
{
    protocol::UsbDevice record;
    record.VendorID = IdOrUnknown(device.vendor);
    record.USBDeviceID = IdOrUnknown(device.product);
    record.Manufacturer = TextOrUnknown(ManufacturerName(device));
    record.Description = TextOrUnknown(ProductName(device));
    record.Speed = FormatUsbSpeed(device.speed);
    return record;
}

UsbAttributes ReadUsbAttributes(const std::string& name, const UsbPortPath& path)
{
    const std::string folder = std::string(kUsbDevices) + "/" + name + "/";
    UsbAttributes device;
    device.name = name;
    device.path = path;
    device.vendor = HostFiles::ReadTrimmed(folder + "idVendor");
    device.product = HostFiles::ReadTrimmed(folder + "idProduct");
    device.deviceClass = HostFiles::ReadTrimmed(folder + "bDeviceClass");
    device.manufacturerText = HostFiles::ReadTrimmed(folder + "manufacturer");
    device.productText = HostFiles::ReadTrimmed(folder + "product");
    device.speed = HostFiles::ReadTrimmed(folder + "speed");
    device.maxchild = HostFiles::ReadTrimmed(folder + "maxchild");
    return device;
}

std::vector<UsbAttributes> ReadUsbDevices()
{
    const std::vector<std::string> names = HostFiles::List(kUsbDevices);
    if (names.empty() && !HostFiles::Exists(kUsbDevices)) NoteUnreadable(kUsbDevices, "no USB bus is visible");
    std::vector<UsbAttributes> found;
    for (const std::string& name : names) {
        UsbPortPath path;
        if (ParseUsbDeviceName(name, path))
            found.push_back(ReadUsbAttributes(name, path));
        else if (name.find(':') == std::string::npos)
            XLOG(XModule::LOG_WARN) << "[repo] Not a USB device name, skipped: " << kUsbDevices << "/" << name;
    }
    std::sort(found.begin(), found.end(),
              [](const UsbAttributes& a, const UsbAttributes& b) { return a.path < b.path; });
    return found;
}

}  // namespace

bool UsbPortPath::operator<(const UsbPortPath& other) const
{
    return std::tie(bus, ports) < std::tie(other.bus, other.ports);
}

bool ParseUsbDeviceName(const std::string& name, UsbPortPath& path)
{
    path = UsbPortPath();
    const std::size_t prefix = std::strlen(kRootHubPrefix);
    if (name.compare(0, prefix, kRootHubPrefix) == 0) return ParseDecimal(name.substr(prefix), path.bus);
    const std::size_t dash = name.find('-');
    return dash != std::string::npos && ParseDecimal(name.substr(0, dash), path.bus) &&
           ParsePorts(name.substr(dash + 1), path.ports);
}

bool IsUsbHubClass(const std::string& deviceClass) { return deviceClass == kHubClass; }

std::string FormatUsbSpeed(const std::string& speed)
{
    for (const SpeedName& known : kSpeeds)
        if (speed == known.megabits) return known.shown;
    const bool number = !speed.empty() && speed.find_first_not_of("0123456789.") == std::string::npos;
    return number ? speed + " Mbit/s" : std::string(protocol::UNKNOWN_VALUE);
}

void CollectUsbDevices(std::vector<protocol::UsbHub>& hubs, std::vector<protocol::UsbDevice>& devices)
{
    for (const UsbAttributes& device : ReadUsbDevices()) {
        if (device.vendor.empty()) {
            XLOG(XModule::LOG_WARN) << "[repo] USB device " << device.name << " has no readable idVendor, skipped";
            continue;
        }
        if (IsUsbHubClass(device.deviceClass))
            hubs.push_back(MakeUsbHub(device));
        else
            devices.push_back(MakeUsbDevice(device));
    }
}

}  // namespace Linux
}  // namespace XModule
