#include "kestro/repository/rrepository.h"

#include "support/minimalbmc.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
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

TEST(RunContextTest, AWholeInventoryFetchesEachUrlOnceAndARunOfItsOwnFetchesAgain)
{
    const ScopedEnv home("KESTRO_HOME", std::string(KESTRO_SOURCE_DATA) + "/..");
    LoopbackBmc bmc(FullBmcOptions(kPassword));
    bmc.Start();
    bmc.SetPageSize(10);

    RRepository repo(FullBmcConnection(bmc), kestro::repository::CaseCfcOob);
    RunEveryGroup(repo);
    const std::vector<std::string> types = repo.GetCollectedInstanceTypes();
    EXPECT_NE(types.end(), std::find(types.begin(), types.end(), "Memory"));
    EXPECT_EQ("", Repeated(bmc));
    EXPECT_EQ(static_cast<std::uint64_t>(bmc.RequestCount()), repo.GetTransferTotals().requests);
    EXPECT_LT(0.0, repo.GetTransferTotals().waitSeconds);

    // Answers are kept for one repository's run only: a new one asks the BMC afresh.
    const int firstRun = bmc.RequestCount();
    RRepository again(FullBmcConnection(bmc), kestro::repository::CaseCfcOob);
    RunEveryGroup(again);
    EXPECT_EQ(2 * firstRun, bmc.RequestCount());
}
