#include "xmodule/linux/pcidevices.h"

#include "kestro/xmodule/log.h"
#include "kestro/xmodule/unreadable.h"
#include "xmodule/linux/hardwareids.h"
#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/valueformat.h"

#include <cctype>
#include <cstdlib>

namespace XModule {
namespace Linux {

namespace {

const char kPciDevices[] = "/sys/bus/pci/devices";

bool ReadHexAttribute(const std::string& folder, const char* name, unsigned& value)
{
    return ParseSysfsHex(HostFiles::ReadTrimmed(folder + "/" + name), value);
}

bool ReadFunction(const std::string& address, PciFunction& function)
{
    const std::string folder = std::string(kPciDevices) + "/" + address;
    function.address = address;
    if (!ReadHexAttribute(folder, "vendor", function.vendor) || !ReadHexAttribute(folder, "device", function.device) ||
        !ReadHexAttribute(folder, "class", function.classCode))
        return false;
    ReadHexAttribute(folder, "subsystem_vendor", function.subsystemVendor);
    ReadHexAttribute(folder, "subsystem_device", function.subsystemDevice);
    ReadHexAttribute(folder, "revision", function.revision);
    function.driver = HostFiles::ReadLinkName(folder + "/driver");
    return true;
}

}  // namespace

bool ParseSysfsHex(const std::string& text, unsigned& value)
{
    const char* begin = text.c_str();
    // strtoul would also take leading blanks and a sign, and read "-1" as the largest number.
    if (!std::isxdigit(static_cast<unsigned char>(*begin))) return false;
    char* end = nullptr;
    const unsigned long parsed = std::strtoul(begin, &end, 16);
    if (end == begin || parsed > 0xFFFFFFFFul) return false;
    while (*end == ' ' || *end == '\n') ++end;
    // A NUL inside the text (a damaged snapshot) would otherwise end it early and pass.
    if (end != text.c_str() + text.size()) return false;
    value = static_cast<unsigned>(parsed);
    return true;
}

std::string PciFunction::VendorName() const
{
    const std::string name = HardwareIds::Pci().VendorName(vendor);
    return name.empty() ? FormatHexId(vendor) : name;
}

std::string PciFunction::DeviceName() const
{
    const std::string name = HardwareIds::Pci().DeviceName(vendor, device);
    return name.empty() ? FormatHexId(device) : name;
}

std::string PciFunction::ClassName() const
{
    const std::string name = HardwareIds::Pci().ClassName(ClassId(), SubclassId());
    return name.empty() ? FormatHexId(classCode >> 8) : name;
}

std::vector<PciFunction> ReadPciFunctions()
{
    std::vector<PciFunction> functions;
    const std::vector<std::string> addresses = HostFiles::List(kPciDevices);
    if (addresses.empty() && !HostFiles::Exists(kPciDevices))
        NoteUnreadable(kPciDevices, "no PCI bus is visible");
    for (const std::string& address : addresses) {
        PciFunction function;
        if (ReadFunction(address, function))
            functions.push_back(function);
        else
            XLOG(XModule::LOG_WARN) << "[repo] PCI function " << address << " left out: its ids cannot be read";
    }
    return functions;
}

std::string PciFunctionFolder(const PciFunction& function) { return std::string(kPciDevices) + "/" + function.address; }

}  // namespace Linux
}  // namespace XModule
