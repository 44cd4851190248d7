#include "xmodule/osinventory/operatingsystem.h"

#include "xmodule/hardwareinventory/hardwareinventory.h"
#include "xmodule/linux/osbasics.h"

namespace XModule {
namespace XMOperatingSystem {

OperatingSystem::OperatingSystem(const ConnectionInfo& connection)
    : local(Hardwareinventory::Hardwareinventory::IsLocal(connection))
{
}

int OperatingSystem::GetOperatingSystem(protocol::OperatingSystemInfo& os)
{
    if (!local) return OS_NOT_LOCAL;
    Linux::CollectOperatingSystem(os);
    return OS_OK;
}

}  // namespace XMOperatingSystem
}  // namespace XModule
