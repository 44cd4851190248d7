#include "support/pcifixture.h"

#include <boost/filesystem.hpp>

#include <string>

namespace {

struct FixtureFunction {
    const char* address;
    const char* vendor;
    const char* device;
    const char* classCode;
    const char* subsystemVendor;
    const char* subsystemDevice;
    const char* revision;
    const char* driver;
};

const FixtureFunction kFunctions[] = {
    {"0000:00:00.0", "0x8086", "0x2021", "0x060000", "0x1028", "0x0716", "0x04", ""},
    {"0000:00:17.0", "0x8086", "0xa182", "0x010601", "0x1028", "0x0716", "0x09", "ahci"},
    {"0000:03:00.0", "0x102b", "0x0536", "0x030000", "0x1028", "0x0716", "0x04", "mgag200"},
    {"0000:19:00.0", "0x14e4", "0x165f", "0x020000", "0x1028", "0x04f7", "0x00", "tg3"},
    {"0000:ff:00.0", "0xzz", "0x2088", "0x088000", "0x8086", "0x0000", "0x04", ""},
};

const char kPciIds[] =
    "#\n#\tList of PCI ID's\n#\n\n"
    "1028  Dell\n"
    "102b  Matrox Electronics Systems Ltd.\n"
    "\t0536  Integrated Matrox G200eW3 Graphics Controller\n"
    "14e4  Broadcom Inc. and subsidiaries\n"
    "\t165f  NetXtreme BCM5720 Gigabit Ethernet PCIe\n"
    "\t\t1028 04f7  NetXtreme BCM5720 Gigabit Ethernet PCIe\n"
    "8086  Intel Corporation\n"
    "\t2020  Sky Lake-E DMI3 Registers\n"
    "\ta182  C620 Series Chipset Family SATA Controller [AHCI mode]\n"
    "C 01  Mass storage controller\n"
    "\t06  SATA controller\n"
    "\t\t01  AHCI 1.0\n"
    "C 02  Network controller\n"
    "\t00  Ethernet controller\n"
    "C 03  Display controller\n"
    "\t00  VGA compatible controller\n"
    "C 06  Bridge\n"
    "\t00  Host bridge\n";

}  // namespace

void WritePciFixture(const TempDir& dir)
{
    namespace fs = boost::filesystem;
    dir.Write("usr/share/misc/pci.ids", kPciIds);
    fs::create_directories(fs::path(dir.Path()) / "sys/bus/pci/devices");
    for (const FixtureFunction& f : kFunctions) {
        const std::string folder = std::string("sys/devices/pci0000:00/") + f.address;
        const std::pair<const char*, const char*> files[] = {
            {"vendor", f.vendor},
            {"device", f.device},
            {"class", f.classCode},
            {"subsystem_vendor", f.subsystemVendor},
            {"subsystem_device", f.subsystemDevice},
            {"revision", f.revision},
        };
        for (const auto& file : files) dir.Write(folder + "/" + file.first, std::string(file.second) + "\n");
        fs::create_symlink("../../../devices/pci0000:00/" + std::string(f.address),
                           fs::path(dir.Path()) / "sys/bus/pci/devices" / f.address);
        if (*f.driver)
            fs::create_symlink("../../../bus/pci/drivers/" + std::string(f.driver),
                               fs::path(dir.Path()) / folder / "driver");
    }
}
