#include "xmodule/linux/networkfunctions.h"

#include "kestro/xmodule/rootprefix.h"
#include "xmodule/linux/ethtoolquery.h"
#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/pcidevices.h"
#include "xmodule/linux/pcivpd.h"
#include "xmodule/linux/valueformat.h"
#include "xmodule/rlog.h"

#include <boost/algorithm/string/replace.hpp>
#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>

#include <cstdlib>
#include <map>
#include <regex>

namespace XModule {
namespace Linux {

namespace {

using Agentless::NETWORK_NOT_GIVEN;
using Agentless::NetworkAdapter;
using Agentless::NetworkPort;
using Agentless::NetworkSoftwareIdentity;

const char kNetClass[] = "/sys/class/net/";
const char kPciSlots[] = "/sys/bus/pci/slots/";
const char kModules[] = "/sys/module/";

const unsigned kInterfaceUp = 0x1;  // IFF_UP

struct Named {
    const char* given;
    const char* shown;
};

// ARPHRD numbers of the link layers a network adapter's port runs.
const Named kLinkTechnologies[] = {{"1", "Ethernet"}, {"32", "InfiniBand"}, {"784", "FibreChannel"},
                                   {"785", "FibreChannel"}, {"786", "FibreChannel"}, {"787", "FibreChannel"}};

const Named kOperStates[] = {{"up", "Up"},           {"down", "Down"},         {"lowerlayerdown", "Down"},
                             {"dormant", "Dormant"}, {"notpresent", "NotPresent"}, {"testing", "Testing"}};

const Named kCarriers[] = {{"1", "Up"}, {"0", "Down"}};

template <std::size_t N>
std::string Lookup(const Named (&table)[N], const std::string& given, const std::string& otherwise)
{
    for (const Named& entry : table)
        if (given == entry.given) return entry.shown;
    return otherwise;
}

std::string Given(const std::string& text) { return text.empty() ? std::string(NETWORK_NOT_GIVEN) : text; }

bool IsLiveHost() { return RootedPath("/") == "/"; }

std::multimap<std::string, std::string> InterfacesByFunction()
{
    std::multimap<std::string, std::string> byFunction;
    for (const std::string& name : HostFiles::List(kNetClass)) {
        boost::system::error_code error;
        const boost::filesystem::path device =
            boost::filesystem::canonical(HostFiles::Rooted(kNetClass + name + "/device"), error);
        // lo, bridges, bonds, veth and tunnels have no device at all.
        if (error) continue;
        const std::string function = PciFunctionAbove(device.string());
        if (function.empty())
            RLOG(4) << "Network interface " << name << " sits on no PCI function; it is no adapter port";
        else
            byFunction.emplace(function, name);
    }
    return byFunction;
}

// The slot names the platform gives, by the domain:bus:device they hold.
std::map<std::string, std::string> SlotsByAddress()
{
    std::map<std::string, std::string> slots;
    for (const std::string& slot : HostFiles::List(kPciSlots)) {
        const std::string address = HostFiles::ReadTrimmed(kPciSlots + slot + "/address");
        if (!address.empty()) slots[address] = slot;
    }
    return slots;
}

NetworkAdapter AdapterOf(const PciFunction& function, const std::map<std::string, std::string>& slots)
{
    NetworkAdapter adapter;
    adapter.ID = AdapterAddressOf(function.address);
    adapter.Name = function.VendorName() + " " + function.DeviceName();
    const std::map<std::string, std::string>::const_iterator slot = slots.find(adapter.ID);
    adapter.Slot = slot == slots.end() ? std::string(NETWORK_NOT_GIVEN) : slot->second;
    adapter.Tag = adapter.ID;
    adapter.Manufacturer = function.VendorName();
    adapter.Model = function.DeviceName();
    PciVpd vpd;
    ReadPciVpd(function.address, vpd);
    adapter.SerialNumber = Given(vpd.serialNumber);
    adapter.PartNumber = Given(vpd.partNumber);
    adapter.FRUNumber = NETWORK_NOT_GIVEN;
    adapter.OperationalStatus = NETWORK_NOT_GIVEN;
    adapter.DeviceType = function.ClassName();
    adapter.Thermal = NETWORK_NOT_GIVEN;
    adapter.Caption =
        "PCI " + adapter.ID + " [" + FormatHexId(function.vendor) + ":" + FormatHexId(function.device) + "]";
    return adapter;
}

std::string PermanentAddressOf(const std::string& name, const std::string& address, bool live)
{
    std::string permanent;
    if (live && EthtoolQuery::ReadPermanentAddress(name, permanent)) return permanent;
    // Type 0 (NET_ADDR_PERM): the address in use is the one the device came with.
    if (HostFiles::ReadTrimmed(kNetClass + name + "/addr_assign_type") == "0") return address;
    return NETWORK_NOT_GIVEN;
}

NetworkPort PortOf(const std::string& name, const std::string& function, std::size_t number, bool live)
{
    const std::string folder = kNetClass + name + "/";
    NetworkPort port;
    port.Name = name;
    port.LinkTechnology = LinkTechnologyOf(HostFiles::ReadTrimmed(folder + "type"));
    port.MaxSpeed = NETWORK_NOT_GIVEN;
    port.EnabledState = EnabledStateOf(HostFiles::ReadTrimmed(folder + "flags"));
    port.PortAvailability = NETWORK_NOT_GIVEN;
    port.RequestedState = NETWORK_NOT_GIVEN;
    port.Caption = function;
    port.PortNumber = std::to_string(number);
    port.LinkStatus =
        LinkStatusOf(HostFiles::ReadTrimmed(folder + "operstate"), HostFiles::ReadTrimmed(folder + "carrier"));
    port.Speed = SpeedOf(HostFiles::ReadTrimmed(folder + "speed"));
    port.TransitioningToState = NETWORK_NOT_GIVEN;
    const std::string address = Given(HostFiles::ReadTrimmed(folder + "address"));
    const std::string permanent = PermanentAddressOf(name, address, live);
    port.PermanentAddress = permanent;
    port.OtherIdentifyingInfo = address;
    port.BurnedInMAC = permanent;
    const bool overridden = permanent != NETWORK_NOT_GIVEN && address != NETWORK_NOT_GIVEN && address != permanent;
    port.ConfiguredLAMA = overridden ? address : std::string(NETWORK_NOT_GIVEN);
    return port;
}

NetworkSoftwareIdentity BlankIdentity(const NetworkAdapter& adapter, const std::string& function)
{
    NetworkSoftwareIdentity identity;
    identity.ProductName = adapter.Model;
    identity.IdentityInfoValue = NETWORK_NOT_GIVEN;
    identity.SubDeviceID = function;
    identity.ReleaseDate = NETWORK_NOT_GIVEN;
    identity.IdentityInfoType = NETWORK_NOT_GIVEN;
    return identity;
}

NetworkSoftwareIdentity DriverIdentity(const NetworkAdapter& adapter, const std::string& function,
                                       const std::string& driver, const std::string& version)
{
    NetworkSoftwareIdentity identity = BlankIdentity(adapter, function);
    identity.Description = "Network driver";
    identity.ElementName = driver;
    identity.Manufacturer = NETWORK_NOT_GIVEN;
    identity.Name = driver;
    identity.VersionString = Given(version);
    identity.Classifications = "Driver";
    identity.ClassificationDescriptions = "Kernel module";
    identity.SoftwareID = driver;
    identity.SoftwareStatus = "Bound";
    identity.SoftwareRole = "Driver";
    return identity;
}

NetworkSoftwareIdentity FirmwareIdentity(const NetworkAdapter& adapter, const std::string& function,
                                         const std::string& version)
{
    NetworkSoftwareIdentity identity = BlankIdentity(adapter, function);
    identity.Description = "Device firmware";
    identity.ElementName = adapter.Name;
    identity.Manufacturer = adapter.Manufacturer;
    identity.Name = "Firmware";
    identity.VersionString = version;
    identity.Classifications = "Firmware";
    identity.ClassificationDescriptions = "Firmware as the driver reads it";
    identity.SoftwareID = adapter.ID + "/firmware";
    identity.SoftwareStatus = "Running";
    identity.SoftwareRole = "Active";
    return identity;
}

void AddIdentityOnce(NetworkAdapter& adapter, const NetworkSoftwareIdentity& identity)
{
    for (const NetworkSoftwareIdentity& held : adapter.softwareIdentities)
        if (held.Name == identity.Name && held.VersionString == identity.VersionString) return;
    adapter.softwareIdentities.push_back(identity);
}

std::string ModuleVersion(const std::string& driver)
{
    // Module names use underscores where driver names may use dashes ("virtio-pci").
    return HostFiles::ReadTrimmed(kModules + boost::algorithm::replace_all_copy(driver, "-", "_") + "/version");
}

void AddInterface(NetworkAdapter& adapter, const std::string& function, const std::string& name, bool live)
{
    adapter.ports.push_back(PortOf(name, function, adapter.ports.size() + 1, live));
    const std::string driver = HostFiles::ReadLinkName(kNetClass + name + "/device/driver");
    EthtoolQuery::DriverInfo info;
    const bool answered = live && EthtoolQuery::ReadDriverInfo(name, info);
    const std::string moduleVersion = driver.empty() ? std::string() : ModuleVersion(driver);
    // In-tree drivers keep no version file; their version is the kernel's, which the driver tells.
    const std::string version = moduleVersion.empty() ? info.version : moduleVersion;
    if (!driver.empty()) AddIdentityOnce(adapter, DriverIdentity(adapter, function, driver, version));
    if (answered && !info.firmware.empty())
        AddIdentityOnce(adapter, FirmwareIdentity(adapter, function, info.firmware));
}

void AddFunction(NetworkAdapter& adapter, const PciFunction& function, const std::vector<std::string>& interfaces,
                 bool live)
{
    for (const std::string& name : interfaces) AddInterface(adapter, function.address, name, live);
    if (interfaces.empty() && !function.driver.empty())
        AddIdentityOnce(adapter, DriverIdentity(adapter, function.address, function.driver,
                                                ModuleVersion(function.driver)));
}

}  // namespace

std::string AdapterAddressOf(const std::string& function)
{
    static const std::regex address("([0-9a-fA-F]{4}:[0-9a-fA-F]{2}:[0-9a-fA-F]{2})\\.[0-7]");
    std::smatch match;
    return std::regex_match(function, match, address) ? match[1].str() : std::string();
}

std::string PciFunctionAbove(const std::string& devicePath)
{
    for (boost::filesystem::path at(devicePath); !at.empty() && at.has_filename(); at = at.parent_path()) {
        const std::string name = at.filename().string();
        if (!AdapterAddressOf(name).empty()) return name;
    }
    return std::string();
}

std::string LinkTechnologyOf(const std::string& type)
{
    return Lookup(kLinkTechnologies, type, type.empty() ? std::string(NETWORK_NOT_GIVEN) : "ARPHRD " + type);
}

std::string LinkStatusOf(const std::string& operstate, const std::string& carrier)
{
    return Lookup(kOperStates, operstate, Lookup(kCarriers, carrier, NETWORK_NOT_GIVEN));
}

std::string SpeedOf(const std::string& speed)
{
    char* end = nullptr;
    const long mbps = std::strtol(speed.c_str(), &end, 10);
    // -1 and the kernel's SPEED_UNKNOWN read as unknown, as does any text that is no number.
    if (speed.empty() || *end != '\0' || mbps <= 0 || mbps == 0xFFFFFFFFL) return NETWORK_NOT_GIVEN;
    return std::to_string(mbps) + " Mbps";
}

std::string EnabledStateOf(const std::string& flags)
{
    unsigned value = 0;
    if (!ParseSysfsHex(flags, value)) return NETWORK_NOT_GIVEN;
    return (value & kInterfaceUp) != 0 ? "Enabled" : "Disabled";
}

void CollectNetworkAdapters(std::vector<NetworkAdapter>& adapters)
{
    const bool live = IsLiveHost();
    const std::multimap<std::string, std::string> interfaces = InterfacesByFunction();
    const std::map<std::string, std::string> slots = SlotsByAddress();
    std::map<std::string, NetworkAdapter> byAddress;
    for (const PciFunction& function : ReadPciFunctions()) {
        std::vector<std::string> names;
        for (auto found = interfaces.equal_range(function.address); found.first != found.second; ++found.first)
            names.push_back(found.first->second);
        if (function.ClassId() != PCI_CLASS_NETWORK && names.empty()) continue;
        const std::string address = AdapterAddressOf(function.address);
        if (byAddress.find(address) == byAddress.end()) byAddress[address] = AdapterOf(function, slots);
        AddFunction(byAddress[address], function, names, live);
    }
    for (const auto& entry : byAddress) adapters.push_back(entry.second);
}

}  // namespace Linux
}  // namespace XModule
