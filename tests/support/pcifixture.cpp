#include "support/pcifixture.h"

#include "support/sysfsfixture.h"

#include <string>

namespace {

struct FixtureFunction {
    const char* address;
    const char* attributes;
    const char* driver;  // "" when none is bound
};

const FixtureFunction kFunctions[] = {
    {"0000:00:00.0", "vendor=0x8086;device=0x2021;class=0x060000;subsystem_vendor=0x1028;subsystem_device=0x0716;"
                     "revision=0x04", ""},
    {"0000:00:17.0", "vendor=0x8086;device=0xa182;class=0x010601;subsystem_vendor=0x1028;subsystem_device=0x0716;"
                     "revision=0x09", "ahci"},
    {"0000:03:00.0", "vendor=0x102b;device=0x0536;class=0x030000;subsystem_vendor=0x1028;subsystem_device=0x0716;"
                     "revision=0x04", "mgag200"},
    {"0000:19:00.0", "vendor=0x14e4;device=0x165f;class=0x020000;subsystem_vendor=0x1028;subsystem_device=0x04f7;"
                     "revision=0x00", "tg3"},
    {"0000:ff:00.0", "vendor=0xzz;device=0x2088;class=0x088000;subsystem_vendor=0x8086;subsystem_device=0x0000;"
                     "revision=0x04", ""},
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
    dir.Write("usr/share/misc/pci.ids", kPciIds);
    for (const FixtureFunction& function : kFunctions) {
        const std::string folder = std::string("devices/pci0000:00/") + function.address;
        WriteSysfsAttributes(dir, "sys/" + folder, function.attributes);
        WriteSysfsLink(dir, std::string("sys/bus/pci/devices/") + function.address, "../../../" + folder);
        if (*function.driver)
            WriteSysfsLink(dir, "sys/" + folder + "/driver",
                           std::string("../../../bus/pci/drivers/") + function.driver);
    }
}
