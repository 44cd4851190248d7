// The systemd unit file reader.
#include "fuzzsupport.h"
#include "xmodule/linux/systemdunits.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    XModule::Linux::ParseUnitFile(KestroFuzz::ToText(data, size));
    return 0;
}
