#include "kestro/repository/rrepository.h"

#include "support/minimalbmc.h"
#include "support/tempdir.h"

#include "kestro/repository/rinstance.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>

using kestro::repository::RRepository;

namespace {

const char* const kPassword = "Run-Pass";

XModule::ConnectionInfo FullBmcConnection(const LoopbackBmc& bmc)
{
    XModule::ConnectionInfo connection;
    connection.host = "127.0.0.1";
    connection.port = bmc.Port();
    connection.user = kFullBmcUser;
    connection.password = kPassword;
    connection.isBmc = true;
    return connection;
}

// A program home whose global.config holds `settings`, beside the source tree's data.
std::string HomeWith(const TempDir& dir, const std::string& settings)
{
    dir.Write("home/global.config", settings);
    EXPECT_EQ(0, symlink(KESTRO_SOURCE_DATA, (dir.Path() + "/home/data").c_str()));
    return dir.Path() + "/home";
}

void RunEveryGroup(RRepository& repo)
{
    ASSERT_TRUE(repo.LoadCategories());
    for (const auto& group : repo.GetInventoryGroups()) repo.RunInventory(group.first);
}

// "<target> x<count>" for every request target the BMC saw more than once.
std::string Repeated(const LoopbackBmc& bmc)
{
    std::map<std::string, int> counts;
    for (const LoopbackBmc::Request& request : bmc.Requests()) ++counts[request.method + " " + request.target];
    std::string repeated;
    for (const auto& count : counts)
        if (count.second > 1) repeated += count.first + " x" + std::to_string(count.second) + "\n";
    return repeated;
}

}  // namespace

// Read one at a time or four at a time (members, pages and each module's resources ahead of their
// types), a whole inventory asks the same URLs, each once, and writes the same file.
TEST(RunContextTest, AWholeInventoryFetchesEachUrlOnceWhateverTheConcurrency)
{
    std::set<std::string> urls[2];
    std::string xml[2];
    for (int concurrency : {1, 4}) {
        TempDir dir;
        const ScopedEnv home("KESTRO_HOME", HomeWith(dir, "REDFISH_CONCURRENCY=" + std::to_string(concurrency)));
        LoopbackBmc bmc(FullBmcOptions(kPassword));
        bmc.Start();
        bmc.SetPageSize(10);
        RRepository repo(FullBmcConnection(bmc), kestro::repository::CaseCfcOob);
        RunEveryGroup(repo);
        const std::size_t run = concurrency == 1 ? 0 : 1;
        EXPECT_EQ("", Repeated(bmc)) << concurrency;
        EXPECT_EQ(static_cast<std::uint64_t>(bmc.RequestCount()), repo.GetTransferTotals().requests);
        EXPECT_LT(0.0, repo.GetTransferTotals().waitSeconds);
        for (const LoopbackBmc::Request& request : bmc.Requests()) urls[run].insert(request.target);
        ASSERT_TRUE(repo.WriteXML("run.xml", dir.Path()));
        xml[run] = dir.Read("run.xml");
    }
    EXPECT_EQ(urls[0], urls[1]);
    EXPECT_NE(std::string::npos, xml[1].find("Memory"));
    EXPECT_EQ(xml[0], xml[1]);
}

// Answers are kept for one repository's run only: a new one asks the BMC afresh.
TEST(RunContextTest, ARunOfItsOwnFetchesAgain)
{
    const ScopedEnv home("KESTRO_HOME", std::string(KESTRO_SOURCE_DATA) + "/..");
    LoopbackBmc bmc(FullBmcOptions(kPassword));
    bmc.Start();
    RRepository repo(FullBmcConnection(bmc), kestro::repository::CaseCfcOob);
    RunEveryGroup(repo);
    const int firstRun = bmc.RequestCount();
    RRepository again(FullBmcConnection(bmc), kestro::repository::CaseCfcOob);
    RunEveryGroup(again);
    EXPECT_EQ(2 * firstRun, bmc.RequestCount());
}

// Sensors are read member by member, and so ahead of their reader: a member that answers 503 for
// ever or never answers ends the walk where a serial run ends it, and the stalled one costs its
// time-out once.
TEST(RunContextTest, MembersReadAheadFailAsInASerialRun)
{
    const char* const kStarting = "/redfish/v1/Chassis/1/Sensors/Temp_2";
    const char* const kStalled = "/redfish/v1/Chassis/1/Sensors/Volt_1";
    const struct {
        const char* fault;
        const char* path;
        std::size_t numericSensors;
    } faults[] = {{"503 for ever", kStarting, 2}, {"never answers", kStalled, 14}};
    for (const auto& fault : faults) {
        std::string xml[2];
        for (int concurrency : {1, 4}) {
            TempDir dir;
            const ScopedEnv home("KESTRO_HOME", HomeWith(dir, "REDFISH_STARTUP_WAIT_TIME=1\nKESTRO_TYPE_TIME_LIMIT=2\n"
                                                              "REDFISH_CONCURRENCY=" + std::to_string(concurrency)));
            LoopbackBmc bmc(FullBmcOptions(kPassword));
            bmc.Start();
            bmc.SetPageSize(10);
            if (fault.path == kStarting)
                bmc.ForceStatus(kStarting, 503);
            else
                bmc.StallAnswers(kStalled);
            RRepository repo(FullBmcConnection(bmc), kestro::repository::CaseCfcOob);
            ASSERT_TRUE(repo.LoadCategories());
            repo.RunInventory("sensors");
            std::vector<kestro::repository::RInstance*> sensors = repo.GetInstances("NumericSensor");
            EXPECT_EQ(fault.numericSensors, sensors.size()) << fault.fault << ", concurrency " << concurrency;
            repo.FreeInstances(sensors);
            // Two types walk the sensors: each meets the stalled member once.
            if (fault.path == kStalled) {
                EXPECT_EQ(2, bmc.RequestCount(kStalled)) << concurrency;
            }
            ASSERT_TRUE(repo.WriteXML("run.xml", dir.Path()));
            xml[concurrency == 1 ? 0 : 1] = dir.Read("run.xml");
        }
        EXPECT_EQ(xml[0], xml[1]) << fault.fault;
    }
}
