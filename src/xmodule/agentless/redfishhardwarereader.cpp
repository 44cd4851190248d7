#include "xmodule/agentless/redfishhardwarereader.h"

#include "rest/jsonread.h"
#include "xmodule/agentless/bmcreader.h"
#include "xmodule/linux/cpuinfo.h"
#include "xmodule/linux/dmiinventory.h"
#include "xmodule/linux/valueformat.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/function.hpp>

#include <algorithm>
#include <cstdlib>

namespace XModule {
namespace Agentless {

namespace {

const char kSystems[] = "/redfish/v1/Systems";
const char kChassis[] = "/redfish/v1/Chassis";
const std::uint64_t kMebibyte = 1024 * 1024;
using protocol::UNKNOWN_VALUE;

struct Naming {
    const char* redfish;
    const char* shown;
};

// Redfish's enumerations in the words the host's own records use.
const Naming kErrorCorrections[] = {
    {"NoECC", "None"}, {"SingleBitECC", "Single-bit ECC"}, {"MultiBitECC", "Multi-bit ECC"}, {"AddressParity", "Parity"}};
const Naming kProcessorStates[] = {{"Enabled", "CPU Enabled"}, {"Disabled", "CPU Disabled"}, {"StandbyOffline", "CPU Idle"}};

std::string Text(const boost::json::value& doc, const std::string& pointer) { return Rest::ReadJsonText(doc, pointer, ""); }

std::string Known(const boost::json::value& doc, const std::string& pointer) { return Linux::TextOrUnknown(Text(doc, pointer)); }

template <std::size_t N>
std::string Renamed(const Naming (&table)[N], const std::string& value)
{
    for (const Naming& naming : table)
        if (value == naming.redfish) return naming.shown;
    return Linux::TextOrUnknown(value);
}

// A whole, positive number at `pointer`; 0 when there is none.
std::uint64_t Count(const boost::json::value& doc, const std::string& pointer)
{
    const double value = Rest::ReadJsonDouble(doc, pointer, 0);
    return value >= 1 && value < 1e15 ? static_cast<std::uint64_t>(value) : 0;
}

std::string CountOrUnknown(std::uint64_t count) { return count ? std::to_string(count) : UNKNOWN_VALUE; }

// A measured value, 0 included (a stopped fan reads 0 RPM), as a whole number.
std::string ReadingOrUnknown(const boost::json::value& doc, const std::string& pointer)
{
    const double value = Rest::ReadJsonDouble(doc, pointer, -1);
    return value >= 0 && value < 1e15 ? std::to_string(static_cast<std::uint64_t>(value + 0.5)) : UNKNOWN_VALUE;
}

bool IsAbsent(const boost::json::value& member) { return Text(member, "/Status/State") == "Absent"; }

// What an inventory shows of a part's health; a part missing from its bay is "Not Present".
std::string HealthOf(const boost::json::value& member)
{
    return IsAbsent(member) ? "Not Present" : Known(member, "/Status/Health");
}

// "0x6A" or "106" as a number; -1 for anything else.
int IdentifierNumber(const std::string& text)
{
    char* end = nullptr;
    const long value = std::strtol(text.c_str(), &end, 0);
    return text.empty() || *end != '\0' || value < 0 || value > 0xFFFF ? -1 : static_cast<int>(value);
}

// "0x6" or "6" as the decimal the host's records use.
std::string Stepping(const std::string& text)
{
    const int value = IdentifierNumber(text);
    return value >= 0 ? std::to_string(value) : Linux::TextOrUnknown(text);
}

protocol::ComputerSystem ComputerSystemOf(const boost::json::value& system, std::uint16_t nodeIndex)
{
    protocol::ComputerSystem record;
    record.Manufacturer = Known(system, "/Manufacturer");
    record.ProductName = Known(system, "/Model");
    record.Model = Known(system, "/SKU");
    record.SerialNumber = Known(system, "/SerialNumber");
    record.SystemUUID = Linux::TextOrUnknown(boost::algorithm::to_lower_copy(Text(system, "/UUID")));
    record.CurrentNodeIndex = std::to_string(nodeIndex);
    return record;
}

bool IsInstalledCpu(const boost::json::value& processor)
{
    const std::string type = Text(processor, "/ProcessorType");
    return !IsAbsent(processor) && (type.empty() || type == "CPU");
}

Linux::CpuInfoEntry CpuIdentityOf(const boost::json::value& processor)
{
    Linux::CpuInfoEntry entry;
    entry.vendorId = Text(processor, "/ProcessorId/VendorId");
    entry.family = IdentifierNumber(Text(processor, "/ProcessorId/EffectiveFamily"));
    entry.model = IdentifierNumber(Text(processor, "/ProcessorId/EffectiveModel"));
    return entry;
}

protocol::Processor ProcessorOf(const boost::json::value& processor)
{
    const unsigned cores = static_cast<unsigned>(Count(processor, "/TotalCores"));
    const unsigned enabled = static_cast<unsigned>(Count(processor, "/TotalEnabledCores"));
    const unsigned threads = static_cast<unsigned>(Count(processor, "/TotalThreads"));
    const std::string socket = Text(processor, "/Socket");
    protocol::Processor record;
    record.Core = Linux::DescribeCores(socket.empty() ? Text(processor, "/Id") : socket, cores, enabled, threads);
    record.Manufacturer = Known(processor, "/Manufacturer");
    record.Version = Known(processor, "/Model");
    record.Stepping = Stepping(Text(processor, "/ProcessorId/Step"));
    const std::uint64_t megahertz = Count(processor, "/OperatingSpeedMHz");
    record.CurrentClockSpeed = megahertz ? Linux::FormatMegahertz(megahertz) : UNKNOWN_VALUE;
    record.Status = Renamed(kProcessorStates, Text(processor, "/Status/State"));
    if (cores && threads) {
        record.HyperThreadingSupported = Linux::FormatYesNo(threads > cores);
        record.HyperThreadingStatus = threads > cores ? "Enabled" : "Disabled";
    }
    record.SerialNumber = Known(processor, "/ProcessorId/ProtectedIdentificationNumber");
    return record;
}

// The fastest rate a module is rated for, else the one it runs at.
std::uint64_t RatedSpeed(const boost::json::value& module)
{
    std::uint64_t fastest = 0;
    if (const boost::json::array* speeds = Rest::FindJsonArray(module, "/AllowedSpeedsMHz"))
        for (const boost::json::value& speed : *speeds) fastest = std::max(fastest, Count(speed, ""));
    return fastest ? fastest : Count(module, "/OperatingSpeedMhz");
}

protocol::Memory MemoryOf(const boost::json::value& module)
{
    protocol::Memory record;
    const std::string locator = Text(module, "/DeviceLocator");
    record.Tag = Linux::TextOrUnknown(locator.empty() ? Text(module, "/Id") : locator);
    record.Capacity = Linux::FormatBytes(Count(module, "/CapacityMiB") * kMebibyte);
    record.MemoryTypeA = Known(module, "/MemoryDeviceType");
    record.MaxSpeed = CountOrUnknown(RatedSpeed(module));
    record.ErrorCorrectionType = Renamed(kErrorCorrections, Text(module, "/ErrorCorrection"));
    record.Manufacturer = Known(module, "/Manufacturer");
    record.PartNumber = Known(module, "/PartNumber");
    record.SerialNumber = Known(module, "/SerialNumber");
    return record;
}

// Thermal's fans name their reading's unit; older ones (Thermal 1.0) give RPM under their own key.
protocol::FanInband FanOf(const boost::json::value& fan)
{
    protocol::FanInband record;
    const std::string name = Text(fan, "/Name");
    record.ElementName = Linux::TextOrUnknown(name.empty() ? Text(fan, "/FanName") : name);
    record.HealthState = HealthOf(fan);
    const std::string units = Text(fan, "/ReadingUnits");
    if (units.empty() || units == "RPM") record.DesiredSpeed = ReadingOrUnknown(fan, "/Reading");
    if (record.DesiredSpeed == UNKNOWN_VALUE) record.DesiredSpeed = ReadingOrUnknown(fan, "/SpeedPercent/SpeedRPM");
    return record;
}

protocol::PowerInband PowerSupplyOf(const boost::json::value& supply)
{
    protocol::PowerInband record;
    record.ElementName = Known(supply, "/Name");
    record.HealthState = HealthOf(supply);
    record.TotalOutputPower = CountOrUnknown(Count(supply, "/PowerCapacityWatts"));
    return record;
}

}  // namespace

struct RedfishHardwareReader::Private {
    typedef boost::function<void(const boost::json::value& member)> Visitor;

    explicit Private(const ConnectionInfo& bmc) : nodeIndex(bmc.nodeIndex), reader(bmc) {}

    bool ReadSystem()
    {
        if (systemRead) return true;
        const std::string path = reader.MemberAt(kSystems, nodeIndex);
        systemRead = !path.empty() && reader.Get(path, system);
        return systemRead;
    }

    // The chassis the system names first, else the BMC's first chassis.
    std::string ChassisPath()
    {
        const std::string linked = Text(system, "/Links/Chassis/0/@odata.id");
        return linked.empty() ? reader.FirstMember(kChassis) : linked;
    }

    // Each member of the collection that `owner` links to at `pointer`.
    void VisitLinkedMembers(const boost::json::value& owner, const std::string& pointer, const Visitor& visit)
    {
        const std::string collection = Text(owner, pointer + "/@odata.id");
        std::vector<std::string> members;
        if (collection.empty() || !reader.Members(collection, members)) return;
        for (const std::string& path : members) {
            boost::json::value member;
            if (reader.Get(path, member)) visit(member);
        }
    }

    // The resource that `owner` links to at `link`; false when there is no link or no answer.
    bool GetLinked(const boost::json::value& owner, const std::string& link, boost::json::value& doc)
    {
        const std::string path = Text(owner, link + "/@odata.id");
        return !path.empty() && reader.Get(path, doc);
    }

    // Each entry of the array at `arrayPointer` in the resource linked at `link`; false when that
    // resource cannot be had.
    bool VisitLinkedArray(const boost::json::value& owner, const std::string& link, const std::string& arrayPointer,
                          const Visitor& visit)
    {
        boost::json::value doc;
        if (!GetLinked(owner, link, doc)) return false;
        if (const boost::json::array* entries = Rest::FindJsonArray(doc, arrayPointer))
            for (const boost::json::value& entry : *entries) visit(entry);
        return true;
    }

    // The newer subsystem's collection, for a chassis without the older resource.
    void VisitSubsystemMembers(const boost::json::value& chassis, const std::string& subsystemLink,
                               const std::string& collection, const Visitor& visit)
    {
        boost::json::value subsystem;
        if (GetLinked(chassis, subsystemLink, subsystem)) VisitLinkedMembers(subsystem, collection, visit);
    }

    void VisitInstalledCpus(const Visitor& visit)
    {
        VisitLinkedMembers(system, "/Processors", [&](const boost::json::value& processor) {
            if (IsInstalledCpu(processor)) visit(processor);
        });
    }

    void ReadMemory(std::vector<protocol::Memory>& modules)
    {
        VisitLinkedMembers(system, "/Memory", [&](const boost::json::value& module) {
            if (!IsAbsent(module) && Count(module, "/CapacityMiB")) modules.push_back(MemoryOf(module));
        });
    }

    void ReadFansAndPower(protocol::Hardwareinfo& info)
    {
        const std::string path = ChassisPath();
        boost::json::value chassis;
        if (path.empty() || !reader.Get(path, chassis)) return;
        const auto addFan = [&](const boost::json::value& fan) { info.fans.push_back(FanOf(fan)); };
        const auto addSupply = [&](const boost::json::value& supply) { info.power.push_back(PowerSupplyOf(supply)); };
        if (!VisitLinkedArray(chassis, "/Thermal", "/Fans", addFan))
            VisitSubsystemMembers(chassis, "/ThermalSubsystem", "/Fans", addFan);
        if (!VisitLinkedArray(chassis, "/Power", "/PowerSupplies", addSupply))
            VisitSubsystemMembers(chassis, "/PowerSubsystem", "/PowerSupplies", addSupply);
    }

    std::size_t nodeIndex;
    BmcReader reader;
    bool systemRead = false;
    boost::json::value system;
};

RedfishHardwareReader::RedfishHardwareReader(const ConnectionInfo& bmc) : d(new Private(bmc)) {}

RedfishHardwareReader::~RedfishHardwareReader() = default;

bool RedfishHardwareReader::ReadComputerSystem(std::vector<protocol::ComputerSystem>& systems)
{
    if (!d->ReadSystem()) return false;
    systems.push_back(ComputerSystemOf(d->system, static_cast<std::uint16_t>(d->nodeIndex)));
    return true;
}

bool RedfishHardwareReader::ReadHardware(protocol::Hardwareinfo& info)
{
    if (!d->ReadSystem()) return false;
    d->VisitInstalledCpus([&](const boost::json::value& cpu) { info.processors.push_back(ProcessorOf(cpu)); });
    d->ReadMemory(info.memory);
    d->ReadFansAndPower(info);
    return true;
}

bool RedfishHardwareReader::IsWhitleyPlatform()
{
    std::vector<Linux::CpuInfoEntry> cpus;
    if (d->ReadSystem())
        d->VisitInstalledCpus([&](const boost::json::value& cpu) { cpus.push_back(CpuIdentityOf(cpu)); });
    return Linux::IsWhitleyCpu(cpus);
}

}  // namespace Agentless
}  // namespace XModule
