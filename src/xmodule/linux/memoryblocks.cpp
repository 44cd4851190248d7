#include "xmodule/linux/memoryblocks.h"

#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/pcidevices.h"

#include <boost/algorithm/string/predicate.hpp>

namespace XModule {
namespace Linux {

namespace {
const char kMemoryBlocks[] = "/sys/devices/system/memory";
}

std::uint64_t CountOnlineMemory(const std::string& blockSizeText, const std::vector<std::string>& blockStates)
{
    unsigned blockSize = 0;
    if (!ParseSysfsHex(blockSizeText, blockSize)) return 0;
    std::uint64_t online = 0;
    for (const std::string& state : blockStates)
        if (state == "online") ++online;
    return online * blockSize;
}

std::uint64_t ReadOnlineMemory()
{
    const std::string folder = kMemoryBlocks;
    std::vector<std::string> states;
    for (const std::string& name : HostFiles::List(folder))
        if (boost::algorithm::starts_with(name, "memory")) states.push_back(HostFiles::ReadTrimmed(folder + "/" + name + "/state"));
    return CountOnlineMemory(HostFiles::ReadTrimmed(folder + "/block_size_bytes"), states);
}

}  // namespace Linux
}  // namespace XModule
