// A whole inventory, group by group as the tool runs it, against the loopback BMC over HTTPS, at
// 0 ms and 50 ms of latency per answer and with members read ahead 1 or 4 at a time: the full CFC
// fixture as cfc_oob, and the standard Redfish fixture as oob. Reported beside the wall time: the
// requests, the distinct URLs among them, and the floor a strictly sequential client can't beat,
// requests times latency.
#include "kestro/repository/rrepository.h"
#include "kestro/xmodule/log.h"
#include "fakebmc/loopbackbmc.h"

#include <benchmark/benchmark.h>

#include <boost/filesystem/operations.hpp>

#include <cstdlib>
#include <fstream>
#include <set>
#include <string>

using namespace kestro::repository;

namespace {

const char* const kUser = "USERID";
const char* const kPassword = "PASSW0RD";
const std::size_t kPageSize = 10;

LoopbackBmc::Options BmcServing(const std::string& tree)
{
    LoopbackBmc::Options options;
    options.fixtureRoot = std::string(KESTRO_SOURCE_ROOT) + "/tests/fixtures/bmc/" + tree;
    options.https = true;
    options.user = kUser;
    options.password = kPassword;
    return options;
}

XModule::ConnectionInfo ConnectionTo(const LoopbackBmc& bmc)
{
    XModule::ConnectionInfo connection;
    connection.host = "127.0.0.1";
    connection.port = bmc.Port();
    connection.scheme = XModule::XModuleConnection::SchemeHttps;
    connection.user = kUser;
    connection.password = kPassword;
    connection.isBmc = true;
    return connection;
}

// A program home with the source tree's data and the read-ahead setting of this run.
std::string HomeWithConcurrency(int concurrency)
{
    const boost::filesystem::path home =
        boost::filesystem::temp_directory_path() / ("kestro-bench-home-" + std::to_string(concurrency));
    boost::filesystem::create_directories(home);
    boost::system::error_code ignored;
    boost::filesystem::create_directory_symlink(std::string(KESTRO_SOURCE_ROOT) + "/data", home / "data", ignored);
    std::ofstream((home / "global.config").string()) << "REDFISH_CONCURRENCY=" << concurrency << "\n";
    return home.string();
}

std::size_t RunWholeInventory(RRepository& repo)
{
    if (!repo.LoadCategories()) return 0;
    for (const auto& group : repo.GetInventoryGroups()) repo.RunInventory(group.first);
    return repo.GetCollectedInstanceTypes().size();
}

std::size_t RunCase(const XModule::ConnectionInfo& connection, bool standard)
{
    if (!standard) {
        RRepository repo(connection, CaseCfcOob);
        return RunWholeInventory(repo);
    }
    RRepository repo(ConnectOob);
    const std::vector<XModule::ConnectionInfo> bmc(1, connection);
    repo.SetRestConnectionList(bmc);
    repo.SetCIMConnectionList(bmc);
    return RunWholeInventory(repo);
}

std::size_t DistinctUrls(const LoopbackBmc& bmc)
{
    std::set<std::string> urls;
    for (const LoopbackBmc::Request& request : bmc.Requests()) urls.insert(request.target);
    return urls.size();
}

void RunInventoryBench(benchmark::State& state, const std::string& tree, bool standard)
{
    const int latencyMs = static_cast<int>(state.range(0));
    const int concurrency = static_cast<int>(state.range(1));
    setenv("KESTRO_HOME", HomeWithConcurrency(concurrency).c_str(), 1);
    XModule::SetLogLevel(XModule::LOG_ERROR);
    LoopbackBmc bmc(BmcServing(tree));
    bmc.Start();
    bmc.SetPageSize(kPageSize);
    bmc.SetLatency(latencyMs);
    const XModule::ConnectionInfo connection = ConnectionTo(bmc);
    std::size_t types = 0;
    for (auto _ : state) {
        bmc.ClearRequests();
        types = RunCase(connection, standard);
    }
    if (types == 0) state.SkipWithError("no category file or nothing collected");
    const double requests = bmc.RequestCount();
    state.counters["types"] = static_cast<double>(types);
    state.counters["requests"] = requests;
    state.counters["distinct_urls"] = static_cast<double>(DistinctUrls(bmc));
    state.counters["floor_s"] = requests * latencyMs / 1000.0;
}

void BM_CfcOobInventory(benchmark::State& state) { RunInventoryBench(state, "full", false); }

void BM_StandardOobInventory(benchmark::State& state) { RunInventoryBench(state, "standard", true); }

}  // namespace

BENCHMARK(BM_CfcOobInventory)
    ->ArgsProduct({{0, 50}, {1, 4}})
    ->Iterations(1)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StandardOobInventory)
    ->ArgsProduct({{0, 50}, {1, 4}})
    ->Iterations(1)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
