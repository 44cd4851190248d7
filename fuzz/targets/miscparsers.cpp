// The other readers of local files and sysfs texts, one input each. The first byte picks the
// reader (see kReaders); the rest is the file. The hwmon and power-supply readers take their
// attributes as "name=value" lines.
#include "fuzzsupport.h"
#include "xmodule/linux/bootconfiguration.h"
#include "xmodule/linux/graphicsinventory.h"
#include "xmodule/linux/hwmonsensors.h"
#include "xmodule/linux/initsystem.h"
#include "xmodule/linux/kernelmodules.h"
#include "xmodule/linux/logtext.h"
#include "xmodule/linux/osbasics.h"
#include "xmodule/linux/pcidevices.h"
#include "xmodule/linux/powersupplies.h"
#include "xmodule/linux/rpmpackages.h"
#include "xmodule/linux/scsidevices.h"
#include "xmodule/linux/smbiosdecode.h"
#include "xmodule/linux/sysvservices.h"
#include "xmodule/linux/timezone.h"
#include "xmodule/linux/usbdevices.h"
#include "xmodule/linux/valueformat.h"

#include <map>
#include <sstream>

using namespace XModule::Linux;

namespace {

std::map<std::string, std::string> Attributes(const std::string& text)
{
    std::map<std::string, std::string> attributes;
    std::istringstream lines(text);
    std::string line;
    while (std::getline(lines, line)) {
        const std::string::size_type equals = line.find('=');
        if (equals != std::string::npos) attributes[line.substr(0, equals)] = line.substr(equals + 1);
    }
    return attributes;
}

HwmonChip Chip(const std::string& text)
{
    HwmonChip chip;
    chip.id = "hwmon0";
    chip.attributes = Attributes(text);
    const auto name = chip.attributes.find("name");
    chip.name = name == chip.attributes.end() ? chip.id : name->second;
    chip.device = "7-0058";
    return chip;
}

void Boot(const std::string& t)
{
    ParseGrubMenu(t);
    ParseBootEntry(t);
    ParseGrubDefaults(t);
}
void Init(const std::string& t)
{
    ParseSystemdVersion(t);
    ParseInittabDefault(t);
}
void Modules(const std::string& t) { ParseProcModules(t); }
void Uptime(const std::string& t)
{
    std::uint64_t seconds = 0;
    if (ParseUptime(t, seconds)) FormatUptime(seconds);
    std::time_t boot = 0;
    if (ParseBootTime(t, boot)) FormatDateTime(boot);
}
void Rpm(const std::string& t) { ParseRpmQuery(t); }
void Scsi(const std::string& t)
{
    ScsiAddress address;
    ParseScsiAddress(t, address);
    DescribeScsiDeviceType(t);
}
void Numbers(const std::string& t)
{
    std::uint64_t value = 0;
    ParseDecimal(t, value);
    long long integer = 0;
    ParseSysfsInteger(t, integer);
    unsigned hex = 0;
    ParseSysfsHex(t, hex);
}
void Lsb(const std::string& t) { ParseLsbShortDescription(t); }
void Zone(const std::string& t)
{
    ParseZoneLink(t);
    ParseZoneFileRule(t);
}
void Usb(const std::string& t)
{
    UsbPortPath path;
    UsbPortPath other;
    if (ParseUsbDeviceName(t, path)) (void)(path < other);
    FormatUsbSpeed(t);
    IsUsbHubClass(t);
}
void Graphics(const std::string& t)
{
    ParseLargestPrefetchableBar(t);
    EdidMode mode;
    ParseFirstMode(t, mode);
}
void LogText(const std::string& t)
{
    const std::string escaped = EscapeLogText(t);
    CutLogText(escaped, t.size() / 2);
    CutLogText(t, t.size() / 3);
}
void Firmware(const std::string& t)
{
    ParseBiosDate(t);
    IsPlaceholderText(t);
    TextOrUnknown(t);
}
void Fans(const std::string& t) { ParseHwmonFans(Chip(t)); }
void Supplies(const std::string& t)
{
    const HwmonChip chip = Chip(t);
    if (IsPowerSupplyChip(chip.name)) ParseHwmonPowerSupply(chip);
    ParseHwmonPowerSupply(chip);
    ParsePowerSupplyClass("PSU0", chip.attributes);
    IsInstalledMainsSupply(chip.attributes);
}

void (*const kReaders[])(const std::string&) = {Boot, Init,     Modules,  Uptime, Rpm,      Scsi,
                                                Numbers, Lsb,   Zone,     Usb,    Graphics, LogText,
                                                Firmware, Fans, Supplies};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) return 0;
    kReaders[data[0] % (sizeof kReaders / sizeof kReaders[0])](KestroFuzz::ToText(data + 1, size - 1));
    return 0;
}
