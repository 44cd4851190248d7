#ifndef KESTRO_XMODULE_LINUX_SWAPS_H
#define KESTRO_XMODULE_LINUX_SWAPS_H

#include "xmodule/protocol/osinfo.h"

#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// The swap areas of a /proc/swaps text, below its header line; names with their octal escapes undone.
std::vector<protocol::PageFileInfo> ParseSwaps(const std::string& text);
// The host's swap areas in use, from /proc/swaps.
void CollectPageFiles(std::vector<protocol::PageFileInfo>& files);

}  // namespace Linux
}  // namespace XModule

#endif
