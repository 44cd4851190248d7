#ifndef KESTRO_XMODULE_LINUX_HARDWAREIDS_H
#define KESTRO_XMODULE_LINUX_HARDWAREIDS_H

#include <istream>
#include <string>
#include <unordered_map>

namespace XModule {
namespace Linux {

// Vendor, device and class names of a pci.ids or usb.ids file, as the system keeps them
// (Debian's packages pci.ids and usb.ids). Sections other than vendors and classes are skipped.
class HardwareIds {
public:
    // Reads the whole file; malformed lines are skipped, what parsed before and after is kept.
    void Parse(std::istream& in);
    // The system's pci.ids and usb.ids under the root prefix, loaded on first use; empty when
    // missing, which leaves the readers with bare numbers.
    static const HardwareIds& Pci();
    static const HardwareIds& Usb();

    // "" when unknown.
    std::string VendorName(unsigned vendor) const;
    std::string DeviceName(unsigned vendor, unsigned device) const;
    // Class and subclass ("Display controller" / "VGA compatible controller"); the subclass's
    // name when known, else the class's.
    std::string ClassName(unsigned classId, unsigned subclassId) const;
    bool Empty() const { return vendors.empty() && classes.empty(); }

private:
    std::unordered_map<unsigned, std::string> vendors;
    std::unordered_map<unsigned, std::string> devices;  // vendor << 16 | device
    std::unordered_map<unsigned, std::string> classes;  // class << 8 | subclass; a class alone: 0xFFFF0000 | class
};

}  // namespace Linux
}  // namespace XModule

#endif
