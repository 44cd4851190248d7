#include "xmodule/linux/mountpoints.h"

#include "support/fixturehost.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

#include <regex>

using namespace XModule::Linux;

namespace {

std::string Summary(const MountEntry& e)
{
    return e.device + "|" + e.root + "|" + e.mountPoint + "|" + e.mountOptions + "|" + e.fsType + "|" + e.source + "|" +
           e.superOptions;
}

// "sized" when statvfs gave all three sizes, "N/A" when none.
std::string Sizes(const XModule::protocol::Volumes_MountPoints& v)
{
    const std::regex size("[0-9]+(\\.[0-9])? (B|KiB|MiB|GiB|TiB|PiB)");
    if (std::regex_match(v.TotalCapacity, size) && std::regex_match(v.FreeSpace, size) &&
        std::regex_match(v.UserFreeSpace, size))
        return "sized";
    return v.TotalCapacity == "N/A" && v.FreeSpace == "N/A" && v.UserFreeSpace == "N/A" ? "N/A" : "mixed";
}

}  // namespace

TEST(MountPointsTest, ParsesMountInfoLinesAndSkipsBrokenOnes)
{
    struct Case {
        const char* line;
        const char* expected;  // "" when the line is skipped
    } cases[] = {
        {"27 1 254:0 / / rw,relatime - ext4 /dev/vda rw,discard", "254:0|/|/|rw,relatime|ext4|/dev/vda|rw,discard"},
        {"45 27 8:1 / /boot/efi rw,relatime shared:5 master:2 - vfat /dev/sda1 rw,fmask=0077",
         "8:1|/|/boot/efi|rw,relatime|vfat|/dev/sda1|rw,fmask=0077"},
        {"46 27 8:3 /a\\134b /srv/my\\040disk\\011x rw - ext4 /dev/sda3 rw",
         "8:3|/a\\b|/srv/my disk\tx|rw|ext4|/dev/sda3|rw"},
        {"47 27 8:3 / /bad\\9escape\\04 rw - ext4 /dev/sda3", "8:3|/|/bad\\9escape\\04|rw|ext4|/dev/sda3|"},
        {"48 27 8:3 / /odd\\777 rw - ext4 /dev/sda3 rw", "8:3|/|/odd\\777|rw|ext4|/dev/sda3|rw"},
        {"49 27 8:3 / /short", ""},
        {"50 27 8:4 / /nosep rw,relatime shared:1 ext4 /dev/sda4 rw", ""},
        {"51 27 8:4 / /cut rw,relatime - ext4", ""},
        {"52 27 8-4 / /dev rw - ext4 /dev/sda4 rw", ""},
        {"\xff\xfe 27 8:4 / /\xc3\x28 rw - ext4 /dev/sda4 rw", "8:4|/|/\xc3\x28|rw|ext4|/dev/sda4|rw"}};
    for (const Case& c : cases) {
        LogCapture log;
        const std::vector<MountEntry> entries = ParseMountInfo(c.line);
        EXPECT_EQ(c.expected, entries.empty() ? std::string() : Summary(entries[0])) << c.line;
        EXPECT_EQ(*c.expected ? 0 : 1, log.Count("malformed line(s) skipped")) << c.line;
    }
    EXPECT_TRUE(ParseMountInfo("").empty());
}

TEST(MountPointsTest, ListsStorageVolumesWithLabelsLayoutsAndSizes)
{
    FixtureHost host("");
    const TempDir& dir = host.Dir();
    dir.Write("proc/self/mountinfo",
              "22 27 0:21 / /proc rw,relatime - proc proc rw\n"
              "23 27 0:22 / /sys rw,relatime - sysfs sysfs rw\n"
              "25 24 0:23 / /dev/shm rw,relatime - tmpfs tmpfs rw,size=24683656k\n"
              "27 1 8:2 / / rw,relatime shared:1 - ext4 /dev/sda2 rw,errors=remount-ro,usrquota\n"
              "32 31 0:29 / /sys/fs/cgroup/cpu rw,relatime - cgroup cgroup rw,cpu\n"
              "41 31 0:38 / /sys/fs/cgroup/unified rw,relatime - cgroup2 cgroup2 rw\n"
              "45 27 8:1 / /boot/efi rw,relatime shared:5 - vfat /dev/sda1 rw,fmask=0077,dmask=0077,codepage=437\n"
              "46 27 253:0 / /srv/backup\\040disk ro,nosuid,relatime shared:6 - xfs /dev/mapper/vg0-backup "
              "rw,attr2,inode64,prjquota\n"
              "47 27 0:45 / /mnt/share rw,relatime shared:7 - nfs4 fileserver:/export/share "
              "rw,vers=4.2,hard,proto=tcp,timeo=600,addr=10.0.0.2\n"
              "48 27 0:46 / /var/lib/docker/overlay2/3f1c/merged rw,relatime - overlay overlay rw,lowerdir=/l/A\n"
              "49 27 7:0 / /snap/core22/1122 ro,nodev,relatime shared:8 - squashfs /dev/loop0 ro\n"
              "50 27 0:47 / /data rw,relatime shared:9 - btrfs /dev/sdb1 rw,ssd,space_cache=v2,subvolid=5,subvol=/\n"
              "51 27 8:2 /etc/hostname /etc/hostname rw,relatime - ext4 /dev/sda2 rw\n"
              "52 27 9:0 / /home rw,relatime - ext4 /dev/md0 rw\n"
              "53 27 9:0 /home /srv/home rw,relatime - ext4 /dev/md0 rw\n"
              "54 52 8:18 / /home rw,relatime - xfs /dev/sdb2 rw\n"
              "55 27 8:3 / /broken\n");
    for (const char* point : {"boot/efi", "srv/backup disk", "data", "home", "srv/home"})
        dir.Write(std::string(point) + "/.keep", "");
    dir.Write("etc/hostname", "host1\n");
    dir.Write("sys/dev/block/8:1/partition", "1\n");
    dir.Write("sys/dev/block/8:2/partition", "2\n");
    dir.Write("sys/dev/block/8:17/partition", "1\n");
    dir.Write("sys/dev/block/8:18/partition", "2\n");
    dir.Write("sys/class/block/sdb1/dev", "8:17\n");
    dir.Write("run/udev/data/b8:17", "E:ID_FS_TYPE=btrfs\nE:ID_FS_LABEL=data\n");
    dir.Write("sys/dev/block/253:0/dm/uuid", "LVM-Ff3kQ0\n");
    dir.Write("sys/dev/block/9:0/md/level", "raid1\n");
    dir.Write("run/udev/data/b8:2", "E:ID_FS_TYPE=ext4\nE:ID_FS_LABEL=root\nE:ID_FS_LABEL_ENC=root\n");
    dir.Write("run/udev/data/b253:0", "E:ID_FS_LABEL=backup_disk\nE:ID_FS_LABEL_ENC=backup\\x20disk\n");
    dir.Write("run/udev/data/b9:0", "E:ID_FS_LABEL=home\n");

    LogCapture log;
    std::vector<XModule::protocol::Volumes_MountPoints> volumes;
    CollectMountPoints(volumes);
    std::vector<std::string> rows;
    for (const auto& v : volumes)
        rows.push_back(v.Volume + "|" + v.Label + "|" + v.Layout + "|" + v.FileSystemName + "|" + v.VolumeStatus + "|" +
                       v.QuotaStatus + "|" + v.UserQuota + "|" + Sizes(v));
    const std::vector<std::string> expected = {
        "/|root|Partition|ext4|Healthy|Enabled|N/A|sized",
        "/boot/efi|N/A|Partition|vfat|Healthy|Disabled|N/A|sized",
        "/srv/backup disk|backup disk|LVM logical volume|xfs|Healthy (Read-only)|Enabled|N/A|sized",
        "/mnt/share|N/A|Network|nfs4|Healthy|Disabled|N/A|N/A",
        "/var/lib/docker/overlay2/3f1c/merged|N/A|Overlay|overlay|Healthy|Disabled|N/A|N/A",
        "/data|data|Partition|btrfs|Healthy|Disabled|N/A|sized",
        "/home|N/A|Partition|xfs|Healthy|Disabled|N/A|sized",
        "/srv/home|home|Software RAID|ext4|Healthy|Disabled|N/A|sized"};
    EXPECT_EQ(expected, rows);
    EXPECT_EQ(1, log.Count("[repo] No sizes for the volume /var/lib/docker/overlay2/3f1c/merged")) << log.Dump();
    EXPECT_EQ(1, log.Count("malformed line(s) skipped, the first is line 17")) << log.Dump();
}

TEST(MountPointsTest, NotesAnUnreadableMountTable)
{
    FixtureHost host("");
    LogCapture log;
    std::vector<XModule::protocol::Volumes_MountPoints> volumes;
    CollectMountPoints(volumes);
    EXPECT_TRUE(volumes.empty());
    EXPECT_EQ(1, log.Count("/proc/self/mountinfo")) << log.Dump();
}
