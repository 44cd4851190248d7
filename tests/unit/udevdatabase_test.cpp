#include "xmodule/linux/udevdatabase.h"

#include <gtest/gtest.h>

using XModule::Linux::DecodeUdevText;

TEST(UdevDatabaseTest, DecodesEscapedPropertyText)
{
    const char* const cases[][2] = {
        {"SAMSUNG\\x20MZ7LH480HAHQ-00005\\x20\\x20", "SAMSUNG MZ7LH480HAHQ-00005  "}, {"a\\x2fb\\x5C", "a/b\\"},
        {"plain", "plain"}, {"", ""}, {"cut\\x2", "cut\\x2"}, {"bad\\xZZ", "bad\\xZZ"}, {"lone\\", "lone\\"},
        {"\\y41", "\\y41"}};
    for (const auto& c : cases) EXPECT_EQ(c[1], DecodeUdevText(c[0])) << c[0];
}
