#ifndef KESTRO_XMODULE_BMC_SELREDFISHDATACFC_H
#define KESTRO_XMODULE_BMC_SELREDFISHDATACFC_H

#include <string>

namespace XModule {

// One entry of a CFC BMC's Redfish log, as LogmgrRedfishCFC hands it out. A field the entry
// doesn't give reads "N/A".
struct SELREDFISHDATACFC {
    std::string recordId;     // "Id"
    std::string source;       // "Oem"/"Public"/"Source": who logged it (BIOS, BMC)
    std::string timeStamp;    // "Created", as the BMC writes it
    std::string date;         // the date part of "Created"
    std::string time;         // the time of day of "Created", without its zone
    std::string sensorName;   // "Oem"/"Public"/"SensorName"
    std::string sensorType;   // "SensorType"
    std::string severity;     // "Severity": OK, Warning, Critical
    std::string direction;    // "Oem"/"Public"/"EventDirection": "Assertion event", "Deassertion event"
    std::string description;  // "Message"
    std::string user;         // "Oem"/"Public"/"User", audit entries
    std::string ip;           // "Oem"/"Public"/"IP", audit entries
};

}  // namespace XModule

#endif
