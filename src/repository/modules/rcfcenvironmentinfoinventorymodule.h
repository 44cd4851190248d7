#ifndef KESTRO_REPOSITORY_MODULES_RCFCENVIRONMENTINFOINVENTORYMODULE_H
#define KESTRO_REPOSITORY_MODULES_RCFCENVIRONMENTINFOINVENTORYMODULE_H

#include "kestro/repository/rmodule.h"

#include <boost/json/value.hpp>

#include <string>

namespace Rest {
struct RestSession;
}

namespace kestro {
namespace repository {

struct RCFCField;
struct RCFCGivenValue;

// Sensors and LEDs of a CFC target, read from its BMC's Redfish service.
class RCFCEnvironmentInfoInventoryModule : public RModule {
public:
    std::string GetName() override;
    std::string GetDisplay() override;

protected:
    void InitCallbacks() override;

private:
    void EnumDiscreteSensorInstances(RRepository& repo);
    void EnumNumericSensorInstances(RRepository& repo);
    void EnumFanSensorInstances(RRepository& repo);
    void EnumPowerSensorInstances(RRepository& repo);
    void EnumTemperatureSensorInstances(RRepository& repo);
    void EnumLEDInstances(RRepository& repo);

    // The chassis' sensor collection, page by page; `discrete` picks which members count.
    void WalkSensors(Rest::RestSession& session, RRepository& repo, bool discrete);
    void AddSensor(RRepository& repo, const boost::json::value& sensor, bool discrete);
    // The array `list` of the chassis document that `link` names (Thermal or Power); `unit`, when
    // given, stands in the unit column of every row.
    void WalkReadings(Rest::RestSession& session, RRepository& repo, const std::string& link, const std::string& list,
                      const std::string& type, const std::string& title, const RCFCField* fields, std::size_t count,
                      const RCFCGivenValue* unit);
    void WalkLEDs(Rest::RestSession& session, RRepository& repo);

};

}  // namespace repository
}  // namespace kestro

#endif
