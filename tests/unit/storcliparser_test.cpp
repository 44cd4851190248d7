#include "xmodule/ihv/storcliparser.h"

#include "support/logcapture.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

using XModule::LSI::StorcliParser;
namespace opt = XModule::XMOptions;

namespace {

std::string Captured(const std::string& name) { return ReadFile(std::string(KESTRO_TEST_FIXTURES) + "/storcli/" + name); }

}  // namespace

TEST(StorcliParserTest, ControllersDriveGroupsAndDriveDetailsFromCapturedOutput)
{
    std::vector<opt::RaidAdapter> adapters;
    LogCapture capture;
    ASSERT_TRUE(StorcliParser::ParseControllers(Captured("call_show_all.json"), adapters));
    EXPECT_TRUE(capture.Has(2, "[repo] storcli: controller 1 did not answer: Controller 1 not found")) << capture.Dump();
    ASSERT_EQ(1u, adapters.size());
    const opt::RaidAdapter& adapter = adapters[0];
    EXPECT_EQ("RAID", adapter.ControllerType);
    EXPECT_EQ("SKC4812345", adapter.SerialNum);
    EXPECT_EQ("4096MB", adapter.CacheMemorySize);
    ASSERT_EQ(3u, adapter.softwareIdentities.size());
    EXPECT_EQ("5.170.02-3457", adapter.softwareIdentities[0].VersionString);
    EXPECT_EQ("7.17.01.0_0x07110300", adapter.softwareIdentities[1].VersionString);

    // Two virtual drives of group 1 make one pool with two volumes.
    ASSERT_EQ(2u, adapter.storagePools.size());
    EXPECT_EQ("Drive Group 1", adapter.storagePools[1].Name);
    EXPECT_EQ("Degraded", adapter.storagePools[1].ArrayStatus);
    ASSERT_EQ(2u, adapter.storagePools[1].volumes.size());
    EXPECT_EQ("1.000 TB", adapter.storagePools[1].volumes[1].CapacityBytes);
    ASSERT_EQ(3u, adapter.storagePools[1].drives.size());
    EXPECT_EQ("Failed", adapter.storagePools[1].drives[2].DiskState);
    EXPECT_EQ("true", adapter.storagePools[1].drives[2].EncryptionAbility);
    ASSERT_EQ(1u, adapter.diskDrives.size());
    EXPECT_EQ("Drive /c0/e252/s5", adapter.diskDrives[0].Name);
    ASSERT_EQ(1u, adapter.batteries.size());
    EXPECT_EQ("27", adapter.batteries[0].Temperature);

    // Details reach the drives they name; one in no list is passed over.
    ASSERT_TRUE(StorcliParser::ParseDriveDetails(Captured("drives_show_all.json"), adapters));
    const opt::DiskDrive& first = adapters[0].storagePools[0].drives[0];
    EXPECT_EQ("S47PNA0N600123", first.SerialNum);
    EXPECT_EQ("ATA", first.Manufacturer);
    EXPECT_EQ("HF56", first.VersionString);
    EXPECT_EQ("6.0Gb/s", first.DiskFormat);
    EXPECT_EQ("29", first.Temperature);
    EXPECT_EQ("12.0Gb/s", adapters[0].diskDrives[0].DiskFormat);
    EXPECT_EQ("N/A", adapters[0].storagePools[0].drives[1].SerialNum);
}

TEST(StorcliParserTest, BadOutputIsRefusedWithALogLineAndKeepsWhatWasRead)
{
    struct Case {
        const char* text;
        const char* line;
    };
    const Case cases[] = {
        {"", "[repo] storcli output is not JSON: "},
        {"Controller = 0\nStatus = Success\n", "[repo] storcli output is not JSON: "},
        {"{\"Controllers\": {}}", "[repo] storcli output has no Controllers list"},
        {"[1, 2]", "[repo] storcli output has no Controllers list"},
    };
    for (const Case& c : cases) {
        std::vector<opt::RaidAdapter> adapters(1);
        adapters[0].Name = "kept";
        LogCapture capture;
        EXPECT_FALSE(StorcliParser::ParseControllers(c.text, adapters)) << c.text;
        EXPECT_FALSE(StorcliParser::ParseDriveDetails(c.text, adapters)) << c.text;
        EXPECT_EQ(2, capture.Count(c.line)) << c.text << capture.Dump();
        ASSERT_EQ(1u, adapters.size());
        EXPECT_EQ("kept", adapters[0].Name);
    }
    // A controller without data still gives an adapter, its fields "N/A".
    std::vector<opt::RaidAdapter> adapters;
    ASSERT_TRUE(StorcliParser::ParseControllers(
        "{\"Controllers\": [{\"Command Status\": {\"Controller\": 0, \"Status\": \"Success\"}}]}", adapters));
    ASSERT_EQ(1u, adapters.size());
    EXPECT_EQ("N/A", adapters[0].Model);
    EXPECT_TRUE(adapters[0].storagePools.empty());
}
