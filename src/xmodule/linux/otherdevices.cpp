#include "xmodule/linux/otherdevices.h"

#include "xmodule/linux/hardwareids.h"
#include "xmodule/linux/pcidevices.h"
#include "xmodule/linux/valueformat.h"

#include <cstdio>

namespace XModule {
namespace Linux {

namespace {

std::string FormatIdPair(unsigned vendor, unsigned device) { return FormatHexId(vendor) + ":" + FormatHexId(device); }

std::string DescribeSubsystem(const PciFunction& function)
{
    const std::string ids = FormatIdPair(function.subsystemVendor, function.subsystemDevice);
    const std::string maker = HardwareIds::Pci().VendorName(function.subsystemVendor);
    return maker.empty() ? ids : maker + " [" + ids + "]";
}

std::string DescribeFunction(const PciFunction& function)
{
    char revision[8];
    std::snprintf(revision, sizeof revision, "%02x", function.revision & 0xFFu);
    std::string text = "Driver: " + (function.driver.empty() ? std::string("none") : function.driver);
    if (function.subsystemVendor != 0 || function.subsystemDevice != 0)
        text += "; Subsystem: " + DescribeSubsystem(function);
    return text + "; Revision: " + revision;
}

protocol::OtherDevice MakeOtherDevice(const PciFunction& function)
{
    protocol::OtherDevice device;
    device.DeviceName = function.DeviceName();
    device.DeviceID = function.address + " [" + FormatIdPair(function.vendor, function.device) + "]";
    device.VendorInfo = function.VendorName();
    device.Description = DescribeFunction(function);
    device.Class = function.ClassName();
    return device;
}

}  // namespace

void CollectOtherPciDevices(std::vector<protocol::OtherDevice>& devices)
{
    for (const PciFunction& function : ReadPciFunctions())
        if (function.ClassId() != PCI_CLASS_DISPLAY) devices.push_back(MakeOtherDevice(function));
}

}  // namespace Linux
}  // namespace XModule
