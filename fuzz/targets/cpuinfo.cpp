// The /proc/cpuinfo reader.
#include "fuzzsupport.h"
#include "xmodule/linux/cpuinfo.h"

using namespace XModule::Linux;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    IsWhitleyCpu(ParseCpuInfo(KestroFuzz::ToText(data, size)));
    return 0;
}
