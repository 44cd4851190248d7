#include "kestro/repository/rinstance.h"
#include "kestro/repository/rinstanceswrapper.h"
#include "kestro/repository/rmodule.h"
#include "kestro/repository/rrepository.h"
#include "repository/rrepository_p.h"
#include "support/fixturehost.h"
#include "support/golden.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

#include <boost/filesystem/operations.hpp>
#include <boost/make_shared.hpp>

using namespace kestro::repository;

namespace {

const char* const kDataFiles[] = {"repository.css", "sorttable.js", "tooltip.js", "orvena_logo.png", "banner_bg.png",
                                  "header_bg.png",  "i.gif",        "w.gif",      "e.gif"};

// Fills the host's data folder and gives an empty site folder beside it.
std::string PrepareHome(const FixtureHost& host)
{
    host.Dir().Write("data/reportcategory_rhel.xml", Fixture("repository/reportcategory_decisions.xml"));
    for (const char* file : kDataFiles) host.Dir().Write(std::string("data/") + file, file);
    const std::string site = host.Dir().Path() + "/site";
    boost::filesystem::create_directory(site);
    return site;
}

bool Exists(const std::string& path) { return boost::filesystem::exists(path); }

}  // namespace

TEST(RReportSiteTest, PagesFollowTheGroupDecisionTableTheDataFolderIsKeptAndFailuresAreReported)
{
    FixtureHost host("ID=rhel\n");
    const std::string site = PrepareHome(host);
    boost::filesystem::remove(host.Dir().Path() + "/data/e.gif");
    RRepository repo(ConnectLocal);
    repo.SetDataSource("kestro", "1", "4.4.1");
    repo.SetProductName("SR650 V3");
    LogCapture capture;
    ASSERT_TRUE(repo.WriteHTML(site));

    for (const char* page : {"navigator.html", "index.html", "header.html"})
        EXPECT_TRUE(MatchesGolden(std::string("reportsite/") + page, host.Dir().Read(std::string("site/") + page)));
    for (const char* page : {"system_overview", "hidden_data", "legacy_data", "empty", "capital", "legacy_empty",
                             "filtered"})
        EXPECT_TRUE(Exists(site + "/" + page + ".html")) << page;
    EXPECT_FALSE(Exists(site + "/nodisplay.html"));
    EXPECT_FALSE(Exists(site + "/uefi_hidden_log.html"));
    EXPECT_TRUE(capture.Has(3, "[repo] Begin to write HTML for group hidden_data"));
    EXPECT_TRUE(capture.Has(2, "[repo] Cannot find type name to build wrapper: Unknown"));
    EXPECT_NE(std::string::npos, host.Dir().Read("site/system_overview.html").find("<td>kestro</td>"));
    EXPECT_EQ(std::string::npos, host.Dir().Read("site/filtered.html").find("<table"));

    // A missing data file is told in the one copy line; the others are copied.
    for (const char* file : kDataFiles)
        EXPECT_EQ(file == std::string("e.gif") ? "" : file, host.Dir().Read(std::string("site/data/") + file));
    EXPECT_FALSE(Exists(site + "/data/e.gif"));
    EXPECT_TRUE(capture.Has(4, "[repo] boost::filesystem::copy_file, the error code is system:2")) << capture.Dump();

    // A data folder already there is kept as it is.
    boost::filesystem::remove(site + "/data/repository.css");
    ASSERT_TRUE(repo.WriteHTML(site));
    EXPECT_FALSE(Exists(site + "/data/repository.css"));

    // Failures are reported.
    EXPECT_FALSE(repo.WriteHTML(site + "/index.html"));
    EXPECT_TRUE(capture.Has(1, "[repo] Directory not exist: " + site + "/index.html"));

    const std::string blocked = host.Dir().Path() + "/blocked";
    boost::filesystem::create_directories(blocked + "/index.html");
    EXPECT_FALSE(repo.WriteHTML(blocked));
    EXPECT_TRUE(capture.Has(1, "[repo] Failed to write index page: " + blocked + "/index.html: Is a directory"));
    EXPECT_FALSE(Exists(blocked + "/header.html"));

    RRepository noCategories(ConnectSmm);
    EXPECT_FALSE(noCategories.WriteHTML(site));
    EXPECT_EQ(1, capture.Count("Failed to parse category XML: "));
}

namespace {

void WrapOneColumn(RInstancesWrapper& wrapper) { wrapper.SetRowHeaders(std::vector<std::string>(), {100}, false); }

void WrapAdapter(RInstancesWrapper& wrapper)
{
    WrapOneColumn(wrapper);
    wrapper.AddReferenceType("Port");
    wrapper.AddReferenceType("Missing");
}

void WrapPort(RInstancesWrapper& wrapper)
{
    WrapOneColumn(wrapper);
    wrapper.AddReferenceType("Lane");
}

// Adapters with ports under them, and lanes under the ports.
class TreeModule : public RModule {
public:
    std::string GetName() override { return "Tree"; }
    std::string GetDisplay() override { return "Tree Module"; }

protected:
    void InitCallbacks() override
    {
        typeCallbacks["Adapter"].wrapCallback = &WrapAdapter;
        typeCallbacks["Port"].wrapCallback = &WrapPort;
        typeCallbacks["Lane"].wrapCallback = &WrapOneColumn;
    }
};

void AddRecord(RRepository& repo, const std::string& type, const std::string& display, int id,
               const std::string& value, const std::string& parent, int parentId)
{
    RInstance record(type, display, id);
    record.AddProperty("Name", "Name", value, false);
    if (!parent.empty()) record.AddReference(parent, parentId);
    record.AddToRepository(repo);
}

}  // namespace

TEST(RReportSiteTest, ChildTypesShowOnlyUnderTheirParents)
{
    FixtureHost host("ID=rhel\n");
    const std::string site = PrepareHome(host);
    host.Dir().Write("data/reportcategory_rhel.xml",
                     "<report><category><name>main</name><display>Main</display>"
                     "<group><name>adapters</name><display>Adapters</display>"
                     "<type>Lane</type><type>Port</type><type>Adapter</type></group>"
                     "</category></report>");
    RRepository source(ConnectLocal);
    AddRecord(source, "Adapter", "Adapters", 1, "nic1", "", 0);
    AddRecord(source, "Adapter", "Adapters", 2, "nic2", "", 0);
    AddRecord(source, "Port", "Ports", 7, "p7", "Adapter", 1);
    AddRecord(source, "Lane", "Lanes", -1, "l0", "Port", 7);
    ASSERT_TRUE(source.WriteXML("tree.xml", host.Dir().Path()));

    RRepositoryPrivate repo(nullptr, ConnectLocal);
    ASSERT_TRUE(repo.ReadXML(host.Dir().Path() + "/tree.xml", ""));
    repo.modules.push_back(boost::make_shared<TreeModule>());
    LogCapture capture;
    ASSERT_TRUE(repo.WriteHTML(site));

    EXPECT_TRUE(
        MatchesGolden("reportsite/child_types.html", PageBody(host.Dir().Read("site/adapters.html"), "Adapters")));
    EXPECT_NE(std::string::npos, host.Dir().Read("site/navigator.html").find(
                                     "<tr><td><a href=\"adapters.html\" target=\"content_frame\">Adapters</a></td></tr>"));
    // Reference types are looked up once per page type; the per-row wrappers only rerun the callback.
    EXPECT_EQ(1, capture.Count("[repo] Cannot find type name to build wrapper: Missing")) << capture.Dump();
}
