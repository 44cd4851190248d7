#include "xmodule/linux/edid.h"
#include "xmodule/linux/graphicsinventory.h"

#include "support/edidbuilder.h"
#include "support/fixturehost.h"
#include "support/golden.h"
#include "support/logcapture.h"
#include "support/sysfsfixture.h"
#include "support/tempdir.h"

#include <boost/algorithm/string/join.hpp>
#include <gtest/gtest.h>

#include <sstream>

using namespace XModule::Linux;
using XModule::protocol::Graphics;
using XModule::protocol::Monitor;

namespace {

const EdidTiming k1280x1024at60 = {10800, 1280, 408, 1024, 42, false};
const EdidTiming k1920x1080at60 = {14850, 1920, 280, 1080, 45, false};
const EdidTiming k1280x720at60 = {7425, 1280, 370, 720, 30, false};
const EdidTiming k1920x1080iAt60 = {7425, 1920, 280, 540, 22, true};

std::string Summary(const Edid& e)
{
    if (!e.headerFound) return "no EDID";
    std::ostringstream out;
    const EdidRangeLimits& r = e.rangeLimits;
    out << e.manufacturerId << ' ' << std::hex << e.productCode << std::dec << ' ' << e.serialNumber << " '" << e.name
        << "' #" << e.serialText << ' ' << e.year << (e.modelYear ? "model" : "") << "-W" << e.week << ' '
        << e.VersionText() << " dpms:" << (e.dpmsStandby ? 'S' : '-') << (e.dpmsSuspend ? 'U' : '-')
        << (e.dpmsActiveOff ? 'A' : '-');
    if (r.present)
        out << " range:" << r.minVerticalHz << '-' << r.maxVerticalHz << '/' << r.minHorizontalKHz << '-'
            << r.maxHorizontalKHz << '/' << r.maxPixelClockMHz;
    for (const EdidMode& m : e.modes) out << ' ' << m.width << 'x' << m.height << (m.interlaced ? "i" : "") << '@' << m.refresh;
    return out.str();
}

// A 1.3 office monitor: one preferred timing, a standard timing repeating an established one.
EdidContent OfficeMonitor()
{
    EdidContent c;
    c.productCode = 0xA07B; c.serialNumber = 1112748342; c.week = 12; c.year = 2008; c.revision = 3; c.features = 0xCA;
    c.establishedBits = 0xA54B00;
    c.standardTimings = {{0x81, 0x80}, {0x71, 0x4F}, {0x81, 0x8F}};
    c.timings = {k1280x1024at60};
    c.name = "DELL 1907FP"; c.serialText = "CY4046AN1BPL";
    c.rangeLimits = {true, 56, 76, 30, 81, 140};
    return c;
}

// A 1.4 television-like monitor with a CTA-861 extension.
EdidContent HdmiMonitor(unsigned extensionCount)
{
    EdidContent c;
    c.manufacturerId = "SAM"; c.productCode = 0x0F17; c.week = 0xFF; c.year = 2021; c.features = 0x2A;
    c.standardTimings = {{0xD1, 0xC0}, {0xB3, 0x00}};
    c.timings = {k1920x1080at60};
    c.name = "SAMSUNG";
    c.rangeLimits = {true, 24, 75, 15, 135, 600};
    c.extensionCount = extensionCount;
    return c;
}

std::string HdmiEdid(unsigned extensionCount)
{
    return EdidBaseBlock(HdmiMonitor(extensionCount)) +
           CtaExtensionBlock(VideoDataBlock({4, 16 | 0x80, 31, 97}), {k1280x720at60});
}

EdidContent OldInterlacedMonitor()
{
    EdidContent c;
    c.manufacturerId = "VSC"; c.productCode = 0x1234; c.week = 40; c.year = 1999; c.revision = 2;
    c.standardTimings = {{0x61, 0x00}};
    c.timings = {k1920x1080iAt60};
    return c;
}

std::string WithByte(std::string bytes, std::size_t at, char value)
{
    bytes[at] = value;
    return bytes;
}

const std::string kPciIds =
    "1002  Advanced Micro Devices, Inc. [AMD/ATI]\n"
    "\t6613  Oland PRO [Radeon R7 240/340 / Radeon 520]\n"
    "10de  NVIDIA Corporation\n"
    "\t1eb8  TU104GL [Tesla T4]\n"
    "8086  Intel Corporation\n"
    "\t1521  I350 Gigabit Network Connection\n";

const std::string kRadeon = "sys/devices/pci0000:00/0000:00:01.0/0000:01:00.0";
const std::string kNic = "sys/devices/pci0000:00/0000:00:1c.0/0000:02:00.0";

void WritePciFunction(const TempDir& dir, const std::string& folder, const std::string& attributes)
{
    WriteSysfsAttributes(dir, folder, attributes);
    WriteSysfsLink(dir, "sys/bus/pci/devices/" + folder.substr(folder.rfind('/') + 1), "../../../devices/" + folder.substr(12));
}

// An amdgpu card driving a VGA monitor (its HDMI output disconnected, with the EDID of a monitor
// unplugged from it left behind), a Tesla without driver and a network function.
void WriteDisplayHost(const TempDir& dir)
{
    dir.Write("usr/share/misc/pci.ids", kPciIds);
    WritePciFunction(dir, kRadeon, "vendor=0x1002;device=0x6613;class=0x030000;mem_info_vram_total=2147483648;"
                                   "vbios_version=113-C4480100-O06;"
                                   "resource=0x00000000e0000000 0x00000000efffffff 0x000000000014220c");
    WriteSysfsLink(dir, kRadeon + "/driver", "../../../../bus/pci/drivers/amdgpu");
    for (const char* node : {"card0", "renderD128"}) {
        WriteSysfsLink(dir, kRadeon + "/drm/" + node + "/device", "../../../0000:01:00.0");
        WriteSysfsLink(dir, std::string("sys/class/drm/") + node, "../../" + kRadeon.substr(4) + "/drm/" + node);
    }
    dir.Write("sys/class/drm/version", "drm 1.1.0 20060810\n");
    EdidContent console = OfficeMonitor();
    console.features = 0xEA;
    console.establishedBits = 0x210800;  // 640x480, 800x600 and 1024x768 at 60 Hz
    console.standardTimings.clear();
    console.serialText.clear();
    const std::pair<std::string, std::string> connectors[][2] = {
        {{"card0-HDMI-A-1", "status=disconnected;enabled=disabled;dpms=Off;modes="}, {"edid", HdmiEdid(1)}},
        {{"card0-VGA-1", "status=connected;enabled=enabled;dpms=On;modes=1280x1024\n1024x768\n800x600\n640x480"},
         {"edid", EdidBaseBlock(console)}}};
    for (const auto& connector : connectors) {
        const std::string folder = kRadeon + "/drm/card0/" + connector[0].first;
        WriteSysfsAttributes(dir, folder, connector[0].second);
        dir.Write(folder + "/edid", connector[1].second);
        WriteSysfsLink(dir, "sys/class/drm/" + connector[0].first, "../../" + folder.substr(4));
    }
    WritePciFunction(dir, "sys/devices/pci0000:00/0000:00:03.0/0000:3b:00.0",
                     "vendor=0x10de;device=0x1eb8;class=0x030200;resource="
                     "0x00000000c5000000 0x00000000c5ffffff 0x0000000000040200\n"
                     "0x0000038fe0000000 0x0000038fefffffff 0x000000000014220c\n"
                     "0x0000000000000000 0x0000000000000000 0x0000000000000000\n"
                     "0x0000038ff0000000 0x0000038ff1ffffff 0x000000000014220c");
    WritePciFunction(dir, kNic, "vendor=0x8086;device=0x1521;class=0x020000;"
                                "resource=0x00000000a0000000 0x00000000a00fffff 0x0000000000040200");
}

std::vector<std::string> Rows(const std::vector<Graphics>& graphics, const std::vector<Monitor>& monitors)
{
    std::vector<std::string> rows;
    for (const Graphics& g : graphics) {
        rows.push_back(g.Name + " | " + g.Location + " | " + g.Driver);
        for (const auto& c : g.controllers) {
            rows.push_back("  " + c.Name + " | " + c.Status + " | " + c.BiosString + " | " + c.MemorySize + " | " +
                           c.ChipType + " | " + c.DACType);
            for (const auto& h : c.heads)
                rows.push_back("    " + h.DisplayID + " | " + h.Monitor + " | " + h.HorizontalResolution + "x" +
                               h.VerticalResolution + " | " + h.ColorQuality + " | " + h.RefreshRate + " | " +
                               h.ScanMode + " | " + h.MinimumRefreshRate + "-" + h.MaximumRefreshRate);
        }
    }
    for (const Monitor& m : monitors) {
        rows.push_back(m.Description + " | " + m.Manufacturer + " | " + m.ManufacturingDate + " | " +
                       m.OperationalStatus + " | " + m.StatusDescriptions + " | " + m.DpmsActiveOff + m.DpmsStandby +
                       m.DpmsSuspend + " | " + m.EdidVersion);
        for (const auto& r : m.resolutions)
            rows.push_back("  " + r.HorizontalResolution + "x" + r.VerticalResolution + "@" + r.RefreshRate + " " +
                           r.ScanMode);
    }
    return rows;
}

}  // namespace

TEST(EdidTest, DecodesEveryTimingListAndListsWhatIsWrong)
{
    const std::string office = EdidBaseBlock(OfficeMonitor());
    const std::string officeDecoded =
        "DEL a07b 1112748342 'DELL 1907FP' #CY4046AN1BPL 2008-W12 1.3 dpms:SU- range:56-76/30-81/140 1280x1024@60 "
        "1152x864@75 1280x1024@75 720x400@70 640x480@60 640x480@75 800x600@60 800x600@75 1024x768@60 1024x768@75";
    const std::string officeCut =
        "DEL a07b 1112748342 'DELL 1907FP' # 2008-W12 1.3 dpms:SU- 1280x1024@60 "
        "1152x864@75 1280x1024@75 720x400@70 640x480@60 640x480@75 800x600@60 800x600@75 1024x768@60 1024x768@75";
    const std::string hdmiDecoded = "SAM f17 0 'SAMSUNG' # 2021model-W0 1.4 dpms:--A range:24-75/15-135/600 "
                                    "1920x1080@60 1280x720@60 1920x1080@50 3840x2160@60 1680x1050@60";
    struct Case { const char* name; std::string bytes; std::string decoded; std::string problems; } cases[] = {
        {"1.3 monitor with established and standard timings", office, officeDecoded, ""},
        {"1.4 monitor with a CTA-861 extension", HdmiEdid(1), hdmiDecoded, ""},
        {"interlaced timing, 1:1 standard timing before 1.3", EdidBaseBlock(OldInterlacedMonitor()),
         "VSC 1234 0 '' # 1999-W40 1.2 dpms:--- 1920x1080i@60 1024x1024@60", ""},
        {"wrong header", WithByte(office, 0, '\x01'), "no EDID", "block 0: header is not 00 ff ff ff ff ff ff 00"},
        {"bad checksum is noted, the block still decoded", WithByte(office, 127, static_cast<char>(office[127] + 1)),
         officeDecoded, "block 0: checksum is wrong: the block sums to 0x01, not 0x00"},
        {"cut at 100 bytes keeps the descriptors in whole", office.substr(0, 100), officeCut,
         "block 0: cut short at 100 of 128 bytes"},
        {"extension count beyond the blocks given", HdmiEdid(3), hdmiDecoded,
         "block 0: extension count 3, but 1 whole extension block(s) present"},
        {"extension block cut short", HdmiEdid(1).substr(0, 150), "SAM f17 0 'SAMSUNG' # 2021model-W0 1.4 dpms:--A "
                                                                  "range:24-75/15-135/600 1920x1080@60 1680x1050@60",
         "block 0: extension count 1, but 0 whole extension block(s) present | block 0: the EDID ends 22 bytes into block 1"},
        {"data block running past the collection",
         EdidBaseBlock(HdmiMonitor(1)) + CtaExtensionBlock(VideoDataBlock({16}) + "\x45\x01", {}),
         "SAM f17 0 'SAMSUNG' # 2021model-W0 1.4 dpms:--A range:24-75/15-135/600 1920x1080@60 1680x1050@60",
         "block 1: data block at byte 6 claims 5 bytes, past the end of the collection at byte 8"},
        {"no bytes", std::string(), "no EDID", "no EDID bytes"},
    };
    for (const Case& c : cases) {
        const Edid edid = ParseEdid(c.bytes);
        EXPECT_EQ(c.decoded, Summary(edid)) << c.name;
        EXPECT_EQ(c.problems, boost::algorithm::join(edid.problems, " | ")) << c.name;
    }
}

// EDIDs read from real monitors (the public linuxhw collection), each with a trait that builders miss.
TEST(EdidTest, RealMonitorsKeepWhatTheirOddBlocksHold)
{
    struct Case {
        const char* file;
        const char* identity;  // maker, name and serial descriptor
        const char* modesHeld;
        const char* modesAbsent;
        std::size_t problems;
    } cases[] = {
        // The serial number descriptor follows the timings of the CTA block.
        {"lg_ultrawide_2560x1080.bin", "GSM|LG ULTRAWIDE|701NTVS95983", "2560x1080@60 1920x1080i@50 640x480@75", "", 0},
        // EDID 1.0 with its four descriptors filled with 01 bytes: no 1x1 mode; 640x480 "at 72" runs at 72.8 Hz.
        {"sony_crt_edid10.bin", "SNY||", "800x600@85 640x480@73 1024x768i@87", "1x1@39 640x480@72", 4},
        // A TV that takes 4K at 50 and 60 Hz only in YCbCr 4:2:0.
        {"samsung_tv4k_y420vdb.bin", "SAM|SAMSUNG|", "3840x2160@30 3840x2160@60 4096x2160@50", "", 0},
    };
    for (const Case& c : cases) {
        const Edid edid = ParseEdid(ReadFile(std::string(KESTRO_TEST_FIXTURES) + "/edid/" + c.file));
        EXPECT_EQ(c.identity, edid.manufacturerId + "|" + edid.name + "|" + edid.serialText) << c.file;
        const std::string modes = Summary(edid) + " ";
        std::istringstream held(c.modesHeld), absent(c.modesAbsent);
        for (std::string mode; held >> mode;) EXPECT_NE(std::string::npos, modes.find(" " + mode + " ")) << c.file << " " << mode;
        for (std::string mode; absent >> mode;) EXPECT_EQ(std::string::npos, modes.find(" " + mode + " ")) << c.file << " " << mode;
        EXPECT_EQ(c.problems, edid.problems.size()) << c.file << ": " << boost::algorithm::join(edid.problems, " | ");
    }
}

TEST(GraphicsInventoryTest, NestsCardsConnectorsAndMonitorsUnderTheirDisplayFunctions)
{
    for (const bool display : {true, false}) {
        FixtureHost host("");
        if (display) {
            WriteDisplayHost(host.Dir());
        } else {
            host.Dir().Write("usr/share/misc/pci.ids", kPciIds);
            WritePciFunction(host.Dir(), kNic, "vendor=0x8086;device=0x1521;class=0x020000");
        }
        LogCapture log;
        std::vector<Graphics> graphics;
        std::vector<Monitor> monitors;
        CollectGraphics(graphics, monitors);
        std::string text;
        for (const std::string& row : Rows(graphics, monitors)) text += row + "\n";
        if (display) {
            EXPECT_TRUE(MatchesGolden("devices/graphics.txt", text));
        } else {
            EXPECT_EQ("", text);
        }
        EXPECT_EQ(0, log.Count("[repo]")) << log.Dump();
    }
}
