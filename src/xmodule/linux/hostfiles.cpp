#include "xmodule/linux/hostfiles.h"

#include "kestro/xmodule/rootprefix.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <sys/stat.h>
#include <unistd.h>

namespace XModule {
namespace Linux {

namespace {

// Far above any table, attribute or status file the readers want; a bound against a hostile snapshot.
const std::size_t kLargestFile = 64u << 20;

bool Fail(std::string* why, const std::string& reason)
{
    if (why) *why = reason;
    return false;
}

// Reads what `fd` gives until the end, or the first `head` bytes when `head` is not 0; procfs and
// sysfs files report no size, so the loop decides.
bool ReadAll(int fd, std::size_t head, std::string& content, std::string* why)
{
    content.clear();
    char buffer[65536];
    for (;;) {
        const std::size_t wanted = head ? std::min(sizeof buffer, head - content.size()) : sizeof buffer;
        if (wanted == 0) return true;
        const ssize_t got = ::read(fd, buffer, wanted);
        if (got == 0) return true;
        if (got < 0) {
            if (errno == EINTR) continue;
            return Fail(why, std::strerror(errno));
        }
        if (content.size() + static_cast<std::size_t>(got) > kLargestFile) return Fail(why, "file too large");
        content.append(buffer, static_cast<std::size_t>(got));
    }
}

const int kOpenFlags = O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY;
const int kOpenAttempts = 16;

// Opens `absolute` as the host under `root` sees it: an absolute link inside a snapshot
// ("/etc/localtime -> /usr/share/zoneinfo/...") resolves within the snapshot, never to the
// files of the machine running the tool. Kernels before 5.6 lack the call; they open plainly.
int OpenUnderRoot(const std::string& root, const std::string& absolute)
{
    if (root == "/") return ::open(absolute.c_str(), kOpenFlags);
    const int rootFd = ::open(root.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (rootFd < 0) return -1;
    struct open_how how;
    std::memset(&how, 0, sizeof how);
    how.flags = kOpenFlags;
    how.resolve = RESOLVE_IN_ROOT | RESOLVE_NO_MAGICLINKS;
    // The kernel refuses a lookup under RESOLVE_IN_ROOT with EAGAIN when any rename or mount ran
    // anywhere on the machine meanwhile; on a busy host that happens now and then, so ask again.
    int fd = -1;
    for (int attempt = 0; attempt < kOpenAttempts; ++attempt) {
        fd = static_cast<int>(::syscall(SYS_openat2, rootFd, absolute.c_str(), &how, sizeof how));
        if (fd >= 0 || errno != EAGAIN) break;
    }
    const int openError = errno;
    ::close(rootFd);
    if (fd < 0 && openError == ENOSYS) fd = ::open(RootedPath(absolute).c_str(), kOpenFlags);
    else errno = openError;
    return fd;
}

bool ReadRegularFile(const std::string& absolute, std::size_t head, std::string& content, std::string* why)
{
    const int fd = OpenUnderRoot(GetRootPrefix(), absolute);
    if (fd < 0) return Fail(why, std::strerror(errno));
    struct stat status;
    bool ok = false;
    if (::fstat(fd, &status) != 0)
        Fail(why, std::strerror(errno));
    else if (!S_ISREG(status.st_mode))
        Fail(why, "not a regular file");
    else
        ok = ReadAll(fd, head, content, why);
    ::close(fd);
    return ok;
}

}  // namespace

std::string HostFiles::Rooted(const std::string& absolute) { return RootedPath(absolute); }

bool HostFiles::Read(const std::string& absolute, std::string& content, std::string* why)
{
    return ReadRegularFile(absolute, 0, content, why);
}

bool HostFiles::ReadHead(const std::string& absolute, std::size_t bytes, std::string& content)
{
    return bytes > 0 && ReadRegularFile(absolute, bytes, content, nullptr);
}

std::string HostFiles::ReadTrimmed(const std::string& absolute)
{
    std::string content;
    if (!Read(absolute, content)) return std::string();
    const std::size_t end = content.find_last_not_of(" \t\r\n");
    content.erase(end == std::string::npos ? 0 : end + 1);
    return content;
}

std::vector<std::string> HostFiles::List(const std::string& absolute)
{
    std::vector<std::string> names;
    boost::system::error_code error;
    boost::filesystem::directory_iterator it(Rooted(absolute), error);
    for (; !error && it != boost::filesystem::directory_iterator(); it.increment(error))
        names.push_back(it->path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::string HostFiles::ReadLinkName(const std::string& absolute)
{
    boost::system::error_code error;
    const boost::filesystem::path target = boost::filesystem::read_symlink(Rooted(absolute), error);
    if (error) return std::string();
    return target.filename().string();
}

bool HostFiles::Exists(const std::string& absolute)
{
    boost::system::error_code error;
    return boost::filesystem::exists(Rooted(absolute), error);
}

}  // namespace Linux
}  // namespace XModule
