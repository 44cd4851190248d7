#ifndef KESTRO_XMODULE_LINUX_PROCESSES_H
#define KESTRO_XMODULE_LINUX_PROCESSES_H

#include "xmodule/protocol/osinfo.h"

#include <optional>
#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// The fields of /proc/<pid>/stat a process record needs, in the kernel's units.
struct ProcStat {
    std::string pid;
    std::string comm;  // as the kernel keeps it, spaces and parentheses included
    char state = 0;
    std::optional<long long> priority;   // 20 + nice for normal tasks, -2..-100 for real-time ones
    std::optional<long long> utime;      // clock ticks
    std::optional<long long> stime;      // clock ticks
    std::optional<long long> starttime;  // clock ticks since boot
    std::optional<long long> rss;        // pages
};

// One stat line. The name is cut at the last ')' since it may hold spaces and ')' itself;
// a line cut short keeps the fields before the cut. False without a pid and a name.
bool ParseProcStat(const std::string& text, ProcStat& stat);

// Every process of the host by pid, in numeric order. Name is the kernel's comm; Priority is
// the kernel's priority field as top shows it (nice is 20 less for a normal task); times in
// milliseconds; MemoryUsage the resident set in KB; User the effective user. A process that
// ends while it is read is left out; one whose details are hidden keeps what could be read.
void CollectProcesses(std::vector<protocol::ProcessInfo>& processes);

}  // namespace Linux
}  // namespace XModule

#endif
