// The dpkg status file reader and the copyright-file licence reader; the first byte picks which.
#include "fuzzsupport.h"
#include "xmodule/linux/dpkgstatus.h"

using namespace XModule::Linux;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) return 0;
    const std::string text = KestroFuzz::ToText(data + 1, size - 1);
    if (data[0] & 1)
        ParseCopyrightLicense(text);
    else
        ParseDpkgStatus(text);
    return 0;
}
