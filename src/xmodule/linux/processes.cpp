#include "xmodule/linux/processes.h"

#include "kestro/xmodule/log.h"
#include "kestro/xmodule/unreadable.h"
#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/logtext.h"
#include "xmodule/linux/passwd.h"
#include "xmodule/linux/valueformat.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/algorithm/string/trim.hpp>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <sstream>
#include <unistd.h>

namespace XModule {
namespace Linux {

namespace {

const char kProc[] = "/proc/";
const char kHiddenSource[] = "/proc/<pid> of other users";

// Positions in the fields after the name: field 3 of stat (the state) is index 0.
const std::size_t kUtimeIndex = 11;
const std::size_t kStimeIndex = 12;
const std::size_t kPriorityIndex = 15;
const std::size_t kStarttimeIndex = 19;
const std::size_t kRssIndex = 21;

struct StateName {
    char letter;
    const char* name;
};

// The letters of stat's state field, as ps documents them.
const StateName kStateNames[] = {
    {'R', "Running"}, {'S', "Sleeping"}, {'D', "Disk sleep"}, {'Z', "Zombie"}, {'T', "Stopped"},
    {'t', "Tracing stop"}, {'I', "Idle"}, {'X', "Dead"}, {'x', "Dead"}, {'P', "Parked"},
};

// What the host's clock and memory units are, to turn ticks and pages into report units.
struct ProcClock {
    long ticksPerSecond;
    long pageSize;
    std::optional<long long> bootTime;
};

// What /proc/<pid>/status adds: the user, and the name and state when stat is hidden.
struct ProcStatus {
    std::string name;
    char state = 0;
    std::string effectiveUid;
};

bool IsNumber(const std::string& text)
{
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

std::optional<long long> ReadNumber(const std::string& text)
{
    if (text.empty()) return std::nullopt;
    char* end = nullptr;
    errno = 0;
    const long long value = std::strtoll(text.c_str(), &end, 10);
    if (errno != 0 || *end != '\0') return std::nullopt;
    return value;
}

std::optional<long long> NumberAt(const std::vector<std::string>& fields, std::size_t index)
{
    return index < fields.size() ? ReadNumber(fields[index]) : std::nullopt;
}

// "Name:\tbash", "State:\tS (sleeping)", "Uid:\t1000\t1000\t1000\t1000" (real, effective, ...).
ProcStatus ParseProcStatus(const std::string& text)
{
    ProcStatus status;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line)) {
        const std::size_t colon = line.find(':');
        if (colon == std::string::npos) continue;
        const std::string key = line.substr(0, colon);
        const std::string value = boost::algorithm::trim_copy(line.substr(colon + 1));
        if (key == "Name") {
            status.name = value;
        } else if (key == "State" && !value.empty()) {
            status.state = value[0];
        } else if (key == "Uid") {
            std::vector<std::string> ids;
            boost::algorithm::split(ids, value, boost::algorithm::is_space(), boost::algorithm::token_compress_on);
            if (ids.size() > 1) status.effectiveUid = ids[1];
        }
    }
    return status;
}

// The "btime" line of /proc/stat: the boot as seconds since the epoch.
std::optional<long long> ParseBootTime(const std::string& text)
{
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line))
        if (line.compare(0, 6, "btime ") == 0) return ReadNumber(boost::algorithm::trim_copy(line.substr(6)));
    return std::nullopt;
}

ProcClock ReadProcClock()
{
    ProcClock clock;
    clock.ticksPerSecond = ::sysconf(_SC_CLK_TCK);
    if (clock.ticksPerSecond <= 0) clock.ticksPerSecond = 100;
    clock.pageSize = ::sysconf(_SC_PAGESIZE);
    if (clock.pageSize <= 0) clock.pageSize = 4096;
    std::string stat;
    if (HostFiles::Read("/proc/stat", stat)) clock.bootTime = ParseBootTime(stat);
    return clock;
}

std::string StateText(char letter)
{
    for (const StateName& entry : kStateNames)
        if (entry.letter == letter) return entry.name;
    return letter ? std::string(1, letter) : std::string(protocol::UNKNOWN_VALUE);
}

std::string NumberText(const std::optional<long long>& value)
{
    return value ? std::to_string(*value) : std::string(protocol::UNKNOWN_VALUE);
}

std::string Milliseconds(const std::optional<long long>& ticks, const ProcClock& clock)
{
    if (!ticks || *ticks < 0 || *ticks > LLONG_MAX / 1000) return protocol::UNKNOWN_VALUE;
    return std::to_string(*ticks * 1000 / clock.ticksPerSecond);
}

std::string ResidentKilobytes(const std::optional<long long>& pages, const ProcClock& clock)
{
    if (!pages || *pages < 0 || *pages > LLONG_MAX / clock.pageSize) return protocol::UNKNOWN_VALUE;
    return std::to_string(*pages * clock.pageSize / 1024);
}

std::string StartTime(const std::optional<long long>& ticks, const ProcClock& clock)
{
    if (!ticks || *ticks < 0 || !clock.bootTime || *clock.bootTime < 0) return protocol::UNKNOWN_VALUE;
    const long long sinceBoot = *ticks / clock.ticksPerSecond;
    if (*clock.bootTime > LLONG_MAX - sinceBoot) return protocol::UNKNOWN_VALUE;
    return FormatDateTime(static_cast<std::time_t>(*clock.bootTime + sinceBoot));
}

void FillFromStat(const ProcStat& stat, const ProcClock& clock, protocol::ProcessInfo& process)
{
    if (!stat.comm.empty()) process.Name = EscapeLogText(stat.comm);
    process.ExecutionState = StateText(stat.state);
    process.Priority = NumberText(stat.priority);
    process.UserModeTime = Milliseconds(stat.utime, clock);
    process.KernelModeTime = Milliseconds(stat.stime, clock);
    process.MemoryUsage = ResidentKilobytes(stat.rss, clock);
    process.CreationDate = StartTime(stat.starttime, clock);
}

void FillFromStatus(const ProcStatus& status, const UserNames& users, protocol::ProcessInfo& process)
{
    if (!status.effectiveUid.empty()) process.User = NameOfUser(users, status.effectiveUid);
    if (process.Name == protocol::UNKNOWN_VALUE && !status.name.empty()) process.Name = EscapeLogText(status.name);
    if (process.ExecutionState == protocol::UNKNOWN_VALUE && status.state)
        process.ExecutionState = StateText(status.state);
}

std::vector<std::string> ListProcessIds()
{
    std::vector<std::string> pids;
    for (const std::string& name : HostFiles::List("/proc"))
        if (IsNumber(name) && name.size() < 12) pids.push_back(name);
    // Pids have no leading zeros, so the shorter one is the smaller.
    std::sort(pids.begin(), pids.end(), [](const std::string& a, const std::string& b) {
        return a.size() != b.size() ? a.size() < b.size() : a < b;
    });
    return pids;
}

// A read that failed: the process ended (its folder is gone) or its details are hidden from us.
bool StillRunning(const std::string& pid, const std::string& why)
{
    if (!HostFiles::Exists(kProc + pid)) return false;
    NoteUnreadable(kHiddenSource, why);
    return true;
}

// False when the process ended while it was read.
bool ReadProcess(const std::string& pid, const ProcClock& clock, const UserNames& users, protocol::ProcessInfo& process)
{
    process.Handle = pid;
    std::string text;
    std::string why;
    if (HostFiles::Read(kProc + pid + "/stat", text, &why)) {
        ProcStat stat;
        if (ParseProcStat(text, stat))
            FillFromStat(stat, clock, process);
        else
            XLOG(LOG_WARN) << "[repo] /proc/" << pid << "/stat is not in the kernel's form";
    } else if (!StillRunning(pid, why)) {
        return false;
    }
    if (HostFiles::Read(kProc + pid + "/status", text, &why))
        FillFromStatus(ParseProcStatus(text), users, process);
    else if (!StillRunning(pid, why))
        return false;
    return true;
}

}  // namespace

bool ParseProcStat(const std::string& text, ProcStat& stat)
{
    const std::size_t open = text.find('(');
    const std::size_t close = text.rfind(')');
    if (open == std::string::npos || close == std::string::npos || close < open) return false;
    const std::string pid = boost::algorithm::trim_copy(text.substr(0, open));
    if (!IsNumber(pid)) return false;
    stat = ProcStat();
    stat.pid = pid;
    stat.comm = text.substr(open + 1, close - open - 1);
    const std::string rest = boost::algorithm::trim_copy(text.substr(close + 1));
    std::vector<std::string> fields;
    if (!rest.empty())
        boost::algorithm::split(fields, rest, boost::algorithm::is_space(), boost::algorithm::token_compress_on);
    if (!fields.empty() && fields[0].size() == 1) stat.state = fields[0][0];
    stat.utime = NumberAt(fields, kUtimeIndex);
    stat.stime = NumberAt(fields, kStimeIndex);
    stat.priority = NumberAt(fields, kPriorityIndex);
    stat.starttime = NumberAt(fields, kStarttimeIndex);
    stat.rss = NumberAt(fields, kRssIndex);
    return true;
}

void CollectProcesses(std::vector<protocol::ProcessInfo>& processes)
{
    const ProcClock clock = ReadProcClock();
    const UserNames users = ReadUserNames();
    const std::vector<std::string> pids = ListProcessIds();
    // Init is always there; without it, hidepid keeps other users' processes out of sight.
    if (!pids.empty() && pids.front() != "1") NoteUnreadable(kHiddenSource, "hidden by the hidepid option of /proc");
    for (const std::string& pid : pids) {
        protocol::ProcessInfo process;
        if (ReadProcess(pid, clock, users, process)) processes.push_back(process);
    }
}

}  // namespace Linux
}  // namespace XModule
