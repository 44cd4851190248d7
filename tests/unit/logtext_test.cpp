#include "xmodule/linux/logtext.h"

#include <gtest/gtest.h>

using namespace XModule::Linux;

TEST(LogTextTest, EscapesOddBytesAndCutsOnCharacterBoundaries)
{
    struct Case {
        std::string raw;
        std::string escaped;
    };
    const Case cases[] = {
        {"plain\ttext\nnext", "plain\ttext\nnext"},
        {"\xc3\xa9t\xc3\xa9 \xe2\x82\xac \xf0\x9f\x90\xa7", "\xc3\xa9t\xc3\xa9 \xe2\x82\xac \xf0\x9f\x90\xa7"},
        {std::string("nul\0bell\a del\x7f", 14), "nul\\x00bell\\x07 del\\x7f"},
        {"overlong \xc0\xaf surrogate \xed\xa0\x80", "overlong \\xc0\\xaf surrogate \\xed\\xa0\\x80"},
        {"cut \xe2\x82", "cut \\xe2\\x82"},
    };
    for (const Case& c : cases) EXPECT_EQ(c.escaped, EscapeLogText(c.raw)) << c.raw;

    const std::string euro = "ab\xe2\x82\xac";
    const std::size_t limits[] = {0, 2, 3, 4, 5, 9};
    const char* const cut[] = {"", "ab", "ab", "ab", "ab\xe2\x82\xac", "ab\xe2\x82\xac"};
    for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(cut[i], CutLogText(euro, limits[i])) << limits[i];
}
