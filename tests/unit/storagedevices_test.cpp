#include "xmodule/linux/blockdevices.h"
#include "xmodule/linux/mountpoints.h"
#include "xmodule/linux/opticaldrives.h"
#include "xmodule/linux/scsidevices.h"
#include "xmodule/linux/udevdatabase.h"

#include "support/fixturehost.h"
#include "support/golden.h"
#include "support/logcapture.h"
#include "support/serverhost.h"
#include "support/sysfsfixture.h"

#include <gtest/gtest.h>

#include <regex>

using namespace XModule::Linux;
using Lines = std::vector<std::string>;

namespace {

// A DVD writer (sr1) and a CD-ROM drive (sr0), as the cdrom driver lays its table out.
const char kTwoDrives[] =
    "CD-ROM information, Id: cdrom.c 3.20 2003/12/17\n\n"
    "drive name:\t\tsr1\tsr0\ndrive speed:\t\t24\t24\ndrive # of slots:\t1\t1\nCan close tray:\t\t1\t1\n"
    "Can open tray:\t\t1\t1\nCan lock tray:\t\t1\t1\nCan change speed:\t1\t1\nCan select disk:\t0\t0\n"
    "Can read multisession:\t1\t1\nCan read MCN:\t\t1\t1\nReports media changed:\t1\t1\nCan play audio:\t\t1\t1\n"
    "Can write CD-R:\t\t1\t0\nCan write CD-RW:\t1\t0\nCan read DVD:\t\t1\t0\nCan write DVD-R:\t1\t0\n"
    "Can write DVD-RAM:\t0\t0\nCan read MRW:\t\t1\t0\nCan write MRW:\t\t1\t0\nCan write RAM:\t\t1\t0\n\n";

// Around the server's SATA SSD (sda: an EFI and a root partition) and its DVD writer (sr0): an
// NVMe disk with an MBR, a SAS disk gone offline, an empty card reader, a virtio disk, an md
// array, an LVM volume and names that are no disks; SCSI units in an order to sort; and mounts.
void WriteStorageHost(const TempDir& dir)
{
    WriteServerHost(dir);
    // The NVMe disk: a RAID member, a data partition, and p10 that udev has no record of.
    WriteSysfsAttributes(dir, "sys/block/nvme0n1",
                         "dev=259:0;size=1000215216;queue/rotational=0;device/state=live;"
                         "device/model=SAMSUNG MZVL2512HCJQ-00B00              ;nvme0n1p1/partition=1;"
                         "nvme0n1p1/start=2048;nvme0n1p1/dev=259:1;nvme0n1p1/holders/md0/dev=9:0;nvme0n1p2/partition=2;"
                         "nvme0n1p2/start=4196352;nvme0n1p2/dev=259:2;nvme0n1p10/partition=10;nvme0n1p10/start=8390656");
    dir.Write("run/udev/data/b259:0", "E:ID_PART_TABLE_TYPE=dos\n");
    dir.Write("run/udev/data/b259:1", "E:ID_FS_TYPE=linux_raid_member\nE:ID_PART_ENTRY_TYPE=0xfd\n");
    dir.Write("run/udev/data/b259:2", "E:ID_FS_TYPE=ext4\nE:ID_PART_ENTRY_TYPE=0x83\n");
    WriteSysfsAttributes(dir, "sys/block/sdc", "size=1172123568;queue/rotational=1;device/vendor=SEAGATE ;"
                                               "device/model=ST600MM0208     ;device/sas_address=0x5000c500a1b2c3d5;"
                                               "device/state=offline");
    WriteSysfsAttributes(dir, "sys/block/sdb", "size=0;removable=1;device/vendor=Generic-");
    WriteSysfsAttributes(dir, "sys/block/vda", "size=536870912;queue/rotational=1;device/vendor=0x1af4");
    WriteSysfsAttributes(dir, "sys/block/md0", "size=999948288;md/level=raid1;md/array_state=clean;md/degraded=1");
    WriteSysfsAttributes(dir, "sys/block/dm-0", "size=104857600;dm/name=vg0-root;dm/uuid=LVM-x8Kd0");
    for (const char* other : {"loop0", "zram0", "mmcblk0boot0"})
        WriteSysfsAttributes(dir, std::string("sys/block/") + other, "size=8");

    // SCSI units beside the server's disk at 0:0:0:0, and entries of the bus that are no units.
    const char* const units[][2] = {
        {"10:0:0:0", "type=0;vendor=SEAGATE ;model=ST600MM0208     ;block/sdc/dev=8:32;scsi_generic/sg1/dev=21:1"},
        {"2:0:8:0", "type=13;vendor=LSI     ;model=VirtualSES      ;rev=03  ;scsi_generic/sg2/dev=21:2"},
        {"1:0:0:0", "type=5;vendor=HL-DT-ST;model=DVD+-RW GUD1N   ;rev=LD02;block/sr0/dev=11:0"},
        {"host0", "uevent=DEVTYPE=scsi_host"}, {"target0:0:0", "uevent=DEVTYPE=scsi_target"}};
    for (const auto& unit : units) WriteSysfsAttributes(dir, std::string("sys/bus/scsi/devices/") + unit[0], unit[1]);
    dir.Write("run/udev/data/b8:32", "E:ID_SCSI_SERIAL=W0M1ABCD0000E8372\nE:ID_SERIAL_SHORT=5000c500a1b2c3d5\n");
    dir.Write("proc/sys/dev/cdrom/info", kTwoDrives);

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
    for (const char* number : {"8:1", "8:17", "8:18"})
        dir.Write(std::string("sys/dev/block/") + number + "/partition", number == std::string("8:18") ? "2\n" : "1\n");
    dir.Write("sys/class/block/sdb1/dev", "8:17\n");
    dir.Write("run/udev/data/b8:17", "E:ID_FS_TYPE=btrfs\nE:ID_FS_LABEL=data\n");
    dir.Write("sys/dev/block/253:0/dm/uuid", "LVM-Ff3kQ0\n");
    dir.Write("sys/dev/block/9:0/md/level", "raid1\n");
    dir.Write("run/udev/data/b253:0", "E:ID_FS_LABEL=backup_disk\nE:ID_FS_LABEL_ENC=backup\\x20disk\n");
    dir.Write("run/udev/data/b9:0", "E:ID_FS_LABEL=home\n");
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

// Drive name, then DVD-RAM/DVD-R/DVD-ROM read, DVD-RAM/DVD-R write, CD-RW/CD-R read, CD-RW/CD-R write.
std::string Capabilities(const std::vector<XModule::protocol::OpticalDevice>& drives)
{
    std::string text;
    for (const auto& d : drives) {
        text += (text.empty() ? "" : " ") + d.DeviceID + ":";
        for (const std::string* f : {&d.DvdRamRead, &d.DvdRRead, &d.DvdRomRead, &d.DvdRamWrite, &d.DvdRWrite,
                                     &d.CdRwRead, &d.CdRRead, &d.CdRwWrite, &d.CdRWrite})
            text += *f == "Yes" ? "Y" : *f == "No" ? "N" : *f == "N/A" ? "?" : "!";
    }
    return text;
}

// Disks with their partitions, SCSI units, volumes and optical drives of the host, a line each.
std::string CollectedStorage()
{
    std::vector<XModule::protocol::VirtualDisk> disks;
    std::vector<XModule::protocol::SystemDevice> units;
    std::vector<XModule::protocol::Volumes_MountPoints> volumes;
    std::vector<XModule::protocol::OpticalDevice> drives;
    CollectDisks(disks);
    CollectScsiDevices(units);
    CollectMountPoints(volumes);
    CollectOpticalDevices(drives);
    std::string text;
    for (const auto& d : disks) {
        text += "disk: " + Joined({d.Name, d.Type, d.Status, d.Size, d.NumberOfPartitions}) + "\n";
        for (const auto& p : d.partitions)
            text += "  " + Joined({p.Name, p.Type, p.PartitionSubType, p.Offset, p.FaultTolerant, p.Format}) + "\n";
    }
    for (const auto& d : units)
        text += "unit: " + Joined({d.Name, d.DeviceType, d.ProductName, d.SerialNumber, d.Revision,
                                   d.HostAdapterID + ":" + d.Bus + ":" + d.TargetID + ":" + d.Lun}) + "\n";
    for (const auto& v : volumes)
        text += "volume: " + Joined({v.Volume, v.Label, v.Layout, v.FileSystemName, v.VolumeStatus, v.QuotaStatus,
                                     v.UserQuota, Sizes(v)}) + "\n";
    for (const auto& d : drives) text += "optical: " + Joined({d.DeviceID, d.Manufacturer, d.ProductName}) + "\n";
    return text;
}

}  // namespace

// An empty root lists nothing and notes the mount table it could not read.
TEST(StorageDevicesTest, ServerWithEveryKindOfDiskUnitAndVolumeAndAnEmptyRoot)
{
    FixtureHost host("");
    WriteStorageHost(host.Dir());
    LogCapture log;
    EXPECT_TRUE(MatchesGolden("devices/storage_server.txt", CollectedStorage()));
    EXPECT_EQ(1, log.Count("[repo] No sizes for the volume /var/lib/docker/overlay2/3f1c/merged")) << log.Dump();
    EXPECT_EQ(1, log.Count("malformed line(s) skipped, the first is line 17")) << log.Dump();

    FixtureHost empty("");
    log.Clear();
    EXPECT_EQ("", CollectedStorage());
    EXPECT_EQ(1, log.Count("/proc/self/mountinfo")) << log.Dump();
}

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
        const std::string got = entries.empty() ? std::string()
                                                : Joined({entries[0].device, entries[0].root, entries[0].mountPoint,
                                                          entries[0].mountOptions, entries[0].fsType, entries[0].source,
                                                          entries[0].superOptions});
        EXPECT_EQ(c.expected, got) << c.line;
        EXPECT_EQ(*c.expected ? 0 : 1, log.Count("malformed line(s) skipped")) << c.line;
    }
    EXPECT_TRUE(ParseMountInfo("").empty());
}

TEST(BlockDevicesTest, NamesPartitionTablesAndTypes)
{
    const char* const cases[][2] = {
        {"C12A7328-F81F-11D2-BA4B-00A0C93EC93B", "EFI System"}, {"21686148-6449-6e6f-744e-656564454649", "BIOS boot"},
        {"ebd0a0a2-b9e5-4433-87c0-68b6b72699c7", "Microsoft basic data"}, {"0x8e", "Linux LVM"},
        {"0657fd6d-a4ab-43c4-84e5-0933c84b4f4f", "Linux swap"},
        {"0xc", "FAT32 (LBA)"}, {"0x0C", "FAT32 (LBA)"}, {"0x5", "Extended"}, {"0x99", "0x99"}, {"0x", "0x"},
        {"00000000-1111-2222-3333-444444444444", "00000000-1111-2222-3333-444444444444"},
        {"0x1ff83", "0x1ff83"}, {"83", "83"}, {"", "N/A"}};
    for (const auto& c : cases) EXPECT_EQ(c[1], DescribePartitionType(c[0])) << c[0];
    const char* const tables[][2] = {{"gpt", "GPT"}, {"dos", "MBR"}, {"atari", "atari"}, {"", "N/A"}};
    for (const auto& t : tables) EXPECT_EQ(t[1], DescribePartitionTable(t[0])) << t[0];
}

TEST(ScsiDevicesTest, ParsesAddressesAndDeviceTypes)
{
    const struct {
        const char* name;
        const char* expected;  // "" when no address
    } addresses[] = {{"0:0:0:0", "0 0 0 0"}, {"10:2:33:1099511627776", "10 2 33 1099511627776"}, {"host0", ""},
                     {"target0:0:0", ""}, {"1:2:3:4:5", ""}, {"-1:0:0:0", ""}, {"1::0:0", ""}, {"a:b:c:d", ""},
                     {"", ""}};
    for (const auto& c : addresses) {
        ScsiAddress a;
        const bool parsed = ParseScsiAddress(c.name, a);
        const std::string text = parsed ? std::to_string(a.host) + " " + std::to_string(a.channel) + " " +
                                              std::to_string(a.target) + " " + std::to_string(a.lun)
                                        : std::string();
        EXPECT_EQ(c.expected, text) << c.name;
    }
    const char* const types[][2] = {{"0\n", "Direct-access block device"}, {"13", "Enclosure services"},
                                    {"8", "Medium changer"}, {"25", "25"}, {"x", "x"}, {"", "N/A"}};
    for (const auto& t : types) EXPECT_EQ(t[1], DescribeScsiDeviceType(t[0])) << t[0];
}

TEST(OpticalDrivesTest, ParsesCapabilitiesPerDriveColumn)
{
    const struct {
        const char* name;
        std::string text;
        const char* expected;
        const char* log;  // "" when nothing is logged
    } cases[] = {{"two drives", kTwoDrives, "sr1:?YYNYYYYY sr0:NNNNN?YNN", ""},
                 {"DVD-RAM writer", "drive name:\tsr0\nCan read DVD:\t1\nCan write DVD-RAM:\t1\n", "sr0:YYYY?????", ""},
                 {"row shorter than the drives", "drive name:\tsr1\tsr0\nCan read DVD:\t1\nCan write CD-R:\t0\t1\n",
                  "sr1:?YY?????N sr0:??????Y?Y", "row \"Can read DVD\" has 1 value(s) for 2 drive(s)"},
                 {"values not 0 or 1", "drive name: sr0\nCan read DVD: yes\nCan write CD-R: 2\n", "sr0:?????????", ""},
                 {"no drive loaded", "CD-ROM information, Id: cdrom.c 3.20 2003/12/17\n\ndrive name:\t\n", "", ""},
                 {"no drive name row", "Can read DVD:\t1\nCan write CD-R:\t1\n", "", "has no \"drive name\" row"},
                 {"not a table", std::string("\xff\xfe\0garbage", 10), "", "has no \"drive name\" row"}};
    for (const auto& c : cases) {
        LogCapture log;
        EXPECT_EQ(c.expected, Capabilities(ParseCdromInfo(c.text))) << c.name;
        EXPECT_EQ(*c.log ? 1 : 0, log.Count("[repo] cdrom info")) << c.name << "\n" << log.Dump();
        if (*c.log) {
            EXPECT_EQ(1, log.Count(c.log)) << c.name << "\n" << log.Dump();
        }
    }
}

TEST(UdevDatabaseTest, DecodesEscapedPropertyText)
{
    const char* const cases[][2] = {
        {"SAMSUNG\\x20MZ7LH480HAHQ-00005\\x20\\x20", "SAMSUNG MZ7LH480HAHQ-00005  "}, {"a\\x2fb\\x5C", "a/b\\"},
        {"plain", "plain"}, {"", ""}, {"cut\\x2", "cut\\x2"}, {"bad\\xZZ", "bad\\xZZ"}, {"lone\\", "lone\\"},
        {"\\y41", "\\y41"}};
    for (const auto& c : cases) EXPECT_EQ(c[1], DecodeUdevText(c[0])) << c[0];
}
