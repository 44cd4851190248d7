#include "support/golden.h"

#include <boost/filesystem/operations.hpp>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace {

std::string PathOf(const std::string& name) { return std::string(KESTRO_TEST_FIXTURES) + "/golden/" + name; }

std::string ReadWhole(const std::string& path)
{
    std::ifstream in(path.c_str(), std::ios::binary);
    if (!in) {
        ADD_FAILURE() << "no fixture file " << path;
        return std::string();
    }
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}

std::string LineAt(const std::string& text, size_t number)
{
    std::istringstream in(text);
    std::string line;
    for (size_t i = 0; i <= number; ++i)
        if (!std::getline(in, line)) return "(no such line)";
    return line;
}

}  // namespace

std::string Fixture(const std::string& name) { return ReadWhole(std::string(KESTRO_TEST_FIXTURES) + "/" + name); }

std::string Golden(const std::string& name, const GoldenValues& values)
{
    const std::string text = ReadWhole(PathOf(name));

    std::string filled;
    std::map<std::string, int> used;
    std::string::size_type at = 0;
    for (std::string::size_type open; (open = text.find('@', at)) != std::string::npos;) {
        const std::string::size_type close = text.find('@', open + 1);
        if (close == std::string::npos) break;
        const std::string token = text.substr(open + 1, close - open - 1);
        if (token.empty() || token.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_") != std::string::npos) {
            filled += text.substr(at, open + 1 - at);  // a lone '@' of the text itself
            at = open + 1;
            continue;
        }
        const GoldenValues::const_iterator value = values.find(token);
        if (value == values.end()) {
            ADD_FAILURE() << name << ": no value given for @" << token << "@";
            filled += text.substr(at, close + 1 - at);
        } else {
            filled += text.substr(at, open - at) + value->second;
            ++used[token];
        }
        at = close + 1;
    }
    filled += text.substr(at);
    for (const auto& value : values)
        if (!used.count(value.first)) ADD_FAILURE() << name << ": value for @" << value.first << "@ is never used";
    return filled;
}

::testing::AssertionResult MatchesGolden(const std::string& name, const std::string& actual, const GoldenValues& values)
{
    const char* update = std::getenv("KESTRO_GOLDEN_UPDATE");
    if (update && std::string(update) == "1" && values.empty()) {
        boost::filesystem::create_directories(boost::filesystem::path(PathOf(name)).parent_path());
        std::ofstream out(PathOf(name).c_str(), std::ios::binary);
        out << actual;
        return ::testing::AssertionFailure() << "rewrote golden file " << PathOf(name) << "; check it and run again";
    }
    const std::string expected = Golden(name, values);
    if (expected == actual) return ::testing::AssertionSuccess();
    size_t line = 0;
    for (size_t i = 0; i < expected.size() && i < actual.size() && expected[i] == actual[i]; ++i)
        if (expected[i] == '\n') ++line;
    return ::testing::AssertionFailure() << "differs from golden " << name << " at line " << line + 1
                                         << "\n  expected: " << LineAt(expected, line)
                                         << "\n  actual:   " << LineAt(actual, line) << "\nwhole text:\n"
                                         << actual;
}

std::string PageBody(const std::string& page, const std::string& title)
{
    const std::string top = "<div class=\"pagetitle\">" + title + "</div>\n";
    const std::string::size_type begin = page.find(top);
    const std::string::size_type end = page.rfind("<br/><br/>\n");
    if (begin == std::string::npos || end == std::string::npos || end < begin + top.size())
        return "malformed page: " + page;
    return page.substr(begin + top.size(), end - begin - top.size());
}
