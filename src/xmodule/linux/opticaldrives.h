#ifndef KESTRO_XMODULE_LINUX_OPTICALDRIVES_H
#define KESTRO_XMODULE_LINUX_OPTICALDRIVES_H

#include "xmodule/protocol/hardwareinfo.h"

#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// The drives of the cdrom driver's info table, one per column of its "drive name:" row, with
// DeviceID and the read and write capabilities filled ("Yes", "No", "N/A" where no row tells).
// A row shorter than the drive count leaves the missing drives' fields "N/A"; text without a
// "drive name:" row gives no drive. Both are logged.
std::vector<protocol::OpticalDevice> ParseCdromInfo(const std::string& text);

// The host's optical drives with their maker and model from sysfs. No info table means the cdrom
// driver is not loaded, so no drive.
void CollectOpticalDevices(std::vector<protocol::OpticalDevice>& drives);

}  // namespace Linux
}  // namespace XModule

#endif
