#include "xmodule/ihv/marvellparser.h"

#include "support/logcapture.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

using XModule::MARVELL::MarvellParser;
namespace opt = XModule::XMOptions;

namespace {

std::string Captured(const std::string& name) { return ReadFile(std::string(KESTRO_TEST_FIXTURES) + "/mvcli/" + name); }

}  // namespace

TEST(MarvellParserTest, AdapterVirtualDiskAndDrivesFromCapturedOutput)
{
    std::vector<opt::RaidAdapter> adapters;
    ASSERT_TRUE(MarvellParser::Parse(Captured("info_hba.txt"), Captured("info_vd.txt"), Captured("info_pd.txt"),
                                     adapters));
    ASSERT_EQ(1u, adapters.size());  // the closing summary repeats the adapter and is not counted
    EXPECT_EQ("Marvell 1b4b-9230", adapters[0].Name);
    ASSERT_EQ(3u, adapters[0].softwareIdentities.size());
    EXPECT_EQ("2.3.10.1095", adapters[0].softwareIdentities[0].VersionString);
    ASSERT_EQ(1u, adapters[0].storagePools.size());
    const opt::StoragePool& pool = adapters[0].storagePools[0];
    EXPECT_EQ("M.2 VD", pool.Name);
    EXPECT_EQ("RAID1", pool.RAIDLevel);
    EXPECT_EQ("Online", pool.ArrayStatus);
    ASSERT_EQ(2u, pool.drives.size());
    EXPECT_EQ("21282D5B0002", pool.drives[1].SerialNum);
    EXPECT_EQ("SATA", pool.drives[1].Type);
    EXPECT_EQ("Online", pool.drives[1].DiskState);
    EXPECT_TRUE(adapters[0].diskDrives.empty());

    // Without virtual disks the drives stay on the adapter.
    adapters.clear();
    ASSERT_TRUE(MarvellParser::Parse(Captured("info_hba.txt"), "", Captured("info_pd.txt"), adapters));
    EXPECT_EQ(2u, adapters[0].diskDrives.size());
    EXPECT_TRUE(adapters[0].storagePools.empty());
}

TEST(MarvellParserTest, OutputWithoutAnAdapterIsRefusedAndKeepsWhatWasHeld)
{
    for (const char* hba : {"", "No adapter found.\n", "Product: 1b4b-9230\n"}) {
        std::vector<opt::RaidAdapter> adapters(1);
        LogCapture capture;
        EXPECT_FALSE(MarvellParser::Parse(hba, Captured("info_vd.txt"), Captured("info_pd.txt"), adapters)) << hba;
        EXPECT_EQ(1, capture.Count("mvcli output names no adapter"));
        EXPECT_EQ(1u, adapters.size());
    }
}
