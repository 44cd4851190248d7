#include "xmodule/hardwareinventory/hardwareinventory.h"

#include "xmodule/agentless/redfishhardwarereader.h"

#include "xmodule/linux/blockdevices.h"
#include "xmodule/linux/dmiinventory.h"
#include "xmodule/linux/graphicsinventory.h"
#include "xmodule/linux/hwmonsensors.h"
#include "xmodule/linux/mountpoints.h"
#include "xmodule/linux/opticaldrives.h"
#include "xmodule/linux/otherdevices.h"
#include "xmodule/linux/powersupplies.h"
#include "xmodule/linux/scsidevices.h"
#include "xmodule/linux/usbdevices.h"

namespace XModule {
namespace Hardwareinventory {

namespace {

const char* const kLocalHosts[] = {"localhost", "127.0.0.1", "::1"};

}  // namespace

Hardwareinventory::Hardwareinventory(const ConnectionInfo& connection)
    : local(IsLocal(connection)), bmc(connection.isBmc ? new Agentless::RedfishHardwareReader(connection) : nullptr)
{
}

Hardwareinventory::~Hardwareinventory() = default;

bool Hardwareinventory::IsLocal(const ConnectionInfo& connection)
{
    if (connection.isBmc) return false;
    for (const char* host : kLocalHosts)
        if (connection.host == host) return true;
    return false;
}

bool Hardwareinventory::IsWhitleyPlatform() { return Linux::IsWhitleyPlatform(); }

int Hardwareinventory::GetComputerSystems(std::vector<protocol::ComputerSystem>& systems)
{
    if (bmc) return bmc->ReadComputerSystem(systems) ? HARDWARE_OK : HARDWARE_BMC_UNREADABLE;
    if (!local) return HARDWARE_NOT_LOCAL;
    Linux::CollectComputerSystems(systems);
    return HARDWARE_OK;
}

int Hardwareinventory::GetHardwareInfo(protocol::Hardwareinfo& info)
{
    if (bmc) return bmc->ReadHardware(info) ? HARDWARE_OK : HARDWARE_BMC_UNREADABLE;
    if (!local) return HARDWARE_NOT_LOCAL;
    Linux::CollectProcessors(info.processors);
    Linux::CollectMemory(info.memory);
    Linux::CollectFans(info.fans);
    // The firmware's own list stands in where the operating system has no sensor driver.
    if (info.fans.empty()) Linux::CollectSmbiosFans(info.fans);
    Linux::CollectPowerSupplies(info.power);
    if (info.power.empty()) Linux::CollectSmbiosPowerSupplies(info.power);
    Linux::CollectDisks(info.virtualDisks);
    Linux::CollectGraphics(info.graphics, info.monitors);
    Linux::CollectScsiDevices(info.systemDevices);
    Linux::CollectOpticalDevices(info.opticalDevices);
    Linux::CollectSystemCards(info.systemCards);
    Linux::CollectUsbDevices(info.usbHubs, info.usbDevices);
    Linux::CollectOtherPciDevices(info.otherDevices);
    return HARDWARE_OK;
}

int Hardwareinventory::GetMountPoints(std::vector<protocol::Volumes_MountPoints>& volumes)
{
    if (!local) return HARDWARE_NOT_LOCAL;
    Linux::CollectMountPoints(volumes);
    return HARDWARE_OK;
}

}  // namespace Hardwareinventory
}  // namespace XModule
