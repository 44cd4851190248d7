#include "xmodule/linux/valueformat.h"

#include "xmodule/protocol/hardwareinfo.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace XModule {
namespace Linux {

namespace {
const char* const kByteUnits[] = {"B", "KiB", "MiB", "GiB", "TiB", "PiB", "EiB"};
}

std::string FormatBytes(std::uint64_t bytes)
{
    std::size_t unit = 0;
    std::uint64_t whole = bytes;
    while (whole >= 1024 && unit + 1 < sizeof kByteUnits / sizeof kByteUnits[0]) {
        whole /= 1024;
        ++unit;
    }
    const std::uint64_t scale = std::uint64_t(1) << (10 * unit);
    char text[48];
    if (bytes % scale == 0)
        std::snprintf(text, sizeof text, "%llu %s", static_cast<unsigned long long>(whole), kByteUnits[unit]);
    else
        std::snprintf(text, sizeof text, "%.1f %s", static_cast<double>(bytes) / static_cast<double>(scale),
                      kByteUnits[unit]);
    return text;
}

std::string FormatMegahertz(std::uint64_t megahertz) { return std::to_string(megahertz); }

std::string FormatDate(int year, int month, int day)
{
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d", year, month, day);
    return text;
}

std::string FormatDateTime(std::time_t when)
{
    std::tm parts;
    char text[48];
    if (!localtime_r(&when, &parts) || !std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &parts))
        return protocol::UNKNOWN_VALUE;
    return text;
}

std::string FormatUtcDateTime(std::time_t when)
{
    std::tm parts;
    char text[48];
    if (!gmtime_r(&when, &parts) || !std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts))
        return protocol::UNKNOWN_VALUE;
    return text;
}

std::string FormatHexId(unsigned id)
{
    char text[16];
    std::snprintf(text, sizeof text, "%04x", id);
    return text;
}

std::string FormatYesNo(bool yes) { return yes ? "Yes" : "No"; }

std::string TrimText(const std::string& text)
{
    std::string trimmed;
    bool blank = false;
    for (char c : text) {
        if (c == ' ' || c == '\t' || c == '\n' || c == '\r') {
            blank = !trimmed.empty();
            continue;
        }
        if (blank) trimmed += ' ';
        blank = false;
        trimmed += c;
    }
    return trimmed;
}

std::string TextOrUnknown(const std::string& text)
{
    const std::string trimmed = TrimText(text);
    return trimmed.empty() ? std::string(protocol::UNKNOWN_VALUE) : trimmed;
}

bool ParseDecimal(const std::string& text, std::uint64_t& value)
{
    const std::string number = TrimText(text);
    if (number.empty() || number.find_first_not_of("0123456789") != std::string::npos) return false;
    errno = 0;
    const unsigned long long parsed = std::strtoull(number.c_str(), nullptr, 10);
    if (errno == ERANGE) return false;
    value = parsed;
    return true;
}

}  // namespace Linux
}  // namespace XModule
