#include "xmodule/linux/timezone.h"

#include <gtest/gtest.h>

using namespace XModule::Linux;

TEST(TimeZoneTest, NamesZonesFromLinksAndZoneFiles)
{
    const char* const links[][2] = {
        {"/usr/share/zoneinfo/Europe/Berlin", "Europe/Berlin"}, {"../usr/share/zoneinfo/Etc/UTC", "Etc/UTC"},
        {"/usr/share/zoneinfo/posix/America/New_York", "America/New_York"},
        {"/etc/alternatives/localtime", ""},                      {"", ""},
    };
    for (const auto& link : links) EXPECT_EQ(link[1], ParseZoneLink(link[0])) << link[0];

    const std::string header = std::string("TZif2") + std::string(39, '\0');
    struct Case {
        std::string bytes;
        const char* rule;
    };
    const Case cases[] = {
        {header + "\nCET-1CEST,M3.5.0,M10.5.0/3\n", "CET-1CEST,M3.5.0,M10.5.0/3"},
        {header + "\n<+03>-3\n", "<+03>-3"},
        {std::string("TZif") + std::string(40, '\0') + "\nUTC0\n", ""},
        {header + "\nCET-1CEST", ""},
        {"Europe/Berlin\n", ""},
        {"TZif", ""},
    };
    for (const Case& c : cases) EXPECT_EQ(c.rule, ParseZoneFileRule(c.bytes)) << c.bytes.size();
}
