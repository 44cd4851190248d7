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
    const char* const cases[][4] = {
        // specification, name, filter key and value (empty: no filter)
        {"DataSource", "DataSource", "", ""},
        {"PCIAdapter?Class=Network=Card", "PCIAdapter", "Class", "Network=Card"},
        {"Memory?NoEquals", "Memory", "", ""},
    };
    for (const auto& c : cases) {
        const ReportType type = RReportCategory::ParseTypeSpecification(c[0]);
        EXPECT_EQ(c[1], type.name);
        ASSERT_EQ(*c[2] ? 1u : 0u, type.filters.size()) << c[0];
        if (*c[2]) {
            EXPECT_EQ(c[2], type.filters[0].key);
            EXPECT_EQ(c[3], type.filters[0].value);
        }
    }
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
    typedef std::vector<std::pair<std::string, std::string> > Groups;
    EXPECT_EQ((Groups{{"system", "System"}, {"hidden", "Hidden"}, {"capital", "Capital"}, {"system", "System again"}}),
              category.GetGroups());
    EXPECT_EQ((Groups{{"system", "System"}, {"capital", "Capital"}, {"system", "System again"}}),
              category.GetUnHiddenGroups());

    capture.Clear();
    category.Dump();
    EXPECT_TRUE(capture.Has(4, "[repo]     Type: PCIAdapter."));
    EXPECT_TRUE(capture.Has(4, "[repo]       Filter: Class, Network=Card."));
}

TEST(RReportCategoryTest, BrokenFilesFailWithTheirWords)
{
    const struct {
        const char* content;  // null: no file
        const char* failure;
    } cases[] = {
        {nullptr, "[repo] Failed to parse category XML: "},
        {"<report><category>", "[repo] Failed to parse category XML: "},
        {"<report><category><name>c</name><display>C</display><group><name>g</name></group></category></report>",
         "[repo] Failed to read category XML: No such node (display)"},
        {"<other/>", "[repo] Failed to read category XML: No such node (report)"},
    };
    for (const auto& c : cases) {
        TempDir dir;
        const std::string path = c.content ? dir.Write("category.xml", c.content) : dir.Path() + "/absent.xml";
        RReportCategory category(nullptr);
        LogCapture capture;
        EXPECT_FALSE(category.Load(path));
        EXPECT_EQ(1, capture.Count(c.failure)) << capture.Dump();
        EXPECT_EQ(c.content ? 0 : 1, capture.Count("cannot open file")) << capture.Dump();
        EXPECT_TRUE(category.GetGroups().empty());
    }
}
