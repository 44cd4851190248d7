#include "repository/modules/rnetworkmodule.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rinstanceswrapper.h"
#include "kestro/repository/rrepository.h"
#include "kestro/systemtype/systemcheck.h"
#include "repository/modules/resxinodes.h"
#include "repository/modules/rrawdatarows.h"
#include "repository/modules/rrecordfields.h"
#include "repository/modules/rtableforms.h"
#include "xmodule/agentless/network.h"
#include "xmodule/ihv/emulex.h"
#include "xmodule/ihv/mellanox.h"
#include "xmodule/ihv/qlogic.h"
#include "xmodule/ihv/vendorutility.h"
#include "xmodule/rlog.h"

#include <boost/algorithm/string/predicate.hpp>
#include <boost/bind/bind.hpp>

#include <cstdint>
#include <initializer_list>
#include <utility>

namespace kestro {
namespace repository {

namespace {

using XModule::Agentless::NetworkAdapter;
using XModule::Agentless::NetworkPort;
using XModule::Agentless::NetworkSoftwareIdentity;
using XModule::XModuleIHV::RawData_;

const RXmlRecordField<NetworkAdapter> kAdapterFields[] = {
    {"Name", "Name", &NetworkAdapter::Name, false},
    {"Slot", "Slot", &NetworkAdapter::Slot, false},
    {"Tag", "Tag", &NetworkAdapter::Tag, false},
    {"Manufacturer", "Manufacturer", &NetworkAdapter::Manufacturer, false},
    {"Model", "Model", &NetworkAdapter::Model, false},
    {"SerialNumber", "Serial Number", &NetworkAdapter::SerialNumber, false},
    {"PartNumber", "Part Number", &NetworkAdapter::PartNumber, false},
    {"FRUNumber", "FRU Number", &NetworkAdapter::FRUNumber, false},
    {"OperationalStatus", "Operational Status", &NetworkAdapter::OperationalStatus, false},
    {"DeviceType", "Device Type", &NetworkAdapter::DeviceType, false},
    {"Thermal", "Thermal", &NetworkAdapter::Thermal, false},
    {"Caption", "Caption", &NetworkAdapter::Caption, false},
};

const RXmlRecordField<NetworkPort> kPortFields[] = {
    {"Name", "Name", &NetworkPort::Name, false},
    {"LinkTechnology", "Link Technology", &NetworkPort::LinkTechnology, false},
    {"MaxSpeed", "Max Speed", &NetworkPort::MaxSpeed, false},
    {"EnabledState", "EnabledState", &NetworkPort::EnabledState, false},
    {"PortAvailability", "PortAvailability", &NetworkPort::PortAvailability, false},
    {"RequestedState", "RequestedState", &NetworkPort::RequestedState, false},
    {"Caption", "Caption", &NetworkPort::Caption, false},
    {"PortNumber", "PortNumber", &NetworkPort::PortNumber, true},
    {"LinkStatus", "Link Status", &NetworkPort::LinkStatus, true},
    {"PermanentAddress", "PermanentAddress", &NetworkPort::PermanentAddress, true},
    {"Speed", "Speed", &NetworkPort::Speed, true},
    {"TransitioningToState", "TransitioningToState", &NetworkPort::TransitioningToState, true},
    {"OtherIdentifyingInfo", "OtherIdentifyingInfo", &NetworkPort::OtherIdentifyingInfo, true},
    {"BurnedInMAC", "BurnedInMAC", &NetworkPort::BurnedInMAC, true},
    {"ConfiguredLAMA", "ConfiguredLAMA", &NetworkPort::ConfiguredLAMA, true},
};

const RXmlRecordField<NetworkSoftwareIdentity> kSoftwareIdentityFields[] = {
    {"Description", "Description", &NetworkSoftwareIdentity::Description, false},
    {"ElementName", "Element Name", &NetworkSoftwareIdentity::ElementName, false},
    {"ProductName", "Product Name", &NetworkSoftwareIdentity::ProductName, false},
    {"Manufacturer", "Manufacturer", &NetworkSoftwareIdentity::Manufacturer, false},
    {"Name", "Name", &NetworkSoftwareIdentity::Name, false},
    {"VersionString", "Version String", &NetworkSoftwareIdentity::VersionString, false},
    {"Classifications", "Classifications", &NetworkSoftwareIdentity::Classifications, false},
    {"ClassificationDescriptions", "Classification Descriptions", &NetworkSoftwareIdentity::ClassificationDescriptions,
     false},
    {"IdentityInfoValue", "IdentityInfoValue", &NetworkSoftwareIdentity::IdentityInfoValue, false},
    {"SoftwareID", "SoftwareID", &NetworkSoftwareIdentity::SoftwareID, false},
    {"SubDeviceID", "SubDeviceID", &NetworkSoftwareIdentity::SubDeviceID, true},
    {"ReleaseDate", "ReleaseDate", &NetworkSoftwareIdentity::ReleaseDate, true},
    {"SoftwareStatus", "SoftwareStatus", &NetworkSoftwareIdentity::SoftwareStatus, true},
    {"SoftwareRole", "SoftwareRole", &NetworkSoftwareIdentity::SoftwareRole, true},
    {"IdentityInfoType", "IdentityInfoType", &NetworkSoftwareIdentity::IdentityInfoType, true},
};

template <class Record, std::size_t N>
RInstance MakeInstance(const char* type, const char* display, int id, const Record& record,
                       const RXmlRecordField<Record> (&fields)[N])
{
    RInstance instance(type, display, id);
    AddRecordFields(instance, record, fields);
    return instance;
}

// The raw-data type each maker's word routes an adapter to, in the order they are looked for.
struct VendorRoute {
    const char* word;
    const char* rawType;
};

const VendorRoute kVendorRoutes[] = {
    {"QLogic", "QlogicRawData"},
    {"Emulex", "EmulexRawData"},
    {"Mellanox", "MellanoxRawData"},
};

// Shown under each adapter's row, in this order.
const char* const kAdapterReferenceTypes[] = {"PCIPort", "PCISoftwareIdentity", "QlogicRawData", "EmulexRawData",
                                              "MellanoxRawData"};

const int kNoId = -1;

const RTableForm kAdapterForm = {"PCIAdapter", true, {30, 2}, false, nullptr};
const RTableForm kForms[] = {
    {"PCIPort", false, {20, 14, 14, 13, 13, 13, 13}, false, nullptr},
    {"PCISoftwareIdentity", false, {12, 12, 12, 10, 8, 10, 9, 9, 9, 9}, false, nullptr},
    {"QlogicRawData", false, {20, 50, 30}, false, nullptr},
    {"EmulexRawData", false, {20, 50, 30}, false, nullptr},
    {"MellanoxRawData", false, {20, 50, 30}, false, nullptr},
    {"PciRawData", false, {20, 50, 30}, false, nullptr},
};

// Adapter name or a software identity's maker, compared case by case as the makers write them.
bool Mentions(const NetworkAdapter& adapter, const std::string& word)
{
    if (boost::algorithm::contains(adapter.Name, word)) return true;
    for (const NetworkSoftwareIdentity& identity : adapter.softwareIdentities)
        if (boost::algorithm::contains(identity.Manufacturer, word)) return true;
    return false;
}

void LogAdapterName(const NetworkAdapter& adapter)
{
    RLOG(3) << "PCI adapter name is:" << adapter.Name;
}

void LogIdentityMakers(const NetworkAdapter& adapter)
{
    for (const NetworkSoftwareIdentity& identity : adapter.softwareIdentities)
        RLOG(3) << "PCI Software Identity Manufacturer is:" << identity.Manufacturer;
}

}  // namespace

RNetworkModule::RNetworkModule()
    : adaptersDone(false),
      redfish_supported(false),
      rawDataDone(false),
      qlogicDone(false),
      emulexDone(false),
      mellanoxDone(false),
      nextAdapterId(0)
{
}

std::string RNetworkModule::GetName() { return "NetworkModule"; }

std::string RNetworkModule::GetDisplay() { return "Network Module"; }

void RNetworkModule::InitCallbacks()
{
    using boost::placeholders::_1;
    typedef RNetworkModule M;
    for (const RTableForm& form : kForms) {
        TypeCallbacks& callbacks = typeCallbacks[form.type];
        callbacks.enumCallback = boost::bind(&M::EnumRawDataInstances, this, _1);
        callbacks.wrapCallback = boost::bind(&RTableForms::Apply, boost::cref(form), _1);
    }
    for (const char* type : {"PCIAdapter", "PCIPort", "PCISoftwareIdentity"})
        typeCallbacks[type].enumCallback = boost::bind(&M::EnumAdapterInstances, this, _1);
    typeCallbacks["PCIAdapter"].wrapCallback = boost::bind(&M::WrapAdapterInstances, this, _1);
}

void RNetworkModule::EnumAdapterInstances(RRepository& repo)
{
    RLOG(4) << "Entering RNetworkModule::EnumAdapterInstances";
    if (!adaptersDone) {
        adaptersDone = true;
        const ConnectMode mode = repo.GetConnectMode();
        if (!repo.GetRestConnectionList().empty()) {
            redfish_supported = XModule::SystemCheck::IsRedfishSupported(repo.GetRestConnectionList().front());
            RLOG(3) << "EnumAdapterInstances::redfish_supported =" << redfish_supported;
        }
        typedef void (RNetworkModule::*ModePath)(RRepository&);
        static const std::pair<ConnectMode, ModePath> kModePaths[] = {
            {ConnectLocal, &RNetworkModule::EnumInBand},
            {ConnectOob, &RNetworkModule::EnumOutOfBand},
            {ConnectEsxi, &RNetworkModule::EnumEsxi},
        };
        for (const std::pair<ConnectMode, ModePath>& path : kModePaths)
            if (path.first == mode) (this->*path.second)(repo);
    }
    RLOG(4) << "Leaving RNetworkModule::EnumAdapterInstances";
}

void RNetworkModule::EnumInBand(RRepository& repo)
{
    RLOG(3) << "Entering InBand Mode For Network";
    if (redfish_supported) {
        // A BMC that speaks Redfish is the one source; its failure is not retried another way.
        EnumOverRedfish(repo);
        return;
    }
    const std::vector<XModule::ConnectionInfo> connections = repo.GetCIMConnectionList();
    RLOG(3) << "Calling IsAgentlessSupportedFun";
    if (!connections.empty() && XModule::Agentless::Network(connections.front()).IsAgentlessSupported()) {
        RLOG(3) << "Entering Agentless module for InBand in RNetworkModule::EnumAdapterInstances";
        RLOG(3) << "\t\t(Inband mode via BMC)";
        GetMultipleNode(repo, connections);
        return;
    }
    RLOG(2) << "This system is non-Agentless supported.";
    RLOG(2) << "Quantrel Essentials Kestro depends on the BMC Agentless interface,";
    RLOG(2) << "customers should update xFW and options FW to above certain levels then AC.";
    RLOG(2) << "(xFW:  2Q15 QUSP or above, Options fw:  2Q15 QUSP or above)";
}

void RNetworkModule::EnumOutOfBand(RRepository& repo)
{
    RLOG(3) << "Entering OOB Mode For Network.";
    if (redfish_supported) {
        EnumOverRedfish(repo);
        return;
    }
    const std::vector<XModule::ConnectionInfo> connections = repo.GetCIMConnectionList();
    if (!connections.empty()) EnumOneConnection(repo, connections.front());
}

void RNetworkModule::EnumEsxi(RRepository& repo)
{
    RLOG(3) << "Entering ESXI Mode For Network.";
    const std::vector<XModule::ConnectionInfo> connections = repo.GetCIMConnectionList();
    if (connections.empty()) {
        RLOG(2) << "in RNetworkModule::EnumAdapterInstances(), the connect_list is empty.";
        return;
    }
    for (const XModule::ConnectionInfo& node : REsxiNodes::Of(connections.front())) EnumOneConnection(repo, node);
}

void RNetworkModule::EnumOverRedfish(RRepository& repo)
{
    // The REST list holds the BMC's service, whatever the connection record says of itself.
    XModule::ConnectionInfo bmc = repo.GetRestConnectionList().front();
    bmc.isBmc = true;
    std::vector<NetworkAdapter> adapters;
    const int ret = XModule::Agentless::Network(bmc).GetAdapterInfo(adapters);
    RLOG(3) << "The value of ret is:" << ret;
    if (ret != 0 || adapters.empty())
        RLOG(2) << "Get network adapter information from rest fail or no adapter information";
    if (!adapters.empty()) AddAdapterInstances(repo, adapters);
}

void RNetworkModule::EnumOneConnection(RRepository& repo, const XModule::ConnectionInfo& connection)
{
    // A connection or node without the agentless interface is passed over without a word.
    XModule::Agentless::Network network(connection);
    if (!network.IsAgentlessSupported()) return;
    std::vector<NetworkAdapter> adapters;
    const int ret = network.GetAdapterInfo(adapters);
    RLOG(3) << "The value of ret is:" << ret;
    if (adapters.empty())
        RLOG(2) << "adapters size is 0, the ret is " << ret;
    else
        AddAdapterInstances(repo, adapters);
}

void RNetworkModule::GetMultipleNode(RRepository& repo, const std::vector<XModule::ConnectionInfo>& connections)
{
    RLOG(4) << "Calling RNetworkModule::GetMultipleNode";
    std::vector<NetworkAdapter> adapters;
    for (std::size_t i = 0; i < connections.size(); ++i) {
        RLOG(3) << "The node id in usbinfos[i] is: " << i;
        XModule::Agentless::Network network(connections[i]);
        adapters.clear();
        const int ret = network.GetAdapterInfo(adapters);
        if (ret != 0) {
            RLOG(2) << "adapters size is 0, the ret is " << ret;
            continue;
        }
        AddAdapterInstances(repo, adapters);
    }
}

void RNetworkModule::AddAdapterInstances(RRepository& repo, const std::vector<NetworkAdapter>& adapters)
{
    RLOG(4) << "Calling AddAdapterInstances";
    // Numbers first, so that raw data gathered for the first adapter of a maker names them all.
    const int first = nextAdapterId;
    for (const NetworkAdapter& adapter : adapters) AddRawDataAdapterID(adapter, nextAdapterId++);
    for (std::size_t i = 0; i < adapters.size(); ++i) {
        AddAdapterInstance(repo, adapters[i], first + static_cast<int>(i));
        if (repo.GetConnectMode() == ConnectLocal) {
            RLOG(3) << "Get PCI Adapters' raw data when it connects in InBand mode.";
            GetRawDatanstances(repo, adapters[i]);
        }
    }
    RLOG(4) << "Leaving AddAdapterInstances";
}

void RNetworkModule::AddAdapterInstance(RRepository& repo, const NetworkAdapter& adapter, int id)
{
    MakeInstance("PCIAdapter", "PCI Adapter", id, adapter, kAdapterFields).AddToRepository(repo);
    for (const NetworkPort& port : adapter.ports) {
        RInstance instance = MakeInstance("PCIPort", "Ports", kNoId, port, kPortFields);
        instance.AddReference("PCIAdapter", id);
        instance.AddToRepository(repo);
    }
    for (const NetworkSoftwareIdentity& identity : adapter.softwareIdentities) {
        RInstance instance =
            MakeInstance("PCISoftwareIdentity", "Software Identity", kNoId, identity, kSoftwareIdentityFields);
        instance.AddReference("PCIAdapter", id);
        instance.AddToRepository(repo);
    }
}

void RNetworkModule::AddRawDataAdapterID(const NetworkAdapter& adapter, int id)
{
    RLOG(4) << "Calling RNetworkModule::AddRawDataAdapterID";
    LogAdapterName(adapter);
    RLOG(3) << "PCI adapter ID is:" << id;
    LogIdentityMakers(adapter);
    for (const VendorRoute& route : kVendorRoutes)
        if (Mentions(adapter, route.word)) rawDataAdapterIds[route.rawType].push_back(id);
}

void RNetworkModule::GetRawDatanstances(RRepository& repo, const NetworkAdapter& adapter)
{
    RLOG(4) << "Calling GetRawDatanstances";
    LogAdapterName(adapter);
    RLOG(3) << "PCI adapter part number is:" << adapter.PartNumber;
    LogIdentityMakers(adapter);
    // Each utility lists every adapter of its maker at once, so it runs once per run.
    if (!qlogicDone && Mentions(adapter, "QLogic")) GetQlogicInstances(repo);
    if (!emulexDone && Mentions(adapter, "Emulex")) GetEmulexInstances(repo, adapter.PartNumber);
    if (!mellanoxDone && Mentions(adapter, "Mellanox")) GetMellanoxInstances(repo);
}

void RNetworkModule::GetQlogicInstances(RRepository& repo)
{
    RLOG(4) << "Enter RNetworkModule::GetQlogicInstances";
    qlogicDone = true;
    const std::string fullpath = XModule::XModuleIHV::VendorUtility::FolderOf("qlogic");
    RLOG(3) << "RNetworkModule::GetQlogicInstances, the fullpath is : " << fullpath;
    std::vector<RawData_> records;
    const int ret = XModule::Qlogic::Qlogic().GetRawData(records, fullpath);
    if (ret != 0) RLOG(2) << "Qlogic::GetRawData() returns error = " << ret;
    AddRawDataInstances(repo, "QlogicRawData", "Qlogic Raw Data", records);
    RLOG(4) << "Exit RNetworkModule::GetQlogicInstances";
}

void RNetworkModule::GetEmulexInstances(RRepository& repo, std::string partNumber)
{
    RLOG(4) << "Enter RNetworkModule::GetEmulexInstances";
    emulexDone = true;
    std::vector<RawData_> records;
    const int ret = XModule::Emulex::Emulex().GetRawData(records, partNumber);
    if (ret != 0) RLOG(2) << "Emulex::GetRawData() returns error = " << ret;
    AddRawDataInstances(repo, "EmulexRawData", "Emulex Raw Data", records);
    RLOG(4) << "Exit RNetworkModule::GetEmulexInstances";
}

void RNetworkModule::GetMellanoxInstances(RRepository& repo)
{
    RLOG(4) << "Enter RNetworkModule::GetMellanoxInstances";
    mellanoxDone = true;
    const std::string fullpath = XModule::XModuleIHV::VendorUtility::FolderOf("mellanox");
    RLOG(3) << "RNetworkModule::GetMellanoxInstances, the fullpath is : " << fullpath;
    std::vector<RawData_> records;
    const int ret = XModule::Mellanox::Mellanox().GetRawData(records, fullpath);
    if (ret != 0) RLOG(2) << "Mellanox::GetRawData() with QUERY returns error = " << ret;
    AddRawDataInstances(repo, "MellanoxRawData", "Mellanox Raw Data", records);
    RLOG(4) << "Exit RNetworkModule::GetMellanoxInstances";
}

void RNetworkModule::AddRawDataInstances(RRepository& repo, const std::string& type, const std::string& display,
                                         const std::vector<RawData_>& records)
{
    const std::vector<int>& adapters = rawDataAdapterIds[type];
    for (const RawData_& record : records) {
        RInstance instance(type, display, kNoId);
        AddRawDataRows(instance, record, record.command, false);
        // A record names one parent: the first adapter of the maker, under whose row it shows.
        if (!adapters.empty()) instance.AddReference("PCIAdapter", adapters.front());
        instance.AddToRepository(repo);
    }
}

void RNetworkModule::EnumRawDataInstances(RRepository& repo)
{
    RLOG(4) << "Calling RNetworkModule::EnumRawDataInstances";
    if (rawDataDone) {
        RLOG(3) << "Raw Data instances have been enumerated.";
    } else {
        rawDataDone = true;
        if (rawDataAdapterIds.count("EmulexRawData") != 0) EnumEmulexInstances(repo);
        if (rawDataAdapterIds.count("MellanoxRawData") != 0) EnumMellanoxInstances(repo);
    }
    RLOG(4) << "Leaving RNetworkModule::EnumRawDataInstances";
}

void RNetworkModule::EnumEmulexInstances(RRepository& repo)
{
    // The utilities read this host, so only an in-band run asks them; in band the adapters'
    // enumeration has usually asked already.
    if (emulexDone || repo.GetConnectMode() != ConnectLocal) return;
    GetEmulexInstances(repo, std::string());
}

void RNetworkModule::EnumMellanoxInstances(RRepository& repo)
{
    if (mellanoxDone || repo.GetConnectMode() != ConnectLocal) return;
    GetMellanoxInstances(repo);
}

void RNetworkModule::WrapAdapterInstances(RInstancesWrapper& wrapper)
{
    RTableForms::Apply(kAdapterForm, wrapper);
    // The raw-data types keep their callbacks: the report finds the form of a type shown under
    // the adapter rows, and of every type its category lists, through them.
    for (const char* type : kAdapterReferenceTypes) wrapper.AddReferenceType(type);
    RLOG(4) << "Leaving RNetworkModule::WrapAdapterInstances";
}

}  // namespace repository
}  // namespace kestro
