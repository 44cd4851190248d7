#ifndef KESTRO_XMODULE_OSINVENTORY_ESXIINVENTORY_H
#define KESTRO_XMODULE_OSINVENTORY_ESXIINVENTORY_H

#include "kestro/xmodule/connectioninfo.h"
#include "xmodule/protocol/osinfo.h"

#include <vector>

namespace XModule {
namespace Agentless {

// The operating system and packages of a VMware ESXi host, asked over its CIM service.
class EXSIInventory {
public:
    enum Result { ESXI_OK = 0, ESXI_NO_CIM_CLIENT = 2 };

    explicit EXSIInventory(const ConnectionInfo& connection);
    // This build speaks no CIM, so both give ESXI_NO_CIM_CLIENT and leave their lists empty.
    int GetOperationSystem(protocol::OperatingSystemInfo& os);
    int GetInstalledPackages(std::vector<protocol::InstalledPackageInfo>& packages);

private:
    ConnectionInfo connection;
};

}  // namespace Agentless
}  // namespace XModule

#endif
