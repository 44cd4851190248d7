#include "xmodule/linux/mountpoints.h"

#include "kestro/xmodule/log.h"
#include "kestro/xmodule/unreadable.h"
#include "xmodule/linux/blockdevices.h"
#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/udevdatabase.h"
#include "xmodule/linux/valueformat.h"

#include <boost/algorithm/string/predicate.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <map>
#include <sstream>
#include <sys/statvfs.h>

namespace XModule {
namespace Linux {

namespace {

const char kMountInfo[] = "/proc/self/mountinfo";

// Fields before the separator: id, parent id, device, root, mount point, mount options.
const std::size_t kFieldsBeforeOptional = 6;

// File systems that hold no stored data: kernel interfaces, memory, and squashfs, which on a
// server means read-only images of packages (snaps, live media) mounted from loop devices.
// overlay stays: it is the real root of a container.
const char* const kPseudoFileSystems[] = {
    "proc",   "sysfs",     "cgroup",   "cgroup2",    "devpts",          "devtmpfs",    "tmpfs",
    "ramfs",  "mqueue",    "debugfs",  "tracefs",    "securityfs",      "pstore",      "bpf",
    "autofs", "fusectl",   "configfs", "hugetlbfs",  "binfmt_misc",     "efivarfs",    "rpc_pipefs",
    "nsfs",   "selinuxfs", "nfsd",     "fuse.lxcfs", "fuse.gvfsd-fuse", "fuse.portal", "squashfs",
};

// File systems served by another machine. statvfs on one whose server is gone blocks without a
// time limit (a hard NFS mount waits forever), so they are listed without sizes. 9p counts here:
// besides a hypervisor's channel it runs over TCP.
const char* const kNetworkFileSystems[] = {
    "nfs",  "nfs4",      "cifs", "smb3", "smbfs",  "fuse.sshfs", "glusterfs", "fuse.glusterfs",
    "ceph", "fuse.ceph", "9p",   "afs",  "lustre", "gpfs",       "fuse.s3fs", "fuse.rclone",
};

// Layouts that the file system type tells, before any block device.
struct TypeLayout {
    const char* fsType;
    const char* layout;
};
const TypeLayout kTypeLayouts[] = {{"overlay", "Overlay"}, {"zfs", "ZFS dataset"}};

// Mount options that switch quota accounting on (ext4, xfs and their aliases).
const char* const kQuotaOptions[] = {"quota",     "usrquota", "grpquota", "prjquota", "usrjquota",
                                     "grpjquota", "uquota",   "gquota",   "pquota"};

template <std::size_t N>
bool IsIn(const char* const (&table)[N], const std::string& value)
{
    return std::find(std::begin(table), std::end(table), value) != std::end(table);
}

bool IsOctalDigit(char c) { return c >= '0' && c <= '7'; }

// The kernel writes blank, tab, line break and backslash in paths as \040, \011, \012 and \134.
std::string UndoOctalEscapes(const std::string& field)
{
    std::string text;
    for (std::size_t i = 0; i < field.size(); ++i) {
        const bool escape = field[i] == '\\' && i + 3 < field.size() && IsOctalDigit(field[i + 1]) &&
                            IsOctalDigit(field[i + 2]) && IsOctalDigit(field[i + 3]);
        const int code = escape ? (field[i + 1] - '0') * 64 + (field[i + 2] - '0') * 8 + (field[i + 3] - '0') : 256;
        if (code > 255) {
            text += field[i];
            continue;
        }
        text += static_cast<char>(code);
        i += 3;
    }
    return text;
}

bool IsDeviceNumber(const std::string& field)
{
    const std::size_t colon = field.find(':');
    std::uint64_t number = 0;
    return colon != std::string::npos && ParseDecimal(field.substr(0, colon), number) &&
           ParseDecimal(field.substr(colon + 1), number);
}

bool ParseMountLine(const std::string& line, MountEntry& entry)
{
    std::vector<std::string> fields;
    boost::algorithm::split(fields, line, [](char c) { return c == ' '; });
    if (fields.size() < kFieldsBeforeOptional) return false;
    const auto separator = std::find(fields.begin() + kFieldsBeforeOptional, fields.end(), "-");
    if (std::distance(separator, fields.end()) < 3 || !IsDeviceNumber(fields[2])) return false;
    entry.device = fields[2];
    entry.root = UndoOctalEscapes(fields[3]);
    entry.mountPoint = UndoOctalEscapes(fields[4]);
    entry.mountOptions = fields[5];
    entry.fsType = separator[1];
    entry.source = UndoOctalEscapes(separator[2]);
    entry.superOptions = std::distance(separator, fields.end()) > 3 ? separator[3] : std::string();
    return true;
}

std::vector<std::string> SplitOptions(const MountEntry& entry)
{
    std::vector<std::string> options;
    boost::algorithm::split(options, entry.mountOptions + "," + entry.superOptions, [](char c) { return c == ','; });
    return options;
}

bool IsReadOnly(const MountEntry& entry)
{
    const std::vector<std::string> options = SplitOptions(entry);
    return std::find(options.begin(), options.end(), "ro") != options.end();
}

bool HasQuota(const MountEntry& entry)
{
    for (const std::string& option : SplitOptions(entry))
        if (IsIn(kQuotaOptions, option.substr(0, option.find('=')))) return true;
    return false;
}

bool IsNetworkFileSystem(const MountEntry& entry) { return IsIn(kNetworkFileSystems, entry.fsType); }

// A file bound over a file (a container's /etc/hostname) is no volume.
bool IsFileBinding(const MountEntry& entry)
{
    boost::system::error_code error;
    return !IsNetworkFileSystem(entry) &&
           boost::filesystem::is_regular_file(HostFiles::Rooted(entry.mountPoint), error);
}

// btrfs shows an anonymous device number ("0:47") in mountinfo; its source names the real device.
std::string FindDeviceNumber(const MountEntry& entry)
{
    if (!boost::algorithm::starts_with(entry.device, "0:")) return entry.device;
    if (!boost::algorithm::starts_with(entry.source, "/dev/")) return std::string();
    return ReadBlockDeviceNumber(entry.source.substr(entry.source.rfind('/') + 1));
}

std::string DescribeLayout(const MountEntry& entry, const std::string& deviceNumber)
{
    if (IsNetworkFileSystem(entry)) return "Network";
    for (const TypeLayout& layout : kTypeLayouts)
        if (entry.fsType == layout.fsType) return layout.layout;
    return deviceNumber.empty() ? protocol::UNKNOWN_VALUE : ReadBlockDeviceLayout(deviceNumber);
}

// udev writes ID_FS_LABEL with blanks turned into "_"; ID_FS_LABEL_ENC keeps them, escaped.
std::string ReadLabel(const std::string& deviceNumber)
{
    if (deviceNumber.empty()) return protocol::UNKNOWN_VALUE;
    const UdevRecord udev = ReadUdevRecord("b" + deviceNumber);
    const std::string encoded = udev.Get("ID_FS_LABEL_ENC");
    return TextOrUnknown(encoded.empty() ? udev.Get("ID_FS_LABEL") : DecodeUdevText(encoded));
}

std::string FormatBlocks(std::uint64_t blocks, std::uint64_t blockSize)
{
    if (blockSize != 0 && blocks > std::numeric_limits<std::uint64_t>::max() / blockSize)
        return protocol::UNKNOWN_VALUE;
    return FormatBytes(blocks * blockSize);
}

void ReadCapacity(const std::string& mountPoint, protocol::Volumes_MountPoints& volume)
{
    struct statvfs stats;
    if (::statvfs(HostFiles::Rooted(mountPoint).c_str(), &stats) != 0) {
        XLOG(XModule::LOG_WARN) << "[repo] No sizes for the volume " << mountPoint << ": " << std::strerror(errno);
        return;
    }
    volume.TotalCapacity = FormatBlocks(stats.f_blocks, stats.f_frsize);
    volume.FreeSpace = FormatBlocks(stats.f_bfree, stats.f_frsize);
    volume.UserFreeSpace = FormatBlocks(stats.f_bavail, stats.f_frsize);
}

protocol::Volumes_MountPoints DescribeVolume(const MountEntry& entry)
{
    const std::string deviceNumber = FindDeviceNumber(entry);
    protocol::Volumes_MountPoints volume;
    volume.Volume = entry.mountPoint;
    volume.Label = ReadLabel(deviceNumber);
    volume.Layout = DescribeLayout(entry, deviceNumber);
    volume.FileSystemName = TextOrUnknown(entry.fsType);
    // Mounted means serving; a file system the kernel found damaged is remounted read-only, so
    // read-only is worth telling.
    volume.VolumeStatus = IsReadOnly(entry) ? "Healthy (Read-only)" : "Healthy";
    volume.QuotaStatus = HasQuota(entry) ? "Enabled" : "Disabled";
    if (!IsNetworkFileSystem(entry)) ReadCapacity(entry.mountPoint, volume);
    return volume;
}

// Storage mounts, each mount point once: a later mount over the same point hides the earlier one,
// so only the visible one is kept. A device mounted at several points keeps each of them, since
// a user reaches each as its own volume.
std::vector<MountEntry> SelectVolumes(const std::vector<MountEntry>& entries)
{
    std::vector<MountEntry> volumes;
    std::map<std::string, std::size_t> positions;
    for (const MountEntry& entry : entries) {
        if (IsIn(kPseudoFileSystems, entry.fsType) || IsFileBinding(entry)) continue;
        const auto known = positions.find(entry.mountPoint);
        if (known != positions.end()) {
            volumes[known->second] = entry;
            continue;
        }
        positions[entry.mountPoint] = volumes.size();
        volumes.push_back(entry);
    }
    return volumes;
}

}  // namespace

std::vector<MountEntry> ParseMountInfo(const std::string& text)
{
    std::vector<MountEntry> entries;
    std::istringstream lines(text);
    std::string line;
    std::size_t number = 0;
    std::size_t malformed = 0;
    std::size_t firstMalformed = 0;
    while (std::getline(lines, line)) {
        ++number;
        if (line.empty()) continue;
        MountEntry entry;
        if (ParseMountLine(line, entry)) {
            entries.push_back(entry);
        } else if (malformed++ == 0) {
            firstMalformed = number;
        }
    }
    if (malformed > 0)
        XLOG(XModule::LOG_WARN) << "[repo] mountinfo: " << malformed << " malformed line(s) skipped, the first is line "
                                << firstMalformed;
    return entries;
}

void CollectMountPoints(std::vector<protocol::Volumes_MountPoints>& volumes)
{
    std::string text;
    std::string why;
    if (!HostFiles::Read(kMountInfo, text, &why)) {
        NoteUnreadable(kMountInfo, why);
        return;
    }
    for (const MountEntry& entry : SelectVolumes(ParseMountInfo(text))) volumes.push_back(DescribeVolume(entry));
}

}  // namespace Linux
}  // namespace XModule
