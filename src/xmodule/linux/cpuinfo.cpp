#include "xmodule/linux/cpuinfo.h"

#include "kestro/xmodule/unreadable.h"
#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/valueformat.h"

#include <boost/algorithm/string/predicate.hpp>

#include <cmath>
#include <cstdlib>
#include <map>
#include <set>
#include <sstream>

namespace XModule {
namespace Linux {

namespace {

const char kCpuInfo[] = "/proc/cpuinfo";
const char kCpuFolder[] = "/sys/devices/system/cpu/cpu";

const char* const kClockFiles[] = {"/cpufreq/scaling_cur_freq", "/cpufreq/cpuinfo_max_freq"};
// Newer kernels name the hardware threads of a core core_cpus_list.
const char* const kCoreSiblingFiles[] = {"/topology/core_cpus_list", "/topology/thread_siblings_list"};

struct WritePolicyName {
    const char* sysfs;
    const char* name;
};
const WritePolicyName kWritePolicies[] = {{"WriteBack", "Write Back"}, {"WriteThrough", "Write Through"}};

const int kWhitleyModels[] = {0x6A, 0x6C};

int ToInt(const std::string& text, int fallback)
{
    std::uint64_t value = 0;
    return ParseDecimal(text, value) && value <= 0x7FFFFFFF ? static_cast<int>(value) : fallback;
}

double ToDouble(const std::string& text)
{
    const char* start = text.c_str();
    char* end = nullptr;
    const double value = std::strtod(start, &end);
    return end != start && std::isfinite(value) && value > 0 ? value : 0;
}

void SetField(CpuInfoEntry& entry, const std::string& key, const std::string& value)
{
    if (key == "vendor_id") entry.vendorId = value;
    else if (key == "cpu family") entry.family = ToInt(value, -1);
    else if (key == "model") entry.model = ToInt(value, -1);
    else if (key == "model name") entry.modelName = value;
    else if (key == "stepping") entry.stepping = value;
    else if (key == "physical id") entry.physicalId = ToInt(value, -1);
    else if (key == "cpu cores") entry.cpuCores = static_cast<unsigned>(ToInt(value, 0));
    else if (key == "siblings") entry.siblings = static_cast<unsigned>(ToInt(value, 0));
    else if (key == "cpu MHz") entry.megahertz = ToDouble(value);
}

std::string CpuFile(int cpu, const char* suffix) { return kCpuFolder + std::to_string(cpu) + suffix; }

int ReadPackageId(const CpuInfoEntry& entry)
{
    const int fromSysfs = ToInt(HostFiles::ReadTrimmed(CpuFile(entry.processor, "/topology/physical_package_id")), -1);
    if (fromSysfs >= 0) return fromSysfs;
    return entry.physicalId >= 0 ? entry.physicalId : 0;
}

// Distinct sibling lists are distinct cores; cpuinfo's count when sysfs has none.
unsigned CountCores(const CpuPackage& package)
{
    for (const char* file : kCoreSiblingFiles) {
        std::set<std::string> cores;
        for (int cpu : package.cpus) {
            const std::string siblings = HostFiles::ReadTrimmed(CpuFile(cpu, file));
            if (!siblings.empty()) cores.insert(siblings);
        }
        if (!cores.empty()) return static_cast<unsigned>(cores.size());
    }
    return package.info.cpuCores ? package.info.cpuCores : static_cast<unsigned>(package.cpus.size());
}

std::uint64_t ReadMegahertz(const CpuPackage& package)
{
    for (const char* file : kClockFiles) {
        std::uint64_t kilohertz = 0;
        if (ParseDecimal(HostFiles::ReadTrimmed(CpuFile(package.cpus.front(), file)), kilohertz) && kilohertz)
            return (kilohertz + 500) / 1000;
    }
    return static_cast<std::uint64_t>(std::llround(package.info.megahertz));
}

std::string NameWritePolicy(const std::string& sysfs)
{
    for (const WritePolicyName& policy : kWritePolicies)
        if (sysfs == policy.sysfs) return policy.name;
    return std::string();
}

void ReadCaches(CpuPackage& package)
{
    const std::string folder = CpuFile(package.cpus.front(), "/cache/");
    for (const std::string& index : HostFiles::List(folder)) {
        if (!boost::algorithm::starts_with(index, "index")) continue;
        const int level = ToInt(HostFiles::ReadTrimmed(folder + index + "/level"), 0);
        if (level < 1 || level > 3) continue;
        CpuCacheLevel& cache = package.caches[level - 1];
        cache.present = true;
        const std::string policy = NameWritePolicy(HostFiles::ReadTrimmed(folder + index + "/write_policy"));
        if (!policy.empty()) cache.writePolicy = policy;
    }
}

// The PPIN file is root-only; a normal user sees it exist and fail.
void ReadPpin(CpuPackage& package)
{
    const std::string path = CpuFile(package.cpus.front(), "/topology/ppin");
    std::string content;
    std::string why;
    if (HostFiles::Read(path, content, &why)) package.ppin = TrimText(content);
    else if (HostFiles::Exists(path))
        NoteUnreadable(std::string(kCpuFolder) + "*/topology/ppin", why + "; run as root for processor serial numbers (PPIN)");
}

}  // namespace

std::vector<CpuInfoEntry> ParseCpuInfo(const std::string& text)
{
    std::vector<CpuInfoEntry> entries;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line)) {
        const std::size_t colon = line.find(':');
        if (colon == std::string::npos) continue;
        const std::string key = TrimText(line.substr(0, colon));
        const std::string value = TrimText(line.substr(colon + 1));
        if (key == "processor") {
            entries.push_back(CpuInfoEntry());
            entries.back().processor = ToInt(value, -1);
        } else if (!entries.empty()) {
            SetField(entries.back(), key, value);
        }
    }
    return entries;
}

bool IsWhitleyCpu(const std::vector<CpuInfoEntry>& cpus)
{
    if (cpus.empty()) return false;
    for (const CpuInfoEntry& cpu : cpus) {
        bool whitley = false;
        for (int model : kWhitleyModels) whitley = whitley || cpu.model == model;
        if (cpu.vendorId != "GenuineIntel" || cpu.family != 6 || !whitley) return false;
    }
    return true;
}

std::vector<CpuInfoEntry> ReadCpuInfo()
{
    std::string text;
    std::string why;
    if (!HostFiles::Read(kCpuInfo, text, &why)) {
        NoteUnreadable(kCpuInfo, why);
        return std::vector<CpuInfoEntry>();
    }
    return ParseCpuInfo(text);
}

std::vector<CpuPackage> ReadCpuPackages()
{
    std::map<int, CpuPackage> packages;
    for (const CpuInfoEntry& entry : ReadCpuInfo()) {
        if (entry.processor < 0) continue;
        const int id = ReadPackageId(entry);
        CpuPackage& package = packages[id];
        if (package.cpus.empty()) {
            package.id = id;
            package.info = entry;
        }
        package.cpus.push_back(entry.processor);
    }
    std::vector<CpuPackage> ordered;
    for (auto& idAndPackage : packages) {
        CpuPackage& package = idAndPackage.second;
        package.cores = CountCores(package);
        package.megahertz = ReadMegahertz(package);
        ReadCaches(package);
        ReadPpin(package);
        ordered.push_back(package);
    }
    return ordered;
}

}  // namespace Linux
}  // namespace XModule
