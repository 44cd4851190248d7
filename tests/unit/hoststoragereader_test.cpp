#include "xmodule/linux/hoststoragereader.h"

#include "support/fixturehost.h"
#include "support/sysfsfixture.h"

#include <gtest/gtest.h>

using XModule::Linux::HostStorageReader;
namespace opt = XModule::XMOptions;

namespace {

// One adapter per line: its type and name, then per SSD its kind, product, capacity, location.
std::string Describe(const std::vector<opt::RaidAdapter>& adapters)
{
    std::string text;
    for (const opt::RaidAdapter& adapter : adapters) {
        text += adapter.ControllerType + " " + adapter.Name + ":";
        for (const opt::SSD& ssd : adapter.ssds)
            text += " [" + ssd.Type + "|" + ssd.ProductName + "|" + ssd.Manufacturer + "|" + ssd.Capacity + "|" +
                    ssd.Location + "|" + ssd.FirmwareVersion + "]";
        text += "\n";
    }
    return text;
}

}  // namespace

TEST(HostStorageReaderTest, NvmeControllersAndSolidStateDisksUnderTheRoot)
{
    struct Case {
        const char* what;
        std::vector<std::pair<std::string, std::string>> folders;  // folder, attributes
        std::string expected;
    };
    const Case cases[] = {
        {"nothing there", {}, ""},
        {"two namespaces add up; a missing model reads N/A",
         {{"sys/class/nvme/nvme1", "serial=X1;firmware_rev=1.0;address=0000:5e:00.0;nvme1n1/size=100;nvme1n2/size=50"}},
         "Direct_Attached_NVMe N/A: [NVMe|N/A|N/A|76800|PCI 0000:5e:00.0|1.0]\n"},
        {"SATA and SAS SSDs share one adapter; spinning disks, loop devices and disks without a queue stay out",
         {{"sys/block/sda", "size=8;queue/rotational=0;device/vendor=ATA     ;device/model=  SSD A  ;device/rev=R1"},
          {"sys/block/sdb", "size=4;queue/rotational=0;device/vendor=SEAGATE ;device/model=XS800;device/rev=K0"},
          {"sys/block/sdc", "size=4;queue/rotational=1;device/vendor=ATA"},
          {"sys/block/sdd", "size=4;device/vendor=ATA"},
          {"sys/block/loop0", "size=4;queue/rotational=0"}},
         "Direct_Attached_SATA Host SATA/SAS SSDs: [SATA|SSD A|N/A|4096|/dev/sda|R1] "
         "[SAS|XS800|SEAGATE|2048|/dev/sdb|K0]\n"},
        {"an unreadable size is unknown", {{"sys/class/nvme/nvme0", "model=M;nvme0n1/size=junk"}},
         "Direct_Attached_NVMe M: [NVMe|M|N/A|N/A|PCI N/A|N/A]\n"},
        {"native multipath names the namespace by its path; the generic char device is no namespace",
         {{"sys/class/nvme/nvme2", "model=P;nvme2c2n1/size=200;ng2n1/dev=240:0;nvme20n1/size=7"}},
         "Direct_Attached_NVMe P: [NVMe|P|N/A|102400|PCI N/A|N/A]\n"},
    };
    for (const Case& c : cases) {
        FixtureHost host("");
        for (const auto& folder : c.folders) WriteSysfsAttributes(host.Dir(), folder.first, folder.second);
        std::vector<opt::RaidAdapter> adapters;
        HostStorageReader::ReadNvmeControllers(adapters);
        HostStorageReader::ReadSolidStateDisks(adapters);
        EXPECT_EQ(c.expected, Describe(adapters)) << c.what;
    }
}
