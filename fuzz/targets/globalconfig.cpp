// The global.config reader: the parse, then the number look-up over the file in the program's home.
#include "fuzzsupport.h"

#include "kestro/xmodule/globalconfig.h"

#include <cstdlib>
#include <sstream>

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    setenv("KESTRO_HOME", KestroFuzz::ProcessFolder().c_str(), 1);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text = KestroFuzz::ToText(data, size);
    std::istringstream in(text);
    const std::map<std::string, std::string> items = XModule::GlobalConfig::Parse(in);

    KestroFuzz::WriteInputFile("global.config", text);
    // Each look-up reads the file again; a few keys are enough to reach every branch.
    int asked = 0;
    for (const auto& item : items) {
        if (++asked > 4) break;
        XModule::GetGlobalConfigValue(item.first, -7);
    }
    XModule::GetGlobalConfigValue("KESTRO_SYSLOG_READ_MAX", 10000);
    return 0;
}
