#ifndef KESTRO_BENCH_BENCHSTORE_H
#define KESTRO_BENCH_BENCHSTORE_H

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rrepository.h"

#include <memory>
#include <string>
#include <vector>

typedef std::vector<std::string> BenchTypes;

// Eight hardware types; records are spread over a list of types round robin.
const BenchTypes& HardwareTypes();
// Event types whose table forms the report site knows, so their records reach its pages.
const BenchTypes& ReportedTypes();

// One record of 12 properties, as an inventory module would add it; `revision` changes two values.
kestro::repository::RInstance MakeBenchRecord(int index, int revision = 0, const BenchTypes& types = HardwareTypes());
// Adds `records` bench records to `repo`.
void FillBenchStore(kestro::repository::RRepository& repo, int records, int revision = 0,
                    const BenchTypes& types = HardwareTypes());
// A file-less repository holding `records` bench records.
std::unique_ptr<kestro::repository::RRepository> MakeBenchStore(int records);

#endif
