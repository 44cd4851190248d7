#include "xmodule/linux/scsidevices.h"

#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/udevdatabase.h"
#include "xmodule/linux/valueformat.h"

#include <boost/algorithm/string/split.hpp>

#include <algorithm>
#include <tuple>

namespace XModule {
namespace Linux {

namespace {

const char kScsiDevices[] = "/sys/bus/scsi/devices";

// Peripheral device types of SCSI inquiry data (SPC), by code.
struct ScsiDeviceType {
    std::uint64_t code;
    const char* name;
};
const ScsiDeviceType kScsiDeviceTypes[] = {
    {0x00, "Direct-access block device"},
    {0x01, "Sequential-access (tape)"},
    {0x02, "Printer"},
    {0x03, "Processor"},
    {0x04, "Write-once"},
    {0x05, "CD/DVD"},
    {0x06, "Scanner"},
    {0x07, "Optical memory"},
    {0x08, "Medium changer"},
    {0x09, "Communications"},
    {0x0c, "Storage array controller"},
    {0x0d, "Enclosure services"},
    {0x0e, "Simplified direct-access"},
    {0x0f, "Optical card reader/writer"},
    {0x10, "Bridge controller"},
    {0x11, "Object-based storage"},
    {0x12, "Automation/drive interface"},
    {0x14, "Host-managed zoned block device"},
    {0x1e, "Well-known logical unit"},
    {0x1f, "Unknown or no device type"},
};

// Where a unit's device node shows, in order of preference: a disk or CD by its block name,
// else the generic name every unit has (enclosures and changers have only that one).
struct NodeClass {
    const char* folder;
    char udevKind;  // 'b' block, 'c' character, as udev's database names records
};
const NodeClass kNodeClasses[] = {{"block", 'b'}, {"scsi_generic", 'c'}};

struct ScsiUnit {
    ScsiAddress address;
    std::string folder;
};

bool AddressBefore(const ScsiUnit& left, const ScsiUnit& right)
{
    const ScsiAddress& a = left.address;
    const ScsiAddress& b = right.address;
    return std::tie(a.host, a.channel, a.target, a.lun) < std::tie(b.host, b.channel, b.target, b.lun);
}

// The unit's node name ("sda", "sg3") and udev's record of it.
std::string ReadNodeName(const std::string& folder, UdevRecord& udev)
{
    for (const NodeClass& node : kNodeClasses) {
        const std::string classFolder = folder + "/" + node.folder;
        const std::vector<std::string> names = HostFiles::List(classFolder);
        if (names.empty()) continue;
        const std::string number = HostFiles::ReadTrimmed(classFolder + "/" + names.front() + "/dev");
        if (!number.empty()) udev = ReadUdevRecord(node.udevKind + number);
        return names.front();
    }
    return protocol::UNKNOWN_VALUE;
}

std::string ReadAttribute(const std::string& folder, const char* name)
{
    return TrimText(HostFiles::ReadTrimmed(folder + "/" + name));
}

protocol::SystemDevice ReadUnit(const ScsiUnit& unit)
{
    protocol::SystemDevice device;
    UdevRecord udev;
    device.Name = ReadNodeName(unit.folder, udev);
    device.DeviceType = DescribeScsiDeviceType(ReadAttribute(unit.folder, "type"));
    device.ProductName =
        TextOrUnknown(ReadAttribute(unit.folder, "vendor") + " " + ReadAttribute(unit.folder, "model"));
    const std::string serial = udev.Get("ID_SCSI_SERIAL");
    device.SerialNumber = TextOrUnknown(serial.empty() ? udev.Get("ID_SERIAL_SHORT") : serial);
    device.Revision = TextOrUnknown(ReadAttribute(unit.folder, "rev"));
    device.HostAdapterID = std::to_string(unit.address.host);
    device.Bus = std::to_string(unit.address.channel);
    device.TargetID = std::to_string(unit.address.target);
    device.Lun = std::to_string(unit.address.lun);
    return device;
}

}  // namespace

bool ParseScsiAddress(const std::string& name, ScsiAddress& address)
{
    std::vector<std::string> parts;
    boost::algorithm::split(parts, name, [](char c) { return c == ':'; });
    ScsiAddress parsed;
    if (parts.size() != 4 || !ParseDecimal(parts[0], parsed.host) ||
        !ParseDecimal(parts[1], parsed.channel) || !ParseDecimal(parts[2], parsed.target) ||
        !ParseDecimal(parts[3], parsed.lun))
        return false;
    address = parsed;
    return true;
}

std::string DescribeScsiDeviceType(const std::string& typeText)
{
    std::uint64_t code = 0;
    if (!ParseDecimal(typeText, code)) return TextOrUnknown(typeText);
    for (const ScsiDeviceType& type : kScsiDeviceTypes)
        if (type.code == code) return type.name;
    return std::to_string(code);
}

void CollectScsiDevices(std::vector<protocol::SystemDevice>& devices)
{
    std::vector<ScsiUnit> units;
    for (const std::string& name : HostFiles::List(kScsiDevices)) {
        ScsiUnit unit;
        unit.folder = std::string(kScsiDevices) + "/" + name;
        if (ParseScsiAddress(name, unit.address)) units.push_back(unit);
    }
    std::sort(units.begin(), units.end(), AddressBefore);
    for (const ScsiUnit& unit : units) devices.push_back(ReadUnit(unit));
}

}  // namespace Linux
}  // namespace XModule
