#include "xmodule/ihv/arcconfparser.h"

#include "xmodule/ihv/keyvaluetext.h"
#include "xmodule/rlog.h"

#include <boost/algorithm/string/erase.hpp>
#include <boost/algorithm/string/predicate.hpp>
#include <boost/algorithm/string/trim.hpp>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <map>
#include <vector>

namespace XModule {
namespace ARCCONF {

namespace {

namespace opt = XMOptions;

const char* const kNone = "N/A";
const char* const kControllersFound = "Controllers found:";
const std::size_t kCountDigits = 3;

enum Section { NoSection, ControllerSection, ArraySection, LogicalSection, PhysicalSection };

const std::pair<const char*, Section> kSectionTitles[] = {
    {"Controller information", ControllerSection},
    {"Array Information", ArraySection},
    {"Logical device information", LogicalSection},
    {"Physical Device information", PhysicalSection},
};

// The line that opens one record in each section.
const std::pair<Section, const char*> kRecordStarts[] = {
    {ArraySection, "Array Number "},
    {LogicalSection, "Logical Device number "},
    {PhysicalSection, "Device #"},
};

// arcconf's states in the words of the records.
const std::map<std::string, std::string> kDriveStates = {
    {"Online", "Online"},     {"Ready", "Unconfigured good"}, {"Hot Spare", "Hot spare"},
    {"Failed", "Failed"},     {"Rebuilding", "Rebuild"},      {"Raw (Pass Through)", "System"},
    {"Offline", "Offline"},
};

const std::map<std::string, std::string> kArrayStates = {
    {"Ok", "Online"}, {"Degraded", "Degraded"}, {"Failed", "Offline"}, {"Interim Recovery", "Partially Degraded"},
};

typedef std::map<std::string, std::string> Fields;

// Where a record keeps its own number; arcconf prints no key of this name.
const char* const kNumber = "#";

struct Parsed {
    Fields controller;
    std::vector<Fields> arrays;
    std::vector<Fields> logicals;
    std::vector<Fields> drives;  // hard drives only; enclosures are left out
};

std::string Get(const Fields& fields, const std::string& key)
{
    const Fields::const_iterator found = fields.find(key);
    return found == fields.end() || found->second.empty() ? kNone : found->second;
}

std::string Word(const std::map<std::string, std::string>& words, const std::string& text)
{
    const auto found = words.find(text);
    return found == words.end() ? text : found->second;
}

bool OpensSection(const std::string& trimmed, Section& section)
{
    for (const auto& title : kSectionTitles)
        if (trimmed == title.first) {
            section = title.second;
            return true;
        }
    return false;
}

std::vector<Fields>* ListOf(Parsed& parsed, Section section)
{
    switch (section) {
    case ArraySection:
        return &parsed.arrays;
    case LogicalSection:
        return &parsed.logicals;
    case PhysicalSection:
        return &parsed.drives;
    default:
        return nullptr;
    }
}

// The record's number ("0" of "Array Number 0") when the line opens one in its section.
bool OpensRecord(const std::string& trimmed, Section section, std::string& number)
{
    for (const auto& start : kRecordStarts)
        if (start.first == section && boost::algorithm::starts_with(trimmed, start.second)) {
            number = trimmed.substr(std::string(start.second).size());
            return true;
        }
    return false;
}

// Lines go to the record opened last in their section; a device that is no hard drive is dropped
// once its kind line says so.
void TakeLine(const std::string& line, Section section, Parsed& parsed)
{
    const std::string trimmed = boost::algorithm::trim_copy(line);
    std::vector<Fields>* list = ListOf(parsed, section);
    std::string number;
    if (list != nullptr && OpensRecord(trimmed, section, number)) {
        list->push_back(Fields());
        list->back()[kNumber] = number;
        return;
    }
    if (section == PhysicalSection && boost::algorithm::starts_with(trimmed, "Device is a") && !list->empty() &&
        trimmed != "Device is a Hard drive") {
        list->pop_back();
        return;
    }
    std::string key, value;
    if (!XModuleIHV::SplitKeyValue(line, key, value)) return;
    Fields* fields = section == ControllerSection ? &parsed.controller : (list && !list->empty() ? &list->back() : nullptr);
    if (fields != nullptr) fields->insert(std::make_pair(key, value));  // the first of a repeated key counts
}

Parsed Sections(const std::string& text)
{
    Parsed parsed;
    Section section = NoSection;
    for (const std::string& line : XModuleIHV::TextLines(text)) {
        if (OpensSection(boost::algorithm::trim_copy(line), section)) continue;
        TakeLine(line, section, parsed);
    }
    return parsed;
}

// "SAS 12.0 Gb/s" gives "12.0Gb/s".
std::string LinkSpeed(const std::string& transfer)
{
    const std::size_t blank = transfer.find(' ');
    if (blank == std::string::npos) return kNone;
    return boost::algorithm::erase_all_copy(transfer.substr(blank + 1), " ");
}

std::string LeadingNumber(const std::string& text)
{
    const std::size_t end = text.find_first_not_of("0123456789");
    return end == 0 || text.empty() ? kNone : text.substr(0, end);
}

opt::DiskDrive DriveOf(const Fields& fields)
{
    opt::DiskDrive drive;
    drive.Name = "Device #" + Get(fields, kNumber);
    drive.Model = Get(fields, "Model");
    drive.DefaultBlockSize = drive.MaxBlockSize = drive.MinBlockSize = Get(fields, "Block Size");
    const std::string transfer = Get(fields, "Transfer Speed");
    drive.Type = transfer.substr(0, transfer.find(' '));
    drive.SlotNum = Get(fields, "Reported Location");
    drive.Manufacturer = Get(fields, "Vendor");
    drive.SerialNum = Get(fields, "Serial number");
    drive.FRUNum = drive.PartNum = kNone;
    drive.EncryptionAbility = Get(fields, "SED Encryption Status") == kNone ? "false" : "true";
    drive.EncryptionStatus = Get(fields, "SED Encryption Status");
    drive.RemainingLifePercent = Get(fields, "SSD Usage Remaining");
    drive.DiskState = Word(kDriveStates, Get(fields, "State"));
    drive.DriveStatus = drive.DiskState;
    drive.Temperature = LeadingNumber(Get(fields, "Current Temperature"));
    drive.MaxMediaSize = Get(fields, "Total Size");
    drive.UUID = Get(fields, "World-wide name");
    drive.DiskSpeed = drive.NumberOfBlocks = kNone;
    drive.VersionString = Get(fields, "Firmware");
    drive.DiskFormat = LinkSpeed(transfer);
    drive.MediaType = Get(fields, "SSD") == "Yes" ? "SSD" : "HDD";
    return drive;
}

opt::StorageVolume VolumeOf(const Fields& fields)
{
    opt::StorageVolume volume;
    volume.Name = Get(fields, "Logical Device name");
    volume.BlockSize = Get(fields, "Block Size of member drives");
    volume.NumOfBlocks = volume.PrimaryPartition = volume.ConsumableBlocks = volume.FreeSpace = kNone;
    volume.VolumeStatus = Get(fields, "Status of Logical Device");
    volume.StripeSize = Get(fields, "Stripe-unit size");
    volume.Bootable = Get(fields, "Bootable");
    volume.CapacityBytes = Get(fields, "Size");
    volume.RAIDLevel = "RAID" + Get(fields, "RAID level");
    return volume;
}

opt::StoragePool PoolOf(const Fields& fields, const Parsed& parsed)
{
    const std::string number = Get(fields, kNumber);
    opt::StoragePool pool;
    pool.Name = "Array " + Get(fields, "Name");
    pool.TotalManagedSpace = Get(fields, "Total Size");
    pool.ArrayStatus = Word(kArrayStates, Get(fields, "Status"));
    pool.RemainingManagedSpace = Get(fields, "Unused Size");
    pool.RAIDLevel = kNone;
    pool.Span = "255";
    for (const Fields& logical : parsed.logicals)
        if (Get(logical, "Array") == number) pool.volumes.push_back(VolumeOf(logical));
    if (!pool.volumes.empty()) pool.RAIDLevel = pool.volumes.front().RAIDLevel;
    return pool;
}

void FillController(const Fields& fields, opt::RaidAdapter& adapter)
{
    adapter.ControllerType = "RAID";
    adapter.Name = adapter.Model = Get(fields, "Controller Model");
    adapter.SerialNum = Get(fields, "Controller Serial Number");
    adapter.Manufacturer = "Microsemi";
    adapter.PartNumber = adapter.FRUNumber = kNone;
    adapter.UUID = Get(fields, "Controller World Wide Name");
    adapter.CacheStatus = Get(fields, "Controller Status");
    adapter.CacheSerialNum = kNone;
    adapter.CacheMemorySize = Get(fields, "Cache Size");
    for (const char* key : {"Firmware", "BIOS"}) {
        if (Get(fields, key) == kNone) continue;
        opt::SoftwareIdentity identity;
        identity.Name = identity.Description = identity.ElementName = identity.ClassificationDescriptions =
            std::string("Controller ") + key;
        identity.Manufacturer = adapter.Manufacturer;
        identity.VersionString = identity.IdentityInfoValue = Get(fields, key);
        identity.Classifications = identity.SoftwareRole = "Firmware";
        identity.SoftwareID = identity.ProductName = adapter.Model;
        identity.ReleaseDate = identity.SubDeviceID = identity.SoftwareStatus = kNone;
        identity.IdentityInfoType = key;
        adapter.softwareIdentities.push_back(identity);
    }
    if (Get(fields, "Backup Unit Type") == kNone) return;
    opt::Battery battery;
    battery.Name = "Backup Unit";
    battery.BatteryType = Get(fields, "Backup Unit Type");
    battery.BatteryStatus = battery.HealthStatus = Get(fields, "Overall Backup Unit Status");
    battery.Temperature = LeadingNumber(Get(fields, "Supercap Temperature"));
    battery.Manufacturer = battery.PartNum = battery.Voltage = battery.Current = kNone;
    battery.RemainingCapacity = battery.FullChargeCapacity = battery.EnabledState = kNone;
    battery.FirmwareDescription = battery.VoltageType = battery.DesignCapacity = battery.Chemistry = kNone;
    adapter.batteries.push_back(battery);
}

// The number of up to three digits after the blanks at `at`; -1 when there is none. A scan, not a
// regular expression, whose matcher recurses once per blank.
int CountAt(const std::string& text, std::size_t at)
{
    while (at < text.size() && std::isspace(static_cast<unsigned char>(text[at]))) ++at;
    std::size_t end = at;
    while (end < text.size() && end < at + kCountDigits && std::isdigit(static_cast<unsigned char>(text[end])))
        ++end;
    return end == at ? -1 : std::stoi(text.substr(at, end - at));
}

}  // namespace

int ArcconfParser::ControllerCount(const std::string& text)
{
    for (std::size_t at = text.find(kControllersFound); at != std::string::npos;
         at = text.find(kControllersFound, at + 1)) {
        const int count = CountAt(text, at + std::strlen(kControllersFound));
        if (count >= 0) return count;
    }
    return 0;
}

bool ArcconfParser::ParseConfig(const std::string& text, opt::RaidAdapter& adapter)
{
    const Parsed parsed = Sections(text);
    if (parsed.controller.empty()) {
        RLOG(2) << "arcconf output has no controller information";
        return false;
    }
    FillController(parsed.controller, adapter);
    std::vector<std::string> numbers;
    for (const Fields& array : parsed.arrays) {
        numbers.push_back(Get(array, kNumber));
        adapter.storagePools.push_back(PoolOf(array, parsed));
    }
    for (const Fields& fields : parsed.drives) {
        const opt::DiskDrive drive = DriveOf(fields);
        const auto at = std::find(numbers.begin(), numbers.end(), Get(fields, "Array"));
        if (at == numbers.end())
            adapter.diskDrives.push_back(drive);
        else
            adapter.storagePools[at - numbers.begin()].drives.push_back(drive);
    }
    return true;
}

}  // namespace ARCCONF
}  // namespace XModule
