#include "xmodule/linux/cpuinfo.h"

#include <gtest/gtest.h>

using XModule::Linux::CpuInfoEntry;
using XModule::Linux::ParseCpuInfo;

namespace {

const char kXeonBlock[] =
    "processor\t: 0\nvendor_id\t: GenuineIntel\ncpu family\t: 6\nmodel\t\t: 106\n"
    "model name\t: Intel(R) Xeon(R) Gold 6338 CPU @ 2.00GHz\nstepping\t: 6\nmicrocode\t: 0xd0003a5\n"
    "cpu MHz\t\t: 2000.000\ncache size\t: 49152 KB\nphysical id\t: 1\nsiblings\t: 64\ncore id\t\t: 0\n"
    "cpu cores\t: 32\nflags\t\t: fpu vme de pse tsc msr pae mce cx8 apic sep mtrr\npower management:\n\n";

std::string Summary(const std::vector<CpuInfoEntry>& cpus)
{
    std::string text;
    for (const CpuInfoEntry& c : cpus)
        text += std::to_string(c.processor) + ":" + c.vendorId + "/" + std::to_string(c.family) + "/" +
                std::to_string(c.model) + "/" + c.modelName + "/" + c.stepping + "/" + std::to_string(c.physicalId) +
                "/" + std::to_string(c.cpuCores) + "/" + std::to_string(c.siblings) + "/" +
                std::to_string(static_cast<int>(c.megahertz)) + ";";
    return text;
}

}  // namespace

TEST(CpuInfoTest, ParsesOneEntryPerProcessorLine)
{
    const std::string xeon = std::string(kXeonBlock) + "processor\t: 1\nphysical id\t: 0\ncpu MHz\t\t: 800.5\n";
    const std::string xeonLine = "0:GenuineIntel/6/106/Intel(R) Xeon(R) Gold 6338 CPU @ 2.00GHz/6/1/32/64/2000;";
    const struct {
        const char* name;
        std::string text;
        std::string expected;
    } cases[] = {
        {"two blocks", xeon, xeonLine + "1:/-1/-1///0/0/0/800;"},
        {"lines before the first processor line are passed over", "model name : stray\n" + xeon.substr(0, sizeof kXeonBlock - 1), xeonLine},
        {"ARM has no vendor_id or model name", "processor\t: 0\nBogoMIPS\t: 50.00\nCPU implementer\t: 0x41\n",
         "0:/-1/-1///-1/0/0/0;"},
        {"numbers that do not parse, lines without colon", "processor : x\ncpu family : six\ncpu MHz : -5\ngarbage\n\xff\xfe\n",
         "-1:/-1/-1///-1/0/0/0;"},
        {"huge numbers", "processor : 99999999999999999999999\nphysical id : 4294967296\n", "-1:/-1/-1///-1/0/0/0;"},
        {"empty", "", ""},
    };
    for (const auto& c : cases) EXPECT_EQ(c.expected, Summary(ParseCpuInfo(c.text))) << c.name;
}

TEST(CpuInfoTest, WhitleyIsIntelFamilySixModel6Aor6COnEveryCpu)
{
    const auto Cpu = [](const char* vendor, int family, int model) {
        CpuInfoEntry cpu;
        cpu.vendorId = vendor;
        cpu.family = family;
        cpu.model = model;
        return cpu;
    };
    EXPECT_TRUE(XModule::Linux::IsWhitleyCpu({Cpu("GenuineIntel", 6, 0x6A), Cpu("GenuineIntel", 6, 0x6A)}));
    EXPECT_TRUE(XModule::Linux::IsWhitleyCpu({Cpu("GenuineIntel", 6, 0x6C)}));
    EXPECT_FALSE(XModule::Linux::IsWhitleyCpu({Cpu("GenuineIntel", 6, 0x8F)}));  // Sapphire Rapids
    EXPECT_FALSE(XModule::Linux::IsWhitleyCpu({Cpu("AuthenticAMD", 6, 0x6A)}));
    EXPECT_FALSE(XModule::Linux::IsWhitleyCpu({Cpu("GenuineIntel", 15, 0x6A)}));
    EXPECT_FALSE(XModule::Linux::IsWhitleyCpu({Cpu("GenuineIntel", 6, 0x6A), Cpu("GenuineIntel", 6, 0xA7)}));
    EXPECT_FALSE(XModule::Linux::IsWhitleyCpu({}));
}
