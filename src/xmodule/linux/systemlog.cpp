#include "xmodule/linux/systemlog.h"

#include "kestro/xmodule/globalconfig.h"
#include "kestro/xmodule/log.h"
#include "kestro/xmodule/unreadable.h"
#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/logtext.h"
#include "xmodule/linux/passwd.h"
#include "xmodule/linux/valueformat.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/predicate.hpp>

#include <cerrno>
#include <cstdio>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <sys/stat.h>
#include <unistd.h>

#ifdef KESTRO_HAVE_SYSTEMD
#include <systemd/sd-journal.h>
#endif

namespace XModule {
namespace Linux {

namespace {

const char kReadMaxItem[] = "KESTRO_SYSLOG_READ_MAX";
const int kDefaultReadMax = 10000;

// A message is cut here: a report row, not a core dump. Bytes, before odd bytes are escaped.
const std::size_t kMessageLimit = 4096;
// A syslog line longer than this is passed over, so a file without line breaks costs no memory.
const std::size_t kLongestLine = 64u << 10;
const std::size_t kTailBlock = 64u << 10;

const char* const kSyslogFiles[] = {"/var/log/syslog", "/var/log/messages"};

const char* const kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                               "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

// Words of a syslog file's message that tell its severity, which the file does not keep;
// the first that occurs (case aside) decides, errors before warnings.
struct SeverityWord {
    const char* word;
    const char* type;
};

const SeverityWord kSeverityWords[] = {
    {"emerg", "Error"}, {"panic", "Error"}, {"fatal", "Error"}, {"crit", "Error"},
    {"error", "Error"}, {"fail", "Error"},  {"warn", "Warning"},
};

int TwoDigits(const std::string& text, std::size_t at)
{
    if (at + 2 > text.size()) return -1;
    const char high = text[at] == ' ' ? '0' : text[at];
    const char low = text[at + 1];
    if (high < '0' || high > '9' || low < '0' || low > '9') return -1;
    return (high - '0') * 10 + (low - '0');
}

int MonthIndex(const std::string& name)
{
    for (int i = 0; i < 12; ++i)
        if (name == kMonths[i]) return i;
    return -1;
}

bool IsPlausible(const std::tm& t)
{
    return t.tm_mon >= 0 && t.tm_mon < 12 && t.tm_mday >= 1 && t.tm_mday <= 31 && t.tm_hour >= 0 &&
           t.tm_hour < 24 && t.tm_min >= 0 && t.tm_min < 60 && t.tm_sec >= 0 && t.tm_sec <= 60;
}

// "Nov 25 03:49:01 " (the day may be padded with a blank); the rest of the line in `rest`.
bool ParseClassicStamp(const std::string& line, std::tm& stamp, std::string& rest)
{
    if (line.size() < 16 || line[3] != ' ' || line[6] != ' ' || line[9] != ':' || line[12] != ':' || line[15] != ' ')
        return false;
    stamp.tm_mon = MonthIndex(line.substr(0, 3));
    stamp.tm_mday = TwoDigits(line, 4);
    stamp.tm_hour = TwoDigits(line, 7);
    stamp.tm_min = TwoDigits(line, 10);
    stamp.tm_sec = TwoDigits(line, 13);
    rest = line.substr(16);
    return IsPlausible(stamp);
}

// The zone of an RFC 3339 stamp in seconds east of UTC; false when there is none.
bool ParseZone(const char* zone, long& offset)
{
    int hours = 0, minutes = 0, used = 0;
    if (std::strcmp(zone, "Z") == 0) {
        offset = 0;
        return true;
    }
    if ((*zone != '+' && *zone != '-') || std::sscanf(zone + 1, "%2d:%2d%n", &hours, &minutes, &used) != 2 ||
        zone[1 + used] != '\0')
        return false;
    offset = (*zone == '-' ? -1L : 1L) * (hours * 3600L + minutes * 60L);
    return true;
}

// "2026-11-25T03:49:01.123456+00:00 ": a stamp with a zone is turned to local time; one without
// is taken as local already.
bool ParseIsoStamp(const std::string& line, std::tm& stamp, std::string& rest)
{
    const std::size_t space = line.find(' ');
    if (space == std::string::npos || space > 40) return false;
    const std::string token = line.substr(0, space);
    int used = 0;
    if (std::sscanf(token.c_str(), "%4d-%2d-%2dT%2d:%2d:%2d%n", &stamp.tm_year, &stamp.tm_mon, &stamp.tm_mday,
                    &stamp.tm_hour, &stamp.tm_min, &stamp.tm_sec, &used) != 6)
        return false;
    stamp.tm_year -= 1900;
    stamp.tm_mon -= 1;
    std::size_t at = static_cast<std::size_t>(used);
    if (at < token.size() && token[at] == '.') at = token.find_first_not_of("0123456789", at + 1);
    rest = line.substr(space + 1);
    if (!IsPlausible(stamp)) return false;
    if (at == std::string::npos || at == token.size()) return true;
    long offset = 0;
    if (!ParseZone(token.c_str() + at, offset)) return false;
    const std::time_t moment = ::timegm(&stamp) - offset;
    return ::localtime_r(&moment, &stamp) != nullptr;
}

// "prog[123]: text", "prog: text", or a bare text without a tag.
void ParseTagAndMessage(const std::string& rest, SyslogLine& entry)
{
    const std::size_t colon = rest.find(':');
    const std::string tag = colon == std::string::npos ? std::string() : rest.substr(0, colon);
    if (tag.empty() || tag.find(' ') != std::string::npos) {
        entry.message = rest;
        return;
    }
    entry.message = rest.substr(colon + 1);
    if (!entry.message.empty() && entry.message[0] == ' ') entry.message.erase(0, 1);
    const std::size_t bracket = tag.find('[');
    const bool hasPid = bracket != std::string::npos && bracket > 0 && tag[tag.size() - 1] == ']';
    entry.program = hasPid ? tag.substr(0, bracket) : tag;
    if (hasPid) entry.pid = tag.substr(bracket + 1, tag.size() - bracket - 2);
}

std::string TypeOfText(const std::string& message)
{
    const std::string lower = boost::algorithm::to_lower_copy(message);
    for (const SeverityWord& entry : kSeverityWords)
        if (lower.find(entry.word) != std::string::npos) return entry.type;
    return "Information";
}

// One line of the report's table: runs of blanks and line breaks become one blank.
std::string MessageText(const std::string& raw) { return TextOrUnknown(EscapeLogText(CutLogText(raw, kMessageLimit))); }

// The classic form has no year: lines are met newest first, so the year goes back by one
// whenever the month goes up, starting from today's month and year.
class YearGuess {
public:
    YearGuess()
    {
        const std::time_t now = std::time(nullptr);
        std::tm today = std::tm();
        ::localtime_r(&now, &today);
        year = today.tm_year;
        month = today.tm_mon;
    }
    void Complete(std::tm& stamp)
    {
        if (stamp.tm_mon > month) --year;
        stamp.tm_year = year;
        month = stamp.tm_mon;
    }
    void Follow(const std::tm& stamp)
    {
        year = stamp.tm_year;
        month = stamp.tm_mon;
    }

private:
    int year;
    int month;
};

std::string StampText(const std::tm& stamp)
{
    char text[40];
    if (std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &stamp) == 0) return protocol::UNKNOWN_VALUE;
    return text;
}

protocol::EventInfo EventOfLine(SyslogLine& line, YearGuess& years)
{
    if (line.yearKnown)
        years.Follow(line.local);
    else
        years.Complete(line.local);
    protocol::EventInfo event;
    event.Type = TypeOfText(line.message);
    event.MessageTimestamp = StampText(line.local);
    event.Source = TextOrUnknown(EscapeLogText(line.program));
    event.Message = MessageText(line.message);
    event.EventID = TextOrUnknown(line.pid);
    event.Computer = TextOrUnknown(EscapeLogText(line.host));
    return event;
}

// Complete lines of a regular file from its end backwards, handed to `take` until it answers
// true (enough) or the file's start. Only the blocks needed are read.
class TailLines {
public:
    typedef std::function<bool(const std::string&)> Taker;

    TailLines(int fd, off_t size, const Taker& take) : fd(fd), end(size), take(take) {}

    // 0, or the errno of a block that could not be read.
    int Run()
    {
        std::string block;
        while (end > 0) {
            const off_t length = end < static_cast<off_t>(kTailBlock) ? end : static_cast<off_t>(kTailBlock);
            if (!ReadBlock(end - length, static_cast<std::size_t>(length), block)) return errno ? errno : EIO;
            end -= length;
            if (HandOut(block + carry)) return 0;
        }
        if (!overlong) Give(carry);
        return 0;
    }

private:
    bool ReadBlock(off_t at, std::size_t length, std::string& block)
    {
        block.assign(length, '\0');
        std::size_t done = 0;
        while (done < length) {
            const ssize_t got = ::pread(fd, &block[done], length - done, at + static_cast<off_t>(done));
            if (got < 0 && errno == EINTR) continue;
            if (got == 0) errno = 0;
            if (got <= 0) return false;
            done += static_cast<std::size_t>(got);
        }
        return true;
    }

    // Lines of `data` after its first line break, last first; the part before stays for the next block.
    bool HandOut(const std::string& data)
    {
        std::size_t stop = data.size();
        for (std::size_t newline; stop > 0 && (newline = data.rfind('\n', stop - 1)) != std::string::npos;
             stop = newline) {
            const bool skip = overlong;
            overlong = false;
            if (!skip && Give(data.substr(newline + 1, stop - newline - 1))) return true;
        }
        carry = data.substr(0, stop);
        if (carry.size() > kLongestLine) {
            LogOverlong();
            carry.clear();
            overlong = true;
        }
        return false;
    }

    bool Give(const std::string& line)
    {
        if (line.size() <= kLongestLine) return !line.empty() && take(line);
        LogOverlong();
        return false;
    }

    static void LogOverlong()
    {
        XLOG(LOG_WARN) << "[repo] A system log line longer than " << kLongestLine << " bytes is left out";
    }

    int fd;
    off_t end;
    Taker take;
    std::string carry;
    bool overlong = false;
};

// False when the file cannot be read at all.
bool ReadSyslogFile(const std::string& path, std::vector<protocol::EventInfo>& events, std::size_t maximum)
{
    const int fd = ::open(HostFiles::Rooted(path).c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (fd < 0) {
        if (errno != ENOENT) NoteUnreadable(path, std::strerror(errno));
        return false;
    }
    struct stat status;
    if (::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode)) {
        XLOG(LOG_WARN) << "[repo] " << path << " is not a regular file; it is not read";
        ::close(fd);
        return false;
    }
    YearGuess years;
    std::size_t strange = 0;
    TailLines tail(fd, status.st_size, [&](const std::string& text) {
        SyslogLine line;
        if (!ParseSyslogLine(text, line)) {
            ++strange;
            return false;
        }
        events.push_back(EventOfLine(line, years));
        return events.size() >= maximum;
    });
    const int error = tail.Run();
    ::close(fd);
    if (error) XLOG(LOG_WARN) << "[repo] Reading " << path << " stopped: " << std::strerror(error);
    if (strange) XLOG(LOG_WARN) << "[repo] " << strange << " lines of " << path << " are in no syslog form";
    return true;
}

#ifdef KESTRO_HAVE_SYSTEMD

const char* const kJournalFolders[] = {"/var/log/journal", "/run/log/journal"};

// PRIORITY 0 (emerg) to 7 (debug).
const char* const kPriorityTypes[] = {"Error",       "Error",       "Error",       "Error",
                                      "Warning",     "Information", "Information", "Information"};

// SYSLOG_FACILITY numbers as syslog names them.
const char* const kFacilities[] = {"kern",   "user",   "mail",   "daemon", "auth",   "syslog", "lpr",    "news",
                                   "uucp",   "cron",   "authpriv", "ftp", "ntp",    "audit",  "alert",  "clock",
                                   "local0", "local1", "local2", "local3", "local4", "local5", "local6", "local7"};

// The field's value without "NAME=", "" when the entry lacks it.
std::string JournalField(sd_journal* journal, const char* name)
{
    const void* data = nullptr;
    std::size_t length = 0;
    if (sd_journal_get_data(journal, name, &data, &length) < 0) return std::string();
    const std::size_t skip = std::strlen(name) + 1;
    if (length <= skip) return std::string();
    return std::string(static_cast<const char*>(data) + skip, length - skip);
}

std::string TableText(const std::string& number, const char* const* table, std::size_t size)
{
    if (number.size() != 1 && number.size() != 2) return protocol::UNKNOWN_VALUE;
    if (number.find_first_not_of("0123456789") != std::string::npos) return protocol::UNKNOWN_VALUE;
    const std::size_t index = static_cast<std::size_t>(std::atoi(number.c_str()));
    return index < size ? std::string(table[index]) : std::string(protocol::UNKNOWN_VALUE);
}

protocol::EventInfo EventOfJournal(sd_journal* journal, const UserNames& users)
{
    protocol::EventInfo event;
    event.Type = TableText(JournalField(journal, "PRIORITY"), kPriorityTypes, 8);
    std::uint64_t usec = 0;
    if (sd_journal_get_realtime_usec(journal, &usec) >= 0)
        event.MessageTimestamp = FormatDateTime(static_cast<std::time_t>(usec / 1000000));
    std::string source = JournalField(journal, "SYSLOG_IDENTIFIER");
    if (source.empty()) source = JournalField(journal, "_COMM");
    event.Source = TextOrUnknown(EscapeLogText(source));
    event.Category = TableText(JournalField(journal, "SYSLOG_FACILITY"), kFacilities, 24);
    event.Message = MessageText(JournalField(journal, "MESSAGE"));
    event.EventID = TextOrUnknown(EscapeLogText(JournalField(journal, "_PID")));
    const std::string uid = JournalField(journal, "_UID");
    if (!uid.empty()) event.User = NameOfUser(users, uid);
    event.Computer = TextOrUnknown(EscapeLogText(JournalField(journal, "_HOSTNAME")));
    return event;
}

bool IsUnreadableJournal(const std::string& path)
{
    return boost::algorithm::ends_with(path, ".journal") && ::access(HostFiles::Rooted(path).c_str(), R_OK) != 0;
}

// sd-journal passes over files it may not open; a user outside the journal's group sees none.
bool HasUnreadableJournalFiles()
{
    for (const char* folder : kJournalFolders)
        for (const std::string& name : HostFiles::List(folder)) {
            const std::string path = std::string(folder) + "/" + name;
            if (IsUnreadableJournal(path)) return true;
            for (const std::string& inner : HostFiles::List(path))
                if (IsUnreadableJournal(path + "/" + inner)) return true;
        }
    return false;
}

// The journals under the root prefix (its /var/log/journal and /run/log/journal), newest entry
// first; the walk stops at `maximum`, whatever the journal's size.
void ReadJournal(std::vector<protocol::EventInfo>& events, std::size_t maximum)
{
    sd_journal* journal = nullptr;
    const int opened = sd_journal_open_directory(&journal, HostFiles::Rooted("/").c_str(), SD_JOURNAL_OS_ROOT);
    if (opened < 0) {
        XLOG(LOG_WARN) << "[repo] The systemd journal does not open: " << std::strerror(-opened);
        return;
    }
    sd_journal_set_data_threshold(journal, kMessageLimit);
    const UserNames users = ReadUserNames();
    if (sd_journal_seek_tail(journal) >= 0)
        while (events.size() < maximum && sd_journal_previous(journal) > 0)
            events.push_back(EventOfJournal(journal, users));
    sd_journal_close(journal);
    if (events.empty() && HasUnreadableJournalFiles())
        NoteUnreadable("systemd journal", "not in the systemd-journal group");
}

#else

void ReadJournal(std::vector<protocol::EventInfo>&, std::size_t)
{
    XLOG(LOG_DEBUG) << "[repo] Built without libsystemd: the systemd journal is not read";
}

#endif

}  // namespace

bool ParseSyslogLine(const std::string& line, SyslogLine& entry)
{
    entry = SyslogLine();
    std::string rest;
    entry.yearKnown = ParseIsoStamp(line, entry.local, rest);
    if (!entry.yearKnown) {
        entry.local = std::tm();
        if (!ParseClassicStamp(line, entry.local, rest)) return false;
    }
    const std::size_t space = rest.find(' ');
    if (space == 0 || rest.empty()) return false;
    entry.host = rest.substr(0, space);
    ParseTagAndMessage(space == std::string::npos ? std::string() : rest.substr(space + 1), entry);
    return true;
}

std::size_t SystemLogReadLimit()
{
    const int configured = GetGlobalConfigValue(kReadMaxItem, kDefaultReadMax);
    return static_cast<std::size_t>(configured < 0 ? kDefaultReadMax : configured);
}

void CollectSystemLog(std::vector<protocol::EventInfo>& events, std::size_t maximum)
{
    if (maximum == 0) return;
    std::vector<protocol::EventInfo> found;
    ReadJournal(found, maximum);
    bool read = !found.empty();
    for (std::size_t i = 0; !read && i < sizeof kSyslogFiles / sizeof kSyslogFiles[0]; ++i)
        read = ReadSyslogFile(kSyslogFiles[i], found, maximum);
    if (!read) NoteUnreadable("system log", "no journal entries, /var/log/syslog or /var/log/messages to read");
    events.insert(events.end(), found.begin(), found.end());
}

}  // namespace Linux
}  // namespace XModule
