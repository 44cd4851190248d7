#include "xmodule/linux/valueformat.h"

#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <ctime>
#include <limits>

using namespace XModule::Linux;

TEST(ValueFormatTest, FormatsMomentsInLocalTimeAndUtc)
{
    struct Case {
        std::time_t when;
        const char* local;
        const char* utc;
    };
    const Case cases[] = {
        {0, "1970-01-01T01:00:00", "1970-01-01T00:00:00Z"},
        {1795578532, "2026-11-25T04:48:52", "2026-11-25T03:48:52Z"},
        {1782172800, "2026-06-23T02:00:00", "2026-06-23T00:00:00Z"},
    };
    {
        ScopedEnv zone("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
        tzset();
        for (const Case& c : cases) {
            EXPECT_EQ(c.local, FormatDateTime(c.when)) << c.when;
            EXPECT_EQ(c.utc, FormatUtcDateTime(c.when)) << c.when;
        }
    }
    tzset();
    EXPECT_EQ("N/A", FormatUtcDateTime(std::numeric_limits<std::time_t>::max()));
}
