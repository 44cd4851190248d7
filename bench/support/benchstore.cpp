#include "support/benchstore.h"

using kestro::repository::ConnectNone;
using kestro::repository::RInstance;
using kestro::repository::RRepository;

const BenchTypes& HardwareTypes()
{
    static const BenchTypes types = {"Processor", "Memory",      "Disk",       "PCIAdapter",
                                     "PCIPort",   "Fan",         "PowerSupply", "Firmware"};
    return types;
}

const BenchTypes& ReportedTypes()
{
    static const BenchTypes types = {"ApplicationEvent", "SystemEvent", "SecurityEvent", "QMMMessageLogData"};
    return types;
}

RInstance MakeBenchRecord(int index, int revision, const BenchTypes& types)
{
    RInstance record(types[index % types.size()], "Record", index);
    record.AddProperty("Name", "Name", "device-" + std::to_string(index), false);
    record.AddProperty("Manufacturer", "Manufacturer", std::string("Example Corp"), false);
    record.AddProperty("Model", "Model", std::string("Model X-2000"), false);
    record.AddProperty("SerialNumber", "Serial Number", "SN" + std::to_string(1000000 + index), false);
    record.AddProperty("PartNumber", "Part Number", std::string("01AB234"), false);
    record.AddProperty("Firmware", "Firmware", "4.20." + std::to_string(1 + revision), false);
    record.AddProperty("Speed", "Speed", 2400 + index % 7, false);
    record.AddProperty("Capacity", "Capacity", 34359738368ULL, false);
    record.AddProperty("Temperature", "Temperature", 41.5 + revision, false);
    record.AddProperty("Health", "Health", std::string("OK"), false);
    record.AddProperty("Slot", "Slot", static_cast<unsigned int>(index % 64), false);
    record.AddProperty("Location", "Location", std::string("Bay 3, Slot 12"), false);
    return record;
}

void FillBenchStore(RRepository& repo, int records, int revision, const BenchTypes& types)
{
    for (int i = 0; i < records; ++i) MakeBenchRecord(i, revision, types).AddToRepository(repo);
}

std::unique_ptr<RRepository> MakeBenchStore(int records)
{
    std::unique_ptr<RRepository> repo(new RRepository(ConnectNone));
    FillBenchStore(*repo, records);
    return repo;
}
