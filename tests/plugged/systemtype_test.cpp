#include "kestro/systemtype/systemtype.h"

#include "support/systemtypeprobe.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

// This program's folder holds the test plug-in repository_vxsystem.so, told what to answer.

namespace {

std::string Detection(const std::string& result, int value, int calls)
{
    return "4 [repo] start to add vexa server modules func !!!\n" + result +
           "3 [repo] Get SYSTEM TYPE VALUE: " + std::to_string(value) + "\n" +
           "4 [repo] Check SYSTEM TYPE VALUE: " + std::to_string(value) + "\n" +
           "calls: " + std::to_string(calls) + "\n";
}

}  // namespace

TEST(SystemTypePluggedTest, EachAnswerOfThePlugInGivesItsValue)
{
    // Children re-run the program, so a detection by an earlier test of it does not leak in.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const struct {
        const char* answer;
        int value;
        int calls;   // the entry is asked again for every row until one matches
        const char* result;
    } cases[] = {
        {"0", kestro::SYSTEM_VEXASERVER, 1, "3 [repo] Target system is VexaServer\n"},
        {"2", kestro::SYSTEM_NO_FAMILY, 2, "3 [repo] Target system is AMD\n"},
        {"3", kestro::SYSTEM_TV5X, 3, "3 [repo] Target system is System_TV5X\n"},
        {"4", kestro::SYSTEM_VEXASERVER_CHINA, 4, "3 [repo] Target system is china for china VexaServer\n"},
        {"5", kestro::SYSTEM_TV50V2, 5, "3 [repo] Target system is System_TV50V2\n"},
        {"6", kestro::SYSTEM_TV45V2, 6, "3 [repo] Target system is System_TV45V2\n"},
        {"1", kestro::SYSTEM_NO_FAMILY, 6, "3 [repo] Target system is not VexaServer\n"},
        {"7", kestro::SYSTEM_NO_FAMILY, 6, "3 [repo] Target system is not VexaServer\n"},
        {"-1", kestro::SYSTEM_NO_FAMILY, 6, "3 [repo] Target system is not VexaServer\n"},
        {"throw", kestro::SYSTEM_NO_FAMILY, 1,
         "2 [repo] Run api(CheckVexaServer) failed in the lib -- repository_vxsystem\n"},
    };
    for (const auto& c : cases) {
        EXPECT_EXIT(DetectSystemTypeAndExit(c.answer, 1), ::testing::ExitedWithCode(c.value),
                    ::testing::StrEq(Detection(c.result, c.value, c.calls)))
            << "answer " << c.answer;
    }
}

TEST(SystemTypePluggedTest, ALaterQueryOnlyReportsTheStoredValue)
{
    // Children re-run the program, so a detection by an earlier test of it does not leak in.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(DetectSystemTypeAndExit("5", 3), ::testing::ExitedWithCode(kestro::SYSTEM_TV50V2),
                ::testing::StrEq("4 [repo] Check SYSTEM TYPE VALUE: 5\n"
                                 "calls: 5\n"));
}
