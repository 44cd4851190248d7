#ifndef KESTRO_XMODULE_LINUX_UDEVDATABASE_H
#define KESTRO_XMODULE_LINUX_UDEVDATABASE_H

#include <map>
#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// What udev recorded of one device in its database (/run/udev/data/<id>): the properties of
// its "E:" lines and the links of its "S:" lines. Reading it needs neither udevd nor libudev.
struct UdevRecord {
    std::map<std::string, std::string> properties;
    std::vector<std::string> links;  // relative to /dev, as udev writes them

    // "" when the property is absent.
    std::string Get(const std::string& key) const;
};

// Lines of other kinds, lines without "=" and a last line without its line break are taken
// as far as they go; nothing in them can fail.
UdevRecord ParseUdevRecord(const std::string& text);

// The text of an "_ENC" property ("SAMSUNG\x20MZ7LH480HAHQ" gives "SAMSUNG MZ7LH480HAHQ"): udev
// escapes blanks and unsafe bytes as \xHH there, where the plain property turns blanks into "_".
// A backslash not followed by two hex digits stays as it is.
std::string DecodeUdevText(const std::string& encoded);

// The record of a device by its database id: "b8:0" for a block device by its numbers,
// "+dmi:id" for the firmware tables, "+pci:0000:00:02.0" for a PCI function. An empty record
// when udev keeps none (no udev on the host, or a container without /run/udev).
UdevRecord ReadUdevRecord(const std::string& id);

}  // namespace Linux
}  // namespace XModule

#endif
