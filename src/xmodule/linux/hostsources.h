#ifndef KESTRO_XMODULE_LINUX_HOSTSOURCES_H
#define KESTRO_XMODULE_LINUX_HOSTSOURCES_H

#include <string>

namespace XModule {
namespace Linux {

// A file every Linux host has (/proc/meminfo): false, and a note of what the report lacks, when it
// cannot be read.
bool ReadExpectedSource(const std::string& absolute, std::string& content);
// A file only some hosts have (a boot loader's menu, utmp): false and silent when it is missing,
// with a note when it is there but cannot be read (most often for want of root).
bool ReadOptionalSource(const std::string& absolute, std::string& content);
// True when the root prefix is the running host's own "/", so that what the program asks of its
// own system (the clock's zone, the account database, a file system's birth) speaks of that host.
bool IsLiveHost();

}  // namespace Linux
}  // namespace XModule

#endif
