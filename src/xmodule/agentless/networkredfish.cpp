#include "xmodule/agentless/networkredfish.h"

#include "rest/jsonread.h"
#include "xmodule/agentless/bmcreader.h"
#include "xmodule/agentless/network.h"
#include "xmodule/rlog.h"

#include <boost/algorithm/string/join.hpp>

#include <algorithm>
#include <initializer_list>
#include <set>
#include <sstream>

namespace XModule {
namespace Agentless {

namespace {

// A speed as one of the two ways Redfish states it, given in Mbps so the two read alike.
struct SpeedSource {
    const char* pointer;
    double toMbps;
};

const SpeedSource kCurrentSpeed[] = {{"/CurrentSpeedGbps", 1000}, {"/CurrentLinkSpeedMbps", 1}};
const SpeedSource kMaxSpeed[] = {{"/MaxSpeedGbps", 1000},
                                 {"/SupportedLinkCapabilities/0/LinkSpeedMbps", 1},
                                 {"/SupportedLinkCapabilities/0/CapableLinkSpeedMbps/0", 1}};

// Where a device function names its port: Links in current schemas, the top level in old ones.
const char* const kPortAssignments[] = {"/Links/PhysicalPortAssignment/@odata.id",
                                        "/PhysicalPortAssignment/@odata.id",
                                        "/AssignablePhysicalPorts/0/@odata.id",
                                        "/Links/PhysicalNetworkPortAssignment/@odata.id"};

// A device function's addresses: Ethernet first, Fibre Channel's port names otherwise.
const char* const kPermanentAddresses[] = {"/Ethernet/PermanentMACAddress", "/FibreChannel/PermanentWWPN"};
const char* const kCurrentAddresses[] = {"/Ethernet/MACAddress", "/FibreChannel/WWPN"};

// The ports' and functions' collections of an adapter, in the order they are looked for.
const char* const kPortCollections[] = {"/Ports/@odata.id", "/NetworkPorts/@odata.id"};
const char* const kControllerPortLinks[] = {"/Links/Ports", "/Links/NetworkPorts"};

std::string FirstTextIn(const boost::json::value& doc, const char* const* begin, const char* const* end)
{
    for (; begin != end; ++begin) {
        const std::string text = Rest::ReadJsonText(doc, *begin, "");
        if (!text.empty()) return text;
    }
    return NETWORK_NOT_GIVEN;
}

// The first of the values at `pointers` that is given, as text.
std::string FirstText(const boost::json::value& doc, std::initializer_list<const char*> pointers)
{
    return FirstTextIn(doc, pointers.begin(), pointers.end());
}

template <std::size_t N>
std::string FirstText(const boost::json::value& doc, const char* const (&pointers)[N])
{
    return FirstTextIn(doc, pointers, pointers + N);
}

std::string MbpsText(double mbps)
{
    std::ostringstream text;
    text.precision(12);
    text << mbps << " Mbps";
    return text.str();
}

template <std::size_t N>
std::string SpeedText(const boost::json::value& doc, const SpeedSource (&sources)[N])
{
    for (const SpeedSource& source : sources) {
        const boost::json::value* value = Rest::FindJsonValue(doc, source.pointer);
        if (value != nullptr && value->is_number()) return MbpsText(value->to_number<double>() * source.toMbps);
    }
    return NETWORK_NOT_GIVEN;
}

// The "@odata.id" of each entry of the array at `pointer`.
std::vector<std::string> LinksAt(const boost::json::value& doc, const std::string& pointer)
{
    std::vector<std::string> links;
    const boost::json::array* list = Rest::FindJsonArray(doc, pointer);
    if (list == nullptr) return links;
    for (const boost::json::value& entry : *list) {
        const std::string link = Rest::ReadJsonString(entry, "/@odata.id", "");
        if (!link.empty()) links.push_back(link);
    }
    return links;
}

std::vector<std::string> ControllerLinks(const boost::json::value& doc, const std::string& linkPointer)
{
    std::vector<std::string> links;
    const boost::json::array* controllers = Rest::FindJsonArray(doc, "/Controllers");
    if (controllers == nullptr) return links;
    for (const boost::json::value& controller : *controllers) {
        const std::vector<std::string> found = LinksAt(controller, linkPointer);
        links.insert(links.end(), found.begin(), found.end());
    }
    return links;
}

// "Ethernet", or "Ethernet, FibreChannel" for a converged adapter, from its ports.
std::string TechnologiesOf(const std::vector<NetworkPort>& ports)
{
    std::vector<std::string> technologies;
    for (const NetworkPort& port : ports)
        if (port.LinkTechnology != NETWORK_NOT_GIVEN &&
            std::find(technologies.begin(), technologies.end(), port.LinkTechnology) == technologies.end())
            technologies.push_back(port.LinkTechnology);
    return technologies.empty() ? std::string(NETWORK_NOT_GIVEN) : boost::algorithm::join(technologies, ", ");
}

std::string CapabilitiesText(const boost::json::value& controller)
{
    const std::string ports = Rest::ReadJsonText(controller, "/ControllerCapabilities/NetworkPortCount", "");
    const std::string functions =
        Rest::ReadJsonText(controller, "/ControllerCapabilities/NetworkDeviceFunctionCount", "");
    if (ports.empty() && functions.empty()) return NETWORK_NOT_GIVEN;
    return "NetworkPortCount=" + (ports.empty() ? std::string(NETWORK_NOT_GIVEN) : ports) +
           "; NetworkDeviceFunctionCount=" + (functions.empty() ? std::string(NETWORK_NOT_GIVEN) : functions);
}

}  // namespace

NetworkRedfish::NetworkRedfish(BmcReader& reader) : reader(reader) {}

std::string NetworkRedfish::AdaptersCollection()
{
    const std::string chassis = reader.FirstMember("/redfish/v1/Chassis");
    boost::json::value doc;
    if (chassis.empty() || !reader.Get(chassis, doc)) return std::string();
    return Rest::ReadJsonString(doc, "/NetworkAdapters/@odata.id", "");
}

int NetworkRedfish::ReadAdapters(std::vector<NetworkAdapter>& adapters)
{
    const std::string collection = AdaptersCollection();
    if (collection.empty()) return Network::NETWORK_NO_ADAPTERS;
    std::vector<std::string> members;
    if (!reader.Members(collection, members)) return Network::NETWORK_UNREADABLE;
    int result = Network::NETWORK_OK;
    for (const std::string& path : members) {
        NetworkAdapter adapter;
        if (!ReadAdapter(path, adapter)) result = Network::NETWORK_UNREADABLE;
        if (!adapter.ID.empty()) adapters.push_back(adapter);
    }
    return result;
}

bool NetworkRedfish::ReadAdapter(const std::string& path, NetworkAdapter& adapter)
{
    boost::json::value doc;
    if (!reader.Get(path, doc)) return false;
    adapter = ParseAdapter(doc);
    if (adapter.ID.empty()) adapter.ID = path;
    std::vector<std::string> portPaths;
    const bool portsRead = ReadPorts(doc, adapter, portPaths);
    const bool functionsRead = ReadFunctions(doc, adapter, portPaths);
    adapter.DeviceType = TechnologiesOf(adapter.ports);
    const bool identitiesRead = ReadSoftwareIdentities(doc, adapter);
    return portsRead && functionsRead && identitiesRead;
}

bool NetworkRedfish::ReadPorts(const boost::json::value& doc, NetworkAdapter& adapter,
                               std::vector<std::string>& portPaths)
{
    const std::string collection = FirstText(doc, kPortCollections);
    bool read = true;
    if (collection != NETWORK_NOT_GIVEN)
        read = reader.Members(collection, portPaths);
    else
        for (const char* link : kControllerPortLinks) {
            const std::vector<std::string> found = ControllerLinks(doc, link);
            portPaths.insert(portPaths.end(), found.begin(), found.end());
        }
    std::vector<std::string> readPaths;
    for (const std::string& path : portPaths) {
        boost::json::value port;
        if (!reader.Get(path, port)) {
            read = false;
            continue;
        }
        adapter.ports.push_back(ParsePort(port));
        readPaths.push_back(path);
    }
    portPaths.swap(readPaths);
    return read;
}

bool NetworkRedfish::ReadFunctions(const boost::json::value& doc, NetworkAdapter& adapter,
                                   const std::vector<std::string>& portPaths)
{
    const std::string collection = Rest::ReadJsonString(doc, "/NetworkDeviceFunctions/@odata.id", "");
    std::vector<std::string> functionPaths;
    bool read = true;
    if (!collection.empty())
        read = reader.Members(collection, functionPaths);
    else
        functionPaths = ControllerLinks(doc, "/Links/NetworkDeviceFunctions");
    for (const std::string& path : functionPaths) {
        boost::json::value function;
        if (!reader.Get(path, function)) {
            read = false;
            continue;
        }
        const std::vector<std::string>::const_iterator port =
            std::find(portPaths.begin(), portPaths.end(), AssignedPort(function));
        if (port == portPaths.end()) {
            RLOG(3) << "Network device function " << path << " is assigned to no port of its adapter";
            continue;
        }
        ApplyFunctionAddresses(function, adapter.ports[port - portPaths.begin()]);
    }
    return read;
}

bool NetworkRedfish::ReadSoftwareIdentities(const boost::json::value& doc, NetworkAdapter& adapter)
{
    bool read = true;
    std::set<std::string> seen;
    const boost::json::array* controllers = Rest::FindJsonArray(doc, "/Controllers");
    for (std::size_t i = 0; controllers != nullptr && i < controllers->size(); ++i) {
        const boost::json::value& controller = (*controllers)[i];
        if (Rest::FindJsonValue(controller, "/FirmwarePackageVersion") != nullptr)
            adapter.softwareIdentities.push_back(ParseControllerFirmware(controller, i, adapter));
        const std::string active = Rest::ReadJsonString(controller, "/Links/ActiveSoftwareImage/@odata.id", "");
        if (!active.empty() && seen.insert(active).second) read &= ReadLinkedIdentity(active, "Active", adapter);
        for (const std::string& image : LinksAt(controller, "/Links/SoftwareImages"))
            if (seen.insert(image).second) read &= ReadLinkedIdentity(image, "Image", adapter);
    }
    for (const std::string& identity : LinksAt(doc, "/Links/SoftwareIdentity"))
        if (seen.insert(identity).second) read &= ReadLinkedIdentity(identity, "Linked", adapter);
    return read;
}

bool NetworkRedfish::ReadLinkedIdentity(const std::string& path, const std::string& role, NetworkAdapter& adapter)
{
    boost::json::value doc;
    if (!reader.Get(path, doc)) return false;
    adapter.softwareIdentities.push_back(ParseSoftwareIdentity(doc, role, adapter));
    return true;
}

NetworkAdapter NetworkRedfish::ParseAdapter(const boost::json::value& doc)
{
    NetworkAdapter adapter;
    adapter.ID = Rest::ReadJsonString(doc, "/Id", "");
    adapter.Name = FirstText(doc, {"/Name"});
    adapter.Slot = FirstText(doc, {"/Location/PartLocation/ServiceLabel", "/Location/PartLocation/LocationOrdinalValue",
                                   "/Controllers/0/Location/PartLocation/ServiceLabel"});
    adapter.Tag = FirstText(doc, {"/Id"});
    adapter.Manufacturer = FirstText(doc, {"/Manufacturer"});
    adapter.Model = FirstText(doc, {"/Model"});
    adapter.SerialNumber = FirstText(doc, {"/SerialNumber"});
    adapter.PartNumber = FirstText(doc, {"/PartNumber"});
    adapter.FRUNumber = FirstText(doc, {"/SKU"});
    adapter.OperationalStatus = FirstText(doc, {"/Status/Health"});
    adapter.DeviceType = NETWORK_NOT_GIVEN;
    adapter.Thermal = NETWORK_NOT_GIVEN;
    adapter.Caption = FirstText(doc, {"/Description"});
    return adapter;
}

NetworkPort NetworkRedfish::ParsePort(const boost::json::value& doc)
{
    NetworkPort port;
    port.Name = FirstText(doc, {"/Name"});
    port.LinkTechnology = FirstText(doc, {"/LinkNetworkTechnology", "/ActiveLinkTechnology"});
    port.MaxSpeed = SpeedText(doc, kMaxSpeed);
    port.EnabledState = FirstText(doc, {"/Status/State"});
    port.PortAvailability = FirstText(doc, {"/Status/Health"});
    port.RequestedState = NETWORK_NOT_GIVEN;
    port.Caption = FirstText(doc, {"/Description"});
    port.PortNumber = FirstText(doc, {"/PortId", "/PhysicalPortNumber"});
    port.LinkStatus = FirstText(doc, {"/LinkStatus"});
    port.PermanentAddress = NETWORK_NOT_GIVEN;
    port.Speed = SpeedText(doc, kCurrentSpeed);
    port.TransitioningToState = NETWORK_NOT_GIVEN;
    port.OtherIdentifyingInfo =
        FirstText(doc, {"/Ethernet/AssociatedMACAddresses/0", "/AssociatedNetworkAddresses/0"});
    port.BurnedInMAC = NETWORK_NOT_GIVEN;
    port.ConfiguredLAMA = NETWORK_NOT_GIVEN;
    return port;
}

std::string NetworkRedfish::AssignedPort(const boost::json::value& function)
{
    const std::string port = FirstText(function, kPortAssignments);
    return port == NETWORK_NOT_GIVEN ? std::string() : port;
}

void NetworkRedfish::ApplyFunctionAddresses(const boost::json::value& function, NetworkPort& port)
{
    const std::string permanent = FirstText(function, kPermanentAddresses);
    const std::string current = FirstText(function, kCurrentAddresses);
    port.PermanentAddress = permanent;
    port.BurnedInMAC = permanent;
    if (current != NETWORK_NOT_GIVEN) port.OtherIdentifyingInfo = current;
    // An address set over the burned-in one is a locally administered one.
    const bool overridden = current != NETWORK_NOT_GIVEN && permanent != NETWORK_NOT_GIVEN && current != permanent;
    port.ConfiguredLAMA = overridden ? current : std::string(NETWORK_NOT_GIVEN);
}

NetworkSoftwareIdentity NetworkRedfish::ParseControllerFirmware(const boost::json::value& controller,
                                                                std::size_t index, const NetworkAdapter& adapter)
{
    NetworkSoftwareIdentity identity;
    identity.Description = "Controller " + std::to_string(index + 1) + " firmware";
    identity.ElementName = adapter.Name;
    identity.ProductName = adapter.Model;
    identity.Manufacturer = adapter.Manufacturer;
    identity.Name = "Firmware";
    identity.VersionString = FirstText(controller, {"/FirmwarePackageVersion"});
    identity.Classifications = "Firmware";
    identity.ClassificationDescriptions = "Controller firmware package";
    identity.IdentityInfoValue = CapabilitiesText(controller);
    identity.SoftwareID = adapter.ID + "/Controllers/" + std::to_string(index);
    identity.SubDeviceID = NETWORK_NOT_GIVEN;
    identity.ReleaseDate = NETWORK_NOT_GIVEN;
    identity.SoftwareStatus = FirstText(controller, {"/Status/State"});
    identity.SoftwareRole = "Active";
    identity.IdentityInfoType = identity.IdentityInfoValue == NETWORK_NOT_GIVEN ? NETWORK_NOT_GIVEN
                                                                                 : "ControllerCapabilities";
    return identity;
}

NetworkSoftwareIdentity NetworkRedfish::ParseSoftwareIdentity(const boost::json::value& doc, const std::string& role,
                                                              const NetworkAdapter& adapter)
{
    NetworkSoftwareIdentity identity;
    identity.Description = FirstText(doc, {"/Description"});
    identity.ElementName = FirstText(doc, {"/Name"});
    identity.ProductName = adapter.Model;
    identity.Manufacturer = FirstText(doc, {"/Manufacturer"});
    identity.Name = FirstText(doc, {"/Id"});
    identity.VersionString = FirstText(doc, {"/Version"});
    identity.Classifications = "Firmware";
    identity.ClassificationDescriptions = "Software image";
    identity.IdentityInfoValue = FirstText(doc, {"/SoftwareId"});
    identity.SoftwareID = FirstText(doc, {"/SoftwareId"});
    identity.SubDeviceID = NETWORK_NOT_GIVEN;
    identity.ReleaseDate = FirstText(doc, {"/ReleaseDate"});
    identity.SoftwareStatus = FirstText(doc, {"/Status/State"});
    identity.SoftwareRole = role;
    identity.IdentityInfoType = identity.IdentityInfoValue == NETWORK_NOT_GIVEN ? NETWORK_NOT_GIVEN : "SoftwareId";
    return identity;
}

}  // namespace Agentless
}  // namespace XModule
