#ifndef KESTRO_XMODULE_LINUX_SYSTEMLOG_H
#define KESTRO_XMODULE_LINUX_SYSTEMLOG_H

#include "xmodule/protocol/osinfo.h"

#include <cstddef>
#include <ctime>
#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// One line of a syslog file, in the classic form ("Nov 25 03:49:01 host prog[123]: text") or
// with an RFC 3339 stamp ("2026-11-25T03:49:01.123456+00:00 host prog[123]: text").
struct SyslogLine {
    std::tm local = std::tm();  // the stamp in local time; tm_year only when yearKnown
    bool yearKnown = false;     // the classic form leaves the year out
    std::string host;
    std::string program;  // "" when the line has no "prog[pid]:" tag
    std::string pid;
    std::string message;
};

// False for a line in neither form.
bool ParseSyslogLine(const std::string& line, SyslogLine& entry);

// The setting KESTRO_SYSLOG_READ_MAX of global.config: how many system log entries a run reads
// at most (10000 when unset or negative).
std::size_t SystemLogReadLimit();

// The newest `maximum` entries of the system log, newest first: the systemd journal (persistent
// and runtime) when it holds entries we may read, else the current /var/log/syslog or
// /var/log/messages (not its rotated files), read from its end. Only as many entries as asked
// for are ever read. Type comes from the journal's PRIORITY (0-3 Error, 4 Warning, 5-7
// Information); a syslog file keeps none, so its message's words decide: "emerg", "panic",
// "fatal", "crit", "error" or "fail" make an Error, "warn" a Warning, anything else is
// Information. EventID is the logging process's id, which both sources carry. Messages are cut
// at 4096 bytes, odd bytes escaped as "\xNN"; Category is the facility's name (journal only).
void CollectSystemLog(std::vector<protocol::EventInfo>& events, std::size_t maximum);

}  // namespace Linux
}  // namespace XModule

#endif
