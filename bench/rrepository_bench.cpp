// Store operations, writing the file among them, over stores of 1k, 10k and 100k records of 12 properties each.
#include "support/benchstore.h"

#include <benchmark/benchmark.h>

#include <boost/filesystem.hpp>

#include <malloc.h>
#include <sys/resource.h>

#include <memory>
#include <string>
#include <vector>

using namespace kestro::repository;

namespace {

void AddToRepository(benchmark::State& state)
{
    const int records = static_cast<int>(state.range(0));
    std::vector<RInstance> prepared;
    prepared.reserve(records);
    for (int i = 0; i < records; ++i) prepared.push_back(MakeBenchRecord(i));
    for (auto _ : state) {
        RRepository repo(ConnectNone);
        for (const RInstance& record : prepared) record.AddToRepository(repo);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * records);
}

void GetInstances(benchmark::State& state)
{
    const int records = static_cast<int>(state.range(0));
    std::unique_ptr<RRepository> repo = MakeBenchStore(records);
    for (auto _ : state) {
        std::vector<RInstance*> found = repo->GetInstances("Disk");
        benchmark::DoNotOptimize(found.data());
        repo->FreeInstances(found);
    }
    state.SetItemsProcessed(state.iterations() * (records / static_cast<int>(HardwareTypes().size())));
}

// The whole file of a store written to a temporary folder, removed after.
void WriteXML(benchmark::State& state)
{
    const int records = static_cast<int>(state.range(0));
    const boost::filesystem::path folder =
        boost::filesystem::temp_directory_path() / boost::filesystem::unique_path("kestro-write-%%%%%%%%");
    boost::filesystem::create_directories(folder);
    std::unique_ptr<RRepository> repo = MakeBenchStore(records);
    for (auto _ : state)
        if (!repo->WriteXML("store.xml", folder.string())) state.SkipWithError("WriteXML failed");
    state.SetItemsProcessed(state.iterations() * records);
    boost::filesystem::remove_all(folder);
}

void GetCollectedInstanceTypes(benchmark::State& state)
{
    std::unique_ptr<RRepository> repo = MakeBenchStore(static_cast<int>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(repo->GetCollectedInstanceTypes());
}

// Heap held by a store of 100k records, as the allocator counts it, and the process's peak
// resident size once it is built (run this benchmark alone for a peak of the store by itself).
void StoreMemory(benchmark::State& state)
{
    const int records = static_cast<int>(state.range(0));
    double heapBytes = 0;
    for (auto _ : state) {
        const std::size_t before = mallinfo2().uordblks;
        std::unique_ptr<RRepository> repo = MakeBenchStore(records);
        heapBytes = static_cast<double>(mallinfo2().uordblks - before);
        benchmark::DoNotOptimize(repo.get());
    }
    rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    state.counters["heap_MiB"] = heapBytes / (1024.0 * 1024.0);
    state.counters["bytes_per_record"] = heapBytes / records;
    state.counters["peak_rss_MiB"] = usage.ru_maxrss / 1024.0;
}

}  // namespace

BENCHMARK(AddToRepository)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(GetInstances)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(WriteXML)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(GetCollectedInstanceTypes)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(StoreMemory)->Arg(100000)->Iterations(1)->Unit(benchmark::kMillisecond);
