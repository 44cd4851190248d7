#include "kestro/repository/rinstance.h"
#include "kestro/repository/rrepository.h"
#include "kestro/xmodule/kestrodirectory.h"
#include "support/fixturehost.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

#include <dlfcn.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>

// This program's folder holds the test plug-ins; repository_vxmodule.so adds the "Plugin" module.

using namespace kestro::repository;

namespace {

int PluginReleases()
{
    void* plugin = dlopen((KestroDirectory::GetLibraryPath() + "repository_vxmodule.so").c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (!plugin) return -1;
    int (*count)() = reinterpret_cast<int (*)()>(dlsym(plugin, "PluginReleaseCount"));
    const int releases = count ? count() : -1;
    dlclose(plugin);
    return releases;
}

int CaseSeenBy(RRepository& repo, const std::string& type)
{
    std::vector<RInstance*> records = repo.GetInstances(type);
    int seen = -1;
    if (!records.empty()) records[0]->GetPropertyValue("Case", seen);
    repo.FreeInstances(records);
    return seen;
}

std::vector<std::string> progressSeen;

void RecordProgress(const std::string& name, const std::string& display) { progressSeen.push_back(display); }

}  // namespace

TEST(RRepositoryPluggedTest, PluginModulesJoinOrdinaryCasesAfterTheTable)
{
    FixtureHost host("ID=rhel\n");
    LogCapture capture;
    RRepository repo(ConnectLocal);
    EXPECT_TRUE(capture.Has(3, "[repo] Start to Load Vexa Server modules!")) << capture.Dump();
    EXPECT_EQ(0, capture.Count("Unable to load shared library repository_vxmodule.so"));
    const std::vector<std::string> available = repo.GetAvailableInstanceTypes();
    EXPECT_EQ(2, std::count(available.begin(), available.end(), "DataSource"));
    EXPECT_EQ(1, std::count(available.begin(), available.end(), "Zulu"));
    EXPECT_EQ(75u, available.size());

    for (const char* type : {"ApplicationEvent", "QMMMessageLogData", "SecurityEvent", "SystemEvent"})
        RInstance(type, type, -1).AddToRepository(repo);
    progressSeen.clear();
    repo.RunInventory(RecordProgress);
    EXPECT_EQ((std::vector<std::string>{"Legacy Module", "Data Source", "Report Highlights Module",
                                        "OSInventory Module", "HardwareInventory Module", "Network Module", "LSIOpt Module",
                                        "BMC Event Log Module", "Execution Log Module",
                                        "Plug-in Module"}),
              progressSeen);
    EXPECT_TRUE(capture.Has(2, "[repo] Type already finished running inventory and will be skipped: DataSource"));
    EXPECT_TRUE(repo.GetInstances("DataSource").empty());
    const std::vector<std::string> collected = repo.GetCollectedInstanceTypes();
    EXPECT_EQ(1, std::count(collected.begin(), collected.end(), "PluginThing"));
    EXPECT_EQ(1, std::count(collected.begin(), collected.end(), "Zulu"));
    EXPECT_EQ(CaseRhel, CaseSeenBy(repo, "Zulu"));
    EXPECT_EQ(0, PluginReleases());

    capture.Clear();
    repo.RunInventory(RecordProgress);
    EXPECT_EQ(2, capture.Count("will be skipped: PluginThing") + capture.Count("will be skipped: Zulu"));
    EXPECT_EQ(0, capture.Count("Begin to run inventory for type: PluginThing"));
}

TEST(RRepositoryPluggedTest, GroupRunReleasesOnlyTheLastModuleOnce)
{
    FixtureHost host("ID=sles\n");
    host.Dir().Write("data/reportcategory_sles.xml",
                     "<report><category><name>c</name><display>C</display>"
                     "<group><name>everything</name><display>All</display>"
                     "<type>Zulu</type><type>DataSource</type><type>PluginThing</type></group>"
                     "<group><name>builtin</name><display>Built in</display><type>DataSource</type></group>"
                     "</category></report>");
    RRepository repo(ConnectLocal);
    ASSERT_TRUE(repo.LoadCategories());
    const int before = PluginReleases();
    repo.RunInventory("everything");
    EXPECT_EQ(before + 1, PluginReleases());
    EXPECT_EQ((std::vector<std::string>{"PluginThing", "Zulu"}), repo.GetCollectedInstanceTypes());
    EXPECT_EQ(CaseSles, CaseSeenBy(repo, "PluginThing"));
    repo.RunInventory("builtin");
    EXPECT_EQ(before + 1, PluginReleases());
}

TEST(RRepositoryPluggedTest, RedfishAndChassisCasesLoadNoPlugin)
{
    FixtureHost host("ID=rhel\n");
    LogCapture capture;
    XModule::ConnectionInfo bmc;
    RRepository oob(bmc, CaseCfcOob);
    RRepository smm(ConnectSmm);
    EXPECT_EQ(0, capture.Count("Start to Load Vexa Server modules!"));
    EXPECT_EQ((std::vector<std::string>{"ApplicationEvent", "DataSource", "QMMMessageLogData", "SecurityEvent",
                                        "SystemEvent"}),
              smm.GetAvailableInstanceTypes());
    RRepository cmm(ConnectCmm);

    RRepository fromFile(ConnectNone);
    fromFile.InitDepModules();
    fromFile.InitDepModules();
    EXPECT_EQ(2, capture.Count("Start to Load Vexa Server modules!"));
    EXPECT_EQ(78u, fromFile.GetAvailableInstanceTypes().size());
}

TEST(RRepositoryPluggedTest, ServerFamilyPrefixesTheCaseWhereTheTableHasOne)
{
    // Children re-run the program, so a detection by an earlier test of it does not leak in.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const struct {
        const char* answer;
        const char* release;
        ConnectMode mode;
        const char* expected;
    } cases[] = {
        {"0", "ID=rhel\n", ConnectLocal, "Set inventory case to  vx_rhel"},
        {"0", "ID=debian\n", ConnectLocal, "Set inventory case to  ubuntu"},
        {"3", "ID=sles\n", ConnectLocal, "Set inventory case to  tv5x_sles"},
        {"5", "ID=rhel\n", ConnectLocal, "Set inventory case to  tv5x_v2_rhel"},
        {"6", "ID=sles\n", ConnectLocal, "Set inventory case to  tv4x_v2_sles"},
        {"4", "ID=rhel\n", ConnectLocal, "Set inventory case to  rhel"},
        // The AMD mode wins over whatever family the plug-in names.
        {"0", "ID=sles\n", ConnectLocalAmd, "Set inventory case to  amd_sles"},
        {"2", "ID=rhel\n", ConnectLocal, "Set inventory case to  rhel"},
    };
    for (const auto& c : cases) {
        // The server family is detected once per process, so each answer runs in a child.
        EXPECT_EXIT(
            {
                setenv("KESTRO_TEST_VXSYSTEM_ANSWER", c.answer, 1);
                FixtureHost host(c.release);
                LogCapture capture;
                RRepository repo(c.mode);
                std::cerr << capture.Count(c.expected);
                std::exit(0);
            },
            ::testing::ExitedWithCode(0), "^1$")
            << c.answer << " " << c.release;
    }
}
