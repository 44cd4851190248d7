// The readers of network adapters, one input each. The first byte picks the reader (see
// kReaders): sysfs attribute values (the whole input as each attribute, and its first line as
// operstate with the rest as carrier), a PCI function's VPD bytes, a Redfish resource of a
// network adapter (taken as adapter, port, device function, controller and software image at
// once), and the address bytes a driver answers with.
#include "fuzzsupport.h"
#include "rest/jsonread.h"
#include "xmodule/agentless/networkredfish.h"
#include "xmodule/linux/ethtoolquery.h"
#include "xmodule/linux/networkfunctions.h"
#include "xmodule/linux/pcivpd.h"

#include <boost/json/array.hpp>

using KestroFuzz::Require;
using XModule::Agentless::NETWORK_NOT_GIVEN;
using XModule::Agentless::NetworkRedfish;

namespace {

bool EndsWith(const std::string& text, const std::string& end)
{
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

void SysfsValues(const std::string& t)
{
    using namespace XModule::Linux;
    const std::string adapter = AdapterAddressOf(t);
    Require(adapter.empty() || (adapter.size() == 10 && t.compare(0, 10, adapter) == 0),
            "an adapter address that is no prefix of its function");
    const std::string function = PciFunctionAbove(t);
    Require(function.empty() || !AdapterAddressOf(function).empty(), "a function above that is no function");
    Require(!LinkTechnologyOf(t).empty(), "an empty link technology");
    std::string operstate, carrier;
    KestroFuzz::SplitAt(t, "\n", operstate, carrier);
    Require(!LinkStatusOf(operstate, carrier).empty(), "an empty link status");
    const std::string speed = SpeedOf(t);
    Require(speed == NETWORK_NOT_GIVEN || EndsWith(speed, " Mbps"), "a speed in no unit");
    const std::string enabled = EnabledStateOf(t);
    Require(enabled == NETWORK_NOT_GIVEN || enabled == "Enabled" || enabled == "Disabled", "an unknown enabled state");
}

void Vpd(const std::string& t)
{
    XModule::Linux::PciVpd vpd;
    const bool decoded = XModule::Linux::ParsePciVpd(t, vpd);
    Require(decoded || (vpd.name.empty() && vpd.partNumber.empty() && vpd.serialNumber.empty()),
            "VPD that decoded nothing filled a field");
    Require(vpd.name.size() + vpd.partNumber.size() + vpd.serialNumber.size() <= t.size(),
            "VPD fields longer than the bytes");
}

void FunctionOf(const boost::json::value& doc, XModule::Agentless::NetworkPort& port)
{
    NetworkRedfish::AssignedPort(doc);
    NetworkRedfish::ApplyFunctionAddresses(doc, port);
    Require(port.ConfiguredLAMA == NETWORK_NOT_GIVEN || port.ConfiguredLAMA == port.OtherIdentifyingInfo,
            "a locally administered address that is not the current one");
    Require(port.BurnedInMAC == port.PermanentAddress, "burned-in and permanent addresses differ");
}

void RedfishResource(const std::string& t)
{
    boost::json::value doc;
    std::string error;
    if (!Rest::TryParseJson(t, doc, error)) return;
    const XModule::Agentless::NetworkAdapter adapter = NetworkRedfish::ParseAdapter(doc);
    XModule::Agentless::NetworkPort port = NetworkRedfish::ParsePort(doc);
    Require(port.Speed == NETWORK_NOT_GIVEN || EndsWith(port.Speed, " Mbps"), "a port speed in no unit");
    FunctionOf(doc, port);
    if (const boost::json::array* controllers = Rest::FindJsonArray(doc, "/Controllers"))
        for (std::size_t i = 0; i < controllers->size(); ++i)
            NetworkRedfish::ParseControllerFirmware((*controllers)[i], i, adapter);
    NetworkRedfish::ParseSoftwareIdentity(doc, "Active", adapter);
}

void AddressBytes(const std::string& t)
{
    const std::string address = XModule::Linux::EthtoolQuery::FormatAddress(
        reinterpret_cast<const unsigned char*>(t.data()), t.size());
    Require(address.size() == (t.empty() ? 0 : 3 * t.size() - 1), "an address of the wrong length");
}

void (*const kReaders[])(const std::string&) = {SysfsValues, Vpd, RedfishResource, AddressBytes};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) return 0;
    kReaders[data[0] % (sizeof kReaders / sizeof kReaders[0])](KestroFuzz::ToText(data + 1, size - 1));
    return 0;
}
