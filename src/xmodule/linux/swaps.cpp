#include "xmodule/linux/swaps.h"

#include "kestro/xmodule/log.h"
#include "xmodule/linux/hostsources.h"
#include "xmodule/linux/valueformat.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>

#include <cstdlib>
#include <limits>

namespace XModule {
namespace Linux {

namespace {

const char kSwaps[] = "/proc/swaps";

enum SwapColumn { NAME, TYPE, SIZE, USED, PRIORITY, COLUMNS };

bool IsOctal(char c) { return c >= '0' && c <= '7'; }

// The kernel writes blanks, tabs, line breaks and backslashes of a path as "\ooo" (a space is "\040").
std::string UnescapeOctal(const std::string& name)
{
    std::string plain;
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (name[i] == '\\' && i + 3 < name.size() && IsOctal(name[i + 1]) && IsOctal(name[i + 2]) &&
            IsOctal(name[i + 3])) {
            plain += static_cast<char>(((name[i + 1] - '0') << 6) | ((name[i + 2] - '0') << 3) | (name[i + 3] - '0'));
            i += 3;
        } else {
            plain += name[i];
        }
    }
    return plain;
}

// A size in KiB as the kernel writes it; "N/A" for anything else.
std::string FormatKibibytes(const std::string& field)
{
    char* end = nullptr;
    const unsigned long long kib = std::strtoull(field.c_str(), &end, 10);
    if (field.empty() || field[0] == '-' || *end != '\0' || kib > std::numeric_limits<std::uint64_t>::max() / 1024)
        return protocol::UNKNOWN_VALUE;
    return FormatBytes(static_cast<std::uint64_t>(kib) * 1024);
}

bool ParseSwapLine(const std::string& line, protocol::PageFileInfo& area)
{
    std::vector<std::string> fields;
    boost::algorithm::split(fields, line, boost::algorithm::is_any_of(" \t"), boost::algorithm::token_compress_on);
    if (!fields.empty() && fields.front().empty()) fields.erase(fields.begin());
    if (fields.size() < COLUMNS) return false;
    area.Name = UnescapeOctal(fields[NAME]);
    area.Type = TextOrUnknown(fields[TYPE]);
    area.Size = FormatKibibytes(fields[SIZE]);
    area.Used = FormatKibibytes(fields[USED]);
    area.Priority = TextOrUnknown(fields[PRIORITY]);
    return true;
}

}  // namespace

std::vector<protocol::PageFileInfo> ParseSwaps(const std::string& text)
{
    std::vector<protocol::PageFileInfo> areas;
    std::vector<std::string> lines;
    boost::algorithm::split(lines, text, boost::algorithm::is_any_of("\n"));
    for (std::size_t i = 1; i < lines.size(); ++i) {
        if (TrimText(lines[i]).empty()) continue;
        protocol::PageFileInfo area;
        if (ParseSwapLine(lines[i], area))
            areas.push_back(area);
        else
            XLOG(XModule::LOG_WARN) << "[repo] swaps line not understood: " << lines[i].substr(0, 80);
    }
    return areas;
}

void CollectPageFiles(std::vector<protocol::PageFileInfo>& files)
{
    std::string text;
    if (ReadExpectedSource(kSwaps, text)) files = ParseSwaps(text);
}

}  // namespace Linux
}  // namespace XModule
