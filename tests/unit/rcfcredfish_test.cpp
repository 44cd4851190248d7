#include "kestro/repository/rinstance.h"
#include "kestro/repository/rinstanceswrapper.h"
#include "kestro/rest/redfishclient.h"
#include "rcfctestsupport.h"
#include "repository/modules/rcfcbmclogsinventorymodule.h"
#include "repository/modules/rcfcenvironmentinfoinventorymodule.h"
#include "repository/modules/rcfcfirmwareinventorymodule.h"
#include "repository/modules/rcfchardwareinventorymodule.h"
#include "repository/modules/rcfcipmilogsinventorymodule.h"
#include "repository/modules/rcfclogreader.h"
#include "repository/modules/rcfcredfish.h"
#include "repository/modules/rcfcstoragedeviceinfoinventorymodule.h"
#include "support/golden.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

#include <boost/json/parse.hpp>

#include <functional>
#include <memory>

using namespace kestro::repository;

namespace {

template <class M>
std::unique_ptr<RModule> Make()
{
    return std::unique_ptr<RModule>(new M);
}

// One run of a module's every type over a fixture tree, compared with
// tests/fixtures/golden/rcfc/<name>.txt: every record and every error line.
struct GoldenRun {
    const char* name;
    std::function<std::unique_ptr<RModule>()> make;
    const char* tree;
    std::size_t pageSize;
    std::function<void(RCFCTarget&)> before;  // breaks the target
    std::function<void(RCFCTarget&)> after;   // what the records can't show
};

void Check(const GoldenRun& run)
{
    SCOPED_TRACE(run.name);
    RCFCTarget target(run.tree, true);
    target.Bmc().SetPageSize(run.pageSize);
    if (run.before) run.before(target);
    const std::unique_ptr<RModule> module = run.make();
    std::vector<std::string> types;
    module->EnumTypes(types);
    LogCapture capture;
    target.RunEveryType(*module);
    EXPECT_TRUE(MatchesGolden(std::string("rcfc/") + run.name + ".txt", RecordsText(target, types, capture)));
    if (run.after) run.after(target);
    // Every type's table fits its records.
    for (const std::string& type : types) {
        const RModule::WrapCallback wrap = module->FindWrapCallback(type);
        ASSERT_FALSE(wrap.empty()) << type;
        std::vector<RInstance*> records = target.Repo().GetInstances(type);
        capture.Clear();
        RInstancesWrapper wrapper(type, records, wrap);
        EXPECT_EQ(0, capture.Count("different sizes")) << type;
        target.Repo().FreeInstances(records);
    }
}

void RawHolds(RCFCTarget& target, const std::vector<std::string>& texts)
{
    const std::vector<std::string> raw = ColumnOf(target.Repo(), "RAIDSHOWRawData", "RawData");
    ASSERT_EQ(1u, raw.size());
    for (const std::string& text : texts) EXPECT_NE(std::string::npos, raw[0].find(text)) << text;
}

std::function<void(RCFCTarget&)> NeverAsked(const std::string& path)
{
    return [path](RCFCTarget& t) { EXPECT_EQ(0, path.empty() ? t.Bmc().RequestCount() : t.Bmc().RequestCount(path)); };
}

const char* const kEmptyStorages = R"({"@odata.id": "/redfish/v1/Systems/1/Storages", "Members": []})";

}  // namespace

TEST(RCFCFamilyTest, EachModuleOverEachTreeGivesItsGoldenRecordsAndLog)
{
    const GoldenRun runs[] = {
        {"hardware_full", Make<RCFCHardwareInventoryModule>, "full", 5, nullptr, nullptr},
        {"hardware_sparse", Make<RCFCHardwareInventoryModule>, "sparse", 0, nullptr, nullptr},
        {"environment_full", Make<RCFCEnvironmentInfoInventoryModule>, "full", 10, nullptr,
         [](RCFCTarget& t) {  // each sensor is fetched once per type that walks the collection
             EXPECT_EQ(2, t.Bmc().RequestCount("/redfish/v1/Chassis/1/Sensors/Discrete_11"));
         }},
        {"environment_sparse", Make<RCFCEnvironmentInfoInventoryModule>, "sparse", 0, nullptr, nullptr},
        {"firmware_full", Make<RCFCFirmwareInventoryModule>, "full", 3, nullptr,
         [](RCFCTarget& t) {  // three expanded pages, no member fetched on its own
             EXPECT_EQ(3, t.Bmc().RequestCount("/redfish/v1/UpdateService/FirmwareInventory"));
             NeverAsked("/redfish/v1/UpdateService/FirmwareInventory/UEFI")(t);
         }},
        {"firmware_sparse", Make<RCFCFirmwareInventoryModule>, "sparse", 0, nullptr, nullptr},
        {"firmware_storages", Make<RCFCFirmwareInventoryModule>, "storages", 0, nullptr, nullptr},
        {"ipmilogs_full", Make<RCFCIPMILogsInventoryModule>, "full", 3, nullptr, nullptr},
        {"ipmilogs_sparse", Make<RCFCIPMILogsInventoryModule>, "sparse", 0, nullptr, nullptr},
        {"bmclogs_full", Make<RCFCBmcLogsInventoryModule>, "full", 2, nullptr, nullptr},
        {"bmclogs_sparse", Make<RCFCBmcLogsInventoryModule>, "sparse", 0, nullptr, nullptr},
        {"storage_full", Make<RCFCStorageDeviceInfoInventoryModule>, "full", 0, nullptr,
         [](RCFCTarget& t) {
             RawHolds(t, {"\"SKC4012345\"", "\"StorageUnit\""});
             EXPECT_EQ("application/json", t.Bmc().LastRequest().headers["accept"]);
         }},
        {"storage_storages", Make<RCFCStorageDeviceInfoInventoryModule>, "storages", 1, nullptr,
         [](RCFCTarget& t) { RawHolds(t, {"\"A5R1M2K0021\"", "\"A5R1NVB0117\""}); }},  // both pages' answers
        {"storage_sparse", Make<RCFCStorageDeviceInfoInventoryModule>, "sparse", 0, nullptr, nullptr},
    };
    for (const GoldenRun& run : runs) Check(run);
}

// A failed read ends its own type (or, in the storage module, its function): the rows read
// before it stay, what comes after it is not asked for, and the other types are untouched.
TEST(RCFCFamilyTest, AFailureEndsOnlyWhatItBelongsTo)
{
    const GoldenRun runs[] = {
        {"hardware_broken", Make<RCFCHardwareInventoryModule>, "full", 0,
         [](RCFCTarget& t) {
             t.Bmc().ForceStatus("/redfish/v1/Systems/1/Memory", 404);
             t.Bmc().ForceStatus("/redfish/v1/Chassis/1/Drives/Disk.2", 401);
             t.Bmc().SetDocument("/redfish/v1/Chassis/1/Thermal", "{\"Fans\": [");
         },
         NeverAsked("/redfish/v1/Chassis/1/Drives/Disk.3")},
        {"hardware_memory_page", Make<RCFCHardwareInventoryModule>, "full", 0,
         [](RCFCTarget& t) {
             t.Bmc().SetDocument("/redfish/v1/Systems/1/Memory", R"({
                 "Members": [{"Id": "DIMM1", "CapacityMiB": 32768}, {"Id": "DIMM2", "CapacityMiB": 32768}],
                 "Members@odata.nextLink": "/redfish/v1/Systems/1/MemoryPage2"})");
         },
         nullptr},
        {"hardware_refused", Make<RCFCHardwareInventoryModule>, "full", 0,
         [](RCFCTarget& t) { t.UseCredentials(RCFCTarget::kUser, "wrong"); }, nullptr},
        {"hardware_unconnected", Make<RCFCHardwareInventoryModule>, "full", 0,
         [](RCFCTarget& t) { t.Repo().SetRestConnectionList(std::vector<XModule::ConnectionInfo>()); },
         NeverAsked("")},
        {"environment_broken", Make<RCFCEnvironmentInfoInventoryModule>, "full", 10,
         [](RCFCTarget& t) {
             t.Bmc().ForceStatus("/redfish/v1/Chassis/1/Sensors/Volt_2", 404);
             t.Bmc().SetDocument("/redfish/v1/Chassis/1/Power", "{\"Voltages\": [}");
         },
         NeverAsked("/redfish/v1/Chassis/1/Sensors/Discrete_0")},
        {"storage_broken", Make<RCFCStorageDeviceInfoInventoryModule>, "full", 0,
         [](RCFCTarget& t) {
             t.Bmc().ForceStatus("/redfish/v1/Systems/1/Storages/RAID_Slot3/Drives/Disk.2", 404);
             t.Bmc().SetDocument("/redfish/v1/Systems/1/Storages/RAID_Slot3/Volumes", "{\"Members\": [");
             t.Bmc().SetDocument("/redfish/v1/Systems/1/Storages/M2_Slot1/Drives", "not json");
             t.Bmc().SetDocument("/redfish/v1/Systems/1/Storages/M2_Slot1/Volumes", "{\"Members\": [");
         },
         NeverAsked("/redfish/v1/Systems/1/Storages/RAID_Slot3/Drives/Disk.3")},
        {"storage_refused", Make<RCFCStorageDeviceInfoInventoryModule>, "full", 0,
         [](RCFCTarget& t) { t.UseCredentials(RCFCTarget::kUser, "wrong"); }, nullptr},
        {"storage_empty", Make<RCFCStorageDeviceInfoInventoryModule>, "full", 0,
         [](RCFCTarget& t) { t.Bmc().SetDocument("/redfish/v1/Systems/1/Storages", kEmptyStorages); }, nullptr},
        {"ipmilogs_empty", Make<RCFCIPMILogsInventoryModule>, "full", 0,
         [](RCFCTarget& t) {
             t.Bmc().SetDocument("/redfish/v1/Systems/1/LogServices/BIOSLog/Entries", R"({"Members": []})");
         },
         nullptr},
        {"ipmilogs_unconnected", Make<RCFCIPMILogsInventoryModule>, "full", 0,
         [](RCFCTarget& t) { t.Repo().SetRestConnectionList(std::vector<XModule::ConnectionInfo>()); },
         NeverAsked("")},
    };
    for (const GoldenRun& run : runs) Check(run);
}

TEST(RCFCRedfishTest, CapacityTakesTheLargestUnitAboveOneAndCutsToTwoDecimals)
{
    const struct {
        std::uint64_t bytes;
        const char* text;
    } cases[] = {
        {0, "0Bytes"},         {1024, "1024Bytes"}, {1025, "1KB"}, {1536, "1.5KB"}, {1048576, "1024KB"},
        {1048577, "1MB"},      {1920383410176ull, "1.74TB"},      {960197124096ull, "894.25GB"},
        {1ull << 60, "1048576TB"},
    };
    for (const auto& c : cases) EXPECT_EQ(c.text, RCFCRedfish::FormatCapacity(c.bytes)) << c.bytes;
}
TEST(RCFCRedfishTest, FieldsAreReadFromTheirBranchByTheirKind)
{
    const boost::json::value member = boost::json::parse(R"({
        "Name": "Drive 0", "Count": 12, "Speed": 12.5, "Negative": -3, "Flag": true, "Text": 7,
        "Capacity": "1536", "BadCapacity": "15x", "NegativeCapacity": -1, "Modes": ["Volatile", 3, "PMEM"],
        "NoModes": [], "Status": {"Health": "OK"}, "MemoryLocation": {"Channel": 3},
        "Oem": {"Public": {"Serial": "A1"}}, "oem": {"Public": {"Duty": 40}}, "Serial": "TOP"})");
    const struct {
        RCFCField field;
        bool platformV2;
        const char* text;
    } cases[] = {
        {{"Name", "", KindText, AtTop}, false, "Drive 0"},
        {{"Text", "", KindText, AtTop}, false, "N/A"},
        {{"Text", "", KindScalar, AtTop}, false, "7"},
        {{"Speed", "", KindScalar, AtTop}, false, "12.5"},
        {{"Flag", "", KindScalar, AtTop}, false, "true"},
        {{"Modes", "", KindScalar, AtTop}, false, "N/A"},
        {{"Count", "", KindNumber, AtTop}, false, "12"},
        {{"Speed", "", KindNumber, AtTop}, false, "12.5"},
        {{"Negative", "", KindNumber, AtTop}, false, "-3"},
        {{"Name", "", KindNumber, AtTop}, false, "N/A"},
        {{"Flag", "", KindFlag, AtTop}, false, "true"},
        {{"Name", "", KindFlag, AtTop}, false, "N/A"},
        {{"Capacity", "", KindCapacity, AtTop}, false, "1.5KB"},
        {{"BadCapacity", "", KindCapacity, AtTop}, false, "N/A"},
        {{"NegativeCapacity", "", KindCapacity, AtTop}, false, "N/A"},
        {{"Count", "", KindCapacity, AtTop}, false, "12Bytes"},
        {{"Modes", "", KindJoin, AtTop}, false, "Volatile, PMEM"},
        {{"NoModes", "", KindJoin, AtTop}, false, "N/A"},
        {{"Health", "", KindText, UnderStatus}, false, "OK"},
        {{"State", "", KindText, UnderStatus}, false, "N/A"},
        {{"Channel", "", KindNumber, UnderMemoryLocation}, false, "3"},
        {{"Serial", "", KindText, UnderOemPublic}, false, "A1"},
        {{"Duty", "", KindNumber, UnderLowerOemPublic}, false, "40"},
        {{"Duty", "", KindNumber, UnderOemPublic}, false, "N/A"},
        {{"Serial", "", KindText, UnderPlatformOem}, true, "A1"},
        {{"Serial", "", KindText, UnderPlatformOem}, false, "TOP"},
        {{"Name", "", KindText, UnderPlatformOem}, true, "N/A"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.text, RCFCRedfish::ReadField(member, c.field, c.platformV2)) << c.field.key << " " << c.field.kind;
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

TEST(RCFCIPMILogsInventoryModuleTest, DirectionWordsMatchExactly)
{
    const struct {
        const char* text;
        const char* word;
    } cases[] = {
        {"Assertion event", "Assert"},   {"Deassertion event", "Deassert"}, {"assertion event", "Unknown"},
        {"Assertion event ", "Unknown"}, {"Assertion", "Unknown"},          {"", "Unknown"},
        {"N/A", "Unknown"},
    };
    for (const auto& c : cases) EXPECT_EQ(c.word, RCFCLogReader::DirectionWord(c.text)) << '"' << c.text << '"';
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
