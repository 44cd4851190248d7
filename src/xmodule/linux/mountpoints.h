#ifndef KESTRO_XMODULE_LINUX_MOUNTPOINTS_H
#define KESTRO_XMODULE_LINUX_MOUNTPOINTS_H

#include "xmodule/protocol/hardwareinfo.h"

#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// One line of a mountinfo file, paths with their octal escapes ("\040") undone.
struct MountEntry {
    std::string device;        // the mounted device's numbers, "8:2"; "0:45" for file systems without one
    std::string root;          // the folder of the file system seen there, "/" for all of it
    std::string mountPoint;    // "/boot/efi"
    std::string mountOptions;  // of this mount: "rw,relatime"
    std::string fsType;        // "ext4", "nfs4", "fuse.sshfs"
    std::string source;        // "/dev/sda2", "fileserver:/export"
    std::string superOptions;  // of the file system: "rw,errors=remount-ro,usrquota"
};

// The well-formed lines of mountinfo text in their order. A line with too few fields, without
// the " - " separator or with a bad device number is skipped, and the skipped lines are logged once.
std::vector<MountEntry> ParseMountInfo(const std::string& text);

// The volumes the host has mounted, in mount order, from the root's /proc/self/mountinfo:
// storage only, pseudo file systems left out. Network file systems are listed without sizes.
void CollectMountPoints(std::vector<protocol::Volumes_MountPoints>& volumes);

}  // namespace Linux
}  // namespace XModule

#endif
