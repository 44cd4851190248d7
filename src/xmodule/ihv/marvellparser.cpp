#include "xmodule/ihv/marvellparser.h"

#include "xmodule/ihv/keyvaluetext.h"
#include "xmodule/rlog.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/predicate.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/algorithm/string/trim.hpp>

#include <algorithm>
#include <map>

namespace XModule {
namespace MARVELL {

namespace {

namespace opt = XMOptions;

typedef std::map<std::string, std::string> Fields;

const char* const kNone = "N/A";

const std::map<std::string, std::string> kVolumeStates = {
    {"functional", "Online"}, {"degrade", "Degraded"}, {"degraded", "Degraded"}, {"offline", "Offline"},
};

const std::map<std::string, std::string> kDriveStates = {
    {"Configured", "Online"}, {"Unconfigured", "Unconfigured good"}, {"Spare", "Hot spare"},
    {"Failed", "Failed"},     {"Offline", "Offline"},
};

// The firmware an HBA reports, one identity each.
const std::pair<const char*, const char*> kFirmwareKeys[] = {
    {"Firmware version", "Adapter firmware"},
    {"Rom version", "Option ROM"},
    {"Boot loader version", "Boot loader"},
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

// Records are separated by blank lines; a summary at the end repeats what came before.
std::vector<Fields> Blocks(const std::string& text)
{
    std::vector<Fields> blocks(1);
    for (const std::string& line : XModuleIHV::TextLines(text)) {
        if (boost::algorithm::starts_with(line, "Summary of")) break;
        std::string key, value;
        if (boost::algorithm::trim_copy(line).empty()) {
            if (!blocks.back().empty()) blocks.push_back(Fields());
        } else if (XModuleIHV::SplitKeyValue(line, key, value)) {
            blocks.back().insert(std::make_pair(key, value));
        }
    }
    return blocks;
}

opt::RaidAdapter AdapterOf(const Fields& hba)
{
    opt::RaidAdapter adapter;
    adapter.ControllerType = "RAID";
    adapter.Model = Get(hba, "Product");
    adapter.Name = "Marvell " + adapter.Model;
    adapter.SerialNum = adapter.PartNumber = adapter.FRUNumber = adapter.UUID = kNone;
    adapter.Manufacturer = "Marvell";
    adapter.CacheStatus = adapter.CacheSerialNum = adapter.CacheMemorySize = kNone;
    for (const auto& key : kFirmwareKeys) {
        if (Get(hba, key.first) == kNone) continue;
        opt::SoftwareIdentity identity;
        identity.Name = identity.Description = identity.ClassificationDescriptions = key.second;
        identity.Manufacturer = adapter.Manufacturer;
        identity.VersionString = identity.IdentityInfoValue = Get(hba, key.first);
        identity.Classifications = identity.SoftwareRole = "Firmware";
        identity.SoftwareID = identity.ProductName = adapter.Model;
        identity.ElementName = identity.IdentityInfoType = key.first;
        identity.ReleaseDate = identity.SubDeviceID = identity.SoftwareStatus = kNone;
        adapter.softwareIdentities.push_back(identity);
    }
    return adapter;
}

opt::DiskDrive DriveOf(const Fields& pd)
{
    opt::DiskDrive drive;
    drive.Name = "PD " + Get(pd, "PD ID");
    drive.Model = Get(pd, "Model");
    drive.DefaultBlockSize = drive.MaxBlockSize = drive.MinBlockSize = Get(pd, "Sector Size");
    const std::string type = Get(pd, "Type");
    drive.Type = type.substr(0, type.find(' '));
    drive.SlotNum = Get(pd, "PD ID");
    drive.Manufacturer = drive.FRUNum = drive.PartNum = kNone;
    drive.SerialNum = Get(pd, "Serial");
    drive.EncryptionAbility = "false";
    drive.EncryptionStatus = drive.RemainingLifePercent = drive.Temperature = kNone;
    drive.DiskState = Word(kDriveStates, Get(pd, "Status"));
    drive.DriveStatus = drive.DiskState;
    drive.MaxMediaSize = Get(pd, "Size");
    drive.UUID = drive.DiskSpeed = drive.NumberOfBlocks = kNone;
    drive.VersionString = Get(pd, "Firmware version");
    drive.DiskFormat = Get(pd, "Current speed");
    drive.MediaType = kNone;
    return drive;
}

opt::StoragePool PoolOf(const Fields& vd)
{
    opt::StoragePool pool;
    pool.Name = Get(vd, "name");
    pool.TotalManagedSpace = Get(vd, "size");
    pool.ArrayStatus = Word(kVolumeStates, Get(vd, "status"));
    pool.RemainingManagedSpace = kNone;
    pool.RAIDLevel = Get(vd, "RAID mode");
    pool.Span = "255";
    opt::StorageVolume volume;
    volume.Name = pool.Name;
    volume.BlockSize = volume.NumOfBlocks = volume.PrimaryPartition = kNone;
    volume.Bootable = volume.ConsumableBlocks = volume.FreeSpace = kNone;
    volume.VolumeStatus = Get(vd, "status");
    volume.StripeSize = Get(vd, "Stripe size");
    volume.CapacityBytes = pool.TotalManagedSpace;
    volume.RAIDLevel = pool.RAIDLevel;
    pool.volumes.push_back(volume);
    return pool;
}

// "0 1" of "PD RAID setup": the ids of a virtual disk's member drives.
std::vector<std::string> MemberIds(const Fields& vd)
{
    std::vector<std::string> ids;
    const std::string setup = boost::algorithm::trim_copy(Get(vd, "PD RAID setup"));
    boost::algorithm::split(ids, setup, boost::algorithm::is_space(), boost::algorithm::token_compress_on);
    return ids;
}

bool Member(const std::vector<std::string>& ids, const std::string& id)
{
    return std::find(ids.begin(), ids.end(), id) != ids.end();
}

// Places one drive in the pool of the first virtual disk that names it, else on its adapter.
void PlaceDrive(const Fields& pd, const std::vector<Fields>& vds, opt::RaidAdapter& adapter)
{
    const opt::DiskDrive drive = DriveOf(pd);
    for (std::size_t i = 0; i < vds.size(); ++i)
        if (Member(MemberIds(vds[i]), Get(pd, "PD ID"))) {
            adapter.storagePools[i].drives.push_back(drive);
            return;
        }
    adapter.diskDrives.push_back(drive);
}

}  // namespace

bool MarvellParser::Parse(const std::string& hba, const std::string& vd, const std::string& pd,
                          std::vector<opt::RaidAdapter>& adapters)
{
    std::map<std::string, std::size_t> byId;
    std::vector<opt::RaidAdapter> found;
    for (const Fields& block : Blocks(hba))
        if (Get(block, "Adapter ID") != kNone) {
            byId[Get(block, "Adapter ID")] = found.size();
            found.push_back(AdapterOf(block));
        }
    if (found.empty()) {
        RLOG(2) << "mvcli output names no adapter";
        return false;
    }
    // mvcli lists the virtual disks of the adapter it works on, the first one unless told.
    std::vector<Fields> vds;
    for (const Fields& block : Blocks(vd))
        if (Get(block, "RAID mode") != kNone) vds.push_back(block);
    for (const Fields& block : vds) found.front().storagePools.push_back(PoolOf(block));
    for (const Fields& block : Blocks(pd)) {
        if (Get(block, "PD ID") == kNone) continue;
        const auto adapter = byId.find(Get(block, "Adapter"));
        opt::RaidAdapter& owner = adapter == byId.end() ? found.front() : found[adapter->second];
        PlaceDrive(block, &owner == &found.front() ? vds : std::vector<Fields>(), owner);
    }
    adapters.insert(adapters.end(), found.begin(), found.end());
    return true;
}

}  // namespace MARVELL
}  // namespace XModule
