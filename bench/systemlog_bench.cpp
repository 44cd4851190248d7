// The system-log path of a busy host: a syslog file of a million lines read from its end by the
// system-log reader, and what it hands over made into the default and full event pages.
#include "kestro/repository/rinstance.h"
#include "kestro/repository/rrepository.h"
#include "kestro/xmodule/rootprefix.h"
#include "repository/modules/rosinventorymodule.h"
#include "xmodule/linux/systemlog.h"

#include <benchmark/benchmark.h>

#include <boost/filesystem/operations.hpp>

#include <sys/resource.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

namespace {

const int kLines = 1000000;

// A root holding var/log/syslog of `kLines` lines of the classic form, written once per process.
const std::string& SyslogRoot()
{
    static const std::string root = [] {
        const boost::filesystem::path folder =
            boost::filesystem::temp_directory_path() / boost::filesystem::unique_path("kestro-syslog-%%%%");
        boost::filesystem::create_directories(folder / "var/log");
        std::ofstream out((folder / "var/log/syslog").string().c_str());
        char line[160];
        for (int i = 0; i < kLines; ++i) {
            std::snprintf(line, sizeof line, "Nov 25 %02d:%02d:%02d srv-db01 app[%d]: request %d handled %s\n",
                          i / 3600 % 24, i / 60 % 60, i % 60, 1000 + i % 50, i, i % 97 ? "ok" : "with error");
            out << line;
        }
        return folder.string();
    }();
    return root;
}

double PeakResidentMebibytes()
{
    struct rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024.0;
}

void ReadSystemLog(benchmark::State& state)
{
    XModule::SetRootPrefix(SyslogRoot());
    const std::size_t bound = static_cast<std::size_t>(state.range(0));
    std::size_t read = 0;
    for (auto _ : state) {
        std::vector<XModule::protocol::EventInfo> events;
        XModule::Linux::CollectSystemLog(events, bound);
        read = events.size();
        benchmark::DoNotOptimize(events.data());
    }
    XModule::SetRootPrefix("/");
    state.counters["entries"] = static_cast<double>(read);
    state.counters["peak_MiB"] = PeakResidentMebibytes();
}

void FillEventPages(benchmark::State& state)
{
    XModule::SetRootPrefix(SyslogRoot());
    std::vector<XModule::protocol::EventInfo> events;
    XModule::Linux::CollectSystemLog(events, static_cast<std::size_t>(state.range(0)));
    XModule::SetRootPrefix("/");
    using kestro::repository::ROSInventoryModule;
    for (auto _ : state) {
        kestro::repository::RRepository repo(kestro::repository::ConnectNone);
        ROSInventoryModule::FillDefaultEvents(repo, "SystemEventDefault", "System Event (Current Events:", events);
        ROSInventoryModule::FillFullEvents(repo, "SystemEventAll", "System Event (Current Events:", events,
                                           ROSInventoryModule::ALL_EVENTS);
        benchmark::ClobberMemory();
    }
    state.counters["events"] = static_cast<double>(events.size());
    state.counters["peak_MiB"] = PeakResidentMebibytes();
}

}  // namespace

// The reader's default bound, then the whole file.
BENCHMARK(ReadSystemLog)->Arg(10000)->Arg(kLines)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(FillEventPages)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(1);
