#include "xmodule/linux/graphicsinventory.h"

#include "kestro/xmodule/log.h"
#include "kestro/xmodule/unreadable.h"
#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/pcidevices.h"
#include "xmodule/linux/valueformat.h"

#include <boost/algorithm/string/join.hpp>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace XModule {
namespace Linux {

namespace {

const char kDrmClass[] = "/sys/class/drm";

// Flags of a line of a PCI function's `resource` file (the kernel's IORESOURCE_* bits).
const std::uint64_t kMemoryResource = 0x200;
const std::uint64_t kPrefetchable = 0x2000;
// Lines after the six BARs describe the expansion ROM and bridge windows.
const std::size_t kBarCount = 6;

struct MonitorMaker {
    const char* id;
    const char* name;
};

// PNP ids of the makers most often met on servers' consoles and desks; others show the id alone.
const MonitorMaker kMonitorMakers[] = {
    {"ACR", "Acer"},     {"AOC", "AOC"},       {"AUS", "ASUS"},      {"BNQ", "BenQ"},    {"DEL", "Dell"},
    {"EIZ", "EIZO"},     {"FUS", "Fujitsu"},   {"GSM", "LG"},        {"HPN", "HP"},      {"HWP", "HP"},
    {"IVM", "iiyama"},   {"LEN", "Lenovo"},    {"NEC", "NEC"},       {"PHL", "Philips"}, {"SAM", "Samsung"},
    {"SNY", "Sony"},     {"VSC", "ViewSonic"}};

std::string ScanModeOf(bool interlaced) { return interlaced ? "Interlaced" : "Progressive"; }

bool ParseHex64(const char*& cursor, std::uint64_t& value)
{
    char* end = nullptr;
    value = std::strtoull(cursor, &end, 16);
    if (end == cursor) return false;
    cursor = end;
    return true;
}

bool ParseDecimal64(const std::string& text, std::uint64_t& value)
{
    if (text.empty() || !std::isdigit(static_cast<unsigned char>(text[0]))) return false;
    char* end = nullptr;
    value = std::strtoull(text.c_str(), &end, 10);
    return *end == '\0';
}

std::string DescribeManufacturer(const std::string& id)
{
    for (const MonitorMaker& maker : kMonitorMakers)
        if (id == maker.id) return id + " (" + maker.name + ")";
    return TextOrUnknown(id);
}

// ISO 8601 week form ("2019-W12"); the year alone for a model year or an unknown week.
std::string DescribeManufacturingDate(const Edid& edid)
{
    if (edid.year == 0) return protocol::UNKNOWN_VALUE;
    if (edid.modelYear || edid.week == 0) return std::to_string(edid.year);
    char text[32];
    std::snprintf(text, sizeof text, "%04u-W%02u", edid.year, edid.week);
    return text;
}

std::string DescribeModel(const Edid& edid)
{
    if (!edid.name.empty()) return edid.name;
    if (edid.manufacturerId.empty()) return protocol::UNKNOWN_VALUE;
    return edid.manufacturerId + " " + FormatHexId(edid.productCode);
}

std::vector<std::string> ListDrmEntries()
{
    const std::vector<std::string> names = HostFiles::List(kDrmClass);
    if (names.empty() && !HostFiles::Exists(kDrmClass)) NoteUnreadable(kDrmClass, "missing; display outputs are not listed");
    return names;
}

// "card0" but not "card0-VGA-1", "renderD128" or "version".
bool IsCardName(const std::string& name)
{
    return name.size() > 4 && name.compare(0, 4, "card") == 0 &&
           std::all_of(name.begin() + 4, name.end(), [](char c) { return std::isdigit(static_cast<unsigned char>(c)); });
}

std::vector<std::string> FindCards(const std::vector<std::string>& drmNames, const std::string& address)
{
    std::vector<std::string> cards;
    for (const std::string& name : drmNames)
        if (IsCardName(name) && HostFiles::ReadLinkName(std::string(kDrmClass) + "/" + name + "/device") == address)
            cards.push_back(name);
    return cards;
}

std::vector<std::string> FindConnectors(const std::vector<std::string>& drmNames, const std::string& card)
{
    const std::string prefix = card + "-";
    std::vector<std::string> connectors;
    for (const std::string& name : drmNames)
        if (name.size() > prefix.size() && name.compare(0, prefix.size(), prefix) == 0) connectors.push_back(name);
    return connectors;
}

std::string ReadMemorySize(const std::string& functionFolder)
{
    std::uint64_t bytes = 0;
    if (ParseDecimal64(HostFiles::ReadTrimmed(functionFolder + "/mem_info_vram_total"), bytes) && bytes > 0)
        return FormatBytes(bytes);
    std::string resource;
    if (HostFiles::Read(functionFolder + "/resource", resource)) bytes = ParseLargestPrefetchableBar(resource);
    return bytes > 0 ? FormatBytes(bytes) : std::string(protocol::UNKNOWN_VALUE);
}

// `card` is empty for a function that no DRM driver drives.
protocol::VideoController ReadController(const PciFunction& function, const std::string& card)
{
    const std::string folder = PciFunctionFolder(function);
    protocol::VideoController controller;
    if (!card.empty()) controller.Name = function.driver.empty() ? card : card + " (" + function.driver + ")";
    controller.Status = function.driver.empty() ? "No driver" : "OK";
    controller.BiosString = TextOrUnknown(HostFiles::ReadTrimmed(folder + "/vbios_version"));
    controller.MemorySize = ReadMemorySize(folder);
    controller.ChipType = function.DeviceName();
    return controller;
}

// A connected sink may have no EDID (a KVM switch, a BMC's virtual screen): no monitor then.
bool ReadConnectorEdid(const std::string& folder, Edid& edid)
{
    const std::string path = folder + "/edid";
    std::string bytes;
    std::string why;
    if (!HostFiles::Read(path, bytes, &why)) {
        NoteUnreadable(path, why);
        return false;
    }
    if (bytes.empty()) return false;
    edid = ParseEdid(bytes);
    if (!edid.problems.empty())
        XLOG(XModule::LOG_WARN) << "[repo] EDID of " << path << ": " << boost::algorithm::join(edid.problems, "; ");
    return edid.headerFound;
}

std::string ReadConnectorState(const std::string& folder)
{
    if (HostFiles::ReadTrimmed(folder + "/enabled") == "disabled") return "Off";
    return TextOrUnknown(HostFiles::ReadTrimmed(folder + "/dpms"));
}

void FillHeadMode(const std::string& modes, const Edid& edid, protocol::VideoHead& head)
{
    EdidMode shown;
    if (!ParseFirstMode(modes, shown)) return;
    head.HorizontalResolution = std::to_string(shown.width);
    head.VerticalResolution = std::to_string(shown.height);
    head.ScanMode = ScanModeOf(shown.interlaced);
    for (const EdidMode& mode : edid.modes) {
        if (mode.width == shown.width && mode.height == shown.height && mode.interlaced == shown.interlaced) {
            head.RefreshRate = std::to_string(mode.refresh);
            return;
        }
    }
}

protocol::VideoHead ReadHead(const std::string& connector, const std::string& card,
                             std::vector<protocol::Monitor>& monitors)
{
    const std::string folder = std::string(kDrmClass) + "/" + connector;
    protocol::VideoHead head;
    head.DisplayID = connector.substr(card.size() + 1);
    Edid edid;
    if (HostFiles::ReadTrimmed(folder + "/status") == "connected" && ReadConnectorEdid(folder, edid)) {
        monitors.push_back(DescribeMonitor(edid, ReadConnectorState(folder)));
        head.Monitor = monitors.back().Description;
        if (edid.rangeLimits.present) {
            head.MaximumRefreshRate = std::to_string(edid.rangeLimits.maxVerticalHz);
            head.MinimumRefreshRate = std::to_string(edid.rangeLimits.minVerticalHz);
        }
    }
    FillHeadMode(HostFiles::ReadTrimmed(folder + "/modes"), edid, head);
    return head;
}

protocol::Graphics ReadAdapter(const PciFunction& function, const std::vector<std::string>& drmNames,
                               std::vector<protocol::Monitor>& monitors)
{
    protocol::Graphics adapter;
    adapter.Name = function.VendorName() + " " + function.DeviceName();
    adapter.Location = function.address;
    adapter.Driver = TextOrUnknown(function.driver);
    const std::vector<std::string> cards = FindCards(drmNames, function.address);
    if (cards.empty()) adapter.controllers.push_back(ReadController(function, std::string()));
    for (const std::string& card : cards) {
        protocol::VideoController controller = ReadController(function, card);
        for (const std::string& connector : FindConnectors(drmNames, card))
            controller.heads.push_back(ReadHead(connector, card, monitors));
        adapter.controllers.push_back(controller);
    }
    return adapter;
}

}  // namespace

void CollectGraphics(std::vector<protocol::Graphics>& graphics, std::vector<protocol::Monitor>& monitors)
{
    std::vector<std::string> drmNames;
    bool drmListed = false;
    for (const PciFunction& function : ReadPciFunctions()) {
        if (function.ClassId() != PCI_CLASS_DISPLAY) continue;
        if (!drmListed) drmNames = ListDrmEntries();
        drmListed = true;
        graphics.push_back(ReadAdapter(function, drmNames, monitors));
    }
}

std::uint64_t ParseLargestPrefetchableBar(const std::string& resource)
{
    std::istringstream lines(resource);
    std::string line;
    std::uint64_t largest = 0;
    for (std::size_t bar = 0; bar < kBarCount && std::getline(lines, line); ++bar) {
        const char* cursor = line.c_str();
        std::uint64_t start = 0, end = 0, flags = 0;
        if (!ParseHex64(cursor, start) || !ParseHex64(cursor, end) || !ParseHex64(cursor, flags)) continue;
        const bool prefetchableMemory = (flags & kMemoryResource) && (flags & kPrefetchable);
        if (prefetchableMemory && end > start) largest = std::max(largest, end - start + 1);
    }
    return largest;
}

bool ParseFirstMode(const std::string& modes, EdidMode& mode)
{
    const std::string line = modes.substr(0, modes.find('\n'));
    const char* text = line.c_str();
    char* end = nullptr;
    const unsigned long width = std::strtoul(text, &end, 10);
    if (end == text || *end != 'x') return false;
    const char* heightText = end + 1;
    const unsigned long height = std::strtoul(heightText, &end, 10);
    if (end == heightText || width == 0 || height == 0 || width > 0xFFFF || height > 0xFFFF) return false;
    mode.width = static_cast<unsigned>(width);
    mode.height = static_cast<unsigned>(height);
    mode.refresh = 0;
    mode.interlaced = *end == 'i';
    return true;
}

protocol::Monitor DescribeMonitor(const Edid& edid, const std::string& state)
{
    protocol::Monitor monitor;
    monitor.Description = DescribeModel(edid);
    monitor.Manufacturer = DescribeManufacturer(edid.manufacturerId);
    monitor.ManufacturingDate = DescribeManufacturingDate(edid);
    monitor.OperationalStatus = TextOrUnknown(state);
    monitor.StatusDescriptions = edid.problems.empty() ? "OK" : boost::algorithm::join(edid.problems, "; ");
    monitor.DpmsActiveOff = FormatYesNo(edid.dpmsActiveOff);
    monitor.DpmsStandby = FormatYesNo(edid.dpmsStandby);
    monitor.DpmsSuspend = FormatYesNo(edid.dpmsSuspend);
    monitor.EdidVersion = TextOrUnknown(edid.VersionText());
    for (const EdidMode& mode : edid.modes) {
        protocol::Resolution resolution;
        resolution.HorizontalResolution = std::to_string(mode.width);
        resolution.VerticalResolution = std::to_string(mode.height);
        resolution.RefreshRate = std::to_string(mode.refresh);
        resolution.ScanMode = ScanModeOf(mode.interlaced);
        monitor.resolutions.push_back(resolution);
    }
    return monitor;
}

}  // namespace Linux
}  // namespace XModule
