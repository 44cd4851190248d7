#ifndef KESTRO_XMODULE_LINUX_POWERSUPPLIES_H
#define KESTRO_XMODULE_LINUX_POWERSUPPLIES_H

#include "xmodule/linux/hwmonsensors.h"
#include "xmodule/protocol/hardwareinfo.h"

#include <map>
#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// Whether a hwmon chip is a power supply's PMBus controller, by the driver's or device's name
// ("pmbus", "dps800", "crps185"); voltage regulators speak PMBus too and are not supplies.
bool IsPowerSupplyChip(const std::string& chipName);

// A PMBus supply's row:
//   ElementName      "<chip name> (<device>)", "dps800 (7-0058)"; the hwmon id stands in for a missing device
//   TotalOutputPower the sum of the powerK_input channels labelled "pout..." (µW), in watts
//   HealthState      the worst alarm of any sensor: a set *_crit_alarm, *_lcrit_alarm or *_fault
//                    gives "Failed", any other set *_alarm "Warning"; "OK" when nothing is set and
//                    the chip answered; "N/A" when it gave nothing.
protocol::PowerInband ParseHwmonPowerSupply(const HwmonChip& chip);

// A /sys/class/power_supply entry's row, from its attributes ("type" -> "Mains"):
//   ElementName      "<model_name> (<entry>)", or the entry's name alone
//   TotalOutputPower power_now (µW) in watts
//   HealthState      the worst of: health "Good" "OK"; "Dead" and "Unspecified failure" "Failed";
//                    "Overheat", "Over voltage", "Over current", "Hot", "Cold", the timer expiries and
//                    "Calibration required" "Warning"; online 1 "OK", online 0 "Warning" (no input
//                    power); nothing known "N/A".
protocol::PowerInband ParsePowerSupplyClass(const std::string& entry,
                                            const std::map<std::string, std::string>& attributes);
// Only mains supplies that are present count: a battery, a UPS or a USB port feeds no server,
// and an empty bay (present 0) holds no supply.
bool IsInstalledMainsSupply(const std::map<std::string, std::string>& attributes);

// The power supplies of the host: mains entries of /sys/class/power_supply, then PMBus supply
// chips of hwmon that are not the hwmon side of one of those entries.
void CollectPowerSupplies(std::vector<protocol::PowerInband>& supplies);

}  // namespace Linux
}  // namespace XModule

#endif
