#include "xmodule/linux/blockdevices.h"

#include "kestro/xmodule/unreadable.h"
#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/pcidevices.h"
#include "xmodule/linux/udevdatabase.h"
#include "xmodule/linux/valueformat.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/predicate.hpp>

#include <algorithm>
#include <limits>
#include <regex>

namespace XModule {
namespace Linux {

namespace {

const char kSysBlock[] = "/sys/block";
const char kSysClassBlock[] = "/sys/class/block";
const char kSysDevBlock[] = "/sys/dev/block";
// sysfs counts sizes and offsets in 512-byte units, whatever the disk's logical block size.
const std::uint64_t kSectorBytes = 512;

enum class DiskKind { Disk, SoftwareRaid, DeviceMapper };

// The /sys/block names the report lists, in the order it lists them: physical disks, then the
// md and dm volumes built on them. Everything else is left out on purpose: loop, ram, zram and
// nbd are no disks of this host, sr drives are listed as optical devices, and an eMMC's
// mmcblk0boot0/rpmb areas are parts of the card listed as mmcblk0. `typeName` begins the type
// shown: a disk's transport, or the kind of volume; empty for sd disks, whose transport sysfs and
// udev tell.
struct ListedName {
    const char* pattern;
    DiskKind kind;
    const char* typeName;
};
const ListedName kListedNames[] = {
    {"sd[a-z]+", DiskKind::Disk, ""},
    {"nvme[0-9]+n[0-9]+", DiskKind::Disk, "NVMe"},
    {"vd[a-z]+", DiskKind::Disk, "Virtio"},
    {"xvd[a-z]+", DiskKind::Disk, "Xen"},
    {"hd[a-z]+", DiskKind::Disk, "IDE"},
    {"mmcblk[0-9]+", DiskKind::Disk, "MMC"},
    {"md[0-9]+", DiskKind::SoftwareRaid, "Software RAID"},
    {"dm-[0-9]+", DiskKind::DeviceMapper, "Device mapper"},
};

// Transports whose queue/rotational is true. USB bridges, virtual disks and memory cards report
// spinning or not at random, so their disks read "<transport> disk".
const char* const kTransportsTellingRotation[] = {"SATA", "SAS", "SCSI", "NVMe", "IDE"};

// Device-mapper targets by the prefix their creator writes into the map's uuid.
struct MapperKind {
    const char* uuidPrefix;
    const char* name;
};
const MapperKind kMapperKinds[] = {
    {"LVM-", "LVM logical volume"},
    {"CRYPT-", "Encrypted volume"},
    {"mpath-", "Multipath disk"},
    {"part", "Multipath partition"},  // kpartx's partitions of a multipath map
};

// device/state of SCSI ("running") and NVMe ("live"), md/array_state of an md array, when the
// device serves I/O. Other words ("offline", "blocked", "resetting", "inactive") are shown as they are.
const char* const kWorkingStates[] = {"running", "live", "clean", "active", "active-idle"};

struct PartitionTableName {
    const char* udevName;
    const char* name;
};
const PartitionTableName kPartitionTables[] = {{"gpt", "GPT"}, {"dos", "MBR"}};

struct GptType {
    const char* guid;  // lower case, as udev writes it
    const char* name;
};
const GptType kGptTypes[] = {
    {"c12a7328-f81f-11d2-ba4b-00a0c93ec93b", "EFI System"},
    {"21686148-6449-6e6f-744e-656564454649", "BIOS boot"},
    {"0fc63daf-8483-4772-8e79-3d69d8477de4", "Linux filesystem"},
    {"0657fd6d-a4ab-43c4-84e5-0933c84b4f4f", "Linux swap"},
    {"e6d6d379-f507-44c2-a23c-238f2a3df928", "Linux LVM"},
    {"a19d880f-05fc-4d3b-a006-743f0f84911e", "Linux RAID"},
    {"4f68bce3-e8cd-4db1-96e7-fbcaf984b709", "Linux root (x86-64)"},
    {"44479540-f297-41b2-9af7-d131d5f0458a", "Linux root (x86)"},
    {"b921b045-1df0-41c3-af44-4c6f280d3fae", "Linux root (ARM-64)"},
    {"933ac7e1-2eb4-4f13-b844-0e14e2aef915", "Linux home"},
    {"3b8f8425-20e0-4f3b-907f-1a25a76f98e8", "Linux server data"},
    {"4d21b016-b534-45c2-a9fb-5c16e091fd2d", "Linux variable data"},
    {"bc13c2ff-59e6-4262-a352-b275fd6f7172", "Linux extended boot"},
    {"ca7d7ccb-63ed-4c53-861c-1742536059cc", "Linux LUKS"},
    {"9e1a2d38-c612-4316-aa26-8b49521e5a8b", "PowerPC PReP boot"},
    {"ebd0a0a2-b9e5-4433-87c0-68b6b72699c7", "Microsoft basic data"},
    {"e3c9e316-0b5c-4db8-817d-f92df00215ae", "Microsoft reserved"},
    {"de94bba4-06d1-4d40-a16a-bfd50179d6ac", "Windows recovery environment"},
    {"aa31e02a-400f-11db-9590-000c2911d1b8", "VMware VMFS"},
};

struct MbrType {
    unsigned code;
    const char* name;
};
const MbrType kMbrTypes[] = {
    {0x01, "FAT12"},
    {0x05, "Extended"},
    {0x06, "FAT16"},
    {0x07, "NTFS/exFAT"},
    {0x0b, "FAT32"},
    {0x0c, "FAT32 (LBA)"},
    {0x0e, "FAT16 (LBA)"},
    {0x0f, "Extended (LBA)"},
    {0x27, "Windows recovery environment"},
    {0x41, "PowerPC PReP boot"},
    {0x82, "Linux swap"},
    {0x83, "Linux"},
    {0x85, "Linux extended"},
    {0x8e, "Linux LVM"},
    {0xde, "Dell utility"},
    {0xee, "GPT protective"},
    {0xef, "EFI System"},
    {0xfb, "VMware VMFS"},
    {0xfd, "Linux RAID autodetect"},
};

std::string ReadAttribute(const std::string& folder, const std::string& name)
{
    return TrimText(HostFiles::ReadTrimmed(folder + "/" + name));
}

// An attribute counted in sectors ("size", "start"), in bytes; false when unreadable or too large.
bool ReadSectorsAsBytes(const std::string& folder, const char* name, std::uint64_t& bytes)
{
    std::uint64_t sectors = 0;
    if (!ParseDecimal(ReadAttribute(folder, name), sectors)) return false;
    if (sectors > std::numeric_limits<std::uint64_t>::max() / kSectorBytes) return false;
    bytes = sectors * kSectorBytes;
    return true;
}

UdevRecord ReadDeviceUdevRecord(const std::string& folder)
{
    const std::string number = ReadAttribute(folder, "dev");
    return number.empty() ? UdevRecord() : ReadUdevRecord("b" + number);
}

const ListedName* FindListedName(const std::string& name)
{
    static const std::vector<std::regex> patterns = [] {
        std::vector<std::regex> compiled;
        for (const ListedName& listed : kListedNames) compiled.emplace_back(listed.pattern);
        return compiled;
    }();
    for (std::size_t i = 0; i < patterns.size(); ++i)
        if (std::regex_match(name, patterns[i])) return &kListedNames[i];
    return nullptr;
}

// Table order first, then the kernel's naming order: sdb before sdaa, nvme2n1 before nvme10n1.
bool ListsBefore(const std::string& left, const std::string& right)
{
    const std::ptrdiff_t leftRank = FindListedName(left) - kListedNames;
    const std::ptrdiff_t rightRank = FindListedName(right) - kListedNames;
    if (leftRank != rightRank) return leftRank < rightRank;
    if (left.size() != right.size()) return left.size() < right.size();
    return left < right;
}

bool IsScsiDisk(const ListedName& listed) { return listed.kind == DiskKind::Disk && !*listed.typeName; }

std::string DescribeMapperKind(const std::string& uuid)
{
    for (const MapperKind& kind : kMapperKinds)
        if (boost::algorithm::starts_with(uuid, kind.uuidPrefix)) return kind.name;
    return "Device mapper";
}

// How an sd disk is attached: udev's ID_BUS, else what libata (vendor "ATA") and the SAS
// transport class (sas_address) leave in sysfs.
std::string ReadScsiTransport(const std::string& folder, const UdevRecord& udev)
{
    const std::string bus = udev.Get("ID_BUS");
    if (bus == "usb") return "USB";
    if (bus == "ata" || ReadAttribute(folder, "device/vendor") == "ATA") return "SATA";
    if (HostFiles::Exists(folder + "/device/sas_address")) return "SAS";
    return "SCSI";
}

std::string DescribeDiskType(const std::string& transport, const std::string& rotational)
{
    const bool tellsRotation = std::find(std::begin(kTransportsTellingRotation), std::end(kTransportsTellingRotation),
                                         transport) != std::end(kTransportsTellingRotation);
    if (tellsRotation && rotational == "0") return transport + " SSD";
    if (tellsRotation && rotational == "1") return transport + " HDD";
    return transport + " disk";
}

std::string ReadDiskType(const std::string& folder, const ListedName& listed, const UdevRecord& udev)
{
    switch (listed.kind) {
        case DiskKind::SoftwareRaid: {
            const std::string level = ReadAttribute(folder, "md/level");
            return level.empty() ? listed.typeName : std::string(listed.typeName) + " (" + level + ")";
        }
        case DiskKind::DeviceMapper:
            return DescribeMapperKind(ReadAttribute(folder, "dm/uuid"));
        case DiskKind::Disk:
            break;
    }
    const std::string transport = IsScsiDisk(listed) ? ReadScsiTransport(folder, udev) : listed.typeName;
    return DescribeDiskType(transport, ReadAttribute(folder, "queue/rotational"));
}

std::string DescribeDeviceState(const std::string& state)
{
    if (state.empty()) return protocol::UNKNOWN_VALUE;
    const bool working =
        std::find(std::begin(kWorkingStates), std::end(kWorkingStates), state) != std::end(kWorkingStates);
    return working ? "OK" : state;
}

std::string ReadDiskStatus(const std::string& folder, DiskKind kind)
{
    if (kind != DiskKind::SoftwareRaid) return DescribeDeviceState(ReadAttribute(folder, "device/state"));
    std::uint64_t missingMembers = 0;
    if (ParseDecimal(ReadAttribute(folder, "md/degraded"), missingMembers) && missingMembers > 0)
        return "Degraded";
    return DescribeDeviceState(ReadAttribute(folder, "md/array_state"));
}

// udev keeps the whole ATA model ("SAMSUNG MZ7LH480HAHQ-00005") where sysfs cuts it to the 16
// bytes of a SCSI inquiry, so udev comes first. Only sd disks have a maker in device/vendor
// (virtio's holds a PCI id), and libata's "ATA" names no maker.
std::string ReadDiskModel(const std::string& folder, const ListedName& listed, const UdevRecord& udev)
{
    std::string model = TrimText(DecodeUdevText(udev.Get("ID_MODEL_ENC")));
    if (model.empty()) model = ReadAttribute(folder, "device/model");
    if (model.empty()) model = ReadAttribute(folder, "device/name");  // MMC cards
    if (model.empty() || !IsScsiDisk(listed)) return model;
    const std::string vendor = ReadAttribute(folder, "device/vendor");
    if (vendor.empty() || vendor == "ATA" || boost::algorithm::starts_with(model, vendor)) return model;
    return vendor + " " + model;
}

// A disk's name with what tells it apart: its model, or a device-mapper volume's map name.
std::string ReadDiskName(const std::string& folder, const std::string& name, const ListedName& listed,
                         const UdevRecord& udev)
{
    std::string detail;
    if (listed.kind == DiskKind::DeviceMapper)
        detail = ReadAttribute(folder, "dm/name");
    else if (listed.kind == DiskKind::Disk)
        detail = ReadDiskModel(folder, listed, udev);
    return detail.empty() ? name : name + " (" + detail + ")";
}

bool IsSoftwareRaidMember(const std::string& folder)
{
    const std::vector<std::string> holders = HostFiles::List(folder + "/holders");
    return std::any_of(holders.begin(), holders.end(),
                       [](const std::string& holder) { return boost::algorithm::starts_with(holder, "md"); });
}

protocol::Partition ReadPartition(const std::string& folder, const std::string& name, const std::string& tableType)
{
    const UdevRecord udev = ReadDeviceUdevRecord(folder);
    protocol::Partition partition;
    partition.Name = name;
    partition.Type = DescribePartitionTable(tableType.empty() ? udev.Get("ID_PART_ENTRY_SCHEME") : tableType);
    partition.PartitionSubType = DescribePartitionType(udev.Get("ID_PART_ENTRY_TYPE"));
    // The exact byte count: an offset rounded to "1.5 GiB" would not tell two partitions apart.
    std::uint64_t offset = 0;
    if (ReadSectorsAsBytes(folder, "start", offset)) partition.Offset = std::to_string(offset);
    partition.FaultTolerant = FormatYesNo(IsSoftwareRaidMember(folder));
    partition.Format = TextOrUnknown(udev.Get("ID_FS_TYPE"));
    return partition;
}

// The partitions of a disk are its sub-folders with a "partition" file, in partition-number order.
std::vector<protocol::Partition> ReadPartitions(const std::string& diskFolder, const std::string& tableType)
{
    std::vector<std::pair<std::uint64_t, protocol::Partition> > numbered;
    for (const std::string& child : HostFiles::List(diskFolder)) {
        const std::string folder = diskFolder + "/" + child;
        std::uint64_t number = std::numeric_limits<std::uint64_t>::max();
        if (!HostFiles::Exists(folder + "/partition")) continue;
        ParseDecimal(ReadAttribute(folder, "partition"), number);
        numbered.emplace_back(number, ReadPartition(folder, child, tableType));
    }
    std::stable_sort(
        numbered.begin(), numbered.end(),
        [](const std::pair<std::uint64_t, protocol::Partition>& left,
           const std::pair<std::uint64_t, protocol::Partition>& right) { return left.first < right.first; });
    std::vector<protocol::Partition> partitions;
    for (const auto& entry : numbered) partitions.push_back(entry.second);
    return partitions;
}

// A card reader's empty slot is a removable disk of size 0: no medium, nothing to report.
bool HoldsNoMedium(const std::string& folder)
{
    std::uint64_t size = 0;
    return ReadAttribute(folder, "removable") == "1" && ReadSectorsAsBytes(folder, "size", size) && size == 0;
}

protocol::VirtualDisk ReadDisk(const std::string& name, const ListedName& listed)
{
    const std::string folder = std::string(kSysBlock) + "/" + name;
    const UdevRecord udev = ReadDeviceUdevRecord(folder);
    protocol::VirtualDisk disk;
    disk.Name = ReadDiskName(folder, name, listed, udev);
    disk.Type = ReadDiskType(folder, listed, udev);
    disk.Status = ReadDiskStatus(folder, listed.kind);
    std::uint64_t size = 0;
    if (ReadSectorsAsBytes(folder, "size", size)) disk.Size = FormatBytes(size);
    disk.partitions = ReadPartitions(folder, udev.Get("ID_PART_TABLE_TYPE"));
    disk.NumberOfPartitions = std::to_string(disk.partitions.size());
    return disk;
}

}  // namespace

std::string DescribePartitionTable(const std::string& udevTableType)
{
    for (const PartitionTableName& table : kPartitionTables)
        if (udevTableType == table.udevName) return table.name;
    return TextOrUnknown(udevTableType);
}

std::string DescribePartitionType(const std::string& udevEntryType)
{
    const std::string lower = boost::algorithm::to_lower_copy(TrimText(udevEntryType));
    for (const GptType& type : kGptTypes)
        if (lower == type.guid) return type.name;
    unsigned code = 0;
    if (boost::algorithm::starts_with(lower, "0x") && ParseSysfsHex(lower, code))
        for (const MbrType& type : kMbrTypes)
            if (code == type.code) return type.name;
    return TextOrUnknown(udevEntryType);
}

void CollectDisks(std::vector<protocol::VirtualDisk>& disks)
{
    std::vector<std::string> names = HostFiles::List(kSysBlock);
    if (names.empty() && !HostFiles::Exists(kSysBlock)) NoteUnreadable(kSysBlock, "no block devices are visible");
    names.erase(std::remove_if(names.begin(), names.end(),
                               [](const std::string& name) {
                                   return !FindListedName(name) || HoldsNoMedium(std::string(kSysBlock) + "/" + name);
                               }),
                names.end());
    std::sort(names.begin(), names.end(), ListsBefore);
    for (const std::string& name : names) disks.push_back(ReadDisk(name, *FindListedName(name)));
}

std::string ReadBlockDeviceLayout(const std::string& number)
{
    const std::string folder = std::string(kSysDevBlock) + "/" + number;
    if (number.empty() || number.find('/') != std::string::npos || !HostFiles::Exists(folder))
        return protocol::UNKNOWN_VALUE;
    if (HostFiles::Exists(folder + "/partition")) return "Partition";
    if (HostFiles::Exists(folder + "/md")) return "Software RAID";
    if (HostFiles::Exists(folder + "/dm")) return DescribeMapperKind(ReadAttribute(folder, "dm/uuid"));
    if (HostFiles::Exists(folder + "/loop")) return "Loop device";
    return "Disk";
}

std::string ReadBlockDeviceNumber(const std::string& name)
{
    if (name.empty() || name.find('/') != std::string::npos || name == "." || name == "..") return std::string();
    return ReadAttribute(std::string(kSysClassBlock) + "/" + name, "dev");
}

}  // namespace Linux
}  // namespace XModule
