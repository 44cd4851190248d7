#include "xmodule/linux/logtext.h"

#include "xmodule/protocol/hardwareinfo.h"

#include <boost/locale/utf.hpp>

#include <cstdio>

namespace XModule {
namespace Linux {

namespace {

typedef boost::locale::utf::utf_traits<char> Utf8;

bool IsKeptControl(unsigned char c) { return c == '\t' || c == '\n'; }

bool NeedsEscape(boost::locale::utf::code_point c)
{
    return c == boost::locale::utf::illegal || c == boost::locale::utf::incomplete ||
           ((c < 0x20 || c == 0x7f) && !IsKeptControl(static_cast<unsigned char>(c)));
}

void AppendEscaped(std::string& out, unsigned char byte)
{
    char escaped[8];
    std::snprintf(escaped, sizeof escaped, "\\x%02x", byte);
    out += escaped;
}

}  // namespace

std::string EscapeLogText(const std::string& raw)
{
    std::string out;
    out.reserve(raw.size());
    std::string::const_iterator p = raw.begin();
    while (p != raw.end()) {
        const std::string::const_iterator start = p;
        const boost::locale::utf::code_point c = Utf8::decode(p, raw.end());
        if (NeedsEscape(c)) {
            AppendEscaped(out, static_cast<unsigned char>(*start));
            p = start + 1;
        } else {
            out.append(start, p);
        }
    }
    return out;
}

std::string CutLogText(const std::string& text, std::size_t limit)
{
    if (text.size() <= limit) return text;
    std::size_t end = limit;
    while (end > 0 && Utf8::is_trail(text[end])) --end;
    return text.substr(0, end);
}

}  // namespace Linux
}  // namespace XModule
