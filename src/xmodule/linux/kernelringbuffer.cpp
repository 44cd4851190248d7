#include "xmodule/linux/kernelringbuffer.h"

#include "kestro/xmodule/log.h"
#include "kestro/xmodule/unreadable.h"
#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/logtext.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <fcntl.h>
#include <sys/klog.h>
#include <unistd.h>

namespace XModule {
namespace Linux {

namespace {

const char kKmsg[] = "/dev/kmsg";
const char kSavedDmesg[] = "/var/log/dmesg";
const char kSource[] = "kernel ring buffer";

// The newest lines that fit; the kernel's own buffer is rarely larger.
const std::size_t kContentsLimit = 1u << 20;
// A kmsg record is at most 8 KiB with its dictionary; a larger buffer never gets EINVAL.
const std::size_t kRecordBuffer = 16u << 10;
// A guard against a kernel that logs faster than we read, so the loop ends.
const std::size_t kMostRecords = 1u << 20;

// klogctl's actions, from the syslog(2) manual; glibc does not name them.
const int kSyslogActionReadAll = 3;
const int kSyslogActionSizeBuffer = 10;

// Lines oldest first, the oldest dropped while the whole is above the bound.
class BoundedLines {
public:
    void Add(const std::string& line)
    {
        if (line.empty()) return;
        lines.push_back(line);
        bytes += line.size() + 1;
        while (bytes > kContentsLimit && !lines.empty()) {
            bytes -= lines.front().size() + 1;
            lines.pop_front();
            ++dropped;
        }
    }
    std::string Text() const
    {
        std::string text;
        for (const std::string& line : lines) text += line + '\n';
        return text;
    }
    std::size_t Dropped() const { return dropped; }

private:
    std::deque<std::string> lines;
    std::size_t bytes = 0;
    std::size_t dropped = 0;
};

bool IsDigits(const std::string& text)
{
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

std::string FirstLine(const std::string& text) { return text.substr(0, text.find('\n')); }

std::string TimestampText(const std::string& usec)
{
    errno = 0;
    const unsigned long long micro = std::strtoull(usec.c_str(), nullptr, 10);
    if (errno != 0) return std::string();
    char text[48];
    std::snprintf(text, sizeof text, "[%5llu.%06llu] ", micro / 1000000, micro % 1000000);
    return text;
}

std::string StripLevelMark(const std::string& line)
{
    if (line.size() < 3 || line[0] != '<') return line;
    const std::size_t close = line.find('>');
    if (close == std::string::npos || !IsDigits(line.substr(1, close - 1))) return line;
    return line.substr(close + 1);
}

// errno of the open or of a first read that failed, else 0: what was read before an error is kept.
int ReadKmsg(BoundedLines& lines)
{
    const int fd = ::open(kKmsg, O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (fd < 0) return errno;
    std::string record(kRecordBuffer, '\0');
    int error = 0;
    std::size_t count = 0;
    for (; count < kMostRecords; ++count) {
        const ssize_t got = ::read(fd, &record[0], record.size());
        if (got > 0) {
            lines.Add(ParseKmsgRecord(record.substr(0, static_cast<std::size_t>(got))));
            continue;
        }
        // EPIPE: records were overwritten before we came to them; the next read goes on after them.
        if (got < 0 && (errno == EPIPE || errno == EINTR)) continue;
        if (got < 0 && errno != EAGAIN) error = errno;
        break;
    }
    ::close(fd);
    if (error && count == 0) return error;
    if (error) XLOG(LOG_WARN) << "[repo] Reading " << kKmsg << " stopped: " << std::strerror(error);
    return 0;
}

// errno of the call, or 0 when the buffer was read.
int ReadKlogctl(BoundedLines& lines)
{
    const int size = ::klogctl(kSyslogActionSizeBuffer, nullptr, 0);
    if (size < 0) return errno;
    std::string text(static_cast<std::size_t>(size), '\0');
    const int got = size > 0 ? ::klogctl(kSyslogActionReadAll, &text[0], size) : 0;
    if (got < 0) return errno;
    text.resize(static_cast<std::size_t>(got));
    for (const std::string& line : ParseKlogText(text)) lines.Add(line);
    return 0;
}

std::string LiveReason(int error)
{
    if (error == EPERM || error == EACCES) return "dmesg_restrict is set; run as root";
    return std::strerror(error);
}

bool ReadLiveHost(BoundedLines& lines, std::string& source)
{
    source = kKmsg;
    if (ReadKmsg(lines) == 0) return true;
    source = "klogctl";
    const int error = ReadKlogctl(lines);
    if (error == 0) return true;
    NoteUnreadable(kSource, LiveReason(error));
    return false;
}

bool ReadSavedDmesg(BoundedLines& lines, std::string& source)
{
    source = kSavedDmesg;
    std::string text;
    std::string why;
    if (!HostFiles::Read(kSavedDmesg, text, &why)) {
        NoteUnreadable(kSource, std::string(kSavedDmesg) + ": " + why);
        return false;
    }
    for (const std::string& line : ParseKlogText(text)) lines.Add(line);
    return true;
}

}  // namespace

std::string ParseKmsgRecord(const std::string& text)
{
    const std::string line = FirstLine(text);
    const std::size_t semicolon = line.find(';');
    if (semicolon != std::string::npos) {
        std::vector<std::string> prefix;
        boost::algorithm::split(prefix, line.substr(0, semicolon), boost::algorithm::is_any_of(","));
        if (prefix.size() >= 3 && IsDigits(prefix[0]) && IsDigits(prefix[1]) && IsDigits(prefix[2]))
            return TimestampText(prefix[2]) + EscapeLogText(line.substr(semicolon + 1));
    }
    return EscapeLogText(line);
}

std::vector<std::string> ParseKlogText(const std::string& text)
{
    std::vector<std::string> raw;
    boost::algorithm::split(raw, text, boost::algorithm::is_any_of("\n"));
    std::vector<std::string> lines;
    for (const std::string& line : raw) {
        const std::string stripped = StripLevelMark(line);
        if (!stripped.empty()) lines.push_back(EscapeLogText(stripped));
    }
    return lines;
}

void CollectKernelRingBuffer(protocol::KernelRingBufferInfo& buffer)
{
    BoundedLines lines;
    std::string source;
    const bool liveHost = HostFiles::Rooted(kKmsg) == kKmsg;
    if (!(liveHost ? ReadLiveHost(lines, source) : ReadSavedDmesg(lines, source))) return;
    if (lines.Dropped())
        XLOG(LOG_INFO) << "[repo] The kernel ring buffer keeps its newest " << kContentsLimit
                       << " bytes; " << lines.Dropped() << " older lines left out";
    buffer.Source = source;
    const std::string contents = lines.Text();
    if (!contents.empty()) buffer.Contents = contents;
}

}  // namespace Linux
}  // namespace XModule
