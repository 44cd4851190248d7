#include "kestro/repository/rtooltip.h"
#include "support/golden.h"
#include "support/logcapture.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <cstdlib>

using kestro::repository::RToolTip;

// Each test uses group names of its own (the fixture's start with "load-"): the tips live in one
// object for the whole process.

namespace {

bool HasRecordStarting(const LogCapture& capture, int level, const std::string& start, const std::string& fragment)
{
    for (const auto& record : capture.Records())
        if (record.first == level && record.second.compare(0, start.size(), start) == 0 &&
            record.second.find(fragment, start.size()) != std::string::npos)
            return true;
    return false;
}

// Runs in a fresh process, where no one has asked for the tips yet.
bool FirstUseBuildsOneObjectWithoutTips()
{
    TempDir home;
    home.Write("data/tooltip.xml", Fixture("repository/tooltip.xml"));
    ScopedEnv env("KESTRO_HOME", home.Path());
    const boost::shared_ptr<RToolTip> first = RToolTip::Instance();
    const bool empty = first->GetTypeTip("load-system", "Processor").empty();
    return first && first == RToolTip::Instance() && empty && first->LoadTooltips() &&
           first->GetTypeTip("load-system", "Processor") == "Sockets and cores";
}

}  // namespace

TEST(RToolTipDeathTest, FirstUseBuildsOneObjectWithoutTips)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(std::exit(FirstUseBuildsOneObjectWithoutTips() ? 0 : 1), ::testing::ExitedWithCode(0), "");
}

TEST(RToolTipTest, LoadsTheProgramTipsTheFirstMatchWinsAndMissesAreSilent)
{
    TempDir home;
    home.Write("data/tooltip.xml", Fixture("repository/tooltip.xml"));
    ScopedEnv env("KESTRO_HOME", home.Path());
    const boost::shared_ptr<RToolTip> tips = RToolTip::Instance();
    ASSERT_TRUE(tips);
    EXPECT_EQ(tips, RToolTip::Instance());

    ASSERT_TRUE(tips->LoadTooltips());
    ASSERT_TRUE(tips->LoadTooltips());
    EXPECT_EQ("Sockets and cores", tips->GetTypeTip("load-system", "Processor"));
    EXPECT_EQ("DIMMs & <b>ranks</b>", tips->GetTypeTip("load-system", "Memory"));

    // Misses give empty texts and log nothing.
    LogCapture capture;
    EXPECT_EQ("", tips->GetTypeTip("load-system", "Fan"));
    EXPECT_EQ("", tips->GetTypeTip("load-empty", "Processor"));
    EXPECT_EQ("", tips->GetTypeTip("Load-System", "Processor"));
    EXPECT_EQ("", tips->GetTypeTip("", ""));
    EXPECT_TRUE(capture.Records().empty()) << capture.Dump();
}

TEST(RToolTipTest, BrokenFilesAreLoggedAndCompleteGroupsStay)
{
    const struct {
        const char* name;
        const char* content;  // null: no file at all
        const char* failure;
    } cases[] = {
        {"missing file", nullptr, "cannot open file"},
        {"not XML", "<tooltip><group>", "tooltip.xml"},
        {"no tooltip root", "<tips><group><name>broken-root</name></group></tips>", "No such node (tooltip)"},
        {"group without name",
         "<tooltip><group><name>broken-kept</name><type><name>Fan</name><tip>Cooling</tip></type></group>"
         "<group><type><name>Fan</name><tip>lost</tip></type></group></tooltip>",
         "No such node (name)"},
        {"type without tip",
         "<tooltip><group><name>broken-first</name><type><name>Psu</name><tip>Power</tip></type></group>"
         "<group><name>broken-half</name><type><name>Psu</name><tip>lost</tip></type>"
         "<type><name>Fan</name></type></group>"
         "<group><name>broken-after</name><type><name>Psu</name><tip>lost</tip></type></group></tooltip>",
         "No such node (tip)"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        TempDir home;
        if (c.content) home.Write("data/tooltip.xml", c.content);
        ScopedEnv env("KESTRO_HOME", home.Path());
        LogCapture capture;
        EXPECT_FALSE(RToolTip::Instance()->LoadTooltips());
        EXPECT_TRUE(HasRecordStarting(capture, 1, "Failed to read tooltip XML: ", c.failure)) << capture.Dump();
    }
    const boost::shared_ptr<RToolTip> tips = RToolTip::Instance();
    EXPECT_EQ("Cooling", tips->GetTypeTip("broken-kept", "Fan"));
    EXPECT_EQ("Power", tips->GetTypeTip("broken-first", "Psu"));
    EXPECT_EQ("", tips->GetTypeTip("broken-half", "Psu"));
    EXPECT_EQ("", tips->GetTypeTip("broken-after", "Psu"));
}
