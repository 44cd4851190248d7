// The EDID decoder over a connector's edid file, and the monitor record made of it.
#include "fuzzsupport.h"
#include "xmodule/linux/edid.h"
#include "xmodule/linux/graphicsinventory.h"

using namespace XModule::Linux;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const Edid edid = ParseEdid(KestroFuzz::ToText(data, size));
    edid.VersionText();
    DescribeMonitor(edid, "On");
    return 0;
}
