#include "kestro/xmodule/uri.h"

#include <gtest/gtest.h>

TEST(UriTest, EncodeUriKeepsAddressMarksAndEncodesTheRest)
{
    const struct {
        const char* input;
        const char* expected;
    } cases[] = {
        {"", ""},
        {"Passw0rd", "Passw0rd"},
        {"p@ss:w/d?a=b&c+d$e#f;g,h", "p@ss:w/d?a=b&c+d$e#f;g,h"},
        {"-_.!~*'()", "-_.!~*'()"},
        {"with space", "with%20space"},
        {"100%", "100%25"},
        {"%41", "%2541"},
        {"a\"b<c>d\\e^f`g{h}i|j", "a%22b%3Cc%3Ed%5Ce%5Ef%60g%7Bh%7Di%7Cj"},
        {"[::1]", "%5B::1%5D"},
        {"\xC3\xA9t\xC3\xA9", "%C3%A9t%C3%A9"},
        {"tab\there\n", "tab%09here%0A"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.expected, XModule::Uri::encodeURI(c.input)) << c.input;
    EXPECT_EQ("nul%00byte", XModule::Uri::encodeURI(std::string("nul\0byte", 8)));
}
