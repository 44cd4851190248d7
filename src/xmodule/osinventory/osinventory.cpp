#include "xmodule/osinventory/osinventory.h"

#include "xmodule/hardwareinventory/hardwareinventory.h"
#include "xmodule/linux/bootconfiguration.h"
#include "xmodule/linux/environmentvariables.h"
#include "xmodule/linux/initsystem.h"
#include "xmodule/linux/installedpackages.h"
#include "xmodule/linux/kernelmodules.h"
#include "xmodule/linux/kernelringbuffer.h"
#include "xmodule/linux/meminfo.h"
#include "xmodule/linux/processes.h"
#include "xmodule/linux/swaps.h"
#include "xmodule/linux/systemlog.h"
#include "xmodule/linux/systemservices.h"
#include "xmodule/linux/timezone.h"
#include "xmodule/linux/usersessions.h"

namespace XModule {
namespace Osinventory {

Osinventory::Osinventory(const ConnectionInfo& connection)
    : local(Hardwareinventory::Hardwareinventory::IsLocal(connection))
{
}

int Osinventory::GetActiveUser(std::vector<protocol::ActiveUserInfo>& users)
{
    if (!local) return OS_NOT_LOCAL;
    Linux::CollectActiveUsers(users);
    return OS_OK;
}

int Osinventory::RetrieveCurrentUser(protocol::CurrentUserInfo& user)
{
    if (!local) return OS_NOT_LOCAL;
    Linux::CollectCurrentUser(user);
    return OS_OK;
}

int Osinventory::GetMemoryUtilization(protocol::MemoryUtilizationInfo& memory)
{
    if (!local) return OS_NOT_LOCAL;
    Linux::CollectMemoryUtilization(memory);
    return OS_OK;
}

int Osinventory::GetOsConfiguration(protocol::BootConfigurationInfo& boot)
{
    if (!local) return OS_NOT_LOCAL;
    Linux::CollectBootConfiguration(boot);
    return OS_OK;
}

int Osinventory::GetInitConfiguration(protocol::InitConfigurationInfo& init)
{
    if (!local) return OS_NOT_LOCAL;
    Linux::CollectInitConfiguration(init);
    return OS_OK;
}

int Osinventory::GetPageFile(std::vector<protocol::PageFileInfo>& files)
{
    if (!local) return OS_NOT_LOCAL;
    Linux::CollectPageFiles(files);
    return OS_OK;
}

int Osinventory::GetProcess(std::vector<protocol::ProcessInfo>& processes)
{
    if (!local) return OS_NOT_LOCAL;
    Linux::CollectProcesses(processes);
    return OS_OK;
}

int Osinventory::GetSystemEnvironmentVariable(std::vector<protocol::EnvironmentVariableInfo>& variables)
{
    if (!local) return OS_NOT_LOCAL;
    std::vector<protocol::EnvironmentVariableInfo> user;
    Linux::CollectEnvironment(variables, user);
    return OS_OK;
}

int Osinventory::GetUserEnvironmentVariable(std::vector<protocol::EnvironmentVariableInfo>& variables)
{
    if (!local) return OS_NOT_LOCAL;
    std::vector<protocol::EnvironmentVariableInfo> system;
    Linux::CollectEnvironment(system, variables);
    return OS_OK;
}

int Osinventory::GetSystemService(std::vector<protocol::SystemServiceInfo>& services)
{
    if (!local) return OS_NOT_LOCAL;
    Linux::CollectSystemServices(services);
    return OS_OK;
}

int Osinventory::GetTimeZone(protocol::TimeZoneInfo& zone)
{
    if (!local) return OS_NOT_LOCAL;
    Linux::CollectTimeZone(zone);
    return OS_OK;
}

int Osinventory::GetInstalledPackage(std::vector<protocol::InstalledPackageInfo>& packages)
{
    if (!local) return OS_NOT_LOCAL;
    Linux::CollectInstalledPackages(packages);
    return OS_OK;
}

int Osinventory::GetKernelModule(std::vector<protocol::KernelModuleInfo>& modules)
{
    if (!local) return OS_NOT_LOCAL;
    Linux::CollectKernelModules(modules);
    return OS_OK;
}

int Osinventory::GetKernelRingBuffer(protocol::KernelRingBufferInfo& buffer)
{
    if (!local) return OS_NOT_LOCAL;
    Linux::CollectKernelRingBuffer(buffer);
    return OS_OK;
}

int Osinventory::GetSystemLog(std::vector<protocol::EventInfo>& events)
{
    if (!local) return OS_NOT_LOCAL;
    Linux::CollectSystemLog(events, Linux::SystemLogReadLimit());
    return OS_OK;
}

}  // namespace Osinventory
}  // namespace XModule
