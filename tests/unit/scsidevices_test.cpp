#include "xmodule/linux/scsidevices.h"

#include "support/fixturehost.h"

#include <boost/filesystem/operations.hpp>
#include <gtest/gtest.h>

using namespace XModule::Linux;

TEST(ScsiDevicesTest, ParsesAddressesAndDeviceTypes)
{
    const struct {
        const char* name;
        const char* expected;  // "" when no address
    } addresses[] = {{"0:0:0:0", "0 0 0 0"}, {"10:2:33:1099511627776", "10 2 33 1099511627776"}, {"host0", ""},
                     {"target0:0:0", ""}, {"1:2:3:4:5", ""}, {"-1:0:0:0", ""}, {"1::0:0", ""}, {"a:b:c:d", ""},
                     {"", ""}};
    for (const auto& c : addresses) {
        ScsiAddress a;
        const bool parsed = ParseScsiAddress(c.name, a);
        const std::string text = parsed ? std::to_string(a.host) + " " + std::to_string(a.channel) + " " +
                                              std::to_string(a.target) + " " + std::to_string(a.lun)
                                        : std::string();
        EXPECT_EQ(c.expected, text) << c.name;
    }
    const char* const types[][2] = {{"0\n", "Direct-access block device"}, {"13", "Enclosure services"},
                                    {"8", "Medium changer"}, {"25", "25"}, {"x", "x"}, {"", "N/A"}};
    for (const auto& t : types) EXPECT_EQ(t[1], DescribeScsiDeviceType(t[0])) << t[0];
}

TEST(ScsiDevicesTest, ListsUnitsInAddressOrder)
{
    FixtureHost host("");
    const TempDir& dir = host.Dir();
    const std::string bus = "sys/bus/scsi/devices/";
    // The SATA disk as sysfs really shows it: a link into the device tree.
    const std::string disk = "sys/devices/pci0000:00/0000:00:17.0/ata1/host0/target0:0:0/0:0:0:0";
    for (const auto& file :
         {std::make_pair("type", "0\n"), std::make_pair("vendor", "ATA     \n"),
          std::make_pair("model", "SAMSUNG MZ7LH480\n"), std::make_pair("rev", "404Q\n"),
          std::make_pair("block/sda/dev", "8:0\n"), std::make_pair("scsi_generic/sg0/dev", "21:0\n")})
        dir.Write(disk + "/" + file.first, file.second);
    boost::filesystem::create_directories(dir.Path() + "/" + bus);
    boost::filesystem::create_directory_symlink(
        "../../../devices/pci0000:00/0000:00:17.0/ata1/host0/target0:0:0/0:0:0:0", dir.Path() + "/" + bus + "0:0:0:0");
    dir.Write("run/udev/data/b8:0",
              "E:ID_BUS=ata\nE:ID_SERIAL=SAMSUNG_MZ7LH480HAHQ-00005_S45PNA0M512345\n"
              "E:ID_SERIAL_SHORT=S45PNA0M512345\n");
    const char* const units[][7] = {
        // address, type, vendor, model, rev, device node and its numbers
        {"10:0:0:0", "0\n", "SEAGATE \n", "ST600MM0208     \n", "", "block/sdc/dev", "8:32\n"},
        {"2:0:8:0", "13\n", "LSI     \n", "VirtualSES      \n", "03  \n", "scsi_generic/sg2/dev", "21:2\n"},
        {"1:0:0:0", "5\n", "HL-DT-ST\n", "DVD+-RW GUD1N   \n", "LD02\n", "block/sr0/dev", "11:0\n"}};
    for (const auto& u : units) {
        const std::string unit = bus + u[0] + "/";
        const char* const names[] = {"type", "vendor", "model", "rev"};
        for (int i = 0; i < 4; ++i)
            if (*u[i + 1]) dir.Write(unit + names[i], u[i + 1]);
        dir.Write(unit + u[5], u[6]);
    }
    dir.Write("run/udev/data/b8:32", "E:ID_SCSI_SERIAL=W0M1ABCD0000E8372\nE:ID_SERIAL_SHORT=5000c500a1b2c3d5\n");
    for (const char* other : {"host0", "host1", "target0:0:0"})
        dir.Write(bus + other + "/uevent", "DEVTYPE=scsi_host\n");

    std::vector<XModule::protocol::SystemDevice> devices;
    CollectScsiDevices(devices);
    std::vector<std::string> rows;
    for (const auto& d : devices)
        rows.push_back(d.Name + "|" + d.DeviceType + "|" + d.ProductName + "|" + d.SerialNumber + "|" + d.Revision +
                       "|" + d.HostAdapterID + ":" + d.Bus + ":" + d.TargetID + ":" + d.Lun);
    const std::vector<std::string> expected = {
        "sda|Direct-access block device|ATA SAMSUNG MZ7LH480|S45PNA0M512345|404Q|0:0:0:0",
        "sr0|CD/DVD|HL-DT-ST DVD+-RW GUD1N|N/A|LD02|1:0:0:0", "sg2|Enclosure services|LSI VirtualSES|N/A|03|2:0:8:0",
        "sdc|Direct-access block device|SEAGATE ST600MM0208|W0M1ABCD0000E8372|N/A|10:0:0:0"};
    EXPECT_EQ(expected, rows);
}
