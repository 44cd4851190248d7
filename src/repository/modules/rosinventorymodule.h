#ifndef KESTRO_REPOSITORY_MODULES_ROSINVENTORYMODULE_H
#define KESTRO_REPOSITORY_MODULES_ROSINVENTORYMODULE_H

#include "kestro/repository/rmodule.h"
#include "kestro/xmodule/connectioninfo.h"
#include "xmodule/protocol/osinfo.h"

#include <set>
#include <string>
#include <vector>

namespace kestro {
namespace repository {

// What the operating system knows of itself: the system and its release, users, packages,
// services, processes, memory, kernel modules and logs. A Linux case offers the Linux types, a
// Windows case the Windows ones (whose tables show files of Windows hosts), ESXi its CIM pair.
class ROSInventoryModule : public RModule {
public:
    // The most events a full event page names in its heading: "all" lifts the limit.
    static const long ALL_EVENTS = 2147483647;
    // The default event page's heading number; the page holds one record more (see FillDefaultEvents).
    static const int DEFAULT_EVENTS = 512;

    std::string GetName() override;
    std::string GetDisplay() override;
    void DelDisuseResources() override;

    // The name of CIM's operating system type `number`; "Unknown" for a number outside the table.
    static std::string OperatingSystemName(int number);
    // KESTRO_EVENTLOG_MAX of global.config: "all" in any case, else its leading decimal number, else 0.
    static long EventLimit();
    static long EventLimitOf(int configResult, const std::string& configured);
    // The two forms of one log: `heading` is the text before the count, as "System Event (Current Events:".
    static void FillDefaultEvents(RRepository& repo, const char* type, const std::string& heading,
                                  const std::vector<XModule::protocol::EventInfo>& events);
    static void FillFullEvents(RRepository& repo, const char* type, const std::string& heading,
                               std::vector<XModule::protocol::EventInfo> events, long limit);

protected:
    void InitCallbacks() override;

private:
    // The enumeration and the table form of `type`.
    void Offer(const char* type, void (ROSInventoryModule::*enumerate)(RRepository&));
    static WrapCallback WrapOf(const std::string& type);
    void RegisterLinuxTypes();
    void RegisterWindowsTypes();
    void RegisterEsxiTypes();

    void EnumOperatingSystem(RRepository& repo);
    void EnumInstalledPackage(RRepository& repo);
    void EnumTimeZone(RRepository& repo);
    void EnumBootConfiguration(RRepository& repo);
    void EnumInitConfiguration(RRepository& repo);
    void EnumMemoryUtilization(RRepository& repo);
    void EnumPageFile(RRepository& repo);
    void EnumCurrentUser(RRepository& repo);
    void EnumActiveUser(RRepository& repo);
    void EnumKernelModule(RRepository& repo);
    void EnumSystemService(RRepository& repo);
    void EnumProcess(RRepository& repo);
    void EnumSystemEnvironmentVariable(RRepository& repo);
    void EnumUserEnvironmentVariable(RRepository& repo);
    void EnumKernelRingBuffer(RRepository& repo);
    void EnumLinuxEventLog(RRepository& repo);
    void EnumSystemEvent(RRepository& repo);
    void EnumWindowsOnly(RRepository& repo);
    void EnumEsxiOperatingSystem(RRepository& repo);
    void EnumEsxiInstalledPackage(RRepository& repo);

    // True the first time `enumeration` asks; every enumeration runs once in a module's life.
    bool StartOnce(const std::string& enumeration);
    // The system log, read once for both of its pages until the run's resources are dropped.
    const std::vector<XModule::protocol::EventInfo>& SystemLog(RRepository& repo);

    std::set<std::string> done;
    bool systemLogRead = false;
    std::vector<XModule::protocol::EventInfo> systemLog;
};

}  // namespace repository
}  // namespace kestro

#endif
