#include "xmodule/linux/graphicsinventory.h"

#include "support/edidbuilder.h"
#include "support/fixturehost.h"
#include "support/logcapture.h"

#include <boost/filesystem/operations.hpp>

#include <gtest/gtest.h>

using XModule::Linux::CollectGraphics;
using XModule::protocol::Graphics;
using XModule::protocol::Monitor;

namespace {

const std::string kPciIds =
    "1002  Advanced Micro Devices, Inc. [AMD/ATI]\n"
    "\t6613  Oland PRO [Radeon R7 240/340 / Radeon 520]\n"
    "10de  NVIDIA Corporation\n"
    "\t1eb8  TU104GL [Tesla T4]\n"
    "8086  Intel Corporation\n"
    "\t1521  I350 Gigabit Network Connection\n";

const std::string kRadeon = "sys/devices/pci0000:00/0000:00:01.0/0000:01:00.0";
const std::string kTesla = "sys/devices/pci0000:00/0000:00:03.0/0000:3b:00.0";
const std::string kNic = "sys/devices/pci0000:00/0000:00:1c.0/0000:02:00.0";

void Link(const TempDir& dir, const std::string& link, const std::string& target)
{
    const boost::filesystem::path path = dir.Path() + "/" + link;
    boost::filesystem::create_directories(path.parent_path());
    boost::filesystem::create_symlink(target, path);
}

void WritePciFunction(const TempDir& dir, const std::string& folder, const std::string& ids, const std::string& resource)
{
    const std::string address = folder.substr(folder.rfind('/') + 1);
    dir.Write(folder + "/vendor", "0x" + ids.substr(0, 4) + "\n");
    dir.Write(folder + "/device", "0x" + ids.substr(5, 4) + "\n");
    dir.Write(folder + "/class", "0x" + ids.substr(10) + "\n");
    dir.Write(folder + "/resource", resource);
    Link(dir, "sys/bus/pci/devices/" + address, "../../../devices/" + folder.substr(12));
}

void WriteConnector(const TempDir& dir, const std::string& name, const std::string& status, const std::string& enabled,
                    const std::string& dpms, const std::string& modes, const std::string& edid)
{
    const std::string folder = kRadeon + "/drm/card0/" + name;
    dir.Write(folder + "/status", status);
    dir.Write(folder + "/enabled", enabled);
    dir.Write(folder + "/dpms", dpms);
    dir.Write(folder + "/modes", modes);
    dir.Write(folder + "/edid", edid);
    Link(dir, "sys/class/drm/" + name, "../../" + folder.substr(4));
}

std::string ConsoleMonitorEdid()
{
    EdidContent c;
    c.productCode = 0xA07B;
    c.week = 12;
    c.year = 2008;
    c.revision = 3;
    c.features = 0xEA;
    c.establishedBits = 0x210800;  // 640x480, 800x600 and 1024x768 at 60 Hz
    c.timings = {{10800, 1280, 408, 1024, 42, false}};
    c.name = "DELL 1907FP";
    c.rangeLimits = {true, 56, 76, 30, 81, 140};
    return EdidBaseBlock(c);
}

// An amdgpu card driving a VGA monitor, a Tesla without driver and a network function.
void WriteHost(const TempDir& dir)
{
    dir.Write("usr/share/misc/pci.ids", kPciIds);
    WritePciFunction(dir, kRadeon, "1002 6613 030000",
                     "0x00000000e0000000 0x00000000efffffff 0x000000000014220c\n");
    dir.Write(kRadeon + "/mem_info_vram_total", "2147483648\n");
    dir.Write(kRadeon + "/vbios_version", "113-C4480100-O06\n");
    Link(dir, kRadeon + "/driver", "../../../../bus/pci/drivers/amdgpu");
    for (const char* node : {"card0", "renderD128"}) {
        Link(dir, kRadeon + "/drm/" + node + "/device", "../../../0000:01:00.0");
        Link(dir, std::string("sys/class/drm/") + node, "../../" + kRadeon.substr(4) + "/drm/" + node);
    }
    dir.Write("sys/class/drm/version", "drm 1.1.0 20060810\n");
    WriteConnector(dir, "card0-HDMI-A-1", "disconnected\n", "disabled\n", "Off\n", "", "");
    WriteConnector(dir, "card0-VGA-1", "connected\n", "enabled\n", "On\n", "1280x1024\n1024x768\n800x600\n640x480\n",
                   ConsoleMonitorEdid());

    WritePciFunction(dir, kTesla, "10de 1eb8 030200",
                     "0x00000000c5000000 0x00000000c5ffffff 0x0000000000040200\n"
                     "0x0000038fe0000000 0x0000038fefffffff 0x000000000014220c\n"
                     "0x0000000000000000 0x0000000000000000 0x0000000000000000\n"
                     "0x0000038ff0000000 0x0000038ff1ffffff 0x000000000014220c\n");
    WritePciFunction(dir, kNic, "8086 1521 020000",
                     "0x00000000a0000000 0x00000000a00fffff 0x0000000000040200\n");
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

TEST(GraphicsInventoryTest, NestsCardsConnectorsAndMonitorsUnderTheirDisplayFunctions)
{
    FixtureHost host("");
    WriteHost(host.Dir());
    std::vector<Graphics> graphics;
    std::vector<Monitor> monitors;
    CollectGraphics(graphics, monitors);
    const std::vector<std::string> expected = {
        "Advanced Micro Devices, Inc. [AMD/ATI] Oland PRO [Radeon R7 240/340 / Radeon 520] | 0000:01:00.0 | amdgpu",
        "  card0 (amdgpu) | OK | 113-C4480100-O06 | 2 GiB | Oland PRO [Radeon R7 240/340 / Radeon 520] | N/A",
        "    HDMI-A-1 | N/A | N/AxN/A | N/A | N/A | N/A | N/A-N/A",
        "    VGA-1 | DELL 1907FP | 1280x1024 | N/A | 60 | Progressive | 56-76",
        "NVIDIA Corporation TU104GL [Tesla T4] | 0000:3b:00.0 | N/A",
        "  N/A | No driver | N/A | 256 MiB | TU104GL [Tesla T4] | N/A",
        "DELL 1907FP | DEL (Dell) | 2008-W12 | On | OK | YesYesYes | 1.3",
        "  1280x1024@60 Progressive",
        "  640x480@60 Progressive",
        "  800x600@60 Progressive",
        "  1024x768@60 Progressive",
    };
    EXPECT_EQ(expected, Rows(graphics, monitors));
}

TEST(GraphicsInventoryTest, HostWithoutDisplayFunctionGivesNothingAndLogsNothing)
{
    FixtureHost host("");
    host.Dir().Write("usr/share/misc/pci.ids", kPciIds);
    WritePciFunction(host.Dir(), kNic, "8086 1521 020000", "");
    LogCapture log;
    std::vector<Graphics> graphics;
    std::vector<Monitor> monitors;
    CollectGraphics(graphics, monitors);
    EXPECT_EQ(std::vector<std::string>(), Rows(graphics, monitors));
    EXPECT_EQ(0, log.Count("[repo]")) << log.Dump();
}
