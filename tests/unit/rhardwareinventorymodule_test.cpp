#include "repository/modules/rhardwareinventorymodule.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rinstanceswrapper.h"
#include "kestro/repository/rrepository.h"
#include "support/fixturehost.h"
#include "support/logcapture.h"
#include "support/sysfsfixture.h"

#include <gtest/gtest.h>

using namespace kestro::repository;

namespace {

// A host with two disks (two partitions on the first, one on the second) and a board fan.
void WriteDisksAndFan(const TempDir& root)
{
    WriteSysfsAttributes(root, "sys/block/sda", "size=937703088;queue/rotational=0;sda1/partition=1;sda1/start=2048;"
                                                "sda1/size=1048576;sda2/partition=2;sda2/start=1050624;sda2/size=936650752");
    WriteSysfsAttributes(root, "sys/block/sdb", "size=3907029168;queue/rotational=1;sdb1/partition=1;sdb1/start=2048;"
                                                "sdb1/size=3907026944");
    WriteSysfsAttributes(root, "sys/class/hwmon/hwmon0", "name=nct6779;fan1_input=1200");
}

}  // namespace

TEST(RHardwareInventoryModuleTest, OneEnumerationFillsEveryListOnceAndTiesChildrenToTheirParent)
{
    FixtureHost host("");
    WriteDisksAndFan(host.Dir());
    for (const bool whitley : {false, true}) {
        RRepository repo(ConnectLocal);
        repo.SetIsWhitleySystem(whitley);
        RHardwareInventoryModule module;
        LogCapture capture;
        module.EnumInstances("Memory", repo);
        module.EnumInstances("Partition", repo);
        EXPECT_TRUE(capture.Has(3, "[repo] Hardwareinventory::GetHardwareInfo() returns ret = 0")) << capture.Dump();
        EXPECT_TRUE(capture.Has(3, "[repo] Hardware has been enumerated!"));
        EXPECT_EQ(1, capture.Count("GetHardwareInfo() returns"));
        // Fans and power supplies are reported in band on Whitley systems only.
        EXPECT_EQ(whitley ? 1u : 0u, CountOf(repo, "FanInband"));

        std::vector<RInstance*> disks = repo.GetInstances("VirtualDisk");
        std::vector<RInstance*> partitions = repo.GetInstances("Partition");
        ASSERT_EQ(2u, disks.size());
        ASSERT_EQ(3u, partitions.size());
        EXPECT_EQ("Size ", disks[0]->GetPropertyDisplay("Size"));
        EXPECT_EQ("Format ", partitions[0]->GetPropertyDisplay("Format"));
        const int firstDisk = disks[0]->GetID();
        EXPECT_NE(firstDisk, disks[1]->GetID());
        EXPECT_TRUE(partitions[0]->HasReference("VirtualDisk", firstDisk));
        EXPECT_TRUE(partitions[1]->HasReference("VirtualDisk", firstDisk));
        EXPECT_TRUE(partitions[2]->HasReference("VirtualDisk", disks[1]->GetID()));
        repo.FreeInstances(disks);
        repo.FreeInstances(partitions);
    }
}

TEST(RHardwareInventoryModuleTest, ComputerSystemAndVolumesComeFromTheirOwnCallsAndOnlyFromThisHost)
{
    FixtureHost host("");
    RRepository repo(ConnectLocal);
    XModule::ConnectionInfo bmc;
    bmc.host = "bmc.example";
    repo.SetCIMConnectionList(std::vector<XModule::ConnectionInfo>(1, bmc));
    RHardwareInventoryModule module;
    LogCapture capture;
    module.EnumInstances("ComputerSystem", repo);
    module.EnumInstances("Volumes_MountPoints", repo);
    module.EnumInstances("ComputerSystem", repo);
    EXPECT_EQ(1, capture.Count("[repo] Hardwareinventory::GetComputerSystems() returns ret = 1")) << capture.Dump();
    EXPECT_TRUE(capture.Has(3, "[repo] Hardwareinventory::GetMountPoints() returns ret = 1"));
    EXPECT_TRUE(capture.Has(4, "Entering  kestro::repository::RHardwareInventoryModule::EnumComputerSystem"));
    EXPECT_EQ(0u, CountOf(repo, "ComputerSystem") + CountOf(repo, "Volumes_MountPoints"));
}

TEST(RHardwareInventoryModuleTest, VolumesWithoutMediaAndTheGraphicsWrapLines)
{
    XModule::protocol::Volumes_MountPoints volume;
    const struct {
        const char* status;
        bool shown;
    } cases[] = {{"Healthy", true}, {"No Media", false}, {"Healthy (No Media)", false}, {"no media", true}};
    for (const auto& c : cases) {
        volume.VolumeStatus = c.status;
        EXPECT_EQ(c.shown, RHardwareInventoryModule::IsVolumeShown(volume)) << c.status;
    }

    RHardwareInventoryModule module;
    LogCapture capture;
    RInstance graphics("Graphics", "Graphics", 0);
    graphics.AddProperty("Name", "Name", "Matrox G200eR2");
    std::vector<RInstance*> list(1, &graphics);
    RInstancesWrapper graphicsWrapper("Graphics", list, module.FindWrapCallback("Graphics"));
    RInstancesWrapper controllerWrapper("VideoController", list, module.FindWrapCallback("VideoController"));
    EXPECT_EQ(std::vector<std::string>(1, "VideoController"), graphicsWrapper.GetReferenceTypes());
    EXPECT_TRUE(capture.Has(4, "[repo] Stop RHardwareInventoryModule::WrapGraphicsInstances")) << capture.Dump();
    EXPECT_TRUE(capture.Has(4, "[repo] Start to RHardwareInventoryModule::WrapVideoControllerInstances"));
}
