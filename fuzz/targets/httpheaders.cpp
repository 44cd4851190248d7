// The REST client's handling of a response's header block, fed line by line as libcurl does.
#include "fuzzsupport.h"
#include "rest/restclient_p.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>

namespace {

bool Trimmed(const std::string& text)
{
    return text.empty() || (!std::isspace(static_cast<unsigned char>(text.front())) &&
                            !std::isspace(static_cast<unsigned char>(text.back())));
}

void Fail(const char* what)
{
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string block = KestroFuzz::ToText(data, size);
    Rest::RestResult result;
    std::string::size_type start = 0;
    while (start < block.size()) {
        std::string::size_type end = block.find('\n', start);
        end = end == std::string::npos ? block.size() : end + 1;
        const std::string line = block.substr(start, end - start);
        const auto before = result.headers;
        Rest::StoreHeaderText(line, result);
        bool blank = true;
        for (const char c : line) blank = blank && std::isspace(static_cast<unsigned char>(c));
        if (blank && result.headers != before) Fail("a blank line changed the headers");
        start = end;
    }
    for (const auto& header : result.headers) {
        // A name ends at the first colon of its line; a status line has none.
        if (header.first.find(':') != std::string::npos) Fail("a stored name holds a colon");
        if (!Trimmed(header.first) || !Trimmed(header.second)) Fail("a stored name or value keeps its blanks");
    }
    return 0;
}
