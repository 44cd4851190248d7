// A whole cfc_oob inventory, group by group as the tool runs it, against the loopback BMC serving
// the full CFC fixture over HTTPS, at 0 ms and 50 ms of latency per answer. Reported beside the
// wall time: the number of requests, and the floor a strictly sequential client can't beat,
// requests times latency.
#include "kestro/repository/rrepository.h"
#include "kestro/xmodule/log.h"
#include "fakebmc/loopbackbmc.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>

using namespace kestro::repository;

namespace {

const char* const kUser = "USERID";
const char* const kPassword = "PASSW0RD";
const std::size_t kPageSize = 10;

LoopbackBmc::Options FullBmc()
{
    LoopbackBmc::Options options;
    options.fixtureRoot = std::string(KESTRO_SOURCE_ROOT) + "/tests/fixtures/bmc/full";
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
    return connection;
}

std::size_t RunWholeInventory(const XModule::ConnectionInfo& connection)
{
    RRepository repo(connection, CaseCfcOob);
    if (!repo.LoadCategories()) return 0;
    const RGroupList groups = repo.GetInventoryGroups();
    for (const auto& group : groups) repo.RunInventory(group.first);
    return repo.GetCollectedInstanceTypes().size();
}

void BM_CfcOobInventory(benchmark::State& state)
{
    // The category files of the source tree's data folder.
    setenv("KESTRO_HOME", KESTRO_SOURCE_ROOT, 1);
    XModule::SetLogLevel(XModule::LOG_ERROR);
    const int latencyMs = static_cast<int>(state.range(0));
    LoopbackBmc bmc(FullBmc());
    bmc.Start();
    bmc.SetPageSize(kPageSize);
    bmc.SetLatency(latencyMs);
    const XModule::ConnectionInfo connection = ConnectionTo(bmc);
    std::size_t types = 0;
    for (auto _ : state) {
        bmc.ClearRequests();
        types = RunWholeInventory(connection);
    }
    if (types == 0) state.SkipWithError("no category file or nothing collected");
    const double requests = bmc.RequestCount();
    state.counters["types"] = static_cast<double>(types);
    state.counters["requests"] = requests;
    state.counters["floor_s"] = requests * latencyMs / 1000.0;
}

}  // namespace

BENCHMARK(BM_CfcOobInventory)->Arg(0)->Arg(50)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);
