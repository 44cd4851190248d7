// The mountinfo reader.
#include "fuzzsupport.h"
#include "xmodule/linux/mountpoints.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    XModule::Linux::ParseMountInfo(KestroFuzz::ToText(data, size));
    return 0;
}
