#ifndef KESTRO_REPOSITORY_MODULES_RHARDWAREINVENTORYMODULE_H
#define KESTRO_REPOSITORY_MODULES_RHARDWAREINVENTORYMODULE_H

#include "kestro/repository/rmodule.h"
#include "xmodule/protocol/hardwareinfo.h"

#include <string>
#include <vector>

namespace kestro {
namespace repository {

// What the operating system of the local host sees of its hardware: processors, memory, disks,
// graphics, monitors, buses and cards. One enumeration of any hardware type fills them all.
class RHardwareInventoryModule : public RModule {
public:
    RHardwareInventoryModule();

    std::string GetName() override;
    std::string GetDisplay() override;

    // "[manufacturer]-[product name]-[serial number]": the line that names the machine in the log.
    static std::string BracketText(const XModule::protocol::ComputerSystem& system);
    // A removable drive without a medium ("No Media", "Healthy (No Media)") is no volume.
    static bool IsVolumeShown(const XModule::protocol::Volumes_MountPoints& volume);

protected:
    void InitCallbacks() override;

private:
    void EnumComputerSystem(RRepository& repo);
    void EnumHardwareInstances(RRepository& repo);
    void EnumVolumes_MountPoints(RRepository& repo);

    void FillComputerSystemInstances(RRepository& repo, const std::vector<XModule::protocol::ComputerSystem>& systems);
    void FillHardwareInstances(RRepository& repo, const XModule::protocol::Hardwareinfo& info);
    void FillFanAndPowerInstances(RRepository& repo, const XModule::protocol::Hardwareinfo& info);
    void FillVirtualDiskInstances(RRepository& repo, const std::vector<XModule::protocol::VirtualDisk>& disks);
    void FillGraphicsInstances(RRepository& repo, const std::vector<XModule::protocol::Graphics>& graphics);
    void FillMonitorInstances(RRepository& repo, const std::vector<XModule::protocol::Monitor>& monitors);

    static void WrapGraphicsInstances(RInstancesWrapper& wrapper);
    static void WrapVideoControllerInstances(RInstancesWrapper& wrapper);

    bool computerSystemDone;
    bool hardwareDone;
    bool isWhitley;
};

}  // namespace repository
}  // namespace kestro

#endif
