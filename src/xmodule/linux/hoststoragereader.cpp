#include "xmodule/linux/hoststoragereader.h"

#include "xmodule/linux/hostfiles.h"

#include <boost/algorithm/string/predicate.hpp>
#include <boost/algorithm/string/trim.hpp>

#include <cstdint>
#include <cstdlib>
#include <regex>

namespace XModule {
namespace Linux {

namespace {

namespace opt = XMOptions;

const char* const kNone = "N/A";
const char* const kNvmeClass = "/sys/class/nvme/";
const char* const kBlockClass = "/sys/block/";
// sysfs gives sizes in 512-byte sectors whatever the device's block size.
const std::uint64_t kSectorBytes = 512;

// A sysfs attribute without its padding; "N/A" when it is missing or blank.
std::string Attribute(const std::string& path)
{
    const std::string value = boost::algorithm::trim_copy(HostFiles::ReadTrimmed(path));
    return value.empty() ? kNone : value;
}

std::uint64_t SizeBytes(const std::string& sizePath)
{
    return std::strtoull(HostFiles::ReadTrimmed(sizePath).c_str(), nullptr, 10) * kSectorBytes;
}

// The namespaces of a controller are its subfolders "<controller>n<id>", or "<controller>c<path>n<id>"
// where the kernel's native multipath keeps them (as RHEL 9 and Ubuntu do by default).
bool IsNamespaceOf(const std::string& entry, const std::string& controller)
{
    static const std::regex kPathOrPlain("(c[0-9]+)?n[0-9]+");
    return boost::algorithm::starts_with(entry, controller) &&
           std::regex_match(entry.begin() + controller.size(), entry.end(), kPathOrPlain);
}

std::uint64_t NamespaceBytes(const std::string& controllerPath, const std::string& controller)
{
    std::uint64_t bytes = 0;
    for (const std::string& entry : HostFiles::List(controllerPath))
        if (IsNamespaceOf(entry, controller)) bytes += SizeBytes(controllerPath + entry + "/size");
    return bytes;
}

std::string BytesOrNone(std::uint64_t bytes) { return bytes ? std::to_string(bytes) : kNone; }

opt::SoftwareIdentity FirmwareIdentity(const std::string& name, const std::string& version)
{
    opt::SoftwareIdentity identity;
    identity.Name = name + " Firmware";
    identity.Description = "Drive firmware";
    identity.Manufacturer = kNone;
    identity.VersionString = version;
    identity.Classifications = "Firmware";
    identity.SoftwareID = name;
    identity.ReleaseDate = kNone;
    identity.ElementName = name;
    identity.ProductName = name;
    identity.ClassificationDescriptions = "Drive firmware";
    identity.SubDeviceID = kNone;
    identity.IdentityInfoValue = version;
    identity.SoftwareStatus = kNone;
    identity.SoftwareRole = "Firmware";
    identity.IdentityInfoType = "Firmware Version";
    return identity;
}

opt::SSD BlankSsd()
{
    opt::SSD ssd;
    ssd.Bay = ssd.SerialNumber = ssd.PartNumber = ssd.FRUNumber = ssd.Manufacturer = kNone;
    ssd.EncryptionAbility = "false";
    ssd.EncryptionStatus = ssd.RemainingLifePercent = ssd.DriveStatus = ssd.Temperature = kNone;
    return ssd;
}

opt::RaidAdapter BlankAdapter(const std::string& controllerType)
{
    opt::RaidAdapter adapter;
    adapter.ControllerType = controllerType;
    adapter.Name = adapter.Model = adapter.SerialNum = adapter.Manufacturer = kNone;
    adapter.PartNumber = adapter.FRUNumber = adapter.UUID = kNone;
    adapter.CacheStatus = adapter.CacheSerialNum = adapter.CacheMemorySize = kNone;
    return adapter;
}

opt::RaidAdapter NvmeAdapter(const std::string& controller)
{
    const std::string path = kNvmeClass + controller + "/";
    opt::RaidAdapter adapter = BlankAdapter("Direct_Attached_NVMe");
    adapter.Name = adapter.Model = Attribute(path + "model");
    adapter.SerialNum = Attribute(path + "serial");
    opt::SSD ssd = BlankSsd();
    ssd.Type = "NVMe";
    ssd.SerialNumber = adapter.SerialNum;
    ssd.ProductName = adapter.Model;
    ssd.Location = "PCI " + Attribute(path + "address");
    ssd.FirmwareVersion = Attribute(path + "firmware_rev");
    ssd.Capacity = BytesOrNone(NamespaceBytes(path, controller));
    adapter.ssds.push_back(ssd);
    adapter.softwareIdentities.push_back(FirmwareIdentity(adapter.Model, ssd.FirmwareVersion));
    return adapter;
}

bool IsSolidState(const std::string& disk)
{
    return boost::algorithm::starts_with(disk, "sd") &&
           HostFiles::ReadTrimmed(kBlockClass + disk + "/queue/rotational") == "0";
}

// libata names every SATA disk's vendor "ATA"; a SAS disk gives its maker.
opt::SSD DiskSsd(const std::string& disk)
{
    const std::string path = kBlockClass + disk + "/";
    const std::string vendor = Attribute(path + "device/vendor");
    opt::SSD ssd = BlankSsd();
    ssd.Type = vendor == "ATA" ? "SATA" : "SAS";
    ssd.Manufacturer = vendor == "ATA" ? kNone : vendor;
    ssd.ProductName = Attribute(path + "device/model");
    ssd.Location = "/dev/" + disk;
    ssd.FirmwareVersion = Attribute(path + "device/rev");
    ssd.Capacity = BytesOrNone(SizeBytes(path + "size"));
    return ssd;
}

}  // namespace

void HostStorageReader::ReadNvmeControllers(std::vector<opt::RaidAdapter>& adapters)
{
    for (const std::string& controller : HostFiles::List(kNvmeClass))
        if (boost::algorithm::starts_with(controller, "nvme")) adapters.push_back(NvmeAdapter(controller));
}

void HostStorageReader::ReadSolidStateDisks(std::vector<opt::RaidAdapter>& adapters)
{
    opt::RaidAdapter adapter = BlankAdapter("Direct_Attached_SATA");
    adapter.Name = "Host SATA/SAS SSDs";
    for (const std::string& disk : HostFiles::List(kBlockClass))
        if (IsSolidState(disk)) adapter.ssds.push_back(DiskSsd(disk));
    if (!adapter.ssds.empty()) adapters.push_back(adapter);
}

}  // namespace Linux
}  // namespace XModule
