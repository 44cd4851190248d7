#include "kestro/repository/rinstance.h"
#include "kestro/repository/rrepository.h"
#include "support/fixturehost.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

#include <boost/filesystem/operations.hpp>

using namespace kestro::repository;

namespace {

const char* const kDataFiles[] = {"repository.css", "sorttable.js", "tooltip.js", "orvena_logo.png", "banner_bg.png",
                                  "header_bg.png",  "i.gif",        "w.gif",      "e.gif"};

// Groups that cover each line of the navigator's decision table.
const char kCategories[] =
    "<report>"
    "<category><name>main</name><display>Main</display>"
    "<group><name>system_overview</name><display>Overview</display><type>DataSource</type></group>"
    "<group IsHidden=\"true\"><name>hidden_data</name><display>Hidden</display><type>DataSource</type></group>"
    "<group legacy=\"true\"><name>legacy_data</name><display>Legacy data</display><type>DataSource</type></group>"
    "<group><name>empty</name><display>Empty</display><type>ExecutionErrorLog</type></group>"
    "<group IsHidden=\"True\"><name>capital</name><display>Capital</display></group>"
    "<group legacy=\"true\"><name>legacy_empty</name><display>Legacy empty</display></group>"
    "<group><name>nodisplay</name><display></display><type>DataSource</type></group>"
    "<group><name>uefi_hidden_log</name><display>UEFI</display><type>DataSource</type></group>"
    "<group><name>filtered</name><display>Filtered</display><type>DataSource?Name=nomatch</type>"
    "<type>Unknown</type></group>"
    "</category>"
    "<category><name>skipped</name><display>Nothing shown</display>"
    "<group><name>uefi_hidden_log</name><display>UEFI</display></group>"
    "</category>"
    "</report>";

void PrepareHome(const FixtureHost& host)
{
    host.Dir().Write("data/reportcategory_rhel.xml", kCategories);
    for (const char* file : kDataFiles) host.Dir().Write(std::string("data/") + file, file);
}

bool Exists(const std::string& path) { return boost::filesystem::exists(path); }

}  // namespace

TEST(RReportSiteTest, NavigatorFollowsTheGroupDecisionTable)
{
    FixtureHost host("ID=rhel\n");
    PrepareHome(host);
    const std::string site = host.Dir().Path() + "/site";
    boost::filesystem::create_directory(site);
    RRepository repo(ConnectLocal);
    repo.SetProductName("SR650");
    repo.SetDataSource("kestro", "1", "4.4.1");
    LogCapture capture;
    ASSERT_TRUE(repo.WriteHTML(site));

    EXPECT_EQ(
        "<!DOCTYPE html>\n<html>\n<head>\n"
        "<meta http-equiv=\"content-type\" content=\"text/html; charset=utf-8\">\n"
        "<link rel=\"stylesheet\" type=\"text/css\" href=\"data/repository.css\" />\n"
        "</head>\n<body>\n"
        "<table id=\"navigator\">\n"
        "<tr><th>Main</th></tr>\n"
        "<tr><td><a href=\"system_overview.html\" target=\"content_frame\">Overview</a></td></tr>\n"
        "<tr><td><a href=\"legacy_data.html\" target=\"content_frame\">Legacy data</a></td></tr>\n"
        "<tr><td>Empty</td></tr>\n"
        "<tr><td>Capital</td></tr>\n"
        "<tr><td>Filtered</td></tr>\n"
        "<tr><th>Nothing shown</th></tr>\n"
        "</table>\n</body>\n</html>\n",
        host.Dir().Read("site/navigator.html"));
    for (const char* page : {"system_overview", "hidden_data", "legacy_data", "empty", "capital", "legacy_empty",
                             "filtered"})
        EXPECT_TRUE(Exists(site + "/" + page + ".html")) << page;
    EXPECT_FALSE(Exists(site + "/nodisplay.html"));
    EXPECT_FALSE(Exists(site + "/uefi_hidden_log.html"));
    EXPECT_TRUE(capture.Has(3, "[repo] Begin to write HTML for group hidden_data"));
    EXPECT_TRUE(capture.Has(2, "[repo] Cannot find type name to build wrapper: Unknown"));
    EXPECT_NE(std::string::npos, host.Dir().Read("site/system_overview.html").find("<td>kestro</td>"));
    EXPECT_EQ(std::string::npos, host.Dir().Read("site/filtered.html").find("<table"));

    EXPECT_NE(std::string::npos, host.Dir().Read("site/index.html").find(
                                     "<title>Orvena Quantrel Essentials  SR650</title>\n"));
    EXPECT_NE(std::string::npos, host.Dir().Read("site/index.html").find(
                                     "    <frame name=\"content_frame\" src=\"system_overview.html\">\n"));
    EXPECT_NE(std::string::npos, host.Dir().Read("site/header.html").find(
                                     "<td class=\"title\">Orvena Quantrel Essentials  SR650</td>\n"));
    for (const char* file : kDataFiles) EXPECT_EQ(file, host.Dir().Read(std::string("site/data/") + file));
}

TEST(RReportSiteTest, DataFolderIsKeptAndFailuresAreReported)
{
    FixtureHost host("ID=rhel\n");
    PrepareHome(host);
    const std::string site = host.Dir().Path() + "/site";
    boost::filesystem::create_directory(site);
    RRepository repo(ConnectLocal);
    ASSERT_TRUE(repo.WriteHTML(site));
    boost::filesystem::remove(site + "/data/repository.css");
    ASSERT_TRUE(repo.WriteHTML(site));
    EXPECT_FALSE(Exists(site + "/data/repository.css"));

    LogCapture capture;
    EXPECT_FALSE(repo.WriteHTML(site + "/index.html"));
    EXPECT_TRUE(capture.Has(1, "[repo] Directory not exist: " + site + "/index.html"));

    const std::string blocked = host.Dir().Path() + "/blocked";
    boost::filesystem::create_directories(blocked + "/index.html");
    EXPECT_FALSE(repo.WriteHTML(blocked));
    EXPECT_TRUE(capture.Has(1, "[repo] Failed to write index page: " + blocked + "/index.html"));
    EXPECT_FALSE(Exists(blocked + "/header.html"));

    RRepository noCategories(ConnectSmm);
    EXPECT_FALSE(noCategories.WriteHTML(site));
    EXPECT_EQ(1, capture.Count("Failed to parse category XML: "));
}

TEST(RReportSiteTest, ChassisCasesOpenOnTheirOwnPage)
{
    FixtureHost host("ID=rhel\n");
    for (const char* mode : {"smm", "cmm"}) {
        host.Dir().Write(std::string("data/reportcategory_") + mode + ".xml", kCategories);
        const std::string site = host.Dir().Path() + "/" + mode;
        boost::filesystem::create_directory(site);
        RRepository repo(std::string(mode) == "smm" ? ConnectSmm : ConnectCmm);
        ASSERT_TRUE(repo.WriteHTML(site));
        EXPECT_NE(std::string::npos, host.Dir().Read(std::string(mode) + "/index.html")
                                         .find(std::string("src=\"") + mode + "_inventory.html\">"))
            << mode;
    }
}
