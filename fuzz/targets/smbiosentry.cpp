// The SMBIOS entry point reader ("_SM_" and "_SM3_").
#include "fuzzsupport.h"
#include "xmodule/linux/smbios.h"

using namespace XModule::Linux;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    SmbiosVersion version;
    if (ParseSmbiosEntryPoint(KestroFuzz::ToText(data, size), version)) version.AtLeast(2, 6);
    return 0;
}
