#include "kestro/repository/rrepository.h"
#include "support/logcapture.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <boost/filesystem.hpp>
#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>

#include <algorithm>
#include <set>
#include <string>

// The category and tooltip files that ship in data/, loaded and run by the library as the tool does.

namespace {

using kestro::repository::RGroupList;
using kestro::repository::RInventoryCase;
using kestro::repository::RRepository;

const std::string kShippedHome = boost::filesystem::path(KESTRO_SOURCE_DATA).parent_path().string();

bool HasGroup(const RGroupList& groups, const std::string& name)
{
    return std::any_of(groups.begin(), groups.end(),
                       [&name](const std::pair<std::string, std::string>& g) { return g.first == name; });
}

// The page the site's index opens first.
std::string StartGroup(const std::string& caseName)
{
    if (caseName == "cmm" || caseName == "smm") return caseName + "_inventory";
    return "system_overview";
}

const char* const kEventPages[] = {"application_event", "system_event", "security_event"};

}  // namespace

// Every group of the tooltip file is also a group of some case, or its tips would never show.
TEST(ReportCategoryFilesTest, EveryCaseLoadsRunsGroupByGroupAndWritesItsStartPageAndEveryToolTipGroupIsOne)
{
    ScopedEnv home("KESTRO_HOME", kShippedHome);
    LogCapture log;
    std::set<std::string> reportGroups;
    for (int c = 0; c < kestro::repository::INVENTORY_CASE_COUNT; ++c) {
        const std::string name = RRepository::INVENTORY_CASES[c];
        SCOPED_TRACE(name);
        RRepository repo(XModule::ConnectionInfo(), static_cast<RInventoryCase>(c));
        repo.SetDataSource("kestro", "b1", "1.0");
        ASSERT_TRUE(repo.LoadCategories());

        const RGroupList groups = repo.GetInventoryGroups();
        for (const auto& group : groups) reportGroups.insert(group.first);
        const RGroupList shown = repo.GetUnHiddenInventoryGroups();
        ASSERT_TRUE(HasGroup(shown, StartGroup(name)));

        // Types that only older files hold have no collector: a group that listed one would raise here.
        for (const auto& group : groups) EXPECT_NO_THROW(repo.RunInventory(group.first)) << group.first;
        EXPECT_EQ(0, log.Count("Cannot find group name in category file")) << log.Dump();

        // A default event page and its full page come together; only the default one is listed.
        for (const char* page : kEventPages) {
            const std::string all = std::string(page) + "_all";
            EXPECT_EQ(HasGroup(groups, page), HasGroup(groups, all)) << page;
            EXPECT_FALSE(HasGroup(shown, all)) << all;
        }

        TempDir site;
        ASSERT_TRUE(repo.WriteHTML(site.Path()));
        // The index opens the case's first page, which shows a filled table, not only a title.
        EXPECT_NE(std::string::npos, site.Read("index.html").find("src=\"" + StartGroup(name) + ".html\">"));
        const std::string start = site.Read(StartGroup(name) + ".html");
        EXPECT_NE(std::string::npos, start.find("<div class=\"tabletitle\">Data Source</div>"));
        for (const char* file : {"repository.css", "sorttable.js", "tooltip.js", "orvena_logo.png", "banner_bg.png",
                                 "header_bg.png", "i.gif", "w.gif", "e.gif"})
            EXPECT_TRUE(boost::filesystem::exists(site.Path() + "/data/" + file)) << file;
        log.Clear();
    }

    boost::property_tree::ptree tips;
    boost::property_tree::read_xml(std::string(KESTRO_SOURCE_DATA) + "/tooltip.xml", tips);
    int groups = 0;
    for (const auto& group : tips.get_child("tooltip")) {
        if (group.first != "group") continue;
        ++groups;
        const std::string name = group.second.get<std::string>("name");
        EXPECT_EQ(1u, reportGroups.count(name)) << "tips of " << name << " would never show";
        for (const auto& type : group.second)
            if (type.first == "type") { EXPECT_FALSE(type.second.get<std::string>("tip").empty()) << name; }
    }
    EXPECT_GT(groups, 0);
}
