#ifndef KESTRO_XMODULE_LINUX_HOSTFILES_H
#define KESTRO_XMODULE_LINUX_HOSTFILES_H

#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// The one door to the host's files: every path is absolute as on the live host ("/sys/...")
// and is opened under the root prefix, so a reader runs alike on the host, in a container with
// the host's folders mounted, and on a fixture tree. Only regular files are read, without
// blocking, so a device node or a FIFO placed in a snapshot can neither hang nor wake a device.
class HostFiles {
public:
    // The whole file, up to 64 MiB. False when it is missing, unreadable or not a regular file;
    // `why` (when given) then holds the reason, as strerror words it.
    static bool Read(const std::string& absolute, std::string& content, std::string* why = nullptr);
    // At most the first `bytes` of the file, for a fact that stands near its top.
    static bool ReadHead(const std::string& absolute, std::size_t bytes, std::string& content);
    // The file's text without its trailing line breaks and blanks; "" when it cannot be read.
    static std::string ReadTrimmed(const std::string& absolute);
    // The names in a folder, sorted; empty when it is missing.
    static std::vector<std::string> List(const std::string& absolute);
    // The last part of a symbolic link's target ("../../bus/pci/drivers/ahci" gives "ahci");
    // "" when the path is no link.
    static std::string ReadLinkName(const std::string& absolute);
    static bool Exists(const std::string& absolute);
    // The path under the root prefix, for calls that need a real path (statvfs).
    static std::string Rooted(const std::string& absolute);
};

}  // namespace Linux
}  // namespace XModule

#endif
