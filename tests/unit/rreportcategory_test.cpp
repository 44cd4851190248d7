#include "repository/rreportcategory.h"
#include "support/logcapture.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

using namespace kestro::repository;

namespace {

const char kCategoryFile[] =
    "<?xml version=\"1.0\"?>\n"
    "<report>\n"
    "  <category><name>main</name><display>Main</display>\n"
    "    <group IsHidden=\"false\"><name>system</name><display>System</display>\n"
    "      <type>DataSource</type>\n"
    "      <type legacy=\"false\">Processor</type>\n"
    "      <type legacy=\"true\">OldThing</type>\n"
    "      <type legacy=\"\">EmptyLegacy</type>\n"
    "      <type>PCIAdapter?Class=Network=Card</type>\n"
    "      <type>Memory?NoEquals</type>\n"
    "    </group>\n"
    "    <note>ignored element</note>\n"
    "    <group IsHidden=\"true\"><name>hidden</name><display>Hidden</display><type>H</type></group>\n"
    "    <group legacy=\"true\"><name>old</name><display>Old</display><type>O</type></group>\n"
    "    <group IsHidden=\"true\" legacy=\"true\"><name>both</name><display>Both</display></group>\n"
    "    <group IsHidden=\"True\"><name>capital</name><display>Capital</display></group>\n"
    "  </category>\n"
    "  <category><name>more</name><display>More</display>\n"
    "    <group><name>system</name><display>System again</display><type>Extra</type></group>\n"
    "  </category>\n"
    "</report>\n";

}  // namespace

TEST(RReportCategoryTest, TypeSpecificationsParseNameAndOneFilter)
{
    const ReportType plain = RReportCategory::ParseTypeSpecification("DataSource");
    EXPECT_EQ("DataSource", plain.name);
    EXPECT_TRUE(plain.filters.empty());
    const ReportType filtered = RReportCategory::ParseTypeSpecification("PCIAdapter?Class=Network=Card");
    EXPECT_EQ("PCIAdapter", filtered.name);
    ASSERT_EQ(1u, filtered.filters.size());
    EXPECT_EQ("Class", filtered.filters[0].key);
    EXPECT_EQ("Network=Card", filtered.filters[0].value);
    const ReportType noEquals = RReportCategory::ParseTypeSpecification("Memory?NoEquals");
    EXPECT_EQ("Memory", noEquals.name);
    EXPECT_TRUE(noEquals.filters.empty());
}

TEST(RReportCategoryTest, GroupsTypesHiddenAndLegacy)
{
    TempDir dir;
    const std::string path = dir.Write("reportcategory_test.xml", kCategoryFile);
    RReportCategory category(nullptr);
    LogCapture capture;
    ASSERT_TRUE(category.Load(path));
    EXPECT_TRUE(capture.Has(3, "[repo] Loading category file: " + path));

    EXPECT_EQ((std::vector<std::string>{"DataSource", "Processor", "PCIAdapter", "Memory", "Extra"}),
              category.GetTypes("system"));
    EXPECT_TRUE(category.GetTypes("nothing").empty());

    const std::vector<std::pair<std::string, std::string> > groups = category.GetGroups();
    ASSERT_EQ(4u, groups.size());
    EXPECT_EQ("hidden", groups[1].first);
    EXPECT_EQ("capital", groups[2].first);
    EXPECT_EQ("system", groups[3].first);
    EXPECT_TRUE(capture.Has(4, "[repo] The group oldis legacy.")) << capture.Dump();

    capture.Clear();
    const std::vector<std::pair<std::string, std::string> > shown = category.GetUnHiddenGroups();
    ASSERT_EQ(3u, shown.size());
    EXPECT_EQ("system", shown[0].first);
    EXPECT_EQ("capital", shown[1].first);
    EXPECT_EQ("System again", shown[2].second);
    EXPECT_TRUE(capture.Has(4, "[repo] The group bothhas been hidden"));
    EXPECT_EQ(0, capture.Count("The group bothis legacy."));

    capture.Clear();
    category.Dump();
    EXPECT_TRUE(capture.Has(4, "[repo] Category: name = main, display = Main."));
    EXPECT_TRUE(capture.Has(4, "[repo] Group: name = system, display = System."));
    EXPECT_TRUE(capture.Has(4, "[repo]     Attribute: name = IsHidden, value = false"));
    EXPECT_TRUE(capture.Has(4, "[repo]     Type: PCIAdapter."));
    EXPECT_TRUE(capture.Has(4, "[repo]       Attribute: name = legacy, value = true"));
    EXPECT_TRUE(capture.Has(4, "[repo]       Filter: Class, Network=Card."));
}

TEST(RReportCategoryTest, BrokenFilesFailWithTheirWords)
{
    TempDir dir;
    LogCapture capture;
    RReportCategory missing(nullptr);
    EXPECT_FALSE(missing.Load(dir.Path() + "/absent.xml"));
    EXPECT_EQ(1, capture.Count("[repo] Failed to parse category XML: "));
    EXPECT_EQ(1, capture.Count("cannot open file"));

    RReportCategory malformed(nullptr);
    EXPECT_FALSE(malformed.Load(dir.Write("bad.xml", "<report><category>")));
    EXPECT_EQ(2, capture.Count("[repo] Failed to parse category XML: "));

    RReportCategory noDisplay(nullptr);
    EXPECT_FALSE(noDisplay.Load(dir.Write(
        "nodisplay.xml", "<report><category><name>c</name><display>C</display>"
                         "<group><name>g</name></group></category></report>")));
    EXPECT_TRUE(capture.Has(1, "[repo] Failed to read category XML: No such node (display)")) << capture.Dump();
    EXPECT_TRUE(noDisplay.GetGroups().empty());

    RReportCategory noReport(nullptr);
    EXPECT_FALSE(noReport.Load(dir.Write("other.xml", "<other/>")));
    EXPECT_TRUE(capture.Has(1, "[repo] Failed to read category XML: No such node (report)"));
}
