#ifndef KESTRO_XMODULE_OSINVENTORY_OSINVENTORY_H
#define KESTRO_XMODULE_OSINVENTORY_OSINVENTORY_H

#include "kestro/xmodule/connectioninfo.h"
#include "xmodule/protocol/osinfo.h"

#include <vector>

namespace XModule {
namespace Osinventory {

// What the operating system of a host knows of itself. Only the host the program runs on can be
// read; any other connection gives OS_NOT_LOCAL and nothing. Every call returns OS_OK otherwise:
// what a source could not give is left out and noted once in the log.
class Osinventory {
public:
    enum Result { OS_OK = 0, OS_NOT_LOCAL = 1 };

    explicit Osinventory(const ConnectionInfo& connection);

    int GetActiveUser(std::vector<protocol::ActiveUserInfo>& users);
    int RetrieveCurrentUser(protocol::CurrentUserInfo& user);
    int GetMemoryUtilization(protocol::MemoryUtilizationInfo& memory);
    // The boot configuration: the kernel command line and the boot loader's entries.
    int GetOsConfiguration(protocol::BootConfigurationInfo& boot);
    int GetInitConfiguration(protocol::InitConfigurationInfo& init);
    int GetPageFile(std::vector<protocol::PageFileInfo>& files);
    int GetProcess(std::vector<protocol::ProcessInfo>& processes);
    int GetSystemEnvironmentVariable(std::vector<protocol::EnvironmentVariableInfo>& variables);
    int GetUserEnvironmentVariable(std::vector<protocol::EnvironmentVariableInfo>& variables);
    int GetSystemService(std::vector<protocol::SystemServiceInfo>& services);
    int GetTimeZone(protocol::TimeZoneInfo& zone);
    int GetInstalledPackage(std::vector<protocol::InstalledPackageInfo>& packages);
    int GetKernelModule(std::vector<protocol::KernelModuleInfo>& modules);
    int GetKernelRingBuffer(protocol::KernelRingBufferInfo& buffer);
    // The system log, newest first, at most as many entries as the settings allow.
    int GetSystemLog(std::vector<protocol::EventInfo>& events);

private:
    bool local;
};

}  // namespace Osinventory
}  // namespace XModule

#endif
