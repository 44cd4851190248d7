#ifndef KESTRO_XMODULE_LINUX_SCSIDEVICES_H
#define KESTRO_XMODULE_LINUX_SCSIDEVICES_H

#include "xmodule/protocol/hardwareinfo.h"

#include <cstdint>
#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// Where a SCSI device sits: host adapter, channel (bus), target and logical unit.
struct ScsiAddress {
    std::uint64_t host = 0;
    std::uint64_t channel = 0;
    std::uint64_t target = 0;
    std::uint64_t lun = 0;
};

// A device's sysfs name "H:C:T:L"; false for the bus's other entries ("host0", "target0:0:0").
bool ParseScsiAddress(const std::string& name, ScsiAddress& address);

// The peripheral device type of the inquiry data, as sysfs writes it in "type" ("13\n"), by name
// ("Enclosure services"); a code the table lacks stays a number, no code gives "N/A".
std::string DescribeScsiDeviceType(const std::string& typeText);

// Every logical unit on the host's SCSI buses (SATA, SAS, USB storage and virtual ones alike),
// ordered by address. A host without a SCSI bus (virtio disks only) simply has none.
void CollectScsiDevices(std::vector<protocol::SystemDevice>& devices);

}  // namespace Linux
}  // namespace XModule

#endif
