#include "xmodule/linux/sysfsnumber.h"

#include <limits>

namespace XModule {
namespace Linux {

bool ParseSysfsDecimal(const std::string& text, std::uint64_t& value)
{
    const std::size_t end = text.find_last_not_of(" \t\r\n");
    if (end == std::string::npos) return false;
    std::uint64_t parsed = 0;
    const std::uint64_t limit = std::numeric_limits<std::uint64_t>::max();
    for (std::size_t i = 0; i <= end; ++i) {
        const char c = text[i];
        if (c < '0' || c > '9') return false;
        const unsigned digit = static_cast<unsigned>(c - '0');
        if (parsed > (limit - digit) / 10) return false;
        parsed = parsed * 10 + digit;
    }
    value = parsed;
    return true;
}

}  // namespace Linux
}  // namespace XModule
