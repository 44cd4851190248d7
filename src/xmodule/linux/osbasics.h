#ifndef KESTRO_XMODULE_LINUX_OSBASICS_H
#define KESTRO_XMODULE_LINUX_OSBASICS_H

#include "xmodule/linux/osrelease.h"
#include "xmodule/protocol/osinfo.h"

#include <cstdint>
#include <ctime>
#include <string>

namespace XModule {
namespace Linux {

// "SP5" from a SUSE VERSION such as "15-SP5"; "" for a release without a service pack.
std::string ParseServicePack(const std::string& version);
// Who makes the distribution, by its os-release ID ("ubuntu" gives "Canonical"); NAME for an ID
// the table lacks.
std::string FindVendor(const OsRelease& release);
// Whole seconds since boot, the first number of /proc/uptime.
bool ParseUptime(const std::string& text, std::uint64_t& seconds);
// When the host booted: the "btime" line of /proc/stat.
bool ParseBootTime(const std::string& stat, std::time_t& boot);
// "3 days, 04:12:09"; days are always shown, so two uptimes read alike.
std::string FormatUptime(std::uint64_t seconds);
// The distribution, the kernel, the host's names, and when it was installed and booted.
void CollectOperatingSystem(protocol::OperatingSystemInfo& os);

}  // namespace Linux
}  // namespace XModule

#endif
