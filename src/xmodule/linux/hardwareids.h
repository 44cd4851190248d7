#ifndef KESTRO_XMODULE_LINUX_HARDWAREIDS_H
#define KESTRO_XMODULE_LINUX_HARDWAREIDS_H

#include <istream>
#include <string>
#include <unordered_map>

namespace XModule {
namespace Linux {

// Vendor, device and class names of a pci.ids or usb.ids file, as the system keeps them
// (Debian's packages pci.ids and usb.ids). Sections other than vendors and classes are skipped.
// Only the top-level lines are indexed when the file is read: a host names a few dozen devices
// of the tens of thousands the file lists, so each device line is found when it is asked for.
class HardwareIds {
public:
    // Reads the whole file; malformed lines are skipped, what parsed before and after is kept.
    void Parse(std::istream& in);
    void Parse(const std::string& text);
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
    bool Empty() const { return vendorLines.empty() && classLines.empty(); }

private:
    // The name of the entry `id` among the lines indented once under the top-level line at `at`.
    std::string ChildName(std::size_t at, std::size_t digits, unsigned id) const;

    std::string text;
    std::unordered_map<unsigned, std::size_t> vendorLines;  // where each vendor's line starts
    std::unordered_map<unsigned, std::size_t> classLines;   // where each "C xx" line starts
};

}  // namespace Linux
}  // namespace XModule

#endif
