#ifndef KESTRO_XMODULE_ROOTPREFIX_H
#define KESTRO_XMODULE_ROOTPREFIX_H

#include <string>

namespace XModule {

// The folder that stands for "/" to every local reader (sysfs, procfs, SMBIOS, os-release).
// "/" on a live host; a fixture tree in tests; a mounted image for an offline look.
// Starts as $KESTRO_ROOT when set.
std::string GetRootPrefix();
void SetRootPrefix(const std::string& root);
// `absolute` ("/etc/os-release") under the root prefix.
std::string RootedPath(const std::string& absolute);

}  // namespace XModule

#endif
