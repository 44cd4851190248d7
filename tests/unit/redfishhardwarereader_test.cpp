#include "xmodule/agentless/redfishhardwarereader.h"

#include "fakebmc/loopbackbmc.h"
#include "support/fixturehost.h"
#include "support/minimalbmc.h"

#include <gtest/gtest.h>

using namespace XModule;
using Lines = std::vector<std::string>;

namespace {

const std::string kChassis = "/redfish/v1/Chassis/Enclosure-A";
const char kPassword[] = "Hardware1";

struct Read {
    bool systemRead = false;
    bool hardwareRead = false;
    Lines systems, processors, memory, fans, power;
};

Read ReadFrom(const LoopbackBmc& bmc, std::uint16_t node)
{
    ConnectionInfo connection = StandardBmcConnection(bmc, kPassword);
    connection.nodeIndex = node;
    Agentless::RedfishHardwareReader reader(connection);
    Read got;
    std::vector<protocol::ComputerSystem> systems;
    protocol::Hardwareinfo info;
    got.systemRead = reader.ReadComputerSystem(systems);
    got.hardwareRead = reader.ReadHardware(info);
    for (const auto& s : systems)
        got.systems.push_back(Joined({s.Manufacturer, s.ProductName, s.Model, s.SerialNumber, s.SystemUUID, s.Version, s.CurrentNodeIndex}));
    for (const auto& p : info.processors)
        got.processors.push_back(Joined({p.Core, p.Manufacturer, p.Version, p.Stepping, p.CurrentClockSpeed, p.Status,
                                         p.HyperThreadingSupported, p.HyperThreadingStatus, p.SerialNumber}));
    for (const auto& m : info.memory)
        got.memory.push_back(Joined({m.Tag, m.Capacity, m.MemoryTypeA, m.MaxSpeed, m.ErrorCorrectionType, m.Manufacturer,
                                     m.PartNumber, m.SerialNumber}));
    for (const auto& f : info.fans) got.fans.push_back(Joined({f.ElementName, f.HealthState, f.DesiredSpeed}));
    for (const auto& p : info.power) got.power.push_back(Joined({p.ElementName, p.HealthState, p.TotalOutputPower}));
    return got;
}

}  // namespace

TEST(RedfishHardwareReaderTest, FollowsTheLinksOfAStandardServerToItsInstalledParts)
{
    LoopbackBmc bmc(StandardBmcOptions(kPassword));
    bmc.Start();
    const Read got = ReadFrom(bmc, 0);
    EXPECT_TRUE(got.systemRead && got.hardwareRead);
    EXPECT_EQ(Lines{"Quantrel|RX650 V3|7D76CTO1WW|J9012345|9a4c0e5f-2b61-4d3e-8f7a-0c1d2e3f4a5b|N/A|0"}, got.systems);
    // The empty socket and the accelerator are no processors of the inventory.
    EXPECT_EQ(Lines{"CPU 1 (32 cores, 30 enabled, 60 threads)|Intel(R) Corporation|Intel(R) Xeon(R) Gold 6430|8|2100|"
                    "CPU Enabled|Yes|Enabled|0x4a1f0c22b9d3e571"},
              got.processors);
    EXPECT_EQ(Lines{"CPU1_DIMM_A1|64 GiB|DDR5|4800|Multi-bit ECC|Samsung|M321R8GA0BB0-CQK|0A1B2C3D"}, got.memory);
    EXPECT_EQ((Lines{"Fan 1|OK|9120", "Fan 2|Critical|0", "Fan 3|Not Present|N/A"}), got.fans);
    EXPECT_EQ((Lines{"PSU 1|OK|1100", "PSU 2|Not Present|N/A"}), got.power);

    // Sapphire Rapids (model 0x8F) is no Whitley; Ice Lake-SP (0x6A) is.
    ConnectionInfo connection = StandardBmcConnection(bmc, kPassword);
    EXPECT_FALSE(Agentless::RedfishHardwareReader(connection).IsWhitleyPlatform());
    const std::string cpu = "/redfish/v1/Systems/Node-A1/Processors/CPU1";
    bmc.SetDocument(cpu, R"({"ProcessorType": "CPU", "Status": {"State": "Enabled"}, "ProcessorId":
        {"VendorId": "GenuineIntel", "EffectiveFamily": "0x6", "EffectiveModel": "0x6A"}})");
    EXPECT_TRUE(Agentless::RedfishHardwareReader(connection).IsWhitleyPlatform());
}

TEST(RedfishHardwareReaderTest, MissingPartsLeaveTheirListsEmptyAndAMissingNodeReadsNothing)
{
    LoopbackBmc bmc(StandardBmcOptions(kPassword));
    bmc.Start();
    bmc.ForceStatus("/redfish/v1/Systems/Node-A1/Memory", 500);
    bmc.ForceStatus(kChassis + "/Thermal", 404);
    const Read broken = ReadFrom(bmc, 0);
    EXPECT_TRUE(broken.hardwareRead);
    EXPECT_EQ(1u, broken.processors.size());
    EXPECT_TRUE(broken.memory.empty());
    EXPECT_TRUE(broken.fans.empty());
    EXPECT_EQ(2u, broken.power.size());

    const Read absent = ReadFrom(bmc, 1);
    EXPECT_FALSE(absent.systemRead || absent.hardwareRead);
    EXPECT_TRUE(absent.systems.empty() && absent.processors.empty());
}
