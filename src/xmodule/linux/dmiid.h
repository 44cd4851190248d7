#ifndef KESTRO_XMODULE_LINUX_DMIID_H
#define KESTRO_XMODULE_LINUX_DMIID_H

#include <map>
#include <string>

namespace XModule {
namespace Linux {

// The kernel's copy of the firmware's identity strings, readable where the raw table is not:
// attribute name ("sys_vendor", "board_serial", "chassis_type") to its trimmed text. Placeholders
// and attributes that are missing or unreadable (the serial numbers and the UUID are root-only)
// are left out; the latter are noted as unreadable once.
std::map<std::string, std::string> ReadDmiId();

}  // namespace Linux
}  // namespace XModule

#endif
