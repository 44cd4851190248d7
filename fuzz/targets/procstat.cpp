// The reader of a /proc/<pid>/stat line.
#include "fuzzsupport.h"
#include "xmodule/linux/processes.h"

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    XModule::Linux::ProcStat stat;
    if (XModule::Linux::ParseProcStat(KestroFuzz::ToText(data, size), stat) && stat.pid.empty()) {
        std::fprintf(stderr, "a stat line was read without its pid\n");
        std::abort();
    }
    return 0;
}
