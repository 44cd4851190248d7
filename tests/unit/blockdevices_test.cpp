#include "xmodule/linux/blockdevices.h"

#include "support/fixturehost.h"

#include <boost/filesystem/operations.hpp>
#include <gtest/gtest.h>

#include <sstream>

using namespace XModule::Linux;

namespace {

// "name=value" per line, each value written as sysfs writes it, with a line break.
void WriteAttributes(const TempDir& dir, const std::string& folder, const std::string& lines)
{
    std::istringstream in(lines);
    for (std::string line; std::getline(in, line);)
        dir.Write(folder + "/" + line.substr(0, line.find('=')), line.substr(line.find('=') + 1) + "\n");
}

// The SATA SSD sits where libata puts it, /sys/block/sda and its device being links as on a real host.
void WriteSataDisk(const TempDir& dir)
{
    const std::string scsi = "sys/devices/pci0000:00/0000:00:17.0/ata1/host0/target0:0:0/0:0:0:0";
    WriteAttributes(dir, scsi, "state=running\nvendor=ATA     \nmodel=SAMSUNG MZ7LH480");
    WriteAttributes(dir, scsi + "/block/sda",
                    "dev=8:0\nsize=937703088\nremovable=0\nqueue/rotational=0\nsda1/partition=1\nsda1/start=2048\n"
                    "sda1/dev=8:1\nsda2/partition=2\nsda2/start=1050624\nsda2/dev=8:2\nsda3/partition=3\n"
                    "sda3/start=2099200\nsda3/dev=8:3");
    boost::filesystem::create_directories(dir.Path() + "/sys/block");
    boost::filesystem::create_symlink("../devices/pci0000:00/0000:00:17.0/ata1/host0/target0:0:0/0:0:0:0/block/sda",
                                      dir.Path() + "/sys/block/sda");
    boost::filesystem::create_directory_symlink("../../../0:0:0:0", dir.Path() + "/" + scsi + "/block/sda/device");
    const std::string disk =
        "S:disk/by-id/ata-SAMSUNG_MZ7LH480HAHQ-00005_S45PNA0M512345\nS:disk/by-path/pci-0000:00:17.0-ata-1.0\n"
        "I:3817292\nE:ID_ATA=1\nE:ID_TYPE=disk\nE:ID_BUS=ata\nE:ID_MODEL=SAMSUNG_MZ7LH480HAHQ-00005\n"
        "E:ID_MODEL_ENC=SAMSUNG\\x20MZ7LH480HAHQ-00005\\x20\\x20\\x20\\x20\\x20\\x20\\x20\\x20\\x20\\x20\\x20\\x20\n"
        "E:ID_REVISION=HXT7404Q\nE:ID_SERIAL_SHORT=S45PNA0M512345\nE:ID_WWN=0x5002538e40a1b2c3\n"
        "E:ID_PART_TABLE_UUID=5b1c6f0e-8a8e-4d4c-9a3e-2f1c3b7d9e10\nE:ID_PART_TABLE_TYPE=gpt\nG:systemd\nV:1\n";
    dir.Write("run/udev/data/b8:0", disk);
    const char* const parts[][2] = {{"c12a7328-f81f-11d2-ba4b-00a0c93ec93b", "vfat"},
                                    {"0fc63daf-8483-4772-8e79-3d69d8477de4", "ext4"},
                                    {"0657fd6d-a4ab-43c4-84e5-0933c84b4f4f", "swap"}};
    for (int i = 0; i < 3; ++i)
        dir.Write("run/udev/data/b8:" + std::to_string(i + 1),
                  disk + "E:ID_FS_TYPE=" + parts[i][1] + "\nE:ID_FS_USAGE=filesystem\nE:ID_PART_ENTRY_SCHEME=gpt\n" +
                      "E:ID_PART_ENTRY_TYPE=" + parts[i][0] + "\nE:ID_PART_ENTRY_DISK=8:0\n");
}

std::string Summary(const XModule::protocol::VirtualDisk& d)
{
    std::string text = d.Name + "|" + d.Type + "|" + d.Status + "|" + d.Size + "|" + d.NumberOfPartitions;
    for (const auto& p : d.partitions)
        text += "\n  " + p.Name + "|" + p.Type + "|" + p.PartitionSubType + "|" + p.Offset + "|" + p.FaultTolerant +
                "|" + p.Format;
    return text;
}

}  // namespace

TEST(BlockDevicesTest, ListsDisksAndVolumesWithTheirPartitions)
{
    FixtureHost host("");
    const TempDir& dir = host.Dir();
    WriteSataDisk(dir);
    // NVMe with an MBR: a RAID member, a data partition, and p10 that udev has no record of.
    WriteAttributes(dir, "sys/block/nvme0n1",
                    "dev=259:0\nsize=1000215216\nqueue/rotational=0\ndevice/state=live\n"
                    "device/model=SAMSUNG MZVL2512HCJQ-00B00              \nnvme0n1p1/partition=1\n"
                    "nvme0n1p1/start=2048\nnvme0n1p1/dev=259:1\nnvme0n1p1/holders/md0/dev=9:0\nnvme0n1p2/partition=2\n"
                    "nvme0n1p2/start=4196352\nnvme0n1p2/dev=259:2\nnvme0n1p10/partition=10\nnvme0n1p10/start=8390656");
    dir.Write("run/udev/data/b259:0", "E:ID_PART_TABLE_TYPE=dos\n");
    dir.Write("run/udev/data/b259:1", "E:ID_FS_TYPE=linux_raid_member\nE:ID_PART_ENTRY_TYPE=0xfd\n");
    dir.Write("run/udev/data/b259:2", "E:ID_FS_TYPE=ext4\nE:ID_PART_ENTRY_TYPE=0x83\n");
    WriteAttributes(dir, "sys/block/sdc",
                    "size=1172123568\nqueue/rotational=1\ndevice/vendor=SEAGATE \ndevice/model=ST600MM0208     \n"
                    "device/sas_address=0x5000c500a1b2c3d5\ndevice/state=offline");
    WriteAttributes(dir, "sys/block/sdb", "size=0\nremovable=1\ndevice/vendor=Generic-");
    WriteAttributes(dir, "sys/block/vda", "size=536870912\nqueue/rotational=1\ndevice/vendor=0x1af4");
    WriteAttributes(dir, "sys/block/md0", "size=999948288\nmd/level=raid1\nmd/array_state=clean\nmd/degraded=1");
    WriteAttributes(dir, "sys/block/dm-0", "size=104857600\ndm/name=vg0-root\ndm/uuid=LVM-x8Kd0");
    for (const char* other : {"loop0", "zram0", "sr0", "mmcblk0boot0"})
        WriteAttributes(dir, "sys/block/" + std::string(other), "size=8");

    std::vector<XModule::protocol::VirtualDisk> disks;
    CollectDisks(disks);
    std::vector<std::string> summaries;
    for (const auto& disk : disks) summaries.push_back(Summary(disk));
    const std::vector<std::string> expected = {
        "sda (SAMSUNG MZ7LH480HAHQ-00005)|SATA SSD|OK|447.1 GiB|3\n"
        "  sda1|GPT|EFI System|1048576|No|vfat\n  sda2|GPT|Linux filesystem|537919488|No|ext4\n"
        "  sda3|GPT|Linux swap|1074790400|No|swap",
        "sdc (SEAGATE ST600MM0208)|SAS HDD|offline|558.9 GiB|0",
        "nvme0n1 (SAMSUNG MZVL2512HCJQ-00B00)|NVMe SSD|OK|476.9 GiB|3\n"
        "  nvme0n1p1|MBR|Linux RAID autodetect|1048576|Yes|linux_raid_member\n"
        "  nvme0n1p2|MBR|Linux|2148532224|No|ext4\n  nvme0n1p10|MBR|N/A|4296015872|No|N/A",
        "vda|Virtio disk|N/A|256 GiB|0",
        "md0|Software RAID (raid1)|Degraded|476.8 GiB|0",
        "dm-0 (vg0-root)|LVM logical volume|N/A|50 GiB|0"};
    EXPECT_EQ(expected, summaries);
}

TEST(BlockDevicesTest, NamesPartitionTablesAndTypes)
{
    const char* const cases[][2] = {
        {"C12A7328-F81F-11D2-BA4B-00A0C93EC93B", "EFI System"}, {"21686148-6449-6e6f-744e-656564454649", "BIOS boot"},
        {"ebd0a0a2-b9e5-4433-87c0-68b6b72699c7", "Microsoft basic data"}, {"0x8e", "Linux LVM"},
        {"0xc", "FAT32 (LBA)"}, {"0x0C", "FAT32 (LBA)"}, {"0x5", "Extended"}, {"0x99", "0x99"}, {"0x", "0x"},
        {"00000000-1111-2222-3333-444444444444", "00000000-1111-2222-3333-444444444444"},
        {"0x1ff83", "0x1ff83"}, {"83", "83"}, {"", "N/A"}};
    for (const auto& c : cases) EXPECT_EQ(c[1], DescribePartitionType(c[0])) << c[0];
    const char* const tables[][2] = {{"gpt", "GPT"}, {"dos", "MBR"}, {"atari", "atari"}, {"", "N/A"}};
    for (const auto& t : tables) EXPECT_EQ(t[1], DescribePartitionTable(t[0])) << t[0];
}
