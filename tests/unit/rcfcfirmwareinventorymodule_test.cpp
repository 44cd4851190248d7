#include "repository/modules/rcfcfirmwareinventorymodule.h"
#include "rcfctestsupport.h"
#include "rest/jsonread.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

#include <boost/json/parse.hpp>

using namespace kestro::repository;

namespace {

const std::vector<RCFCColumn> kFirmwareColumns = {
    {"Name", kAnyText}, {"Version", kAnyText}, {"Date", "[0-9]{4}-[0-9]{2}-[0-9]{2}|N/A"}};

const std::vector<RCFCColumn> kVPDColumns = {
    {"MachineType", "[0-9A-Z]{4}|N/A"}, {"Model", kAnyText}, {"SerialNumber", kAnyText}, {"UUID", kAnyText}};

}  // namespace

TEST(RCFCFirmwareInventoryModuleTest, FullTargetListsFirmwareAndTheSystemVPD)
{
    RCFCTarget target("full");
    target.Bmc().SetPageSize(3);
    RCFCFirmwareInventoryModule module;
    LogCapture capture;
    target.RunEveryType(module);
    EXPECT_TRUE(capture.Has(3, "[repo] Try to enum Firmware instance."));
    EXPECT_TRUE(capture.Has(3, "[repo] Try to enum VPD instance."));

    const auto firmware = ExpectRows(target.Repo(), "FirmwareInventory", kFirmwareColumns);
    ASSERT_EQ(8u, firmware.size());
    EXPECT_EQ((std::vector<std::string>{"BMC (Primary)", "3.42", "2026-08-14"}), firmware[0]);
    EXPECT_EQ((std::vector<std::string>{"Power Supply 1", "7.51", "N/A"}), firmware[7]);
    // Three expanded pages give every member.
    EXPECT_EQ(3, target.Bmc().RequestCount("/redfish/v1/UpdateService/FirmwareInventory"));
    EXPECT_EQ(0, target.Bmc().RequestCount("/redfish/v1/UpdateService/FirmwareInventory/UEFI"));

    const auto vpd = ExpectRows(target.Repo(), "SystemVPD", kVPDColumns);
    ASSERT_EQ(1u, vpd.size());
    EXPECT_EQ((std::vector<std::string>{"7D76", "7D76CTO1WW", "J30A1K2M", "4c4c4544-0047-3010-8052-b3c04f4b3433"}),
              vpd[0]);
}

TEST(RCFCFirmwareInventoryModuleTest, SparseAndMissingSourcesKeepToTheirType)
{
    RCFCTarget sparse("sparse");
    RCFCFirmwareInventoryModule module;
    LogCapture capture;
    sparse.Run(module, "FirmwareInventory");
    sparse.Run(module, "SystemVPD");
    // Of three members the last is a number, not an object: no row.
    const auto firmware = ExpectRows(sparse.Repo(), "FirmwareInventory", kFirmwareColumns);
    ASSERT_EQ(2u, firmware.size());
    EXPECT_EQ((std::vector<std::string>{"BMC (Primary)", "N/A", "N/A"}), firmware[0]);
    EXPECT_EQ((std::vector<std::string>{"N/A", "OVE128J-3.10", "N/A"}), firmware[1]);
    const auto vpd = ExpectRows(sparse.Repo(), "SystemVPD", kVPDColumns);
    ASSERT_EQ(1u, vpd.size());
    EXPECT_EQ((std::vector<std::string>{"N/A", "N/A", "N/A", "N/A"}), vpd[0]);

    // The storage-only tree has no firmware inventory; its VPD still comes.
    RCFCTarget storages("storages");
    capture.Clear();
    storages.Run(module, "FirmwareInventory");
    storages.Run(module, "SystemVPD");
    EXPECT_EQ(1, capture.Count("[repo] Failed to inventory  with error is Failed to get url "));
    EXPECT_TRUE(ColumnOf(storages.Repo(), "FirmwareInventory", "Name").empty());
    EXPECT_EQ(std::vector<std::string>{"7D76"}, ColumnOf(storages.Repo(), "SystemVPD", "MachineType"));
}

TEST(RCFCFirmwareInventoryModuleTest, MachineTypeComesFromTheVendorBranchOrTheModel)
{
    const struct {
        const char* system;
        const char* machineType;
    } cases[] = {
        {R"({"Model": "7D76CTO1WW", "Oem": {"Orvena": {"MachineType": "7D75"}}})", "7D75"},
        {R"({"Model": "7X06A0ABCD"})", "7X06"},
        {R"({"Model": "7X0"})", "N/A"},
        {R"({"Model": "SR-650 V3"})", "N/A"},
        {R"({"Model": 7606})", "N/A"},
        {R"({"Oem": {"Orvena": {"MachineType": 7606}}, "Model": "7D76CTO1WW"})", "7D76"},
        {R"({})", "N/A"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.machineType, RCFCFirmwareInventoryModule::MachineTypeOf(boost::json::parse(c.system))) << c.system;
}
