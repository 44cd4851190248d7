#include "xmodule/linux/meminfo.h"

#include "kestro/xmodule/log.h"
#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/hostsources.h"
#include "xmodule/linux/valueformat.h"

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <sstream>
#include <vector>

namespace XModule {
namespace Linux {

namespace {

const char kMemInfo[] = "/proc/meminfo";
const char kLoadAvg[] = "/proc/loadavg";
const char kFileNr[] = "/proc/sys/fs/file-nr";
const char kProcesses[] = "/proc";

// What programs could be given without swapping; older kernels (before 3.14) lack it.
const char kAvailable[] = "MemAvailable";

typedef std::string protocol::MemoryUtilizationInfo::*MemoryField;

struct SizeField {
    MemoryField field;
    std::vector<const char*> sum;
};

// Each size is the sum of these fields. Free memory is what can be had without swapping, since a
// host with a full page cache is not short of memory; the kernel's slab parts that it can reclaim
// stand for "paged", the rest for "nonpaged".
const SizeField kSizeFields[] = {
    {&protocol::MemoryUtilizationInfo::TotalVisibleMemorySize, {"MemTotal"}},
    {&protocol::MemoryUtilizationInfo::FreePhysicalMemory, {kAvailable}},
    {&protocol::MemoryUtilizationInfo::PhysicalMemorySystemCache, {"Cached", "Buffers"}},
    {&protocol::MemoryUtilizationInfo::TotalVirtualMemorySize, {"MemTotal", "SwapTotal"}},
    {&protocol::MemoryUtilizationInfo::FreeVirtualMemory, {kAvailable, "SwapFree"}},
    {&protocol::MemoryUtilizationInfo::SizeStoredInPagingFiles, {"SwapTotal"}},
    {&protocol::MemoryUtilizationInfo::FreeSpaceInPagingFiles, {"SwapFree"}},
    {&protocol::MemoryUtilizationInfo::CommitChargeTotal, {"Committed_AS"}},
    {&protocol::MemoryUtilizationInfo::CommitChargeLimit, {"CommitLimit"}},
    {&protocol::MemoryUtilizationInfo::KernelMemoryTotal, {"Slab", "KernelStack", "PageTables"}},
    {&protocol::MemoryUtilizationInfo::KernelMemoryPaged, {"SReclaimable"}},
    {&protocol::MemoryUtilizationInfo::KernelMemoryNonpaged, {"SUnreclaim"}},
};

// A decimal number after optional blanks; `rest` is the text that follows it.
bool ReadLeadingNumber(const std::string& text, std::uint64_t& value, std::string& rest)
{
    std::size_t begin = text.find_first_not_of(" \t");
    if (begin == std::string::npos || !std::isdigit(static_cast<unsigned char>(text[begin]))) return false;
    errno = 0;
    char* end = nullptr;
    const unsigned long long parsed = std::strtoull(text.c_str() + begin, &end, 10);
    if (errno == ERANGE) return false;
    value = parsed;
    rest = TrimText(end);
    return true;
}

// One "Name:   12345 kB" line into `info`; false for a line of another shape.
bool ParseMemInfoLine(const std::string& line, MemInfo& info)
{
    const std::size_t colon = line.find(':');
    if (colon == 0 || colon == std::string::npos) return false;
    std::uint64_t value = 0;
    std::string unit;
    if (!ReadLeadingNumber(line.substr(colon + 1), value, unit)) return false;
    if (unit == "kB") {
        if (value > std::numeric_limits<std::uint64_t>::max() / 1024) return false;
        value *= 1024;
    } else if (!unit.empty()) {
        return false;
    }
    info[TrimText(line.substr(0, colon))] = value;
    return true;
}

bool SumFields(const MemInfo& info, const std::vector<const char*>& names, std::uint64_t& sum)
{
    sum = 0;
    for (const char* name : names) {
        const MemInfo::const_iterator found = info.find(name);
        if (found == info.end()) return false;
        sum += found->second;
    }
    return true;
}

std::string FormatPercentUsed(const MemInfo& info)
{
    std::uint64_t total = 0;
    std::uint64_t available = 0;
    if (!SumFields(info, {"MemTotal"}, total) || !SumFields(info, {kAvailable}, available) || total == 0)
        return protocol::UNKNOWN_VALUE;
    const std::uint64_t used = available < total ? total - available : 0;
    char text[16];
    std::snprintf(text, sizeof text, "%.1f", 100.0 * static_cast<double>(used) / static_cast<double>(total));
    return text;
}

std::string FormatCount(bool known, std::uint64_t count)
{
    return known ? std::to_string(count) : std::string(protocol::UNKNOWN_VALUE);
}

// The first field of /proc/sys/fs/file-nr: file handles the kernel has handed out.
std::string ReadHandleCount()
{
    std::uint64_t handles = 0;
    std::string rest;
    const bool known = ReadLeadingNumber(HostFiles::ReadTrimmed(kFileNr), handles, rest);
    return FormatCount(known, handles);
}

std::string ReadThreadCount()
{
    std::uint64_t threads = 0;
    const bool known = ParseThreadCount(HostFiles::ReadTrimmed(kLoadAvg), threads);
    return FormatCount(known, threads);
}

// Every process has a folder named by its number; a host runs at least one, so none means unknown.
std::string CountProcesses()
{
    std::uint64_t count = 0;
    for (const std::string& name : HostFiles::List(kProcesses))
        if (name.find_first_not_of("0123456789") == std::string::npos) ++count;
    return FormatCount(count > 0, count);
}

}  // namespace

MemInfo ParseMemInfo(const std::string& text)
{
    MemInfo info;
    std::size_t begin = 0;
    while (begin < text.size()) {
        const std::size_t end = text.find('\n', begin);
        // The kernel ends every line; one without its end was cut off and may have lost digits.
        if (end == std::string::npos) {
            XLOG(XModule::LOG_WARN) << "[repo] meminfo ends in a cut line, left out: " << text.substr(begin, 80);
            break;
        }
        const std::string line = text.substr(begin, end - begin);
        if (!TrimText(line).empty() && !ParseMemInfoLine(line, info))
            XLOG(XModule::LOG_WARN) << "[repo] meminfo line not understood: " << line.substr(0, 80);
        begin = end + 1;
    }
    return info;
}

bool ParseThreadCount(const std::string& loadavg, std::uint64_t& threads)
{
    std::istringstream fields(loadavg);
    std::string field;
    for (int i = 0; i < 4; ++i)
        if (!(fields >> field)) return false;
    const std::size_t slash = field.find('/');
    std::string rest;
    return slash != std::string::npos && ReadLeadingNumber(field.substr(slash + 1), threads, rest) && rest.empty();
}

void FillMemoryUtilization(const MemInfo& info, protocol::MemoryUtilizationInfo& memory)
{
    MemInfo fields = info;
    // Before MemAvailable, free memory was told as MemFree plus the buffers and page cache it could reclaim.
    if (!fields.count(kAvailable) && fields.count("MemFree"))
        for (const char* reclaimable : {"MemFree", "Buffers", "Cached"})
            if (fields.count(reclaimable)) fields[kAvailable] += fields[reclaimable];
    for (const SizeField& size : kSizeFields) {
        std::uint64_t bytes = 0;
        if (SumFields(fields, size.sum, bytes)) memory.*size.field = FormatBytes(bytes);
    }
    memory.PercentMemoryUtilization = FormatPercentUsed(fields);
}

void CollectMemoryUtilization(protocol::MemoryUtilizationInfo& memory)
{
    std::string text;
    if (ReadExpectedSource(kMemInfo, text)) FillMemoryUtilization(ParseMemInfo(text), memory);
    memory.Handles = ReadHandleCount();
    memory.Threads = ReadThreadCount();
    memory.Processes = CountProcesses();
}

}  // namespace Linux
}  // namespace XModule
