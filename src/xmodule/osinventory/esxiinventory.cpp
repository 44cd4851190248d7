#include "xmodule/osinventory/esxiinventory.h"

namespace XModule {
namespace Agentless {

EXSIInventory::EXSIInventory(const ConnectionInfo& connection) : connection(connection) {}

int EXSIInventory::GetOperationSystem(protocol::OperatingSystemInfo&) { return ESXI_NO_CIM_CLIENT; }

int EXSIInventory::GetInstalledPackages(std::vector<protocol::InstalledPackageInfo>&) { return ESXI_NO_CIM_CLIENT; }

}  // namespace Agentless
}  // namespace XModule
