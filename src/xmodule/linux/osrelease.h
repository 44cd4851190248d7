#ifndef KESTRO_XMODULE_LINUX_OSRELEASE_H
#define KESTRO_XMODULE_LINUX_OSRELEASE_H

#include <istream>
#include <map>
#include <string>

namespace XModule {
namespace Linux {

typedef std::map<std::string, std::string> OsRelease;

// KEY=value lines of an os-release file, quotes and escapes undone.
OsRelease ParseOsRelease(std::istream& in);
// /etc/os-release, else /usr/lib/os-release, under the root prefix; empty when neither reads.
OsRelease ReadOsRelease();
// "rhel", "sles" or "ubuntu" from ID and ID_LIKE; empty for a family the tool has no case for.
std::string OsFamily(const OsRelease& release);

}  // namespace Linux
}  // namespace XModule

#endif
