#ifndef KESTRO_XMODULE_ATOMICFILE_H
#define KESTRO_XMODULE_ATOMICFILE_H

#include <boost/system/error_code.hpp>

#include <string>

namespace XModule {

// Files that are never seen half written. The content goes to a temporary file beside the target
// (".<name>.tmp-<pid>"), is synced to the disk, and only then renamed over the target, so a full
// disk, a killed run or a power cut leaves either the previous file or the new one, whole.
class AtomicFile {
public:
    // Replaces `target` by `content`. On failure `error` tells why, the target is as it was and no
    // temporary file is left. Only a regular file (or nothing) is replaced: a device or a folder
    // of that name gives an error instead.
    static bool Write(const std::string& target, const std::string& content, boost::system::error_code& error);
    static std::string TemporaryPath(const std::string& target);
};

}  // namespace XModule

#endif
