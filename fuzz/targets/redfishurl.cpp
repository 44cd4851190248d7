// The tool's reader of a BMC address (--redfish, --bmc).
#include "fuzzsupport.h"
#include "redfishtarget.h"
#include "rest/restsession.h"

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    XModule::ConnectionInfo info;
    std::string problem;
    if (!ParseRedfishUrl(KestroFuzz::ToText(data, size), info, problem)) {
        if (problem.empty()) {
            std::fprintf(stderr, "a refused address must say why\n");
            std::abort();
        }
        return 0;
    }
    if (info.host.empty() || info.user.empty()) {
        std::fprintf(stderr, "an accepted address lacks its host or user\n");
        std::abort();
    }
    Rest::BuildBaseUrl(info);
    return 0;
}
