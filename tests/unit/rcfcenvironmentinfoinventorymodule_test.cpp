#include "repository/modules/rcfcenvironmentinfoinventorymodule.h"
#include "rcfctestsupport.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

using namespace kestro::repository;

namespace {

const std::vector<RCFCColumn> kNumericColumns = {
    {"Id", "(Temp|Fan|Volt|Power)_[0-9]+"},   {"Name", kAnyText},
    {"Reading", kNumber},                     {"Unit", "Cel|RPM|V|W"},
    {"UpperThresholdNonRecoverable", kNumberOrNA}, {"UpperThresholdCritical", kNumberOrNA},
    {"UpperThresholdNonCritical", kNumberOrNA},    {"LowerThresholdNonCritical", kNumberOrNA},
    {"LowerThresholdCritical", kNumberOrNA},       {"LowerThresholdNonRecoverable", kNumberOrNA}};

const std::vector<RCFCColumn> kDiscreteColumns = {
    {"Id", "Discrete_[0-9]+"}, {"Name", kAnyText}, {"Reading", "0x[0-9a-f]{4}"}, {"Unit", "discrete"}};

std::vector<RCFCColumn> ReadingColumns(const char* reading, const char* unit)
{
    return {{"SensorNumber", kNumber},
            {"Name", kAnyText},
            {reading, kNumber},
            {"ReadingUnits", unit},
            {"State", "Enabled"},
            {"UpperThresholdFatal", kNumberOrNA},
            {"UpperThresholdCritical", kNumberOrNA},
            {"UpperThresholdNonCritical", kNumberOrNA},
            {"LowerThresholdNonCritical", kNumberOrNA},
            {"LowerThresholdCritical", kNumberOrNA},
            {"LowerThresholdFatal", kNumberOrNA}};
}

const std::vector<RCFCColumn> kLEDColumns = {{"Id", kAnyText},       {"Name", ".+ LED"},
                                             {"Location", kAnyText}, {"DeviceEntity", kAnyText},
                                             {"Color", "Blue|Amber|Green"}, {"State", "On|Off|Blinking"}};

bool Unique(std::vector<std::string> ids)
{
    std::sort(ids.begin(), ids.end());
    return std::adjacent_find(ids.begin(), ids.end()) == ids.end();
}

}  // namespace

TEST(RCFCEnvironmentInfoInventoryModuleTest, FullTargetOverPagesGivesEverySensorOnce)
{
    RCFCTarget target("full");
    target.Bmc().SetPageSize(10);
    RCFCEnvironmentInfoInventoryModule module;
    LogCapture capture;
    target.RunEveryType(module);
    EXPECT_EQ(0, capture.Count("Failed")) << capture.Dump();

    // 31 sensors in pages of 10: both sensor types follow three next links.
    EXPECT_EQ(6, capture.Count("[repo] odata.nextLink :/redfish/v1/Chassis/1/Sensors?$skip="));
    const auto numeric = ExpectRows(target.Repo(), "NumericSensor", kNumericColumns);
    ASSERT_EQ(19u, numeric.size());
    EXPECT_TRUE(Unique(ColumnOf(target.Repo(), "NumericSensor", "Id")));
    EXPECT_EQ((std::vector<std::string>{"Volt_0", "P12V", "12.12", "V", "N/A", "13.2", "12.84", "11.16", "10.8",
                                        "N/A"}),
              numeric[13]);
    EXPECT_EQ((std::vector<std::string>{"Temp_0", "Ambient Temp", "23", "Cel", "45", "43", "40", "N/A", "N/A", "N/A"}),
              numeric[0]);
    const auto discrete = ExpectRows(target.Repo(), "DiscreteSensor", kDiscreteColumns);
    ASSERT_EQ(12u, discrete.size());
    EXPECT_TRUE(Unique(ColumnOf(target.Repo(), "DiscreteSensor", "Id")));
    // Each sensor is fetched once per type that walks the collection.
    EXPECT_EQ(2, target.Bmc().RequestCount("/redfish/v1/Chassis/1/Sensors/Discrete_11"));

    const auto fans = ExpectRows(target.Repo(), "FanSensor", ReadingColumns("Reading", "RPM"));
    ASSERT_EQ(6u, fans.size());
    EXPECT_EQ("600", fans[0][8]);
    const auto volts = ExpectRows(target.Repo(), "PowerSensor", ReadingColumns("ReadingVolts", "Volts"));
    ASSERT_EQ(6u, volts.size());
    EXPECT_EQ((std::vector<std::string>{"48", "P12V", "12.12", "Volts", "Enabled", "N/A", "13.2", "12.84", "11.16",
                                        "10.8", "N/A"}),
              volts[0]);
    const auto temperatures =
        ExpectRows(target.Repo(), "TemperatureSensor", ReadingColumns("ReadingCelsius", "Celsius degree"));
    ASSERT_EQ(7u, temperatures.size());
    EXPECT_EQ("0", temperatures[0][9]);
    EXPECT_EQ(7u, ExpectRows(target.Repo(), "LED", kLEDColumns).size());
}

TEST(RCFCEnvironmentInfoInventoryModuleTest, AFailedPageKeepsTheRowsOfEarlierPages)
{
    RCFCTarget target("full");
    target.Bmc().SetPageSize(10);
    target.Bmc().ForceStatus("/redfish/v1/Chassis/1/Sensors/Volt_2", 404);
    RCFCEnvironmentInfoInventoryModule module;
    LogCapture capture;
    target.Run(module, "NumericSensor");
    // Temperatures and fans fill the first two pages; the walk stops at the third volt.
    EXPECT_EQ(15u, ColumnOf(target.Repo(), "NumericSensor", "Id").size());
    EXPECT_EQ(1, capture.Count("[repo] Failed to inventory  with error is Failed to get url " +
                               target.Url("/redfish/v1/Chassis/1/Sensors/Volt_2") + ", error code is 404"));
    EXPECT_EQ(0, target.Bmc().RequestCount("/redfish/v1/Chassis/1/Sensors/Discrete_0"));

    target.Bmc().SetDocument("/redfish/v1/Chassis/1/Power", "{\"Voltages\": [}");
    target.Run(module, "PowerSensor");
    EXPECT_EQ(1, capture.Count("[repo] Failed to parse json with error is "));
    EXPECT_TRUE(ColumnOf(target.Repo(), "PowerSensor", "Name").empty());
}

TEST(RCFCEnvironmentInfoInventoryModuleTest, SparseTargetKeepsToWhatIsThere)
{
    RCFCTarget target("sparse");
    RCFCEnvironmentInfoInventoryModule module;
    LogCapture capture;
    target.RunEveryType(module);
    // Only the LED path is missing on this target.
    EXPECT_EQ(1, capture.Count("[repo] Failed to inventory  with error is "));
    EXPECT_TRUE(capture.Has(1, "[repo] Failed to inventory  with error is Failed to get url " +
                                   target.Url("/redfish/v1/Chassis/1/Oem/Orvena/LEDs?$expand=.($levels=1)") +
                                   ", error code is 404"));

    // A member link that is not text is skipped; a sensor without a unit counts as numeric.
    EXPECT_EQ((std::vector<std::string>{"Temp_0", "NoUnit"}), ColumnOf(target.Repo(), "NumericSensor", "Id"));
    EXPECT_EQ((std::vector<std::string>{"23", "N/A"}), ColumnOf(target.Repo(), "NumericSensor", "Reading"));
    // Sensor values are read as text: a number is written in decimal, a string stands as it is.
    EXPECT_EQ((std::vector<std::string>{"N/A", "high"}),
              ColumnOf(target.Repo(), "NumericSensor", "UpperThresholdCritical"));
    EXPECT_EQ((std::vector<std::string>{"Discrete_0"}), ColumnOf(target.Repo(), "DiscreteSensor", "Id"));
    EXPECT_EQ((std::vector<std::string>{"N/A"}), ColumnOf(target.Repo(), "DiscreteSensor", "Name"));

    EXPECT_EQ((std::vector<std::string>{"7800", "8000"}), ColumnOf(target.Repo(), "FanSensor", "Reading"));
    EXPECT_EQ((std::vector<std::string>{"23", "N/A"}), ColumnOf(target.Repo(), "TemperatureSensor", "ReadingCelsius"));
    EXPECT_EQ((std::vector<std::string>{"12.1", "N/A"}), ColumnOf(target.Repo(), "PowerSensor", "ReadingVolts"));
    EXPECT_EQ((std::vector<std::string>{"43", "N/A"}),
              ColumnOf(target.Repo(), "TemperatureSensor", "UpperThresholdCritical"));
    EXPECT_EQ((std::vector<std::string>{"Celsius degree", "Celsius degree"}),
              ColumnOf(target.Repo(), "TemperatureSensor", "ReadingUnits"));
    EXPECT_EQ((std::vector<std::string>{"48", "N/A"}), ColumnOf(target.Repo(), "PowerSensor", "SensorNumber"));
    EXPECT_TRUE(ColumnOf(target.Repo(), "LED", "Id").empty());
}
