#ifndef KESTRO_XMODULE_LINUX_KERNELMODULES_H
#define KESTRO_XMODULE_LINUX_KERNELMODULES_H

#include "xmodule/protocol/osinfo.h"

#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// Lines of /proc/modules: "name size refcount usedby state address [taints]". UsedBy keeps the
// holders without the kernel's trailing comma ("nf_tables,btrfs"), "-" for none; Size is in
// bytes. A line with fewer fields or a size that is no number is passed over with a log line.
std::vector<protocol::KernelModuleInfo> ParseProcModules(const std::string& text);

// The loaded modules of the host, sorted by name, with the version a module declares
// (/sys/module/<name>/version) and its first 8 parameters as "name=value" words in the form
// modprobe takes them, values cut at 64 characters and "..." when more follow. Modules built
// into the kernel have no /proc/modules line and are not listed.
void CollectKernelModules(std::vector<protocol::KernelModuleInfo>& modules);

}  // namespace Linux
}  // namespace XModule

#endif
