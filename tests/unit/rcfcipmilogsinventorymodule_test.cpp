#include "repository/modules/rcfclogreader.h"

#include <gtest/gtest.h>

using namespace kestro::repository;

TEST(RCFCIPMILogsInventoryModuleTest, DirectionWordsMatchExactly)
{
    const struct {
        const char* text;
        const char* word;
    } cases[] = {
        {"Assertion event", "Assert"},   {"Deassertion event", "Deassert"}, {"assertion event", "Unknown"},
        {"Assertion event ", "Unknown"}, {"Assertion", "Unknown"},          {"", "Unknown"},
        {"N/A", "Unknown"},
    };
    for (const auto& c : cases) EXPECT_EQ(c.word, RCFCLogReader::DirectionWord(c.text)) << '"' << c.text << '"';
}
