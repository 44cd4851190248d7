// The REST client's handling of a response's header block, fed line by line as libcurl does.
#include "fuzzsupport.h"
#include "rest/restclient_p.h"

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string block = KestroFuzz::ToText(data, size);
    Rest::RestResult result;
    std::string::size_type start = 0;
    while (start < block.size()) {
        std::string::size_type end = block.find('\n', start);
        end = end == std::string::npos ? block.size() : end + 1;
        Rest::StoreHeaderText(block.substr(start, end - start), result);
        start = end;
    }
    // A stored line is never blank: the block's closing line must not become a header.
    for (const auto& header : result.headers)
        if (header.first.empty() && header.second == "present") {
            std::fprintf(stderr, "a blank line was stored as a header\n");
            std::abort();
        }
    return 0;
}
