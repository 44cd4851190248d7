#include "xmodule/ihv/arcconfparser.h"

#include "support/logcapture.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

using XModule::ARCCONF::ArcconfParser;
namespace opt = XModule::XMOptions;

TEST(ArcconfParserTest, ControllerArraysLogicalAndPhysicalDevicesFromCapturedOutput)
{
    const std::string text = ReadFile(std::string(KESTRO_TEST_FIXTURES) + "/arcconf/getconfig_1_al.txt");
    EXPECT_EQ(1, ArcconfParser::ControllerCount(text));
    opt::RaidAdapter adapter;
    ASSERT_TRUE(ArcconfParser::ParseConfig(text, adapter));
    EXPECT_EQ("Adaptec SmartRAID 3154-8i", adapter.Name);
    EXPECT_EQ("7A45E3002E3", adapter.SerialNum);
    EXPECT_EQ("4096 MB", adapter.CacheMemorySize);
    ASSERT_EQ(2u, adapter.softwareIdentities.size());
    EXPECT_EQ("2.86[0]", adapter.softwareIdentities[0].VersionString);
    ASSERT_EQ(1u, adapter.batteries.size());
    EXPECT_EQ("Supercap", adapter.batteries[0].BatteryType);
    EXPECT_EQ("28", adapter.batteries[0].Temperature);

    ASSERT_EQ(1u, adapter.storagePools.size());
    const opt::StoragePool& pool = adapter.storagePools[0];
    EXPECT_EQ("Array A", pool.Name);
    EXPECT_EQ("Online", pool.ArrayStatus);
    EXPECT_EQ("RAID1", pool.RAIDLevel);
    ASSERT_EQ(1u, pool.volumes.size());
    EXPECT_EQ("OS", pool.volumes[0].Name);
    EXPECT_EQ("256 KB", pool.volumes[0].StripeSize);

    // The two members sit in the array, the ready SSD on the adapter, the enclosure nowhere.
    ASSERT_EQ(2u, pool.drives.size());
    EXPECT_EQ("Device #1", pool.drives[1].Name);
    EXPECT_EQ("WFK0BBBB", pool.drives[1].SerialNum);
    EXPECT_EQ("12.0Gb/s", pool.drives[0].DiskFormat);
    EXPECT_EQ("35", pool.drives[0].Temperature);
    EXPECT_EQ("HDD", pool.drives[0].MediaType);
    ASSERT_EQ(1u, adapter.diskDrives.size());
    EXPECT_EQ("Unconfigured good", adapter.diskDrives[0].DiskState);
    EXPECT_EQ("SSD", adapter.diskDrives[0].MediaType);
    EXPECT_EQ("97%", adapter.diskDrives[0].RemainingLifePercent);
    EXPECT_EQ("SATA", adapter.diskDrives[0].Type);
}

TEST(ArcconfParserTest, TextWithoutAControllerIsRefused)
{
    const char* const texts[] = {"", "Controllers found: 0\nCommand completed successfully.\n",
                                 "Invalid controller number.\n"};
    for (const char* text : texts) {
        opt::RaidAdapter adapter;
        LogCapture capture;
        EXPECT_FALSE(ArcconfParser::ParseConfig(text, adapter)) << text;
        EXPECT_EQ(1, capture.Count("arcconf output has no controller information")) << text;
        EXPECT_TRUE(adapter.storagePools.empty());
    }
    EXPECT_EQ(0, ArcconfParser::ControllerCount("Controllers found: none"));
    EXPECT_EQ(2, ArcconfParser::ControllerCount("Controllers found: 2\r\n"));
}

TEST(ArcconfParserTest, ControllerCountIsTheFirstNumberAfterItsLabel)
{
    struct Case {
        const char* what;
        std::string text;
        int count;
    };
    const Case cases[] = {
        {"blanks and line ends before the number", "Controllers found:\n\t 12\n", 12},
        {"three digits at most", "Controllers found: 1234", 123},
        {"a label without a number is passed over", "Controllers found: none\nControllers found: 3\n", 3},
        {"a megabyte of blanks", "Controllers found:" + std::string(1 << 20, ' ') + "7", 7},
        {"the label at the very end", "Controllers found:", 0},
        {"no label", "Controllers: 2\n", 0},
    };
    for (const Case& c : cases) EXPECT_EQ(c.count, ArcconfParser::ControllerCount(c.text)) << c.what;
}
