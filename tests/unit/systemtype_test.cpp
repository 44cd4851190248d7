#include "kestro/systemtype/systemtype.h"

#include "support/systemtypeprobe.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// This program's folder holds no repository_vxsystem.so: the normal case of a host of no family.
TEST(SystemTypeTest, WithoutThePlugInTheHostIsOfNoFamily)
{
    // Children re-run the program, so a detection by an earlier test of it does not leak in.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(DetectSystemTypeAndExit(nullptr, 1), ::testing::ExitedWithCode(kestro::SYSTEM_NO_FAMILY),
                ::testing::StrEq("2 [repo] Unable to load shared library vxsystem.so !!!\n"
                                 "2 [repo] load vexa server system lib failed\n"
                                 "3 [repo] Get SYSTEM TYPE VALUE: 1\n"
                                 "4 [repo] Check SYSTEM TYPE VALUE: 1\n"
                                 "calls: 0\n"));
    EXPECT_EXIT(DetectSystemTypeAndExit(nullptr, 2), ::testing::ExitedWithCode(kestro::SYSTEM_NO_FAMILY),
                ::testing::StrEq("4 [repo] Check SYSTEM TYPE VALUE: 1\n"
                                 "calls: 0\n"));
}
