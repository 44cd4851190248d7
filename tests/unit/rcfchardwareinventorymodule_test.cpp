#include "repository/modules/rcfchardwareinventorymodule.h"
#include "rcfctestsupport.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

using namespace kestro::repository;

namespace {

const char* const kFailedUrl = "[repo] Failed to inventory  with error is Failed to get url ";

std::vector<RCFCColumn> ProcessorColumns(const char* oemNumber, const char* oemText)
{
    return {{"Id", "[0-9]+|N/A"}, {"Manufacturer", kAnyText}, {"Model", kAnyText}, {"ProcessorType", kAnyText},
            {"ProcessorArchitecture", kAnyText}, {"Socket", kAnyText}, {"TotalCores", kNumberOrNA},
            {"TotalThreads", kNumberOrNA}, {"MaxSpeedMHz", kNumberOrNA}, {"L1CacheKiB", oemNumber},
            {"L2CacheKiB", oemNumber}, {"L3CacheKiB", oemNumber}, {"SerialNumber", oemText},
            {"Health", "OK|N/A"}, {"State", "Enabled|N/A"}};
}

const std::vector<RCFCColumn> kMemoryColumns = {
    {"Id", "DIMM[0-9]+"}, {"DeviceLocator", "DIMM [0-9]+"}, {"MemoryDeviceType", "DDR5|N/A"},
    {"BaseModuleType", "RDIMM|N/A"}, {"MemoryType", "DRAM|N/A"}, {"CapacityMiB", "32768|N/A"},
    {"Manufacturer", "Samsung|N/A"}, {"OperatingSpeedMhz", "4400|N/A"}, {"PartNumber", kAnyText},
    {"SerialNumber", "S[0-9A-F]{8}|N/A"}, {"OperatingMemoryModes", "Volatile|N/A"}, {"Channel", "[0-7]"},
    {"Slot", "0"}, {"Socket", "[12]"}, {"Health", "OK|N/A"}, {"State", "Enabled|Absent"}};

const std::vector<RCFCColumn> kFanColumns = {
    {"MemberId", kAnyText}, {"Name", kAnyText}, {"Reading", kNumberOrNA}, {"MaxReadingRange", kNumberOrNA},
    {"SlotNumber", kNumberOrNA}, {"Redundancy", kAnyText}, {"DutyCycle", "[0-9]+%?|N/A"}, {"SpeedMode", "Auto|N/A"},
    {"State", "Enabled|N/A"}, {"Health", "OK|Warning|N/A"}};

const std::vector<RCFCColumn> kPowerColumns = {
    {"Name", "PSU[12]"}, {"Model", kAnyText}, {"Manufacturer", kAnyText}, {"SerialNumber", kAnyText},
    {"FirmwareVersion", kAnyText}, {"PartNumber", kAnyText}, {"PowerCapacityWatts", kNumber},
    {"PowerInputWatts", kNumber}, {"PowerOutputWatts", kNumber}, {"State", "Enabled"}, {"Health", kHealth}};

const std::vector<RCFCColumn> kSystemBoardColumns = {
    {"Name", kAnyText}, {"Manufacturer", kAnyText}, {"Model", kAnyText}, {"PartNumber", kAnyText},
    {"SerialNumber", kAnyText}};

const std::vector<RCFCColumn> kDriveColumns = {
    {"Name", kAnyText}, {"Id", kAnyText}, {"Model", kAnyText}, {"BlockSizeBytes", kNumberOrNA},
    {"CapableSpeedGbs", kNumberOrNA}, {"CapacityBytes", kCapacity}, {"Manufacturer", kAnyText},
    {"Protocol", kAnyText}, {"MediaType", kAnyText}, {"SerialNumber", kAnyText}, {"Health", "OK|N/A"},
    {"State", "Enabled|N/A"}};

}  // namespace

TEST(RCFCHardwareInventoryModuleTest, FullTargetGivesEveryTypeInItsShape)
{
    RCFCTarget target("full");
    // Memory comes in four pages of five.
    target.Bmc().SetPageSize(5);
    RCFCHardwareInventoryModule module;
    LogCapture capture;
    target.RunEveryType(module);
    EXPECT_EQ(0, capture.Count("Failed")) << capture.Dump();

    const auto processors = ExpectRows(target.Repo(), "Processor", ProcessorColumns(kNumber, "[0-9A-F]{14}"));
    ASSERT_EQ(2u, processors.size());
    EXPECT_EQ((std::vector<std::string>{"1", "Intel(R) Corporation", "Intel(R) Xeon(R) Gold 6430", "CPU", "x86",
                                        "CPU 1", "32", "64", "4000", "2560", "65536", "61440", "7A9C1E6F2B4D31",
                                        "OK", "Enabled"}),
              processors[0]);
    EXPECT_EQ(std::vector<std::string>(2, "Processor/Core"), DisplaysOf(target.Repo(), "Processor"));

    const auto memory = ExpectRows(target.Repo(), "Memory", kMemoryColumns);
    ASSERT_EQ(16u, memory.size());
    // The title counts the modules of all four pages.
    EXPECT_EQ(std::vector<std::string>(16, "Memory(total 16)"), DisplaysOf(target.Repo(), "Memory"));
    // Channels 6 and 7 of each socket are empty slots: no size, no status but their state.
    EXPECT_EQ("N/A", memory[6][5]);
    EXPECT_EQ("Absent", memory[6][15]);
    EXPECT_EQ("N/A", memory[6][14]);
    EXPECT_EQ("32768", memory[8][5]);
    EXPECT_EQ("2", memory[8][13]);

    const auto fans = ExpectRows(target.Repo(), "Fan", kFanColumns);
    ASSERT_EQ(6u, fans.size());
    EXPECT_EQ("Fan Zone A Redundancy, System Fan Redundancy", fans[0][5]);
    EXPECT_EQ("Fan Zone B Redundancy, System Fan Redundancy", fans[5][5]);
    EXPECT_EQ("41", fans[3][6]);
    EXPECT_EQ("Warning", fans[3][9]);

    EXPECT_EQ(2u, ExpectRows(target.Repo(), "Power", kPowerColumns).size());

    // The test BMC is a second-generation platform, so the vendor branch names the board.
    const auto boards = ExpectRows(target.Repo(), "SystemBoard", kSystemBoardColumns);
    ASSERT_EQ(1u, boards.size());
    EXPECT_EQ((std::vector<std::string>{"Chassis", "Orvena Systems Manufacturing", "ThinkNode SR650 V3",
                                        "SB27B58912", "L1HF36R0094"}),
              boards[0]);

    const auto drives = ExpectRows(target.Repo(), "Drive", kDriveColumns);
    ASSERT_EQ(4u, drives.size());
    EXPECT_EQ("1.74TB", drives[0][5]);
    EXPECT_EQ(4, capture.Count("[repo] Get drive info from url /redfish/v1/Chassis/1/Drives/Disk."));
}

TEST(RCFCHardwareInventoryModuleTest, SparseTargetGivesNAForWhatIsMissingOrOfAnotherKind)
{
    RCFCTarget target("sparse");
    RCFCHardwareInventoryModule module;
    LogCapture capture;
    target.RunEveryType(module);
    // Wrong shapes end a walk quietly; only failed urls and bad JSON are failures.
    EXPECT_EQ(0, capture.Count("Failed")) << capture.Dump();
    EXPECT_EQ(0, capture.Count("Unknown exception"));

    const auto processors = ExpectRows(target.Repo(), "Processor", ProcessorColumns(kNumberOrNA, kAnyText));
    ASSERT_EQ(2u, processors.size());
    // Counts and speeds are text when the BMC writes them so; cache sizes must be numbers.
    EXPECT_EQ((std::vector<std::string>{"1", "N/A", "Intel(R) Xeon(R) Gold 6430", "N/A", "N/A", "N/A", "32", "N/A",
                                        "4000.5", "N/A", "N/A", "N/A", "N/A", "N/A", "N/A"}),
              processors[0]);
    EXPECT_EQ(std::vector<std::string>(15, "N/A"), processors[1]);

    EXPECT_TRUE(ColumnOf(target.Repo(), "Memory", "Id").empty());
    EXPECT_TRUE(ColumnOf(target.Repo(), "Power", "Name").empty());

    // The third entry of the fan list is not an object and gives no row.
    const auto fans = ExpectRows(target.Repo(), "Fan", kFanColumns);
    ASSERT_EQ(2u, fans.size());
    EXPECT_EQ((std::vector<std::string>{"0", "Fan 1", "7800", "N/A", "N/A", "N/A", "40%", "N/A", "N/A", "N/A"}),
              fans[0]);
    EXPECT_EQ("8000", fans[1][2]);
    EXPECT_EQ("Enabled", fans[1][8]);

    // No platform generation in the service root: the top level names the board.
    const auto boards = ExpectRows(target.Repo(), "SystemBoard", kSystemBoardColumns);
    ASSERT_EQ(1u, boards.size());
    EXPECT_EQ((std::vector<std::string>{"Chassis", "Orvena", "N/A", "N/A", "N/A"}), boards[0]);

    // Of three links only one has a usable "@odata.id".
    const auto drives = ExpectRows(target.Repo(), "Drive", kDriveColumns);
    ASSERT_EQ(1u, drives.size());
    EXPECT_EQ("1024Bytes", drives[0][5]);
    EXPECT_EQ("N/A", drives[0][4]);
    EXPECT_EQ(1, target.Bmc().RequestCount("/redfish/v1/Chassis/1/Drives/Disk.0"));
}

TEST(RCFCHardwareInventoryModuleTest, AFailedUrlEndsOnlyItsOwnType)
{
    RCFCTarget target("full");
    target.Bmc().ForceStatus("/redfish/v1/Systems/1/Memory", 404);
    target.Bmc().ForceStatus("/redfish/v1/Chassis/1/Drives/Disk.2", 401);
    target.Bmc().SetDocument("/redfish/v1/Chassis/1/Thermal", "{\"Fans\": [");
    RCFCHardwareInventoryModule module;
    LogCapture capture;
    target.RunEveryType(module);

    EXPECT_EQ(2u, ColumnOf(target.Repo(), "Processor", "Id").size());
    EXPECT_TRUE(capture.Has(1, kFailedUrl + target.Url("/redfish/v1/Systems/1/Memory?$expand=.($levels=1)") +
                                   ", error code is 404"))
        << capture.Dump();
    EXPECT_TRUE(ColumnOf(target.Repo(), "Memory", "Id").empty());

    EXPECT_EQ(1, capture.Count("[repo] Failed to parse json with error is "));
    EXPECT_TRUE(ColumnOf(target.Repo(), "Fan", "Name").empty());
    EXPECT_EQ(2u, ColumnOf(target.Repo(), "Power", "Name").size());

    // The drives before the refused one stay; the one after it is not asked for.
    EXPECT_EQ((std::vector<std::string>{"Disk.0", "Disk.1"}), ColumnOf(target.Repo(), "Drive", "Id"));
    EXPECT_TRUE(capture.Has(1, kFailedUrl + target.Url("/redfish/v1/Chassis/1/Drives/Disk.2") + ", error code is 401"));
    EXPECT_EQ(0, target.Bmc().RequestCount("/redfish/v1/Chassis/1/Drives/Disk.3"));
}

TEST(RCFCHardwareInventoryModuleTest, AFailedMemoryPageKeepsTheModulesOfEarlierPages)
{
    RCFCTarget target("full");
    target.Bmc().SetDocument("/redfish/v1/Systems/1/Memory", R"({
        "Members": [{"Id": "DIMM1", "CapacityMiB": 32768}, {"Id": "DIMM2", "CapacityMiB": 32768}],
        "Members@odata.nextLink": "/redfish/v1/Systems/1/MemoryPage2"})");
    RCFCHardwareInventoryModule module;
    LogCapture capture;
    target.Run(module, "Memory");
    EXPECT_TRUE(capture.Has(1, kFailedUrl + target.Url("/redfish/v1/Systems/1/MemoryPage2") + ", error code is 404"))
        << capture.Dump();
    EXPECT_EQ((std::vector<std::string>{"DIMM1", "DIMM2"}), ColumnOf(target.Repo(), "Memory", "Id"));
    EXPECT_EQ(std::vector<std::string>(2, "Memory(total 2)"), DisplaysOf(target.Repo(), "Memory"));
}

TEST(RCFCHardwareInventoryModuleTest, WithoutAConnectionOrWithWrongCredentialsNothingIsAdded)
{
    RCFCTarget target("full");
    RCFCHardwareInventoryModule module;
    LogCapture capture;
    target.Repo().SetRestConnectionList(std::vector<XModule::ConnectionInfo>());
    target.RunEveryType(module);
    EXPECT_EQ(6, capture.Count("[repo] There is no rest connection info in repo."));
    EXPECT_EQ(0, target.Bmc().RequestCount());
    EXPECT_TRUE(capture.Has(3, "[repo] Begin to enum SystemBoard instances"));

    target.UseCredentials(RCFCTarget::kUser, "wrong");
    capture.Clear();
    target.RunEveryType(module);
    EXPECT_EQ(6, capture.Count(", error code is 401"));
    EXPECT_TRUE(target.Repo().GetCollectedInstanceTypes().empty());
}
