// The udev database record reader, and the decoding of its "_ENC" properties.
#include "fuzzsupport.h"
#include "xmodule/linux/udevdatabase.h"

using namespace XModule::Linux;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text = KestroFuzz::ToText(data, size);
    const UdevRecord record = ParseUdevRecord(text);
    for (const auto& property : record.properties) DecodeUdevText(property.second);
    record.Get("ID_MODEL");
    DecodeUdevText(text);
    return 0;
}
