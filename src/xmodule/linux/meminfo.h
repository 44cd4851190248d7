#ifndef KESTRO_XMODULE_LINUX_MEMINFO_H
#define KESTRO_XMODULE_LINUX_MEMINFO_H

#include "xmodule/protocol/osinfo.h"

#include <cstdint>
#include <map>
#include <string>

namespace XModule {
namespace Linux {

// Fields of /proc/meminfo by name: sizes given in kB held in bytes, bare counts (HugePages_Total) as they stand.
typedef std::map<std::string, std::uint64_t> MemInfo;

MemInfo ParseMemInfo(const std::string& text);
// The total of "running/total" in /proc/loadavg: every thread of the host.
bool ParseThreadCount(const std::string& loadavg, std::uint64_t& threads);
// The sizes and the utilisation that the fields of `info` give; what they lack stays "N/A".
void FillMemoryUtilization(const MemInfo& info, protocol::MemoryUtilizationInfo& memory);
// From /proc/meminfo, with the counts of open files, threads and processes.
void CollectMemoryUtilization(protocol::MemoryUtilizationInfo& memory);

}  // namespace Linux
}  // namespace XModule

#endif
