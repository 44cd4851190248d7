#include "xmodule/osinventory/operatingsystem.h"

#include "xmodule/hardwareinventory/hardwareinventory.h"
#include "xmodule/linux/osbasics.h"

namespace XModule {
namespace XMOperatingSystem {

namespace {
const int kLinuxOSType = 36;
}

OperatingSystem::OperatingSystem(const ConnectionInfo& connection)
    : local(Hardwareinventory::Hardwareinventory::IsLocal(connection))
{
}

int OperatingSystem::GetOperatingSystem(protocol::OperatingSystemInfo& os)
{
    if (!local) return OS_NOT_LOCAL;
    Linux::CollectOperatingSystem(os);
    os.OSType = kLinuxOSType;
    return OS_OK;
}

}  // namespace XMOperatingSystem
}  // namespace XModule
