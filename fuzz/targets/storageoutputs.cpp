// The readers of storage, one input each. The first byte picks the reader (see kReaders): storcli's
// JSON (controllers, then drive details after a NUL byte), arcconf's GETCONFIG text, mvcli's
// three outputs (hba, vd, pd, separated by NUL bytes), vendor "key : value" lines, the words of
// the coded fields, a Redfish Drive resource, and the sysfs attributes of an NVMe controller and
// a disk (one value a line, in the order of kSysfsFiles). The Redfish drive document also stands
// for its storage: its "Name", whether it has "SupportedRAIDTypes" and its "Drives" give the
// controller type. Every adapter read is coded and laid
// out as "raid show" prints it.
#include "fuzzsupport.h"
#include "kestro/xmodule/rootprefix.h"
#include "rest/jsonread.h"
#include "xmodule/agentless/raidcodes.h"
#include "xmodule/agentless/redfishstoragereader.h"
#include "xmodule/ihv/arcconfparser.h"
#include "xmodule/ihv/keyvaluetext.h"
#include "xmodule/ihv/marvellparser.h"
#include "xmodule/ihv/storcliparser.h"
#include "xmodule/linux/hoststoragereader.h"
#include "xmodule/service/serviceraid.h"

#include <boost/filesystem/operations.hpp>
#include <boost/json/array.hpp>

#include <algorithm>
#include <sstream>

using KestroFuzz::Require;
using XModule::Agentless::RaidCodes;
namespace opt = XModule::XMOptions;

namespace {

// The attributes the host storage reader reads, under /sys of a root of this process.
const char* const kSysfsFiles[] = {
    "class/nvme/nvme0/model",        "class/nvme/nvme0/serial",           "class/nvme/nvme0/address",
    "class/nvme/nvme0/firmware_rev", "class/nvme/nvme0/nvme0n1/size",     "block/sda/queue/rotational",
    "block/sda/device/vendor",       "block/sda/device/model",            "block/sda/device/rev",
    "block/sda/size",
};

bool IsCode(const std::string& code)
{
    return !code.empty() && std::all_of(code.begin(), code.end(), [](char c) { return c >= '0' && c <= '9'; });
}

void RequireDriveCodes(const opt::DiskDrive& drive)
{
    Require(IsCode(drive.DiskFormat) && IsCode(drive.MediaType) && IsCode(drive.DiskState),
            "a drive field is no code after encoding");
}

void RequireCodes(const opt::RaidAdapter& adapter)
{
    for (const opt::Battery& battery : adapter.batteries)
        Require(IsCode(battery.BatteryType), "a battery type is no code after encoding");
    for (const opt::DiskDrive& drive : adapter.diskDrives) RequireDriveCodes(drive);
    for (const opt::StoragePool& pool : adapter.storagePools) {
        Require(IsCode(pool.ArrayStatus), "an array state is no code after encoding");
        for (const opt::DiskDrive& drive : pool.drives) RequireDriveCodes(drive);
    }
}

// What the modules do with the adapters a reader gives: the table of "raid show" and the codes.
void Finish(const std::vector<opt::RaidAdapter>& adapters)
{
    const std::string table = service::ServiceRaid::FormatRaidShow(adapters);
    Require(adapters.empty() || table.compare(0, 11, "Controller ") == 0, "the table starts with no controller");
    std::vector<opt::RaidAdapter> coded = adapters;
    RaidCodes::Encode(coded);
    for (const opt::RaidAdapter& adapter : coded) RequireCodes(adapter);
}

std::size_t DriveCount(const std::vector<opt::RaidAdapter>& adapters)
{
    std::size_t count = 0;
    for (const opt::RaidAdapter& adapter : adapters) {
        count += adapter.diskDrives.size();
        for (const opt::StoragePool& pool : adapter.storagePools) count += pool.drives.size();
    }
    return count;
}

void Storcli(const std::string& t)
{
    const std::vector<std::string> outputs = KestroFuzz::SplitAtNul(t, 2);
    std::vector<opt::RaidAdapter> adapters;
    if (!XModule::LSI::StorcliParser::ParseControllers(outputs[0], adapters))
        Require(adapters.empty(), "refused storcli output left adapters");
    const std::size_t drives = DriveCount(adapters);
    XModule::LSI::StorcliParser::ParseDriveDetails(outputs[1], adapters);
    Require(DriveCount(adapters) == drives, "drive details added or removed drives");
    Finish(adapters);
}

void Arcconf(const std::string& t)
{
    const int controllers = XModule::ARCCONF::ArcconfParser::ControllerCount(t);
    Require(controllers >= 0 && controllers <= 999, "controller count out of its three digits");
    opt::RaidAdapter adapter;
    if (!XModule::ARCCONF::ArcconfParser::ParseConfig(t, adapter)) {
        Require(adapter.Name.empty() && adapter.storagePools.empty(), "refused arcconf output filled the adapter");
        return;
    }
    Finish({adapter});
}

void Marvell(const std::string& t)
{
    const std::vector<std::string> outputs = KestroFuzz::SplitAtNul(t, 3);
    std::vector<opt::RaidAdapter> adapters;
    const bool parsed = XModule::MARVELL::MarvellParser::Parse(outputs[0], outputs[1], outputs[2], adapters);
    Require(parsed == !adapters.empty(), "mvcli answer and adapters disagree");
    Finish(adapters);
}

void KeyValues(const std::string& t)
{
    const std::vector<std::string> lines = XModule::XModuleIHV::TextLines(t);
    Require(lines.size() == static_cast<std::size_t>(std::count(t.begin(), t.end(), '\n')) + 1,
            "a line more or less than the text's line ends");
    for (const std::string& line : lines) {
        std::string key, value;
        if (!XModule::XModuleIHV::SplitKeyValue(line, key, value)) continue;
        Require(!key.empty() && key.find(':') == std::string::npos, "a key that is empty or holds the colon");
        Require(key.front() != ' ' && key.back() != ' ', "a key with its blanks");
    }
}

void Codes(const std::string& t)
{
    Require(IsCode(RaidCodes::BatteryTypeCode(t)) && IsCode(RaidCodes::ArrayStateCode(t)) &&
                IsCode(RaidCodes::LinkSpeedCode(t)) && IsCode(RaidCodes::MediaTypeCode(t)) &&
                IsCode(RaidCodes::DriveStateCode(t)),
            "a word coded as no number");
}

std::vector<std::string> Protocols(const boost::json::value& doc)
{
    std::vector<std::string> protocols;
    if (const boost::json::array* drives = Rest::FindJsonArray(doc, "/Drives"))
        for (const boost::json::value& drive : *drives) protocols.push_back(Rest::ReadJsonText(drive, "/Protocol"));
    return protocols;
}

void RedfishDrive(const std::string& t)
{
    using XModule::Agentless::RedfishStorageReader;
    boost::json::value doc;
    std::string error;
    if (!Rest::TryParseJson(t, doc, error)) return;
    opt::RaidAdapter adapter;
    adapter.ControllerType = RedfishStorageReader::ControllerTypeOf(Rest::ReadJsonText(doc, "/Name"),
                                                                    Rest::FindJsonArray(doc, "/SupportedRAIDTypes") != nullptr,
                                                                    Protocols(doc));
    Require(!RedfishStorageReader::DriveStateOf(doc, true).empty(), "a drive state that is empty");
    adapter.diskDrives.push_back(RedfishStorageReader::DriveOf(doc, false));
    adapter.diskDrives.push_back(RedfishStorageReader::DriveOf(doc, true));
    adapter.ssds.push_back(RedfishStorageReader::SsdOf(doc));
    Finish({adapter});
}

void HostSysfs(const std::string& t)
{
    const std::string root = KestroFuzz::ProcessFolder() + "/root";
    boost::system::error_code ignored;
    boost::filesystem::remove_all(root, ignored);
    std::istringstream values(t);
    std::string value;
    for (const char* file : kSysfsFiles)
        if (std::getline(values, value)) KestroFuzz::WriteInputFile(std::string("root/sys/") + file, value);
    XModule::SetRootPrefix(root);
    std::vector<opt::RaidAdapter> adapters;
    XModule::Linux::HostStorageReader::ReadNvmeControllers(adapters);
    XModule::Linux::HostStorageReader::ReadSolidStateDisks(adapters);
    Finish(adapters);
}

void (*const kReaders[])(const std::string&) = {Storcli, Arcconf, Marvell, KeyValues, Codes, RedfishDrive, HostSysfs};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) return 0;
    kReaders[data[0] % (sizeof kReaders / sizeof kReaders[0])](KestroFuzz::ToText(data + 1, size - 1));
    return 0;
}
