#include "xmodule/linux/meminfo.h"

#include "support/logcapture.h"

#include <gtest/gtest.h>

using namespace XModule::Linux;

TEST(MemInfoTest, ParsesFieldsAndFillsUtilization)
{
    LogCapture log;
    const MemInfo info = ParseMemInfo(
        "MemTotal:       24683656 kB\n"
        "MemFree:        21044580 kB\n"
        "MemAvailable:   23053804 kB\n"
        "Active(anon):       1720 kB\n"
        "HugePages_Total:       0\n"
        "Broken line\n"
        "Negative:         -12 kB\n"
        "Pages:             12 pages\n"
        "SwapTotal:       999420 kB\n"
        "SwapFree:        9994");
    const MemInfo expected = {{"MemTotal", 24683656ull * 1024}, {"MemFree", 21044580ull * 1024},
                              {"MemAvailable", 23053804ull * 1024}, {"Active(anon)", 1720 * 1024},
                              {"HugePages_Total", 0}, {"SwapTotal", 999420ull * 1024}};
    EXPECT_EQ(expected, info);
    EXPECT_EQ(4, log.Count("meminfo")) << log.Dump();

    uint64_t threads = 0;
    EXPECT_TRUE(ParseThreadCount("7.83 4.44 2.04 9/145 16382\n", threads));
    EXPECT_EQ(145u, threads);
    EXPECT_FALSE(ParseThreadCount("7.83 4.44 2.04 9", threads));
    EXPECT_FALSE(ParseThreadCount("7.83 4.44 2.04 9/-1 16382", threads));

    // Without MemAvailable (before 3.14) free memory is MemFree; without swap fields those sizes stay unknown.
    XModule::protocol::MemoryUtilizationInfo memory;
    FillMemoryUtilization({{"MemTotal", 8ull << 30}, {"MemFree", 2ull << 30}, {"Slab", 1 << 20}}, memory);
    EXPECT_EQ("75.0", memory.PercentMemoryUtilization);
    EXPECT_EQ("8 GiB", memory.TotalVisibleMemorySize);
    EXPECT_EQ("2 GiB", memory.FreePhysicalMemory);
    EXPECT_EQ("N/A", memory.TotalVirtualMemorySize);
    EXPECT_EQ("N/A", memory.KernelMemoryTotal);
    EXPECT_EQ("N/A", memory.CommitChargePeak);
}
