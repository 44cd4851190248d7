#include "repository/modules/rcfcenvironmentinfoinventorymodule.h"

#include "repository/modules/rcfcredfish.h"
#include "xmodule/rlog.h"
#include "rest/jsonread.h"
#include "rest/restsession.h"

#include <boost/bind/bind.hpp>

#include <iterator>

namespace kestro {
namespace repository {

namespace {

const RCFCField kNumericSensorFields[] = {
    {"Id", "Node ID", KindText, AtTop},
    {"Name", "Element Name", KindText, AtTop},
    {"Reading", "Current Reading", KindScalar, AtTop},
    {"Unit", "Base Unit", KindText, AtTop},
    {"UpperThresholdNonRecoverable", "Upper Non-Recoverable", KindScalar, AtTop},
    {"UpperThresholdCritical", "Upper Critical", KindScalar, AtTop},
    {"UpperThresholdNonCritical", "Upper Non-Critical", KindScalar, AtTop},
    {"LowerThresholdNonCritical", "Lower Non-Critical", KindScalar, AtTop},
    {"LowerThresholdCritical", "Lower Critical", KindScalar, AtTop},
    {"LowerThresholdNonRecoverable", "Lower Non-Recoverable", KindScalar, AtTop},
};

const RCFCField kDiscreteSensorFields[] = {
    {"Id", "Node ID", KindText, AtTop},
    {"Name", "Element Name", KindText, AtTop},
    {"Reading", "Current Reading", KindScalar, AtTop},
    {"Unit", "Base Unit", KindText, AtTop},
};

#define KESTRO_CFC_THRESHOLD_FIELDS                                              \
    {"UpperThresholdFatal", "Upper Non-Recoverable", KindScalar, AtTop},         \
        {"UpperThresholdCritical", "Upper Critical", KindScalar, AtTop},         \
        {"UpperThresholdNonCritical", "Upper Non-Critical", KindScalar, AtTop},  \
        {"LowerThresholdNonCritical", "Lower Non-Critical", KindScalar, AtTop},  \
        {"LowerThresholdCritical", "Lower Critical", KindScalar, AtTop},         \
        {"LowerThresholdFatal", "Lower Non-Recoverable", KindScalar, AtTop}

const RCFCField kPowerSensorFields[] = {
    {"SensorNumber", "Node ID", KindScalar, AtTop},
    {"Name", "Element Name", KindText, AtTop},
    {"ReadingVolts", "Current Reading", KindScalar, AtTop},
    {"ReadingUnits", "Base Unit", KindText, AtTop},
    {"State", "State", KindText, UnderStatus},
    KESTRO_CFC_THRESHOLD_FIELDS,
};

const RCFCField kFanSensorFields[] = {
    {"SensorNumber", "Node ID", KindScalar, AtTop},
    {"Name", "Element Name", KindText, AtTop},
    {"Reading", "Current Reading", KindScalar, AtTop},
    {"ReadingUnits", "Base Unit", KindText, AtTop},
    {"State", "State", KindText, UnderStatus},
    KESTRO_CFC_THRESHOLD_FIELDS,
};

const RCFCField kTemperatureSensorFields[] = {
    {"SensorNumber", "Node ID", KindScalar, AtTop},
    {"Name", "Element Name", KindText, AtTop},
    {"ReadingCelsius", "Current Reading", KindScalar, AtTop},
    {"ReadingUnits", "Base Unit", KindText, AtTop},
    {"State", "State", KindText, UnderStatus},
    KESTRO_CFC_THRESHOLD_FIELDS,
};

#undef KESTRO_CFC_THRESHOLD_FIELDS

const RCFCField kLEDFields[] = {
    {"Id", "ID", KindText, AtTop},
    {"Name", "Name", KindText, AtTop},
    {"Location", "Location", KindText, AtTop},
    {"DeviceEntity", "Device Entity", KindText, AtTop},
    {"Color", "Color", KindText, AtTop},
    {"State", "State", KindText, UnderStatus},
};

const char* const kDiscreteUnit = "discrete";
// Voltages and temperatures show their unit in words, whatever the BMC names it.
const RCFCGivenValue kVolts = {"ReadingUnits", "Volts"};
const RCFCGivenValue kCelsius = {"ReadingUnits", "Celsius degree"};

const char* const kChassisUrl = "/redfish/v1/Chassis/1";
const char* const kLEDsUrl = "/redfish/v1/Chassis/1/Oem/Orvena/LEDs";

// What the walks below read, so that the module's first walk of a run fetches it all at once.
const Rest::AheadRead kReadPlan[] = {
    {kChassisUrl, 1, "/Sensors", 0},
    {kChassisUrl, 1, "/Thermal", 0},
    {kChassisUrl, 1, "/Power", 0},
    {kLEDsUrl, 1, nullptr, 0},
};
const Rest::AheadPlan kPlan = {kReadPlan, std::size(kReadPlan)};

void LogNextPage(const std::string& nextLink) { RLOG(3) << "odata.nextLink :" << nextLink; }

}  // namespace

std::string RCFCEnvironmentInfoInventoryModule::GetName() { return "CFCEnvironmentInfoInventoryModule"; }

std::string RCFCEnvironmentInfoInventoryModule::GetDisplay() { return "CFC Environment Info Inventory Module"; }

void RCFCEnvironmentInfoInventoryModule::InitCallbacks()
{
    using boost::placeholders::_1;
    typedef RCFCEnvironmentInfoInventoryModule M;
    typeCallbacks["DiscreteSensor"].enumCallback = boost::bind(&M::EnumDiscreteSensorInstances, this, _1);
    typeCallbacks["DiscreteSensor"].wrapCallback = RCFCTableForm(kDiscreteSensorFields);
    typeCallbacks["FanSensor"].enumCallback = boost::bind(&M::EnumFanSensorInstances, this, _1);
    typeCallbacks["FanSensor"].wrapCallback = RCFCTableForm(kFanSensorFields);
    typeCallbacks["LED"].enumCallback = boost::bind(&M::EnumLEDInstances, this, _1);
    typeCallbacks["LED"].wrapCallback = RCFCTableForm(kLEDFields);
    typeCallbacks["NumericSensor"].enumCallback = boost::bind(&M::EnumNumericSensorInstances, this, _1);
    typeCallbacks["NumericSensor"].wrapCallback = RCFCTableForm(kNumericSensorFields);
    typeCallbacks["PowerSensor"].enumCallback = boost::bind(&M::EnumPowerSensorInstances, this, _1);
    typeCallbacks["PowerSensor"].wrapCallback = RCFCTableForm(kPowerSensorFields);
    typeCallbacks["TemperatureSensor"].enumCallback = boost::bind(&M::EnumTemperatureSensorInstances, this, _1);
    typeCallbacks["TemperatureSensor"].wrapCallback = RCFCTableForm(kTemperatureSensorFields);
}

void RCFCEnvironmentInfoInventoryModule::EnumDiscreteSensorInstances(RRepository& repo)
{
    RCFCRedfish::Enumerate(repo, "Try to enum Discrete Sensor instance.", kPlan,
                           [this, &repo](Rest::RestSession& session) { WalkSensors(session, repo, true); });
}

void RCFCEnvironmentInfoInventoryModule::EnumNumericSensorInstances(RRepository& repo)
{
    RCFCRedfish::Enumerate(repo, "Try to enum Numeric Sensor instance.", kPlan,
                           [this, &repo](Rest::RestSession& session) { WalkSensors(session, repo, false); });
}

void RCFCEnvironmentInfoInventoryModule::EnumFanSensorInstances(RRepository& repo)
{
    RCFCRedfish::Enumerate(repo, "Try to enum Fan Sensor instance.", kPlan, [this, &repo](Rest::RestSession& session) {
        WalkReadings(session, repo, "Thermal", "Fans", "FanSensor", "Fan Sensor", kFanSensorFields,
                     RCFCFieldCount(kFanSensorFields), nullptr);
    });
}

void RCFCEnvironmentInfoInventoryModule::EnumPowerSensorInstances(RRepository& repo)
{
    RCFCRedfish::Enumerate(repo, "Try to enum Numeric Power Sensor instance.", kPlan,
                           [this, &repo](Rest::RestSession& session) {
                               WalkReadings(session, repo, "Power", "Voltages", "PowerSensor", "Power Sensor",
                                            kPowerSensorFields, RCFCFieldCount(kPowerSensorFields), &kVolts);
                           });
}

void RCFCEnvironmentInfoInventoryModule::EnumTemperatureSensorInstances(RRepository& repo)
{
    RCFCRedfish::Enumerate(repo, "Try to enum Temperature Sensor instance.", kPlan,
                           [this, &repo](Rest::RestSession& session) {
                               WalkReadings(session, repo, "Thermal", "Temperatures", "TemperatureSensor",
                                            "Temperature Sensor", kTemperatureSensorFields,
                                            RCFCFieldCount(kTemperatureSensorFields), &kCelsius);
                           });
}

void RCFCEnvironmentInfoInventoryModule::EnumLEDInstances(RRepository& repo)
{
    RCFCRedfish::Enumerate(repo, "Try to enum LED instance.", kPlan,
                           [this, &repo](Rest::RestSession& session) { WalkLEDs(session, repo); });
}

void RCFCEnvironmentInfoInventoryModule::WalkSensors(Rest::RestSession& session, RRepository& repo, bool discrete)
{
    const boost::json::value chassis = RCFCRedfish::FetchJson(session, kChassisUrl, 1);
    const std::string link = RCFCRedfish::LinkOf(chassis, "Sensors");
    if (link == Rest::JSON_MISSING_TEXT) return;
    // Both kinds follow the next-page links: a discrete sensor may stand on any page.
    Rest::WalkCollection(
        session, link, Rest::WalkLinks,
        [this, &repo, discrete](const boost::json::value& sensor) { AddSensor(repo, sensor, discrete); },
        &LogNextPage);
}

void RCFCEnvironmentInfoInventoryModule::AddSensor(RRepository& repo, const boost::json::value& sensor, bool discrete)
{
    const bool isDiscrete = Rest::ReadJsonString(sensor, "/Unit") == kDiscreteUnit;
    if (isDiscrete != discrete) return;
    if (discrete)
        RCFCAddRecord(repo, "DiscreteSensor", "Discrete Sensor", sensor, kDiscreteSensorFields);
    else
        RCFCAddRecord(repo, "NumericSensor", "Numeric Sensor", sensor, kNumericSensorFields);
}

void RCFCEnvironmentInfoInventoryModule::WalkReadings(Rest::RestSession& session, RRepository& repo,
                                                      const std::string& link, const std::string& list,
                                                      const std::string& type, const std::string& title,
                                                      const RCFCField* fields, std::size_t count,
                                                      const RCFCGivenValue* unit)
{
    const boost::json::value chassis = RCFCRedfish::FetchJson(session, kChassisUrl, 1);
    const std::string documentUrl = RCFCRedfish::LinkOf(chassis, link);
    if (documentUrl == Rest::JSON_MISSING_TEXT) return;
    const boost::json::value document = RCFCRedfish::FetchJson(session, documentUrl, 0);
    const boost::json::array* readings = Rest::FindJsonArray(document, Rest::MakeJsonPointer({list}));
    if (readings == nullptr) return;
    for (const boost::json::value& reading : *readings)
        RCFCRedfish::AddRecord(repo, type, title, reading, fields, count, false, unit);
}

void RCFCEnvironmentInfoInventoryModule::WalkLEDs(Rest::RestSession& session, RRepository& repo)
{
    Rest::WalkCollection(session, kLEDsUrl, Rest::WalkExpanded,
                         [&repo](const boost::json::value& led) { RCFCAddRecord(repo, "LED", "LED", led, kLEDFields); });
}

}  // namespace repository
}  // namespace kestro
