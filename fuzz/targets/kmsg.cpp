// The kernel ring buffer readers: one /dev/kmsg record, or klogctl / saved dmesg text; the
// first byte picks which.
#include "fuzzsupport.h"
#include "xmodule/linux/kernelringbuffer.h"

using namespace XModule::Linux;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) return 0;
    const std::string text = KestroFuzz::ToText(data + 1, size - 1);
    if (data[0] & 1)
        ParseKlogText(text);
    else
        ParseKmsgRecord(text);
    return 0;
}
