#include "xmodule/ihv/keyvaluetext.h"

#include <boost/algorithm/string/split.hpp>
#include <boost/algorithm/string/trim.hpp>

namespace XModule {
namespace XModuleIHV {

bool SplitKeyValue(const std::string& line, std::string& key, std::string& value)
{
    const std::size_t colon = line.find(':');
    if (colon == std::string::npos) return false;
    key = boost::algorithm::trim_copy(line.substr(0, colon));
    value = boost::algorithm::trim_copy(line.substr(colon + 1));
    return !key.empty();
}

std::vector<std::string> TextLines(const std::string& text)
{
    std::vector<std::string> lines;
    boost::algorithm::split(lines, text, [](char c) { return c == '\n'; });
    for (std::string& line : lines)
        if (!line.empty() && line.back() == '\r') line.pop_back();
    return lines;
}

}  // namespace XModuleIHV
}  // namespace XModule
