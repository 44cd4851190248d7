#include "xmodule/linux/dmiinventory.h"

#include "kestro/xmodule/log.h"
#include "kestro/xmodule/rootprefix.h"
#include "kestro/xmodule/unreadable.h"
#include "xmodule/linux/cpuinfo.h"
#include "xmodule/linux/dmiid.h"
#include "xmodule/linux/memoryblocks.h"
#include "xmodule/linux/smbiosdecode.h"
#include "xmodule/linux/udevdatabase.h"
#include "xmodule/linux/valueformat.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/join.hpp>
#include <boost/algorithm/string/predicate.hpp>

#include <map>
#include <memory>
#include <mutex>
#include <set>

namespace XModule {
namespace Linux {

namespace {

using protocol::UNKNOWN_VALUE;

struct DmiSnapshot {
    SmbiosVersion version;
    std::vector<SmbiosStructure> table;
};

struct VendorName {
    const char* vendorId;
    const char* name;
};
const VendorName kCpuVendors[] = {{"GenuineIntel", "Intel"}, {"AuthenticAMD", "AMD"}, {"HygonGenuine", "Hygon"}};

const char kUdevDmiRecord[] = "+dmi:id";
const char kUdevMemoryPrefix[] = "MEMORY_DEVICE_";

DmiSnapshot LoadSnapshot()
{
    DmiSnapshot snapshot;
    std::string bytes;
    if (!ReadSmbiosTable(bytes)) return snapshot;
    snapshot.table = ParseSmbiosTable(bytes);
    std::string entryPoint;
    if (ReadSmbiosEntryPoint(entryPoint) && ParseSmbiosEntryPoint(entryPoint, snapshot.version)) return snapshot;
    snapshot.version = GuessSmbiosVersion(snapshot.table);
    XLOG(LOG_WARN) << "[repo] No usable SMBIOS entry point; the table is read as version " << snapshot.version.major
                   << "." << snapshot.version.minor << " after the lengths of its structures";
    return snapshot;
}

// Tests and containers switch roots; one host's table is read once.
std::shared_ptr<const DmiSnapshot> TakeSnapshot()
{
    static std::mutex mutex;
    static std::string root;
    static std::shared_ptr<const DmiSnapshot> snapshot;
    const std::string current = GetRootPrefix();
    std::lock_guard<std::mutex> guard(mutex);
    if (!snapshot || root != current) {
        snapshot = std::make_shared<const DmiSnapshot>(LoadSnapshot());
        root = current;
    }
    return snapshot;
}

template <typename Decoded>
std::vector<Decoded> DecodeAll(const DmiSnapshot& snapshot, std::uint8_t type, Decoded (*decode)(const SmbiosStructure&))
{
    std::vector<Decoded> decoded;
    for (const SmbiosStructure& structure : snapshot.table)
        if (structure.type == type) decoded.push_back(decode(structure));
    return decoded;
}

bool HasStructure(const DmiSnapshot& snapshot, std::uint8_t type) { return FindSmbiosStructure(snapshot.table, type) != nullptr; }

std::string Attribute(const std::map<std::string, std::string>& attributes, const char* name)
{
    const auto found = attributes.find(name);
    return found == attributes.end() ? std::string() : found->second;
}

std::string NumberOrUnknown(std::uint64_t number) { return number ? std::to_string(number) : UNKNOWN_VALUE; }

std::string FirstKnown(const std::string& first, const std::string& second) { return first.empty() ? second : first; }

std::string Counted(unsigned count, const char* noun)
{
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

// "<kind>[: <what>][ (<details>)]"; empty parts are left out.
std::string DescribeCard(const std::string& kind, const std::string& what, const std::vector<std::string>& details)
{
    std::vector<std::string> known;
    for (const std::string& detail : details)
        if (!detail.empty()) known.push_back(detail);
    std::string text = kind;
    if (!what.empty()) text += ": " + what;
    if (!known.empty()) text += " (" + boost::algorithm::join(known, ", ") + ")";
    return text;
}

std::string EnabledOrDisabled(bool enabled) { return enabled ? "Enabled" : "Disabled"; }

// --- computer system and cards -------------------------------------------------------------

SmbiosSystem SystemFromDmiId(const std::map<std::string, std::string>& id)
{
    SmbiosSystem system;
    system.manufacturer = Attribute(id, "sys_vendor");
    system.productName = Attribute(id, "product_name");
    system.version = Attribute(id, "product_version");
    system.serialNumber = Attribute(id, "product_serial");
    system.uuid = boost::algorithm::to_lower_copy(Attribute(id, "product_uuid"));
    system.skuNumber = Attribute(id, "product_sku");
    system.family = Attribute(id, "product_family");
    return system;
}

protocol::SystemCard Card(const std::string& type, const std::string& manufacturer, const std::string& version,
                          const std::string& serialNumber)
{
    protocol::SystemCard card;
    card.Type = type;
    card.Manufacturer = TextOrUnknown(manufacturer);
    card.Version = TextOrUnknown(version);
    card.SerialNumber = TextOrUnknown(serialNumber);
    return card;
}

protocol::SystemCard BiosCard(const SmbiosBios& bios)
{
    return Card(DescribeCard("BIOS", std::string(), {bios.releaseDate}), bios.vendor, bios.version, std::string());
}

protocol::SystemCard BaseboardCard(const SmbiosBaseboard& board)
{
    return Card(DescribeCard("Baseboard", board.productName, {board.boardType}), board.manufacturer, board.version,
                board.serialNumber);
}

protocol::SystemCard ChassisCard(const SmbiosChassis& chassis)
{
    return Card(DescribeCard("Chassis", chassis.chassisType, {}), chassis.manufacturer, chassis.version,
                chassis.serialNumber);
}

protocol::SystemCard SlotCard(const SmbiosSlot& slot)
{
    return Card(DescribeCard("Slot", slot.slotType, {slot.designation, slot.usage, slot.busAddress}), "", "", "");
}

protocol::SystemCard OnboardCard(const SmbiosOnboardDevice& device)
{
    return Card(DescribeCard("Onboard", device.deviceType,
                             {device.designation, EnabledOrDisabled(device.enabled), device.busAddress}),
                "", "", "");
}

bool HasStructureOfType(const DmiSnapshot& snapshot, std::uint8_t type)
{
    for (const SmbiosStructure& structure : snapshot.table)
        if (structure.type == type) return true;
    return false;
}

// Firmware that keeps the older onboard device list beside the newer one lists the devices twice.
void CollectOlderOnboardDevices(const SmbiosStructure& structure, std::vector<protocol::SystemCard>& cards)
{
    for (const SmbiosOnboardDevice& device : DecodeOnboardDevices(structure)) cards.push_back(OnboardCard(device));
}

void CollectCardsFromSmbios(const DmiSnapshot& snapshot, std::vector<protocol::SystemCard>& cards)
{
    const bool olderOnboardList = !HasStructureOfType(snapshot, SMBIOS_ONBOARD_DEVICES_EXTENDED);
    for (const SmbiosStructure& structure : snapshot.table) {
        switch (structure.type) {
        case SMBIOS_BIOS_INFORMATION: cards.push_back(BiosCard(DecodeBios(structure))); break;
        case SMBIOS_BASEBOARD_INFORMATION: cards.push_back(BaseboardCard(DecodeBaseboard(structure))); break;
        case SMBIOS_SYSTEM_ENCLOSURE: cards.push_back(ChassisCard(DecodeChassis(structure))); break;
        case SMBIOS_SYSTEM_SLOTS: cards.push_back(SlotCard(DecodeSlot(structure))); break;
        case SMBIOS_ONBOARD_DEVICES:
            if (olderOnboardList) CollectOlderOnboardDevices(structure, cards);
            break;
        case SMBIOS_ONBOARD_DEVICES_EXTENDED: cards.push_back(OnboardCard(DecodeOnboardDevice(structure))); break;
        default: break;
        }
    }
}

void CollectCardsFromDmiId(std::vector<protocol::SystemCard>& cards)
{
    const std::map<std::string, std::string> id = ReadDmiId();
    if (id.empty()) return;
    SmbiosBios bios;
    bios.vendor = Attribute(id, "bios_vendor");
    bios.version = Attribute(id, "bios_version");
    bios.releaseDate = ParseBiosDate(Attribute(id, "bios_date"));
    SmbiosBaseboard board;
    board.manufacturer = Attribute(id, "board_vendor");
    board.productName = Attribute(id, "board_name");
    board.version = Attribute(id, "board_version");
    board.serialNumber = Attribute(id, "board_serial");
    SmbiosChassis chassis;
    chassis.manufacturer = Attribute(id, "chassis_vendor");
    std::uint64_t chassisCode = 0;
    if (ParseDecimal(Attribute(id, "chassis_type"), chassisCode) && chassisCode < 0x80)
        chassis.chassisType = NameChassisType(static_cast<unsigned>(chassisCode));
    chassis.version = Attribute(id, "chassis_version");
    chassis.serialNumber = Attribute(id, "chassis_serial");
    cards.push_back(BiosCard(bios));
    cards.push_back(BaseboardCard(board));
    cards.push_back(ChassisCard(chassis));
}

// --- processors ----------------------------------------------------------------------------

std::string NameCpuVendor(const std::string& vendorId)
{
    for (const VendorName& vendor : kCpuVendors)
        if (vendorId == vendor.vendorId) return vendor.name;
    return vendorId;
}

void SetCache(protocol::Processor& record, int level, const std::string& mode, const std::string& enabled)
{
    std::string* const modes[3] = {&record.Level1CacheOperationalMode, &record.Level2CacheOperationalMode,
                                   &record.Level3CacheOperationalMode};
    std::string* const enabledFlags[3] = {&record.Level1CacheEnabled, &record.Level2CacheEnabled,
                                          &record.Level3CacheEnabled};
    *modes[level] = TextOrUnknown(mode);
    *enabledFlags[level] = enabled;
}

// A cache the operating system sees is in use; its write policy only some kernels tell.
void SetCachesFromPackage(protocol::Processor& record, const CpuPackage& package)
{
    for (int level = 0; level < 3; ++level)
        if (package.caches[level].present) SetCache(record, level, package.caches[level].writePolicy, FormatYesNo(true));
}

std::string HyperThreadingStatus(const CpuPackage& package)
{
    return EnabledOrDisabled(package.cpus.size() > package.cores);
}

protocol::Processor ProcessorFromPackage(const CpuPackage& package, std::size_t index)
{
    const unsigned threads = static_cast<unsigned>(package.cpus.size());
    protocol::Processor record;
    record.Core = DescribeCores("CPU " + std::to_string(index + 1), package.cores, 0, threads);
    record.Manufacturer = TextOrUnknown(NameCpuVendor(package.info.vendorId));
    record.Version = TextOrUnknown(package.info.modelName);
    record.Stepping = TextOrUnknown(package.info.stepping);
    record.CurrentClockSpeed = package.megahertz ? FormatMegahertz(package.megahertz) : UNKNOWN_VALUE;
    record.Status = "CPU Enabled";  // the operating system runs it
    if (threads > package.cores) record.HyperThreadingSupported = FormatYesNo(true);
    record.HyperThreadingStatus = HyperThreadingStatus(package);
    SetCachesFromPackage(record, package);
    record.SerialNumber = TextOrUnknown(package.ppin);
    return record;
}

protocol::Processor ProcessorFromSmbios(const SmbiosProcessor& socket, const std::map<std::uint16_t, SmbiosCache>& caches,
                                        const CpuPackage* package, std::size_t index)
{
    protocol::Processor record;
    record.Core = DescribeCores(FirstKnown(socket.socket, "CPU " + std::to_string(index + 1)), socket.cores,
                                socket.coresEnabled, socket.threads);
    record.Manufacturer = TextOrUnknown(socket.manufacturer);
    record.Version = TextOrUnknown(socket.version);
    record.Stepping = TextOrUnknown(socket.stepping);
    record.CurrentClockSpeed = socket.currentMegahertz ? FormatMegahertz(socket.currentMegahertz) : UNKNOWN_VALUE;
    record.Status = TextOrUnknown(socket.status);
    if (socket.hardwareThreads || (socket.cores && socket.threads))
        record.HyperThreadingSupported = FormatYesNo(socket.hardwareThreads || socket.threads > socket.cores);
    if (package) {
        record.HyperThreadingStatus = HyperThreadingStatus(*package);
        SetCachesFromPackage(record, *package);
    }
    for (int level = 0; level < 3; ++level) {
        const auto cache = caches.find(socket.cacheHandles[level]);
        if (cache != caches.end()) SetCache(record, level, cache->second.operationalMode, FormatYesNo(cache->second.enabled));
    }
    record.SerialNumber = TextOrUnknown(FirstKnown(package ? package->ppin : std::string(), socket.serialNumber));
    return record;
}

// --- memory --------------------------------------------------------------------------------

// Some firmware marks an empty slot by its texts alone.
bool LooksInstalled(std::uint64_t sizeBytes, const protocol::Memory& record)
{
    return sizeBytes || record.Manufacturer != UNKNOWN_VALUE || record.SerialNumber != UNKNOWN_VALUE ||
           record.PartNumber != UNKNOWN_VALUE;
}

void CollectMemoryFromSmbios(const DmiSnapshot& snapshot, std::vector<protocol::Memory>& modules)
{
    std::map<std::uint16_t, SmbiosMemoryArray> arrays;
    for (const SmbiosMemoryArray& array : DecodeAll(snapshot, SMBIOS_PHYSICAL_MEMORY_ARRAY, DecodeMemoryArray))
        arrays[array.handle] = array;
    for (const SmbiosMemoryDevice& device : DecodeAll(snapshot, SMBIOS_MEMORY_DEVICE, DecodeMemoryDevice)) {
        const auto array = arrays.find(device.arrayHandle);
        if (!device.installed || (array != arrays.end() && !array->second.systemMemory)) continue;
        protocol::Memory record;
        record.Tag = TextOrUnknown(device.locator);
        record.BankLabel = TextOrUnknown(device.bankLocator);
        record.Capacity = device.sizeBytes ? FormatBytes(device.sizeBytes) : UNKNOWN_VALUE;
        record.MemoryTypeA = TextOrUnknown(device.memoryType);
        record.MaxSpeed = device.speedMts ? FormatMegahertz(device.speedMts) : UNKNOWN_VALUE;
        if (array != arrays.end()) record.ErrorCorrectionType = TextOrUnknown(array->second.errorCorrection);
        record.Manufacturer = TextOrUnknown(device.manufacturer);
        record.PartNumber = TextOrUnknown(device.partNumber);
        record.SerialNumber = TextOrUnknown(device.serialNumber);
        if (LooksInstalled(device.sizeBytes, record)) modules.push_back(record);
    }
}

std::string UdevText(const UdevRecord& record, const std::string& key)
{
    const std::string text = record.Get(key);
    return IsPlaceholderText(text) ? UNKNOWN_VALUE : TextOrUnknown(text);
}

// udev's slot numbers, from its "MEMORY_DEVICE_<n>_<field>" keys.
std::set<std::uint64_t> UdevMemorySlots(const UdevRecord& record)
{
    std::set<std::uint64_t> slots;
    for (const auto& property : record.properties) {
        if (!boost::algorithm::starts_with(property.first, kUdevMemoryPrefix)) continue;
        const std::string rest = property.first.substr(sizeof kUdevMemoryPrefix - 1);
        std::uint64_t slot = 0;
        if (ParseDecimal(rest.substr(0, rest.find('_')), slot)) slots.insert(slot);
    }
    return slots;
}

// udev leaves the error correction out when it is "None", but names the array's location.
std::string UdevErrorCorrection(const UdevRecord& record)
{
    const std::string correction = record.Get("MEMORY_ARRAY_EC_TYPE");
    if (!correction.empty()) return UdevText(record, "MEMORY_ARRAY_EC_TYPE");
    return record.Get("MEMORY_ARRAY_LOCATION").empty() ? UNKNOWN_VALUE : "None";
}

void CollectMemoryFromUdev(std::vector<protocol::Memory>& modules)
{
    const UdevRecord record = ReadUdevRecord(kUdevDmiRecord);
    const std::set<std::uint64_t> slots = UdevMemorySlots(record);
    if (slots.empty()) {
        NoteUnreadable("udev's DMI record (" + std::string(kUdevDmiRecord) + ")",
                       "absent or without memory devices; memory modules are not listed");
        return;
    }
    for (std::uint64_t slot : slots) {
        const std::string prefix = kUdevMemoryPrefix + std::to_string(slot) + "_";
        if (record.Get(prefix + "PRESENT") == "0") continue;
        std::uint64_t sizeBytes = 0;
        std::uint64_t speed = 0;
        ParseDecimal(record.Get(prefix + "SIZE"), sizeBytes);
        ParseDecimal(record.Get(prefix + "SPEED_MTS"), speed);
        protocol::Memory module;
        module.Tag = UdevText(record, prefix + "LOCATOR");
        module.BankLabel = UdevText(record, prefix + "BANK_LOCATOR");
        module.Capacity = sizeBytes ? FormatBytes(sizeBytes) : UNKNOWN_VALUE;
        module.MemoryTypeA = UdevText(record, prefix + "TYPE");
        module.MaxSpeed = speed ? FormatMegahertz(speed) : UNKNOWN_VALUE;
        module.ErrorCorrectionType = UdevErrorCorrection(record);
        module.Manufacturer = UdevText(record, prefix + "MANUFACTURER");
        module.PartNumber = UdevText(record, prefix + "PART_NUMBER");
        module.SerialNumber = UdevText(record, prefix + "SERIAL_NUMBER");
        if (LooksInstalled(sizeBytes, module)) modules.push_back(module);
    }
}

// Where nothing names the modules, the memory the kernel has online stands as one record, so a
// virtual machine's report still tells how much it has.
void CollectSystemMemory(std::vector<protocol::Memory>& modules)
{
    const std::uint64_t bytes = ReadOnlineMemory();
    if (bytes == 0) return;
    protocol::Memory memory;
    memory.Tag = "System Memory";
    memory.Capacity = FormatBytes(bytes);
    modules.push_back(memory);
}

}  // namespace

void CollectComputerSystems(std::vector<protocol::ComputerSystem>& systems)
{
    const std::shared_ptr<const DmiSnapshot> snapshot = TakeSnapshot();
    const SmbiosStructure* found = FindSmbiosStructure(snapshot->table, SMBIOS_SYSTEM_INFORMATION);
    const SmbiosSystem system = found ? DecodeSystem(*found, snapshot->version) : SystemFromDmiId(ReadDmiId());
    protocol::ComputerSystem record;
    record.Manufacturer = TextOrUnknown(system.manufacturer);
    record.ProductName = TextOrUnknown(system.productName);
    record.Model = TextOrUnknown(FirstKnown(system.skuNumber, system.family));
    record.SerialNumber = TextOrUnknown(system.serialNumber);
    record.SystemUUID = TextOrUnknown(system.uuid);
    record.Version = TextOrUnknown(system.version);
    record.CurrentNodeIndex = "0";
    // A host without firmware tables (many virtual machines) names no system: no record beats one of N/As.
    const std::string unknown = protocol::UNKNOWN_VALUE;
    if (record.Manufacturer == unknown && record.ProductName == unknown && record.SerialNumber == unknown &&
        record.SystemUUID == unknown)
        return;
    systems.push_back(record);
}

void CollectProcessors(std::vector<protocol::Processor>& processors)
{
    const std::shared_ptr<const DmiSnapshot> snapshot = TakeSnapshot();
    const std::vector<CpuPackage> packages = ReadCpuPackages();
    std::vector<SmbiosProcessor> sockets;
    for (const SmbiosProcessor& socket : DecodeAll(*snapshot, SMBIOS_PROCESSOR_INFORMATION, DecodeProcessor))
        if (socket.populated) sockets.push_back(socket);
    if (sockets.empty()) {
        for (std::size_t i = 0; i < packages.size(); ++i) processors.push_back(ProcessorFromPackage(packages[i], i));
        return;
    }
    std::map<std::uint16_t, SmbiosCache> caches;
    for (const SmbiosCache& cache : DecodeAll(*snapshot, SMBIOS_CACHE_INFORMATION, DecodeCache)) caches[cache.handle] = cache;
    if (packages.size() != sockets.size())
        XLOG(LOG_WARN) << "[repo] SMBIOS lists " << sockets.size() << " populated sockets, the operating system "
                       << packages.size() << " packages; they are paired in order";
    for (std::size_t i = 0; i < sockets.size(); ++i)
        processors.push_back(ProcessorFromSmbios(sockets[i], caches, i < packages.size() ? &packages[i] : nullptr, i));
}

void CollectMemory(std::vector<protocol::Memory>& modules)
{
    const std::shared_ptr<const DmiSnapshot> snapshot = TakeSnapshot();
    const std::size_t before = modules.size();
    if (HasStructure(*snapshot, SMBIOS_MEMORY_DEVICE)) CollectMemoryFromSmbios(*snapshot, modules);
    else CollectMemoryFromUdev(modules);
    if (modules.size() == before) CollectSystemMemory(modules);
}

void CollectSystemCards(std::vector<protocol::SystemCard>& cards)
{
    const std::shared_ptr<const DmiSnapshot> snapshot = TakeSnapshot();
    if (HasStructure(*snapshot, SMBIOS_BIOS_INFORMATION) || HasStructure(*snapshot, SMBIOS_BASEBOARD_INFORMATION) ||
        HasStructure(*snapshot, SMBIOS_SYSTEM_ENCLOSURE))
        CollectCardsFromSmbios(*snapshot, cards);
    else
        CollectCardsFromDmiId(cards);
}

void CollectSmbiosFans(std::vector<protocol::FanInband>& fans)
{
    const std::shared_ptr<const DmiSnapshot> snapshot = TakeSnapshot();
    unsigned number = 0;
    for (const SmbiosCoolingDevice& cooling : DecodeAll(*snapshot, SMBIOS_COOLING_DEVICE, DecodeCoolingDevice)) {
        protocol::FanInband fan;
        const std::string numbered = FirstKnown(cooling.deviceType, "Cooling Device") + " " + std::to_string(++number);
        fan.ElementName = FirstKnown(cooling.description, numbered);
        fan.HealthState = TextOrUnknown(cooling.status);
        fan.DesiredSpeed = NumberOrUnknown(cooling.nominalRpm);
        fans.push_back(fan);
    }
}

void CollectSmbiosPowerSupplies(std::vector<protocol::PowerInband>& supplies)
{
    const std::shared_ptr<const DmiSnapshot> snapshot = TakeSnapshot();
    unsigned number = 0;
    for (const SmbiosPowerSupply& supply : DecodeAll(*snapshot, SMBIOS_SYSTEM_POWER_SUPPLY, DecodePowerSupply)) {
        protocol::PowerInband power;
        ++number;
        power.ElementName = FirstKnown(FirstKnown(supply.deviceName, supply.location), "Power Supply " + std::to_string(number));
        power.HealthState = !supply.present ? "Not Present" : supply.unplugged ? "Unplugged" : TextOrUnknown(supply.status);
        power.TotalOutputPower = NumberOrUnknown(supply.maxWatts);
        supplies.push_back(power);
    }
}

std::string DescribeCores(const std::string& socket, unsigned cores, unsigned enabled, unsigned threads)
{
    std::vector<std::string> counts;
    if (cores) counts.push_back(Counted(cores, "core"));
    if (enabled && enabled != cores) counts.push_back(std::to_string(enabled) + " enabled");
    if (threads) counts.push_back(Counted(threads, "thread"));
    return DescribeCard(socket, std::string(), counts);
}

bool IsWhitleyPlatform() { return IsWhitleyCpu(ReadCpuInfo()); }

}  // namespace Linux
}  // namespace XModule
