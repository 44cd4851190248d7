#ifndef KESTRO_XMODULE_LINUX_MEMORYBLOCKS_H
#define KESTRO_XMODULE_LINUX_MEMORYBLOCKS_H

#include <cstdint>
#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// The memory the kernel has online, from its hot-plug blocks in sysfs: the size of the installed
// memory where the firmware names no modules (virtual machines). The parts are apart for tests.
std::uint64_t CountOnlineMemory(const std::string& blockSizeText, const std::vector<std::string>& blockStates);
// 0 when the host shows no memory blocks.
std::uint64_t ReadOnlineMemory();

}  // namespace Linux
}  // namespace XModule

#endif
