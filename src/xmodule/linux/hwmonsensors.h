#ifndef KESTRO_XMODULE_LINUX_HWMONSENSORS_H
#define KESTRO_XMODULE_LINUX_HWMONSENSORS_H

#include "xmodule/protocol/hardwareinfo.h"

#include <map>
#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// One hardware monitoring chip of the kernel (/sys/class/hwmon/hwmonN).
struct HwmonChip {
    std::string id;      // "hwmon3"
    std::string folder;  // where its attributes lie: the hwmon folder, or device/ for old drivers
    std::string name;    // the driver's or device's name, "nct6779", "dps800"; the id when missing
    std::string device;  // the last part of its device link, "7-0058"; "" when none
    // Attribute name to trimmed text, for the sensor kinds read ("fan1_input" -> "1200");
    // "" for a file that could not be read.
    std::map<std::string, std::string> attributes;
};

// A whole number as sysfs writes it ("-1500", "1200"); false for anything else.
bool ParseSysfsInteger(const std::string& text, long long& value);

// The fans of one chip, by channel. A channel's rows:
//   ElementName  fanK_label, else "<chip name> fanK"
//   DesiredSpeed fanK_input in RPM, "N/A" when it cannot be read
//   HealthState  the first rule that holds:
//     fanK_fault is 1                                   "Failed"
//     0 RPM while fanK_alarm is 1 or fanK_min is above 0 "Failed" (stopped though it should spin)
//     fanK_alarm is 1                                   "Warning"
//     RPM below fanK_min                                "Warning"
//     RPM readable                                      "OK"
//     otherwise                                         "N/A"
// Left out: channels with fanK_enable 0, and headers at 0 RPM with no minimum, alarm or fault,
// which chips such as the nct67xx report for every header, fan or not.
std::vector<protocol::FanInband> ParseHwmonFans(const HwmonChip& chip);

// Every chip of the host, in hwmon number order, without attributes.
std::vector<HwmonChip> ListHwmonChips();
// Reads the chip's attributes of the sensor kinds named ("fan" gives fan1_input, fan1_min...).
void ReadHwmonAttributes(HwmonChip& chip, const std::vector<std::string>& kinds);

void CollectFans(std::vector<protocol::FanInband>& fans);

}  // namespace Linux
}  // namespace XModule

#endif
