#include "kestro/repository/rinstance.h"
#include "kestro/rest/redfishclient.h"
#include "repository/modules/rcfcstoragedeviceinfoinventorymodule.h"
#include "rcfctestsupport.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

using namespace kestro::repository;

namespace {

const char* const kStorages = "/redfish/v1/Systems/1/Storages";
const char* const kReadFailure = "[repo] Failed to read Rest information in RCFCStorageDeviceInfoInventoryModule::";

const std::vector<RCFCColumn> kControllerColumns = {
    {"Name", kAnyText},   {"Model", kAnyText},          {"FirmwareVersion", kAnyText},
    {"SpeedGbps", kNumberOrNA}, {"Manufacturer", kAnyText}, {"SerialNumber", kAnyText}};

const std::vector<RCFCColumn> kRaidControllerColumns = {
    {"Name", kAnyText},         {"Model", kAnyText},          {"FirmwareVersion", kAnyText},
    {"SpeedGbps", kNumberOrNA}, {"Manufacturer", kAnyText},   {"SerialNumber", kAnyText},
    {"Health", "OK|N/A"},       {"State", "Enabled|N/A"},     {"BatteryHealth", "OK|N/A"},
    {"BatteryState", "Enabled|N/A"}};

const std::vector<RCFCColumn> kDiskColumns = {
    {"Name", kAnyText},          {"Model", kAnyText},           {"BlockSizeBytes", kNumberOrNA},
    {"CapableSpeedGbs", kNumberOrNA}, {"CapacityBytes", "[0-9.]+(Bytes|KB|MB|GB|TB)|N/A"},
    {"Manufacturer", kAnyText},  {"Protocol", "SAS|NVMe|N/A"},  {"MediaType", "SSD|N/A"},
    {"SerialNumber", kAnyText},  {"FailurePredicted", "true|false|N/A"}, {"NegotiatedSpeedGbs", kNumberOrNA},
    {"Slot", kNumberOrNA},       {"Temperature", kNumberOrNA},  {"Revision", kAnyText},
    {"HotspareType", "None|Dedicated|N/A"}, {"Health", "OK|Warning|N/A"}, {"State", "Enabled|N/A"},
    {"FDECapable", "true|false|N/A"}, {"MediaErrorCount", kNumberOrNA}, {"OtherErrorCount", kNumberOrNA},
    {"PreFailCount", kNumberOrNA}};

const std::vector<RCFCColumn> kVolumeColumns = {
    {"DiskDriveId", "[0-9,]+"}, {"Name", kAnyText},        {"CapacityBytes", kCapacity},
    {"VolumeRaidLevel", "RAID[0-9]+"}, {"OptimumIOSizeBytes", kNumber}, {"VolumeType", kAnyText},
    {"Health", "OK"},           {"State", "Enabled"}};

}  // namespace

TEST(RCFCStorageDeviceInfoInventoryModuleTest, FullTargetSplitsItsMembersByLayout)
{
    RCFCTarget target("full", true);
    RCFCStorageDeviceInfoInventoryModule module;
    LogCapture capture;
    target.RunEveryType(module);
    EXPECT_EQ(0, capture.Count("Failed")) << capture.Dump();
    EXPECT_TRUE(capture.Has(3, "[repo] Try to enum raid storage device instances."));
    EXPECT_EQ(6, capture.Count("[repo] Try to enum storage device instances."));
    EXPECT_TRUE(capture.Has(4, "[repo] before assgin to storage json value"));
    EXPECT_TRUE(capture.Has(4, "[repo]  Enter get storage json value success"));

    const auto raid = ExpectRows(target.Repo(), "RaidStorageDevice", kRaidControllerColumns);
    ASSERT_EQ(1u, raid.size());
    EXPECT_EQ((std::vector<std::string>{"RAID 940-8i 4GB Flash PCIe Gen4 12Gb Adapter", "MegaRAID 9560-8i",
                                        "52.24.0-4763", "12", "Broadcom", "SKC4012345", "OK", "Enabled", "OK",
                                        "Enabled"}),
              raid[0]);
    const auto disks = ExpectRows(target.Repo(), "DiskDevice", kDiskColumns);
    ASSERT_EQ(4u, disks.size());
    EXPECT_EQ("1.74TB", disks[0][4]);
    EXPECT_EQ("true", disks[3][9]);
    EXPECT_EQ("Dedicated", disks[3][14]);
    EXPECT_EQ("3", disks[2][18]);
    const auto volumes = ExpectRows(target.Repo(), "Volumes", kVolumeColumns);
    ASSERT_EQ(2u, volumes.size());
    EXPECT_EQ((std::vector<std::string>{"0,1", "OS_Mirror", "446.62GB", "RAID1", "262144", "Mirrored", "OK",
                                        "Enabled"}),
              volumes[0]);

    const auto units = ExpectRows(target.Repo(), "StorageDevice", kControllerColumns);
    ASSERT_EQ(1u, units.size());
    EXPECT_EQ("Marvell", units[0][4]);
    EXPECT_TRUE(capture.Has(3, "[repo] Try to get storageunit info"));
    EXPECT_EQ(2u, ExpectRows(target.Repo(), "StorageUnitDiskDevice", kDiskColumns).size());
    EXPECT_EQ(1u, ExpectRows(target.Repo(), "StorageUnitVolume", kVolumeColumns).size());

    // The raw data is the storage answer itself, marked raw.
    std::vector<RInstance*> raw = target.Repo().GetInstances("RAIDSHOWRawData");
    ASSERT_EQ(1u, raw.size());
    std::vector<RProperty> shown = raw[0]->GetRProperty();
    ASSERT_EQ(4u, shown.size());
    EXPECT_EQ("RawData", shown[2].name);
    EXPECT_TRUE(shown[2].raw);
    EXPECT_EQ((std::vector<std::string>{"raid show"}), ColumnOf(target.Repo(), "RAIDSHOWRawData", "Command"));
    EXPECT_EQ((std::vector<std::string>{"Raw Data"}), ColumnOf(target.Repo(), "RAIDSHOWRawData", "Description"));
    EXPECT_EQ((std::vector<std::string>{"raid_show.txt"}), ColumnOf(target.Repo(), "RAIDSHOWRawData", "Filename"));
    std::string text;
    raw[0]->GetPropertyValue("RawData", text);
    EXPECT_NE(std::string::npos, text.find("\"SKC4012345\""));
    EXPECT_NE(std::string::npos, text.find("\"StorageUnit\""));
    target.Repo().FreeInstances(raw);

    // Every request of this module asks for JSON.
    EXPECT_EQ("application/json", target.Bmc().LastRequest().headers["accept"]);
}

TEST(RCFCStorageDeviceInfoInventoryModuleTest, StorageUnitTargetHasNoRaidRows)
{
    RCFCTarget target("storages", true);
    // One member a page: the collection and the drive lists come in pages.
    target.Bmc().SetPageSize(1);
    RCFCStorageDeviceInfoInventoryModule module;
    LogCapture capture;
    target.RunEveryType(module);
    EXPECT_EQ(0, capture.Count("Failed")) << capture.Dump();
    EXPECT_EQ(6, capture.Count("[repo] odata.nextLink :/redfish/v1/Systems/1/Storages?$skip=1"));
    // The raw data holds both pages' answers.
    const std::vector<std::string> raw = ColumnOf(target.Repo(), "RAIDSHOWRawData", "RawData");
    ASSERT_EQ(1u, raw.size());
    EXPECT_NE(std::string::npos, raw[0].find("\"A5R1M2K0021\""));
    EXPECT_NE(std::string::npos, raw[0].find("\"A5R1NVB0117\""));
    EXPECT_EQ(0, capture.Count("Try to get raid info"));
    EXPECT_TRUE(ColumnOf(target.Repo(), "RaidStorageDevice", "Name").empty());
    EXPECT_TRUE(ColumnOf(target.Repo(), "DiskDevice", "Name").empty());
    EXPECT_TRUE(ColumnOf(target.Repo(), "Volumes", "Name").empty());
    EXPECT_EQ(2u, ExpectRows(target.Repo(), "StorageDevice", kControllerColumns).size());
    EXPECT_EQ(5u, ExpectRows(target.Repo(), "StorageUnitDiskDevice", kDiskColumns).size());
    EXPECT_EQ(2u, ExpectRows(target.Repo(), "StorageUnitVolume", kVolumeColumns).size());
}

TEST(RCFCStorageDeviceInfoInventoryModuleTest, SparseTargetLogsEachBrokenRead)
{
    RCFCTarget target("sparse", true);
    RCFCStorageDeviceInfoInventoryModule module;
    LogCapture capture;
    target.RunEveryType(module);

    const auto raid = ExpectRows(target.Repo(), "RaidStorageDevice", kRaidControllerColumns);
    ASSERT_EQ(1u, raid.size());
    // A speed written as text shows as it stands; a health that is a number is of the wrong kind.
    EXPECT_EQ((std::vector<std::string>{"RAID 940-8i", "N/A", "N/A", "12", "N/A", "N/A", "N/A", "N/A", "N/A", "N/A"}),
              raid[0]);
    // Two drive links lack a text "@odata.id"; the third drive comes with its size and counts as
    // text, but block size must be a number and the flag a boolean.
    const auto disks = ExpectRows(target.Repo(), "DiskDevice", kDiskColumns);
    ASSERT_EQ(1u, disks.size());
    EXPECT_EQ("1.5KB", disks[0][4]);
    EXPECT_EQ("N/A", disks[0][2]);
    EXPECT_EQ("N/A", disks[0][9]);
    EXPECT_EQ("3", disks[0][18]);
    EXPECT_TRUE(ColumnOf(target.Repo(), "Volumes", "Name").empty());

    EXPECT_TRUE(capture.Has(1, std::string(kReadFailure) + "EnumStorageDeviceInstances 1")) << capture.Dump();
    EXPECT_TRUE(ColumnOf(target.Repo(), "StorageDevice", "Name").empty());
    const auto unitDisks = ExpectRows(target.Repo(), "StorageUnitDiskDevice", kDiskColumns);
    ASSERT_EQ(1u, unitDisks.size());
    EXPECT_EQ("N/A", unitDisks[0][4]);
    EXPECT_EQ("41", unitDisks[0][12]);
    EXPECT_TRUE(ColumnOf(target.Repo(), "StorageUnitVolume", "Name").empty());
    EXPECT_EQ(1, capture.Count("Failed"));
}

TEST(RCFCStorageDeviceInfoInventoryModuleTest, FailedReadsEndTheirFunctionAndKeepEarlierRows)
{
    RCFCTarget target("full", true);
    target.Bmc().ForceStatus("/redfish/v1/Systems/1/Storages/RAID_Slot3/Drives/Disk.2", 404);
    target.Bmc().SetDocument("/redfish/v1/Systems/1/Storages/RAID_Slot3/Volumes", "{\"Members\": [");
    target.Bmc().SetDocument("/redfish/v1/Systems/1/Storages/M2_Slot1/Drives", "not json");
    target.Bmc().SetDocument("/redfish/v1/Systems/1/Storages/M2_Slot1/Volumes", "{\"Members\": [");
    RCFCStorageDeviceInfoInventoryModule module;
    LogCapture capture;
    target.RunEveryType(module);

    EXPECT_EQ((std::vector<std::string>{"Drive 0", "Drive 1"}), ColumnOf(target.Repo(), "DiskDevice", "Name"));
    EXPECT_EQ(1, capture.Count("[repo] Failed to get info from url " +
                               target.Url("/redfish/v1/Systems/1/Storages/RAID_Slot3/Drives/Disk.2") +
                               ", curlCode: 0, httpCode: 404, body:\n"))
        << capture.Dump();
    EXPECT_TRUE(capture.Has(1, std::string(kReadFailure) + "GetRaidInfo 1"));
    EXPECT_EQ(0, target.Bmc().RequestCount("/redfish/v1/Systems/1/Storages/RAID_Slot3/Drives/Disk.3"));
    EXPECT_TRUE(capture.Has(1, std::string(kReadFailure) + "GetRaidInfo 2"));
    EXPECT_TRUE(ColumnOf(target.Repo(), "Volumes", "Name").empty());
    EXPECT_TRUE(capture.Has(1, std::string(kReadFailure) + "GetStorageUnitDiskInfo"));
    EXPECT_TRUE(ColumnOf(target.Repo(), "StorageUnitDiskDevice", "Name").empty());
    EXPECT_TRUE(capture.Has(1, std::string(kReadFailure) + "EnumStorageUnitVolumeDeviceInstances"));
    EXPECT_TRUE(ColumnOf(target.Repo(), "StorageUnitVolume", "Name").empty());
    EXPECT_EQ(4, capture.Count(kReadFailure));
    // The other types of both layouts are untouched.
    EXPECT_EQ(1u, ColumnOf(target.Repo(), "RaidStorageDevice", "Name").size());
    EXPECT_EQ(1u, ColumnOf(target.Repo(), "StorageDevice", "Name").size());
    EXPECT_EQ(1u, ColumnOf(target.Repo(), "RAIDSHOWRawData", "Command").size());
}

TEST(RCFCStorageDeviceInfoInventoryModuleTest, RefusedOrEmptyCollectionAddsNothing)
{
    RCFCTarget target("full", true);
    target.UseCredentials(RCFCTarget::kUser, "wrong");
    RCFCStorageDeviceInfoInventoryModule module;
    LogCapture capture;
    target.RunEveryType(module);
    const std::string refused = "[repo] Failed to get info from url " +
                                target.Url(std::string(kStorages) + "?$expand=.($levels=1)") +
                                ", curlCode: 0, httpCode: 401, body:\n";
    EXPECT_EQ(7, capture.Count(refused)) << capture.Dump();
    EXPECT_TRUE(capture.Has(1, std::string(kReadFailure) + "EnumRaidStorageDeviceInstances"));
    EXPECT_TRUE(capture.Has(1, std::string(kReadFailure) + "EnumStorageUnitVolumeDeviceInstances"));
    EXPECT_TRUE(target.Repo().GetCollectedInstanceTypes().empty());

    RCFCTarget empty("full", true);
    empty.Bmc().SetDocument(kStorages, R"({"@odata.id": "/redfish/v1/Systems/1/Storages", "Members": []})");
    capture.Clear();
    // The raw data type keeps the (empty) answer itself, so it is left out here.
    for (const char* type : {"StorageDevice", "DiskDevice", "Volumes", "StorageUnitDiskDevice", "StorageUnitVolume",
                             "RaidStorageDevice"})
        empty.Run(module, type);
    EXPECT_TRUE(empty.Repo().GetCollectedInstanceTypes().empty());
    EXPECT_EQ(0, capture.Count("Failed"));
}

TEST(RCFCStorageDeviceInfoInventoryModuleTest, BaseAddressIsAlwaysHttpsWithAPort)
{
    XModule::ConnectionInfo connection;
    connection.host = "fd00::5";
    connection.isIPv6 = true;
    connection.port = 8443;
    connection.scheme = XModule::XModuleConnection::SchemeHttp;
    EXPECT_EQ("https://[fd00::5]:8443", RCFCStorageDeviceInfoInventoryModule::MakeStorageClient(connection).baseUrl);
    connection.host = "bmc.example";
    connection.isIPv6 = false;
    connection.port = 0;
    RCFCStorageDeviceInfoInventoryModule::StorageClient storage =
        RCFCStorageDeviceInfoInventoryModule::MakeStorageClient(connection);
    EXPECT_EQ("https://bmc.example:443", storage.baseUrl);
    ASSERT_TRUE(storage.client);
    EXPECT_EQ("application/json", storage.client->GetHeaders()["Content-Type"]);
}
