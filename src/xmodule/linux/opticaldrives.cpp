#include "xmodule/linux/opticaldrives.h"

#include "kestro/xmodule/log.h"
#include "kestro/xmodule/unreadable.h"
#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/valueformat.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>

#include <map>
#include <set>
#include <sstream>

namespace XModule {
namespace Linux {

namespace {

using protocol::OpticalDevice;

const char kCdromInfo[] = "/proc/sys/dev/cdrom/info";
const char kSysBlock[] = "/sys/block";
const char kDriveNameRow[] = "drive name";

// How each capability follows from the rows of the cdrom driver's table (drivers/cdrom/cdrom.c).
// No row says whether a drive reads CD-R, CD-RW or DVD-RAM discs, so those follow from rows that
// imply it: a drive reads what it writes, reading multisession discs means reading CD-R, and
// Mount Rainier (MRW) is a CD-RW format. Only a drive that reads no DVD at all is known not to
// read DVD-RAM; DVD-R discs read in any DVD drive.
struct CapabilityRule {
    std::string OpticalDevice::*field;
    const char* yesRows[2];  // a 1 in one of these says "Yes"
    const char* noRow;       // a 0 here says "No"; none when no row can deny it
};
const CapabilityRule kCapabilityRules[] = {
    {&OpticalDevice::DvdRamRead, {"Can write DVD-RAM", nullptr}, "Can read DVD"},
    {&OpticalDevice::DvdRRead, {"Can read DVD", nullptr}, "Can read DVD"},
    {&OpticalDevice::DvdRomRead, {"Can read DVD", nullptr}, "Can read DVD"},
    {&OpticalDevice::DvdRamWrite, {"Can write DVD-RAM", nullptr}, "Can write DVD-RAM"},
    {&OpticalDevice::DvdRWrite, {"Can write DVD-R", nullptr}, "Can write DVD-R"},
    {&OpticalDevice::CdRwRead, {"Can write CD-RW", "Can read MRW"}, nullptr},
    {&OpticalDevice::CdRRead, {"Can write CD-R", "Can read multisession"}, nullptr},
    {&OpticalDevice::CdRwWrite, {"Can write CD-RW", nullptr}, "Can write CD-RW"},
    {&OpticalDevice::CdRWrite, {"Can write CD-R", nullptr}, "Can write CD-R"},
};

// Row label to its values, one per drive column.
typedef std::map<std::string, std::vector<std::string> > InfoRows;

// "Can read DVD:\t\t1\t0" gives "Can read DVD" and {"1", "0"}. The title line has a colon too and
// makes a row that nothing asks for.
InfoRows ParseRows(const std::string& text)
{
    InfoRows rows;
    std::istringstream lines(text);
    std::string line;
    while (std::getline(lines, line)) {
        const std::size_t colon = line.find(':');
        if (colon == std::string::npos) continue;
        const std::string values = TrimText(line.substr(colon + 1));
        std::vector<std::string> cells;
        if (!values.empty()) boost::algorithm::split(cells, values, boost::algorithm::is_any_of(" \t"));
        rows.emplace(TrimText(line.substr(0, colon)), cells);
    }
    return rows;
}

std::string Cell(const InfoRows& rows, const char* label, std::size_t column)
{
    const auto row = rows.find(label);
    return row == rows.end() || column >= row->second.size() ? std::string() : row->second[column];
}

std::string DescribeCapability(const CapabilityRule& rule, const InfoRows& rows, std::size_t column)
{
    for (const char* row : rule.yesRows)
        if (row && Cell(rows, row, column) == "1") return "Yes";
    if (rule.noRow && Cell(rows, rule.noRow, column) == "0") return "No";
    return protocol::UNKNOWN_VALUE;
}

void LogShortRows(const InfoRows& rows, std::size_t drives)
{
    std::set<std::string> labels;
    for (const CapabilityRule& rule : kCapabilityRules) {
        for (const char* row : rule.yesRows)
            if (row) labels.insert(row);
        if (rule.noRow) labels.insert(rule.noRow);
    }
    for (const std::string& label : labels) {
        const auto row = rows.find(label);
        if (row != rows.end() && row->second.size() < drives)
            XLOG(XModule::LOG_WARN) << "[repo] cdrom info: row \"" << label << "\" has " << row->second.size()
                                    << " value(s) for " << drives << " drive(s)";
    }
}

void ReadMakerAndModel(OpticalDevice& drive)
{
    if (drive.DeviceID.find('/') != std::string::npos || drive.DeviceID == "..") return;
    const std::string folder = std::string(kSysBlock) + "/" + drive.DeviceID + "/device/";
    drive.Manufacturer = TextOrUnknown(HostFiles::ReadTrimmed(folder + "vendor"));
    drive.ProductName = TextOrUnknown(HostFiles::ReadTrimmed(folder + "model"));
}

}  // namespace

std::vector<OpticalDevice> ParseCdromInfo(const std::string& text)
{
    const InfoRows rows = ParseRows(text);
    const auto names = rows.find(kDriveNameRow);
    if (names == rows.end()) {
        XLOG(XModule::LOG_WARN) << "[repo] cdrom info has no \"" << kDriveNameRow << "\" row; no drive read from it";
        return std::vector<OpticalDevice>();
    }
    LogShortRows(rows, names->second.size());
    std::vector<OpticalDevice> drives(names->second.size());
    for (std::size_t column = 0; column < drives.size(); ++column) {
        drives[column].DeviceID = names->second[column];
        for (const CapabilityRule& rule : kCapabilityRules)
            drives[column].*rule.field = DescribeCapability(rule, rows, column);
    }
    return drives;
}

void CollectOpticalDevices(std::vector<OpticalDevice>& drives)
{
    if (!HostFiles::Exists(kCdromInfo)) return;
    std::string text;
    std::string why;
    if (!HostFiles::Read(kCdromInfo, text, &why)) {
        NoteUnreadable(kCdromInfo, why);
        return;
    }
    for (OpticalDevice& drive : ParseCdromInfo(text)) {
        ReadMakerAndModel(drive);
        drives.push_back(drive);
    }
}

}  // namespace Linux
}  // namespace XModule
