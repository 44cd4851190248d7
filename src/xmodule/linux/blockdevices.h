#ifndef KESTRO_XMODULE_LINUX_BLOCKDEVICES_H
#define KESTRO_XMODULE_LINUX_BLOCKDEVICES_H

#include "xmodule/protocol/hardwareinfo.h"

#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// The kind of a partition table as udev names it (ID_PART_TABLE_TYPE, ID_PART_ENTRY_SCHEME):
// "gpt" gives "GPT", "dos" gives "MBR", another kind its own name, none "N/A".
std::string DescribePartitionTable(const std::string& udevTableType);

// A partition's type as udev writes it (ID_PART_ENTRY_TYPE): a GPT type GUID in any case, or an
// MBR type code ("0x83", "0xc"), by its usual name ("Linux filesystem", "EFI System"); a type the
// table does not know keeps its raw value, none gives "N/A".
std::string DescribePartitionType(const std::string& udevEntryType);

// The disks and software volumes of /sys/block with their partitions, physical disks first in
// the kernel's naming order. Nothing is opened but sysfs attributes and udev's database.
void CollectDisks(std::vector<protocol::VirtualDisk>& disks);

// What the block device numbered `number` ("8:1") is, for the volumes list: "Partition", "Disk",
// "Software RAID", a device-mapper kind ("LVM logical volume"), "Loop device"; "N/A" when sysfs
// has no such device.
std::string ReadBlockDeviceLayout(const std::string& number);

// The numbers ("8:1") of the block device the kernel calls `name` ("sda1"); "" when none.
std::string ReadBlockDeviceNumber(const std::string& name);

}  // namespace Linux
}  // namespace XModule

#endif
