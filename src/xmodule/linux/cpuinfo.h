#ifndef KESTRO_XMODULE_LINUX_CPUINFO_H
#define KESTRO_XMODULE_LINUX_CPUINFO_H

#include <cstdint>
#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// One logical CPU as /proc/cpuinfo describes it; -1 and 0 stand for a line it lacks.
struct CpuInfoEntry {
    int processor = -1;
    std::string vendorId;  // "GenuineIntel"
    int family = -1;
    int model = -1;
    std::string modelName;
    std::string stepping;
    int physicalId = -1;
    unsigned cpuCores = 0;
    unsigned siblings = 0;
    double megahertz = 0;
};

// A cache level of a package as the operating system sees it.
struct CpuCacheLevel {
    bool present = false;
    std::string writePolicy;  // "Write Back"; "" when sysfs does not say
};

// One processor package: its logical CPUs, their counts and what sysfs adds.
struct CpuPackage {
    int id = 0;
    std::vector<int> cpus;  // logical CPU numbers, the first one read for the package's files
    CpuInfoEntry info;      // of the package's first CPU
    unsigned cores = 0;     // cores the operating system runs
    std::uint64_t megahertz = 0;
    CpuCacheLevel caches[3];  // levels 1 to 3
    std::string ppin;         // "0x1a2b..."; "" when unreadable or absent
};

// Blocks of "key : value" lines, one per logical CPU, each opened by its "processor" line.
// Lines without a colon and numbers that do not parse are passed over.
std::vector<CpuInfoEntry> ParseCpuInfo(const std::string& text);
// True when every CPU is an Intel family 6 model 0x6A or 0x6C (3rd generation Xeon Scalable).
bool IsWhitleyCpu(const std::vector<CpuInfoEntry>& cpus);

// /proc/cpuinfo under the root prefix; empty, noted as unreadable, when it cannot be read.
std::vector<CpuInfoEntry> ReadCpuInfo();
// The host's packages in package order, from /proc/cpuinfo and /sys/devices/system/cpu.
std::vector<CpuPackage> ReadCpuPackages();

}  // namespace Linux
}  // namespace XModule

#endif
