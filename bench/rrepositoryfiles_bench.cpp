// Repository files over stores of 10k and 100k records of 12 properties: writing, reading,
// comparing two files, writing the report site, and reading set against `xmllint --noout`.
#include "support/benchstore.h"

#include "kestro/xmodule/log.h"

#include <benchmark/benchmark.h>

#include <boost/filesystem.hpp>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
#include <string>

using namespace kestro::repository;
namespace fs = boost::filesystem;

namespace {

typedef std::chrono::steady_clock Clock;

// A program home in a temporary folder whose category file names one group per reported type,
// and the files written for each store size, made once per process.
class BenchHome {
public:
    BenchHome() : root(fs::temp_directory_path() / fs::unique_path("kestro-bench-%%%%%%%%"))
    {
        fs::create_directories(root / "data");
        std::ofstream category((root / "data" / "reportcategory_cfc_oob.xml").string().c_str());
        category << "<report><category><name>bench</name><display>Bench</display>";
        for (const std::string& type : ReportedTypes())
            category << "<group><name>" << type << "</name><display>" << type << "</display><type>" << type
                     << "</type></group>";
        category << "</category></report>\n";
        setenv("KESTRO_HOME", root.string().c_str(), 1);
        // Per-record lines would measure the log, not the files.
        XModule::SetLogLevel(XModule::LOG_ERROR);
    }
    ~BenchHome() { fs::remove_all(root); }

    std::string Folder(const std::string& name) const
    {
        fs::create_directories(root / name);
        return (root / name).string();
    }

    // The file of a store of `records` records; revision 1 differs from 0 in two values a record.
    const std::string& File(int records, int revision)
    {
        std::string& path = files[std::make_pair(records, revision)];
        if (path.empty()) {
            std::unique_ptr<RRepository> repo = MakeStore(records, revision, HardwareTypes());
            const std::string name = "store-" + std::to_string(records) + "-" + std::to_string(revision) + ".xml";
            repo->WriteXML(name, root.string());
            path = (root / name).string();
        }
        return path;
    }

    // A Redfish out-of-band store: it names its case, so the report finds its category file.
    static std::unique_ptr<RRepository> MakeStore(int records, int revision, const BenchTypes& types)
    {
        std::unique_ptr<RRepository> repo(new RRepository(XModule::ConnectionInfo(), CaseCfcOob));
        FillBenchStore(*repo, records, revision, types);
        return repo;
    }

private:
    fs::path root;
    std::map<std::pair<int, int>, std::string> files;
};

BenchHome& Home()
{
    static BenchHome home;
    return home;
}

void WriteXML(benchmark::State& state)
{
    const int records = static_cast<int>(state.range(0));
    const std::string folder = Home().Folder("write");
    std::unique_ptr<RRepository> repo = BenchHome::MakeStore(records, 0, HardwareTypes());
    for (auto _ : state)
        if (!repo->WriteXML("written.xml", folder)) state.SkipWithError("WriteXML failed");
    state.SetBytesProcessed(state.iterations() * fs::file_size(folder + "/written.xml"));
    state.SetItemsProcessed(state.iterations() * records);
}

void ReadXML(benchmark::State& state)
{
    const int records = static_cast<int>(state.range(0));
    const std::string& path = Home().File(records, 0);
    for (auto _ : state) {
        RRepository repo(ConnectNone);
        if (!repo.ReadXML(path, "")) state.SkipWithError("ReadXML failed");
    }
    state.SetBytesProcessed(state.iterations() * fs::file_size(path));
    state.SetItemsProcessed(state.iterations() * records);
}

void CompareXML(benchmark::State& state)
{
    const int records = static_cast<int>(state.range(0));
    const std::string& older = Home().File(records, 0);
    const std::string& newer = Home().File(records, 1);
    for (auto _ : state) {
        RRepository repo(ConnectNone);
        if (!repo.ReadXML(older, newer)) state.SkipWithError("comparison failed");
    }
    state.SetBytesProcessed(state.iterations() * (fs::file_size(older) + fs::file_size(newer)));
    state.SetItemsProcessed(state.iterations() * records);
}

void WriteHTML(benchmark::State& state)
{
    const int records = static_cast<int>(state.range(0));
    const std::string folder = Home().Folder("site-" + std::to_string(records));
    std::unique_ptr<RRepository> repo = BenchHome::MakeStore(records, 0, ReportedTypes());
    if (!repo->LoadCategories()) state.SkipWithError("no category file");
    for (auto _ : state)
        if (!repo->WriteHTML(folder)) state.SkipWithError("WriteHTML failed");
    state.SetItemsProcessed(state.iterations() * records);
}

double SecondsSince(const Clock::time_point& start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// The same file read by ReadXML and checked by xmllint; the time shown is ReadXML's, and
// `ratio` is ReadXML's time over xmllint's (process start included in xmllint's).
void ReadXMLAgainstXmllint(benchmark::State& state)
{
    const std::string& path = Home().File(static_cast<int>(state.range(0)), 0);
    const std::string command = "xmllint --noout '" + path + "'";
    double readSeconds = 0;
    double lintSeconds = 0;
    for (auto _ : state) {
        Clock::time_point start = Clock::now();
        {
            RRepository repo(ConnectNone);
            if (!repo.ReadXML(path, "")) state.SkipWithError("ReadXML failed");
        }
        const double read = SecondsSince(start);
        start = Clock::now();
        if (std::system(command.c_str()) != 0) state.SkipWithError("xmllint failed or is missing");
        const double lint = SecondsSince(start);
        state.SetIterationTime(read);
        readSeconds += read;
        lintSeconds += lint;
    }
    state.counters["xmllint_ms"] = benchmark::Counter(lintSeconds * 1000, benchmark::Counter::kAvgIterations);
    state.counters["ratio"] = lintSeconds > 0 ? readSeconds / lintSeconds : 0;
}

}  // namespace

BENCHMARK(WriteXML)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadXML)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(CompareXML)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(WriteHTML)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadXMLAgainstXmllint)->Arg(10000)->Arg(100000)->UseManualTime()->Unit(benchmark::kMillisecond);
