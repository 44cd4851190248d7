#include "xmodule/atomicfile.h"

#include <boost/filesystem/operations.hpp>

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace XModule {

namespace fs = boost::filesystem;
namespace errc = boost::system::errc;

namespace {

void SetLastError(boost::system::error_code& error)
{
    error.assign(errno, boost::system::system_category());
}

bool IsReplaceable(const std::string& target, boost::system::error_code& error)
{
    const fs::file_status status = fs::status(target, error);
    // Nothing there yet is the usual case; a missing folder shows when the file is made.
    if (status.type() == fs::file_not_found) error.clear();
    if (error) return false;
    if (fs::is_directory(status)) error = errc::make_error_code(errc::is_a_directory);
    else if (fs::exists(status) && !fs::is_regular_file(status))
        error = errc::make_error_code(errc::operation_not_permitted);
    return !error;
}

bool WriteAll(int fd, const std::string& content, boost::system::error_code& error)
{
    std::string::size_type done = 0;
    while (done < content.size()) {
        const ssize_t written = ::write(fd, content.data() + done, content.size() - done);
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) {
            SetLastError(error);
            return false;
        }
        done += static_cast<std::string::size_type>(written);
    }
    return true;
}

// Synced before the rename: otherwise a crash could leave the new name on a file with no data yet.
bool WriteSynced(const std::string& path, const std::string& content, boost::system::error_code& error)
{
    // A link planted under the temporary name is not followed.
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0666);
    if (fd < 0) {
        SetLastError(error);
        return false;
    }
    bool stored = WriteAll(fd, content, error);
    if (stored && ::fsync(fd) != 0) {
        SetLastError(error);
        stored = false;
    }
    if (::close(fd) != 0 && stored) {
        SetLastError(error);
        stored = false;
    }
    return stored;
}

}  // namespace

std::string AtomicFile::TemporaryPath(const std::string& target)
{
    const fs::path path(target);
    const std::string name = "." + path.filename().string() + ".tmp-" + std::to_string(::getpid());
    return (path.parent_path() / name).string();
}

bool AtomicFile::Write(const std::string& target, const std::string& content, boost::system::error_code& error)
{
    error.clear();
    if (!IsReplaceable(target, error)) return false;
    const std::string temporary = TemporaryPath(target);
    if (WriteSynced(temporary, content, error)) {
        fs::rename(temporary, target, error);
        if (!error) return true;
    }
    boost::system::error_code ignored;
    fs::remove(temporary, ignored);
    return false;
}

}  // namespace XModule
