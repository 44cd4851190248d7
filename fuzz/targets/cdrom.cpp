// The reader of the cdrom driver's info table (/proc/sys/dev/cdrom/info).
#include "fuzzsupport.h"
#include "xmodule/linux/opticaldrives.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    XModule::Linux::ParseCdromInfo(KestroFuzz::ToText(data, size));
    return 0;
}
