// Store operations over stores of 1k, 10k and 100k records of 12 properties each.
#include "kestro/repository/rinstance.h"
#include "kestro/repository/rrepository.h"

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <memory>
#include <string>
#include <vector>

using namespace kestro::repository;

namespace {

const char* const kTypes[] = {"Processor", "Memory", "Disk", "PCIAdapter", "PCIPort", "Fan", "PowerSupply", "Firmware"};
const int kTypeCount = sizeof kTypes / sizeof kTypes[0];

RInstance MakeRecord(int index)
{
    RInstance record(kTypes[index % kTypeCount], "Record", index);
    record.AddProperty("Name", "Name", "device-" + std::to_string(index), false);
    record.AddProperty("Manufacturer", "Manufacturer", std::string("Example Corp"), false);
    record.AddProperty("Model", "Model", std::string("Model X-2000"), false);
    record.AddProperty("SerialNumber", "Serial Number", "SN" + std::to_string(1000000 + index), false);
    record.AddProperty("PartNumber", "Part Number", std::string("01AB234"), false);
    record.AddProperty("Firmware", "Firmware", std::string("4.20.1"), false);
    record.AddProperty("Speed", "Speed", 2400 + index % 7, false);
    record.AddProperty("Capacity", "Capacity", 34359738368ULL, false);
    record.AddProperty("Temperature", "Temperature", 41.5, false);
    record.AddProperty("Health", "Health", std::string("OK"), false);
    record.AddProperty("Slot", "Slot", static_cast<unsigned int>(index % 64), false);
    record.AddProperty("Location", "Location", std::string("Bay 3, Slot 12"), false);
    return record;
}

std::unique_ptr<RRepository> MakeStore(int records)
{
    std::unique_ptr<RRepository> repo(new RRepository(ConnectNone));
    for (int i = 0; i < records; ++i) MakeRecord(i).AddToRepository(*repo);
    return repo;
}

void AddToRepository(benchmark::State& state)
{
    const int records = static_cast<int>(state.range(0));
    std::vector<RInstance> prepared;
    prepared.reserve(records);
    for (int i = 0; i < records; ++i) prepared.push_back(MakeRecord(i));
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
    std::unique_ptr<RRepository> repo = MakeStore(records);
    for (auto _ : state) {
        std::vector<RInstance*> found = repo->GetInstances("Disk");
        benchmark::DoNotOptimize(found.data());
        repo->FreeInstances(found);
    }
    state.SetItemsProcessed(state.iterations() * (records / kTypeCount));
}

void GetCollectedInstanceTypes(benchmark::State& state)
{
    std::unique_ptr<RRepository> repo = MakeStore(static_cast<int>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(repo->GetCollectedInstanceTypes());
}

// Heap held by a store of 100k records, as the allocator counts it.
void StoreMemory(benchmark::State& state)
{
    const int records = static_cast<int>(state.range(0));
    double heapBytes = 0;
    for (auto _ : state) {
        const std::size_t before = mallinfo2().uordblks;
        std::unique_ptr<RRepository> repo = MakeStore(records);
        heapBytes = static_cast<double>(mallinfo2().uordblks - before);
        benchmark::DoNotOptimize(repo.get());
    }
    state.counters["heap_MiB"] = heapBytes / (1024.0 * 1024.0);
    state.counters["bytes_per_record"] = heapBytes / records;
}

}  // namespace

BENCHMARK(AddToRepository)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(GetInstances)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(GetCollectedInstanceTypes)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(StoreMemory)->Arg(100000)->Iterations(1)->Unit(benchmark::kMillisecond);
