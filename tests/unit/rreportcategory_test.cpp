#include "repository/rreportcategory.h"
#include "support/golden.h"
#include "support/logcapture.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

using namespace kestro::repository;

TEST(RReportCategoryTest, TypeTextsParseNameAndOneFilter)
{
    const char* const cases[][4] = {
        // type text, name, filter key and value (empty: no filter)
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
    const std::string path = dir.Write("reportcategory_test.xml", Fixture("repository/reportcategory_parse.xml"));
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
