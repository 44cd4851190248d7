#include "xmodule/agentless/raidcodes.h"

#include <map>

namespace XModule {
namespace Agentless {

namespace {

namespace opt = XMOptions;

typedef std::map<std::string, std::string> CodeMap;

// A word no table knows gets the field's "Other"; battery types have none, so a code outside
// their table stands for it.
const CodeMap kBatteryTypes = {{"N/A", "0"},   {"Unknown", "0"}, {"IBBU", "1"},   {"BBU", "2"},
                               {"ZCR Legacy", "3"}, {"iTBBU3", "4"}, {"iBBU08", "5"}, {"TMMC", "6"}};
const char* const kBatteryOther = "255";

const CodeMap kArrayStates = {{"N/A", "0"},    {"Unknown", "0"},           {"Online", "2"}, {"Optimal", "2"},
                              {"Partially Degraded", "3"}, {"Degraded", "4"}, {"Offline", "5"}};

// Redfish gives the negotiated speed as a number of Gb/s; utilities write the unit.
const CodeMap kLinkSpeeds = {{"N/A", "0"},    {"1.5", "2"},     {"1.5Gb/s", "2"}, {"3", "3"},
                             {"3.0Gb/s", "3"}, {"6", "4"},       {"6.0Gb/s", "4"}, {"12", "5"},
                             {"12.0Gb/s", "5"}};

const CodeMap kMediaTypes = {{"N/A", "0"}, {"HDD", "2"}, {"SMR", "2"}, {"Rotational", "2"}, {"SSD", "3"},
                             {"Flash", "4"}};

const CodeMap kDriveStates = {{"N/A", "0"},
                              {"Unconfigured good", "2"},
                              {"Unconfigured bad", "3"},
                              {"Hot spare", "4"},
                              {"Offline", "5"},
                              {"Failed", "6"},
                              {"Rebuild", "7"},
                              {"Online", "8"},
                              {"Copyback", "9"},
                              {"System", "10"},
                              {"Shield unconfigured", "11"},
                              {"Shield hot spare", "12"},
                              {"Shield configured", "13"}};

const char* const kOther = "1";

std::string CodeOf(const CodeMap& codes, const std::string& word, const char* other)
{
    const CodeMap::const_iterator found = codes.find(word);
    return found == codes.end() ? other : found->second;
}

void EncodeDrive(opt::DiskDrive& drive)
{
    drive.DiskFormat = RaidCodes::LinkSpeedCode(drive.DiskFormat);
    drive.MediaType = RaidCodes::MediaTypeCode(drive.MediaType);
    drive.DiskState = RaidCodes::DriveStateCode(drive.DiskState);
}

void EncodeAdapter(opt::RaidAdapter& adapter)
{
    for (opt::Battery& battery : adapter.batteries) battery.BatteryType = RaidCodes::BatteryTypeCode(battery.BatteryType);
    for (opt::DiskDrive& drive : adapter.diskDrives) EncodeDrive(drive);
    for (opt::StoragePool& pool : adapter.storagePools) {
        pool.ArrayStatus = RaidCodes::ArrayStateCode(pool.ArrayStatus);
        for (opt::DiskDrive& drive : pool.drives) EncodeDrive(drive);
    }
}

}  // namespace

std::string RaidCodes::BatteryTypeCode(const std::string& word) { return CodeOf(kBatteryTypes, word, kBatteryOther); }

std::string RaidCodes::ArrayStateCode(const std::string& word) { return CodeOf(kArrayStates, word, kOther); }

std::string RaidCodes::LinkSpeedCode(const std::string& word) { return CodeOf(kLinkSpeeds, word, kOther); }

std::string RaidCodes::MediaTypeCode(const std::string& word) { return CodeOf(kMediaTypes, word, kOther); }

std::string RaidCodes::DriveStateCode(const std::string& word) { return CodeOf(kDriveStates, word, kOther); }

void RaidCodes::Encode(std::vector<opt::RaidAdapter>& adapters)
{
    for (opt::RaidAdapter& adapter : adapters) EncodeAdapter(adapter);
}

}  // namespace Agentless
}  // namespace XModule
