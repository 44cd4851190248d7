#include "kestro/repository/rinstance.h"
#include "kestro/repository/rinstanceswrapper.h"
#include "rcfctestsupport.h"
#include "repository/modules/rcfcbmclogsinventorymodule.h"
#include "repository/modules/rcfcenvironmentinfoinventorymodule.h"
#include "repository/modules/rcfcfirmwareinventorymodule.h"
#include "repository/modules/rcfchardwareinventorymodule.h"
#include "repository/modules/rcfcipmilogsinventorymodule.h"
#include "repository/modules/rcfcredfish.h"
#include "repository/modules/rcfcstoragedeviceinfoinventorymodule.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

#include <boost/json/parse.hpp>
#include <boost/make_shared.hpp>

using namespace kestro::repository;

TEST(RCFCRedfishTest, CapacityTakesTheLargestUnitAboveOneAndCutsToTwoDecimals)
{
    const struct {
        std::uint64_t bytes;
        const char* text;
    } cases[] = {
        {0, "0Bytes"},
        {1024, "1024Bytes"},
        {1025, "1KB"},
        {1536, "1.5KB"},
        {1048576, "1024KB"},
        {1048577, "1MB"},
        {1920383410176ull, "1.74TB"},
        {960197124096ull, "894.25GB"},
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

TEST(RCFCRedfishTest, EveryTypeOfTheFamilyHasATableThatFitsItsRecords)
{
    RCFCTarget target("full", true);
    std::vector<boost::shared_ptr<RModule> > modules = {
        boost::make_shared<RCFCHardwareInventoryModule>(), boost::make_shared<RCFCFirmwareInventoryModule>(),
        boost::make_shared<RCFCEnvironmentInfoInventoryModule>(), boost::make_shared<RCFCIPMILogsInventoryModule>(),
        boost::make_shared<RCFCBmcLogsInventoryModule>(), boost::make_shared<RCFCStorageDeviceInfoInventoryModule>()};
    LogCapture capture;
    std::size_t types = 0;
    for (const boost::shared_ptr<RModule>& module : modules) {
        std::vector<std::string> names;
        module->EnumTypes(names);
        for (const std::string& type : names) {
            target.Run(*module, type);
            const RModule::WrapCallback wrap = module->FindWrapCallback(type);
            ASSERT_FALSE(wrap.empty()) << type;
            std::vector<RInstance*> records = target.Repo().GetInstances(type);
            EXPECT_FALSE(records.empty()) << type;
            capture.Clear();
            RInstancesWrapper wrapper(type, records, wrap);
            EXPECT_EQ(0, capture.Count("different sizes")) << type;
            target.Repo().FreeInstances(records);
            ++types;
        }
    }
    EXPECT_EQ(25u, types);
}
