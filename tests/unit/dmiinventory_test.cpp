#include "xmodule/linux/cpuinfo.h"
#include "xmodule/linux/dmiinventory.h"

#include "kestro/xmodule/unreadable.h"
#include "support/fixturehost.h"
#include "support/golden.h"
#include "support/logcapture.h"
#include "support/serverhost.h"
#include "support/smbiosbuilder.h"

#include <boost/filesystem/operations.hpp>
#include <gtest/gtest.h>

using namespace XModule::Linux;
using namespace XModule::protocol;
using Lines = std::vector<std::string>;

namespace {

// Root reads everything, so a file a normal user may not read is stood in for by a folder.
void WriteUnreadable(const TempDir& dir, const std::string& relative) { dir.Write(relative + "/stand-in", ""); }

const char kUdevDmiRecord[] =
    "I:5871234\nE:MEMORY_ARRAY_LOCATION=System Board Or Motherboard\nE:MEMORY_ARRAY_EC_TYPE=Multi-bit ECC\n"
    "E:MEMORY_ARRAY_MAX_CAPACITY=6597069766656\nE:MEMORY_DEVICE_0_TOTAL_WIDTH=72\nE:MEMORY_DEVICE_0_SIZE=34359738368\n"
    "E:MEMORY_DEVICE_0_FORM_FACTOR=DIMM\nE:MEMORY_DEVICE_0_LOCATOR=CPU1_DIMM_A1\nE:MEMORY_DEVICE_0_BANK_LOCATOR=NODE 1\n"
    "E:MEMORY_DEVICE_0_TYPE=DDR4\nE:MEMORY_DEVICE_0_SPEED_MTS=3200\nE:MEMORY_DEVICE_0_MANUFACTURER=Samsung\n"
    "E:MEMORY_DEVICE_0_SERIAL_NUMBER=03A1B2C3\nE:MEMORY_DEVICE_0_PART_NUMBER=M393A4K40DB3-CWE\n"
    "E:MEMORY_DEVICE_1_PRESENT=0\nE:MEMORY_DEVICE_1_FORM_FACTOR=DIMM\nE:MEMORY_DEVICE_1_LOCATOR=CPU1_DIMM_A2\n"
    "E:MEMORY_DEVICE_1_TYPE=Unknown\nE:MEMORY_DEVICE_1_MANUFACTURER=NO DIMM\nE:MEMORY_DEVICE_10_SIZE=68719476736\n"
    "E:MEMORY_DEVICE_10_LOCATOR=CPU2_DIMM_B1\nE:MEMORY_DEVICE_10_TYPE=DDR4\nE:MEMORY_DEVICE_10_MANUFACTURER=SK Hynix\n"
    "E:MEMORY_DEVICE_10_PART_NUMBER=HMAA8GR7AJR4N-XN\nE:MEMORY_DEVICE_NUMBER=x\nG:systemd\n";

// The user-readable part of /sys/class/dmi/id on the same server; serial numbers and UUID are root-only.
void WriteDmiId(const TempDir& dir)
{
    const char* const attributes[][2] = {
        {"sys_vendor", "Lenovo"},          {"product_name", "ThinkSystem SR650 V2"}, {"product_version", "06"},
        {"product_sku", "7Z73CTO1WW"},     {"product_family", "ThinkSystem"},        {"board_vendor", "Lenovo"},
        {"board_name", "7X07"},            {"board_version", "05"},                  {"chassis_vendor", "Lenovo"},
        {"chassis_type", "23"},            {"chassis_version", "None"},              {"bios_vendor", "Lenovo"},
        {"bios_version", "U8E122J-1.51"},  {"bios_date", "03/15/2023"},
    };
    for (const auto& attribute : attributes) dir.Write(std::string("sys/class/dmi/id/") + attribute[0], std::string(attribute[1]) + "\n");
    for (const char* secret : {"product_serial", "product_uuid", "board_serial", "chassis_serial"})
        WriteUnreadable(dir, std::string("sys/class/dmi/id/") + secret);
}

struct Inventory {
    Lines systems, processors, memory, cards, fans, power, notes;
    bool whitley = false;
};

Inventory Collect()
{
    XModule::ClearUnreadableNotes();
    std::vector<ComputerSystem> systems;
    std::vector<Processor> processors;
    std::vector<Memory> memory;
    std::vector<SystemCard> cards;
    std::vector<FanInband> fans;
    std::vector<PowerInband> power;
    CollectComputerSystems(systems);
    CollectProcessors(processors);
    CollectMemory(memory);
    CollectSystemCards(cards);
    CollectSmbiosFans(fans);
    CollectSmbiosPowerSupplies(power);
    Inventory got;
    got.whitley = IsWhitleyPlatform();
    for (const auto& s : systems)
        got.systems.push_back(Joined({s.Manufacturer, s.ProductName, s.Model, s.SerialNumber, s.SystemUUID, s.Version, s.CurrentNodeIndex}));
    for (const auto& p : processors)
        got.processors.push_back(Joined({p.Core, p.Manufacturer, p.Version, p.Stepping, p.CurrentClockSpeed, p.Status,
                                         p.HyperThreadingSupported, p.HyperThreadingStatus, p.Level1CacheOperationalMode,
                                         p.Level1CacheEnabled, p.Level2CacheOperationalMode, p.Level2CacheEnabled,
                                         p.Level3CacheOperationalMode, p.Level3CacheEnabled, p.SerialNumber}));
    for (const auto& m : memory)
        got.memory.push_back(Joined({m.Tag, m.BankLabel, m.Capacity, m.MemoryTypeA, m.MaxSpeed, m.ErrorCorrectionType,
                                     m.Manufacturer, m.PartNumber, m.SerialNumber}));
    for (const auto& c : cards) got.cards.push_back(Joined({c.Type, c.Manufacturer, c.Version, c.SerialNumber}));
    for (const auto& f : fans) got.fans.push_back(Joined({f.ElementName, f.HealthState, f.DesiredSpeed}));
    for (const auto& p : power) got.power.push_back(Joined({p.ElementName, p.HealthState, p.TotalOutputPower}));
    got.notes = XModule::GetUnreadableNotes();
    return got;
}

// The inventory as text, a line per entry after the name of its list; golden files hold what each host gives.
std::string Text(const Inventory& got)
{
    std::string text = std::string("whitley: ") + (got.whitley ? "yes" : "no") + "\n";
    const std::pair<const char*, const Lines*> lists[] = {{"system", &got.systems}, {"cpu", &got.processors},
                                                          {"dimm", &got.memory},    {"card", &got.cards},
                                                          {"fan", &got.fans},       {"power", &got.power},
                                                          {"note", &got.notes}};
    for (const auto& list : lists)
        for (const std::string& line : *list.second) text += std::string(list.first) + ": " + line + "\n";
    return text;
}

}  // namespace

TEST(DmiInventoryTest, TwoSocketServerAsRootSeesIt)
{
    FixtureHost host("");
    WriteServerHost(host.Dir());
    host.Dir().Write("sys/devices/system/cpu/cpu0/topology/ppin", "0x2a5d0c1f3e7b9a41\n");
    host.Dir().Write("sys/devices/system/cpu/cpu1/topology/ppin", "0x2a5d0c1f3e7b9a41\n");
    host.Dir().Write("sys/devices/system/cpu/cpu2/topology/ppin", "0x7c13e58f02d4b6a9\n");

    EXPECT_TRUE(MatchesGolden("dmi/two_socket_root.txt", Text(Collect())));
}

TEST(DmiInventoryTest, DamagedTableWithoutEntryPointGivesWhatPrecedesTheDamage)
{
    FixtureHost host("");
    WriteServerHost(host.Dir());
    const std::string table = ServerSmbiosTable();
    WriteDmiTable(host.Dir(), table.substr(0, table.find("CPU1_DIMM_A2")));
    boost::filesystem::remove(host.Dir().Path() + "/sys/firmware/dmi/tables/smbios_entry_point");

    LogCapture log;
    EXPECT_TRUE(MatchesGolden("dmi/damaged_table.txt", Text(Collect())));
    EXPECT_EQ(1, log.Count("[repo] SMBIOS table is cut short or damaged")) << log.Dump();
    EXPECT_EQ(1, log.Count("[repo] No usable SMBIOS entry point; the table is read as version 3.3")) << log.Dump();
}

TEST(DmiInventoryTest, NormalUserFallsBackToDmiIdUdevAndCpuinfo)
{
    FixtureHost host("");
    WriteCpus(host.Dir(), kServerCpus);
    host.Dir().Write("sys/devices/system/cpu/cpu0/cache/index2/write_policy", "WriteBack\n");
    WriteUnreadable(host.Dir(), "sys/devices/system/cpu/cpu0/topology/ppin");
    WriteUnreadable(host.Dir(), "sys/firmware/dmi/tables/DMI");
    WriteUnreadable(host.Dir(), "sys/firmware/dmi/tables/smbios_entry_point");
    WriteDmiId(host.Dir());
    host.Dir().Write("run/udev/data/+dmi:id", kUdevDmiRecord);

    EXPECT_TRUE(MatchesGolden("dmi/normal_user.txt", Text(Collect())));
}

TEST(DmiInventoryTest, VirtualMachineWithoutAnyDmiStillListsItsProcessor)
{
    FixtureHost host("");
    WriteCpus(host.Dir(), {1, 2, 1, "167", "Intel(R) Xeon(R) Processor", "2599.998", ""});
    // 128 MiB hot-plug blocks, two of three online.
    host.Dir().Write("sys/devices/system/memory/block_size_bytes", "8000000\n");
    for (const char* block : {"memory0", "memory1", "memory32"})
        host.Dir().Write(std::string("sys/devices/system/memory/") + block + "/state",
                         block == std::string("memory1") ? "offline\n" : "online\n");

    EXPECT_TRUE(MatchesGolden("dmi/virtual_machine.txt", Text(Collect())));
}

TEST(DmiInventoryTest, CpuinfoGivesOneEntryPerProcessorLine)
{
    const char xeonBlock[] =
        "processor\t: 0\nvendor_id\t: GenuineIntel\ncpu family\t: 6\nmodel\t\t: 106\n"
        "model name\t: Intel(R) Xeon(R) Gold 6338 CPU @ 2.00GHz\nstepping\t: 6\nmicrocode\t: 0xd0003a5\n"
        "cpu MHz\t\t: 2000.000\ncache size\t: 49152 KB\nphysical id\t: 1\nsiblings\t: 64\ncore id\t\t: 0\n"
        "cpu cores\t: 32\nflags\t\t: fpu vme de pse tsc msr pae mce cx8 apic sep mtrr\npower management:\n\n";
    const std::string xeon = std::string(xeonBlock) + "processor\t: 1\nphysical id\t: 0\ncpu MHz\t\t: 800.5\n";
    const std::string xeonLine = "0:GenuineIntel/6/106/Intel(R) Xeon(R) Gold 6338 CPU @ 2.00GHz/6/1/32/64/2000;";
    const struct { const char* name; std::string text; std::string expected; } cases[] = {
        {"two blocks", xeon, xeonLine + "1:/-1/-1///0/0/0/800;"},
        {"lines before the first processor line are passed over", "model name : stray\n" + std::string(xeonBlock), xeonLine},
        {"ARM has no vendor_id or model name", "processor\t: 0\nBogoMIPS\t: 50.00\nCPU implementer\t: 0x41\n",
         "0:/-1/-1///-1/0/0/0;"},
        {"numbers that do not parse, lines without colon", "processor : x\ncpu family : six\ncpu MHz : -5\ngarbage\n\xff\xfe\n",
         "-1:/-1/-1///-1/0/0/0;"},
        {"huge numbers", "processor : 99999999999999999999999\nphysical id : 4294967296\n", "-1:/-1/-1///-1/0/0/0;"},
        {"empty", "", ""},
    };
    for (const auto& c : cases) {
        std::string got;
        for (const CpuInfoEntry& e : ParseCpuInfo(c.text))
            got += std::to_string(e.processor) + ":" + e.vendorId + "/" + std::to_string(e.family) + "/" +
                   std::to_string(e.model) + "/" + e.modelName + "/" + e.stepping + "/" + std::to_string(e.physicalId) +
                   "/" + std::to_string(e.cpuCores) + "/" + std::to_string(e.siblings) + "/" +
                   std::to_string(static_cast<int>(e.megahertz)) + ";";
        EXPECT_EQ(c.expected, got) << c.name;
    }

    // Whitley: Intel family 6, model 0x6A or 0x6C, on every CPU.
    const struct { std::vector<std::tuple<const char*, int, int>> cpus; bool whitley; } platforms[] = {
        {{{"GenuineIntel", 6, 0x6A}, {"GenuineIntel", 6, 0x6A}}, true}, {{{"GenuineIntel", 6, 0x6C}}, true},
        {{{"GenuineIntel", 6, 0x8F}}, false}, {{{"AuthenticAMD", 6, 0x6A}}, false}, {{{"GenuineIntel", 15, 0x6A}}, false},
        {{{"GenuineIntel", 6, 0x6A}, {"GenuineIntel", 6, 0xA7}}, false}, {{}, false},
    };
    for (const auto& platform : platforms) {
        std::vector<CpuInfoEntry> cpus;
        for (const auto& cpu : platform.cpus) {
            cpus.emplace_back();
            std::tie(cpus.back().vendorId, cpus.back().family, cpus.back().model) = cpu;
        }
        EXPECT_EQ(platform.whitley, IsWhitleyCpu(cpus)) << cpus.size() << " CPUs";
    }
}

// Shaped like a 2007 rack server: SMBIOS 2.4, onboard devices in the older list only, an unknown board
// type and power supplies that are unplugged or in a state no supply has.
TEST(DmiInventoryTest, OlderServerGivesItsFirstOnboardListAndUnpluggedSupplies)
{
    FixtureHost host("");
    const std::string table =
        SmbiosBuilder(2, 0x0200, 0x08).String(0x04, "Dell Inc.").String(0x05, "0M788G").String(0x06, "A04").Bytes() +
        SmbiosBuilder(2, 0x0201, 0x0F).String(0x04, "Dell Inc.").String(0x05, "0K9CH4").Byte(0x0D, 0x01).Bytes() +
        SmbiosBuilder(2, 0x0202, 0x0F).String(0x05, "Riser").Byte(0x0D, 0x02).Bytes() +
        SmbiosBuilder(10, 0x0A00, 0x08).Byte(0x04, 0x83).String(0x05, "Embedded ATI ES1000")
            .Byte(0x06, 0x05).String(0x07, "Embedded Broadcom 5708 NIC 1").Bytes() +
        SmbiosBuilder(39, 0x2700, 0x16).String(0x06, "PS1").Word(0x0C, 670).Word(0x0E, 0x01A6).Bytes() +
        SmbiosBuilder(39, 0x2701, 0x16).String(0x06, "PS2").Word(0x0C, 670).Word(0x0E, 0x0302).Bytes() +
        EndOfTableBytes(0x7F00);
    WriteDmiTable(host.Dir(), table);
    WriteSmbiosEntryPoint(host.Dir(), SmbiosEntryPoint2Bytes(2, 4));

    const Inventory got = Collect();
    EXPECT_EQ((Lines{"Baseboard: 0M788G|Dell Inc.|A04|N/A", "Baseboard: 0K9CH4|Dell Inc.|N/A|N/A",
                     "Baseboard: Riser (Other)|N/A|N/A|N/A", "Onboard: Video (Embedded ATI ES1000, Enabled)|N/A|N/A|N/A",
                     "Onboard: Ethernet (Embedded Broadcom 5708 NIC 1, Disabled)|N/A|N/A|N/A"}),
              got.cards);
    EXPECT_EQ((Lines{"PS1|Unplugged|670", "PS2|N/A|670"}), got.power);
}
