#ifndef KESTRO_XMODULE_LINUX_PCIDEVICES_H
#define KESTRO_XMODULE_LINUX_PCIDEVICES_H

#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// One PCI function as sysfs describes it.
struct PciFunction {
    std::string address;  // "0000:00:02.0"
    unsigned vendor = 0;
    unsigned device = 0;
    unsigned subsystemVendor = 0;
    unsigned subsystemDevice = 0;
    unsigned classCode = 0;  // class << 16 | subclass << 8 | programming interface
    unsigned revision = 0;
    std::string driver;  // the bound driver, "" when none

    unsigned ClassId() const { return classCode >> 16; }
    unsigned SubclassId() const { return (classCode >> 8) & 0xFF; }
    // From the system's pci.ids; the bare numbers when it does not know them.
    std::string VendorName() const;
    std::string DeviceName() const;
    std::string ClassName() const;
};

// PCI class codes the readers pick functions by.
const unsigned PCI_CLASS_STORAGE = 0x01;
const unsigned PCI_CLASS_NETWORK = 0x02;
const unsigned PCI_CLASS_DISPLAY = 0x03;

// A number written by sysfs in hex ("0x8086\n"); false when the text holds none.
bool ParseSysfsHex(const std::string& text, unsigned& value);

// Every function under the host's PCI bus, in address order. A function whose identity
// files cannot be read is left out; no PCI bus (some containers) gives an empty list.
std::vector<PciFunction> ReadPciFunctions();
// The sysfs folder of a function, for readers that look further ("/sys/bus/pci/devices/0000:00:02.0").
std::string PciFunctionFolder(const PciFunction& function);

}  // namespace Linux
}  // namespace XModule

#endif
