#include "repository/modules/rosinventorymodule.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rinstanceswrapper.h"
#include "kestro/repository/rrepository.h"
#include "kestro/xmodule/globalconfig.h"
#include "repository/modules/rhostconnection.h"
#include "repository/modules/rrecordfields.h"
#include "repository/modules/rtableforms.h"
#include "xmodule/osinventory/esxiinventory.h"
#include "xmodule/osinventory/operatingsystem.h"
#include "xmodule/osinventory/osinventory.h"
#include "xmodule/rlog.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/predicate.hpp>
#include <boost/bind/bind.hpp>

#include <algorithm>
#include <cstdlib>

namespace kestro {
namespace repository {

namespace {

namespace protocol = XModule::protocol;
using XModule::Osinventory::Osinventory;

const char kScope[] = "kestro::repository::ROSInventoryModule::";

const RRecordField<protocol::OperatingSystemInfo> kOperatingSystemFields[] = {
    {"ProductName", "Product Name", &protocol::OperatingSystemInfo::ProductName},
    {"ComputerName", "Computer Name", &protocol::OperatingSystemInfo::ComputerName},
    {"ReleaseId", "Release ID", &protocol::OperatingSystemInfo::ReleaseId},
    {"Version", "Version", &protocol::OperatingSystemInfo::Version},
    {"ServicePack", "Service Pack", &protocol::OperatingSystemInfo::ServicePack},
    {"BuildNumber", "Build Number", &protocol::OperatingSystemInfo::BuildNumber},
    {"Vendor", "Vendor", &protocol::OperatingSystemInfo::Vendor},
    {"RegisteredOwner", "Registered Owner", &protocol::OperatingSystemInfo::RegisteredOwner},
    {"ProductID", "Product ID", &protocol::OperatingSystemInfo::ProductID},
    {"InstallationDate", "Installation Date", &protocol::OperatingSystemInfo::InstallationDate},
    {"Uptime", "Uptime", &protocol::OperatingSystemInfo::Uptime, true},
    {"TimeofLastBoot", "Time of Last Boot", &protocol::OperatingSystemInfo::TimeofLastBoot},
};

// What an ESXi host states of its system over CIM.
const RRecordField<protocol::OperatingSystemInfo> kEsxiOperatingSystemFields[] = {
    {"Manufacturer", "Manufacturer", &protocol::OperatingSystemInfo::Vendor},
    {"Name", "Name", &protocol::OperatingSystemInfo::ProductName},
    {"VersionString", "VersionString", &protocol::OperatingSystemInfo::Version},
    {"BuildNumber", "BuildNumber", &protocol::OperatingSystemInfo::BuildNumber},
    {"LastStartTime", "Time of Last Boot", &protocol::OperatingSystemInfo::TimeofLastBoot},
};

const RRecordField<protocol::InstalledPackageInfo> kPackageFields[] = {
    {"Name", "Name", &protocol::InstalledPackageInfo::Name},
    {"Version", "Version", &protocol::InstalledPackageInfo::Version},
    {"InstallDate", "Install Date", &protocol::InstalledPackageInfo::InstallDate},
    {"Summary", "Summary", &protocol::InstalledPackageInfo::Summary},
    {"Group", "Group", &protocol::InstalledPackageInfo::Group},
    {"Size", "Size(byte)", &protocol::InstalledPackageInfo::Size},
    {"License", "License", &protocol::InstalledPackageInfo::License},
};

const RRecordField<protocol::TimeZoneInfo> kTimeZoneFields[] = {
    {"CurrentTimeZone", "CurrentTimeZone", &protocol::TimeZoneInfo::CurrentTimeZone},
    {"LocalDateTime", "LocalDateTime", &protocol::TimeZoneInfo::LocalDateTime, true},
    {"GMTDateandTime", "GMT Date and Time", &protocol::TimeZoneInfo::GMTDateandTime, true},
};

const RRecordField<protocol::BootConfigurationInfo> kBootFields[] = {
    {"BootDataSource", "Boot Data Source", &protocol::BootConfigurationInfo::BootDataSource},
    {"Contents", "Contents", &protocol::BootConfigurationInfo::Contents},
};

const RRecordField<protocol::InitConfigurationInfo> kInitFields[] = {
    {"InitSystem", "Init System", &protocol::InitConfigurationInfo::InitSystem},
    {"DefaultTarget", "Default Target", &protocol::InitConfigurationInfo::DefaultTarget},
    {"SystemState", "System State", &protocol::InitConfigurationInfo::SystemState},
};

const RRecordField<protocol::MemoryUtilizationInfo> kMemoryFields[] = {
    {"PercentMemoryUtilization", "Memory Utilization(%)", &protocol::MemoryUtilizationInfo::PercentMemoryUtilization, true},
    {"TotalVirtualMemorySize", "Total Virtual Memory Size", &protocol::MemoryUtilizationInfo::TotalVirtualMemorySize},
    {"FreeVirtualMemory", "Free Virtual Memory", &protocol::MemoryUtilizationInfo::FreeVirtualMemory, true},
    {"SizeStoredInPagingFiles", "Size Stored In Paging Files", &protocol::MemoryUtilizationInfo::SizeStoredInPagingFiles},
    {"FreeSpaceInPagingFiles", "Free Space In Paging Files", &protocol::MemoryUtilizationInfo::FreeSpaceInPagingFiles, true},
    {"Handles", "Handles", &protocol::MemoryUtilizationInfo::Handles, true},
    {"Threads", "Threads", &protocol::MemoryUtilizationInfo::Threads, true},
    {"Processes", "Processes", &protocol::MemoryUtilizationInfo::Processes, true},
    {"TotalVisibleMemorySize", "Total Visible Memory Size", &protocol::MemoryUtilizationInfo::TotalVisibleMemorySize},
    {"FreePhysicalMemory", "Free Physical Memory", &protocol::MemoryUtilizationInfo::FreePhysicalMemory, true},
    {"PhysicalMemorySystemCache", "Physical Memory System Cache",
     &protocol::MemoryUtilizationInfo::PhysicalMemorySystemCache, true},
    {"CommitChargeTotal", "Commit Charge Total", &protocol::MemoryUtilizationInfo::CommitChargeTotal, true},
    {"CommitChargeLimit", "Commit Charge Limit", &protocol::MemoryUtilizationInfo::CommitChargeLimit},
    {"CommitChargePeak", "Commit Charge Peak", &protocol::MemoryUtilizationInfo::CommitChargePeak, true},
    {"KernelMemoryTotal", "Kernel Memory Total", &protocol::MemoryUtilizationInfo::KernelMemoryTotal, true},
    {"KernelMemoryPaged", "Kernel Memory Paged", &protocol::MemoryUtilizationInfo::KernelMemoryPaged, true},
    {"KernelMemoryNonpaged", "Kernel Memory Nonpaged", &protocol::MemoryUtilizationInfo::KernelMemoryNonpaged, true},
};

const RRecordField<protocol::PageFileInfo> kPageFileFields[] = {
    {"Name", "Name", &protocol::PageFileInfo::Name},
    {"Type", "Type", &protocol::PageFileInfo::Type},
    {"Size", "Size", &protocol::PageFileInfo::Size},
    {"Used", "Used", &protocol::PageFileInfo::Used, true},
    {"Priority", "Priority", &protocol::PageFileInfo::Priority},
};

const RRecordField<protocol::CurrentUserInfo> kCurrentUserFields[] = {
    {"UserName", "User Name", &protocol::CurrentUserInfo::UserName},
};

const RRecordField<protocol::ActiveUserInfo> kActiveUserFields[] = {
    {"UserID", "User ID", &protocol::ActiveUserInfo::UserID},
    {"Description", "Description", &protocol::ActiveUserInfo::Description},
    {"LastLogonDate", "Last Logon Date", &protocol::ActiveUserInfo::LastLogonDate},
    {"Domain", "Domain", &protocol::ActiveUserInfo::Domain},
    {"LogonServer", "Logon Server", &protocol::ActiveUserInfo::LogonServer},
};

const RRecordField<protocol::KernelModuleInfo> kKernelModuleFields[] = {
    {"Name", "Name", &protocol::KernelModuleInfo::Name},
    {"Version", "Version", &protocol::KernelModuleInfo::Version},
    {"Size", "Size(byte)", &protocol::KernelModuleInfo::Size},
    {"UsedBy", "Used By", &protocol::KernelModuleInfo::UsedBy},
    {"State", "State", &protocol::KernelModuleInfo::State},
    {"Parameters", "Parameters", &protocol::KernelModuleInfo::Parameters},
};

const RRecordField<protocol::SystemServiceInfo> kServiceFields[] = {
    {"Name", "Name", &protocol::SystemServiceInfo::Name},
    {"Description", "Description", &protocol::SystemServiceInfo::Description},
    {"State", "State", &protocol::SystemServiceInfo::State},
    {"Startup", "Startup", &protocol::SystemServiceInfo::Startup},
    {"Manufacturer", "Manufacturer", &protocol::SystemServiceInfo::Manufacturer},
    {"Version", "Version", &protocol::SystemServiceInfo::Version},
    {"InstallDate", "InstallDate", &protocol::SystemServiceInfo::InstallDate},
    {"FileSize", "File Size (byte)", &protocol::SystemServiceInfo::FileSize},
    {"Path", "Path", &protocol::SystemServiceInfo::Path},
};

const RRecordField<protocol::ProcessInfo> kProcessFields[] = {
    {"Name", "Name", &protocol::ProcessInfo::Name, true},
    {"Handle", "Handle", &protocol::ProcessInfo::Handle, true},
    {"User", "User", &protocol::ProcessInfo::User, true},
    {"ExecutionState", "ExecutionState", &protocol::ProcessInfo::ExecutionState, true},
    {"Priority", "Priority", &protocol::ProcessInfo::Priority, true},
    {"KernelModeTime", "Kernel Mode Time (millisecond)", &protocol::ProcessInfo::KernelModeTime, true},
    {"UserModeTime", "User Mode Time (millisecond)", &protocol::ProcessInfo::UserModeTime, true},
    {"MemoryUsage", "Memory Usage (KB)", &protocol::ProcessInfo::MemoryUsage, true},
    {"CreationDate", "CreationDate", &protocol::ProcessInfo::CreationDate, true},
};

const RRecordField<protocol::EnvironmentVariableInfo> kVariableFields[] = {
    {"Name", "Name", &protocol::EnvironmentVariableInfo::Name},
    {"Value", "Value", &protocol::EnvironmentVariableInfo::Value},
};

const RRecordField<protocol::KernelRingBufferInfo> kRingBufferFields[] = {
    {"Source", "Source", &protocol::KernelRingBufferInfo::Source},
    {"Contents", "Contents", &protocol::KernelRingBufferInfo::Contents, true},
};

const RRecordField<protocol::EventInfo> kLinuxEventFields[] = {
    {"MessageTimestamp", "Time", &protocol::EventInfo::MessageTimestamp, true},
    {"Type", "Severity", &protocol::EventInfo::Type, true},
    {"Source", "Source", &protocol::EventInfo::Source, true},
    {"Message", "Message", &protocol::EventInfo::Message, true},
};

// After the icon column "T", which the page fills from the Type value. Every event is one of a
// run: all its values count as volatile.
const RRecordField<protocol::EventInfo> kEventFields[] = {
    {"Type", "Type", &protocol::EventInfo::Type},
    {"MessageTimestamp", "MessageTimestamp", &protocol::EventInfo::MessageTimestamp},
    {"Source", "Source", &protocol::EventInfo::Source},
    {"Category", "Category", &protocol::EventInfo::Category},
    {"Message", "Message", &protocol::EventInfo::Message},
    {"EventID", "Event ID", &protocol::EventInfo::EventID},
    {"User", "User", &protocol::EventInfo::User},
    {"Computer", "Computer", &protocol::EventInfo::Computer},
};

// CIM's operating system types by number (OSType), as Windows names them; 4 has no name and 78
// and 79 name the same system.
const char* const kOperatingSystemNames[] = {
    "Unknown", "Other", "MACOS", "ATTUNIX", "", "DECNT", "Tru64 UNIX", "OpenVMS", "HPUX", "AIX", "MVS", "OS400",
    "OS/2", "JavaVM", "MSDOS", "Windows 3x", "Windows 95", "Windows 98", "Windows NT", "Windwos CE", "NCR3000",
    "NetWare", "OSF", "DC", "Reliant UNIX", "SCO UnixWare", "SCO OpenServer", "Sequent", "IRIX", "Solaris", "SunOS",
    "U6000", "ASERIES", "TandemNSK", "TandemNT", "BS2000", "LINUX", "Lynx", "XENIX", "VM", "Interactive UNIX",
    "BSDUNIX", "FreeBSD", "NetBSD", "GNU Hurd", "OS9", "MACH Kernel", "Inferno", "QNX", "EPOC", "IxWorks", "VxWorks",
    "MiNT", "BeOS", "HP MPE", "NextStep", "PalmPilot", "Rhapsody", "Windows 2000", "Dedicated", "OS/390", "VSE",
    "TPF", "Windows (R) Me", "Caldera Open UNIX", "OpenBSD", "Not Applicable", "Windows XP", "z/OS",
    "Windows Server 2003", "Windows Server 2003 64-bit", "Windows XP 64-bit", "Windows Server 2003 R2",
    "WindowsServer 2003 R2 64-bit", "Windows Vista 32-bit", "Windows Vista 64-bit", "Windows Server 2008 32-bit",
    "Windows Server 2008 64-bit", "Windows PE 32-bit", "Windows PE 32-bit", "Windows PE 64-bit",
    "VMWare ESX Server 64-bit", "Windows Server 2008 R2", "Windows 7", "Windows 2011 SBS", "Windows 8",
    "Windows Server 2012 R2 64-bit", "Windows Server 2012 64-bit", "Windows Server 2016",
    "Windows Server version 1709", "Windows Server version 1803", "Windows Server 2019", "Windows 8.1", "Windows 10",
    "Windows Server 2022", "Windows 11"
};

const char kSystemEventHeading[] = "System Event (Current Events:";

const RTableForm kForms[] = {
    {"OperatingSystem", true, {30, 1}, false, nullptr},
    {"BootConfiguration", true, {30, 1}, false, nullptr},
    {"TimeZone", true, {30, 1}, false, nullptr},
    {"CurrentUser", true, {30, 1}, false, nullptr},
    {"ActiveUser", true, {30, 1}, false, nullptr},
    {"InitConfiguration", true, {30, 1}, false, nullptr},
    {"KernelRingBuffer", true, {30, 1}, false, nullptr},
    {"MemoryUtilization", true, {40, 1}, false, nullptr},
    {"InstalledApplication", false, {40, 20, 20, 20}, false, nullptr},
    {"InstalledFix", false, {40, 20, 20, 20}, false, nullptr},
    {"InstalledPackage", false, {20, 20, 20, 40}, false, nullptr},
    {"LinuxEventLog", false, {20, 20, 20, 40}, false, nullptr},
    {"InstalledUpdatesForApp", false, {40, 30, 10, 10, 10}, true, nullptr},
    {"LinuxKernelModule", false, {10, 20, 10, 20, 10, 30}, true, nullptr},
    {"SystemEnvironmentVariable", false, {30, 70}, false, nullptr},
    {"UserEnvironmentVariable", false, {30, 70}, false, nullptr},
    {"PageFile", false, {30, 70}, false, nullptr},
    {"Process", false, {10, 12, 10, 12, 10, 12, 12, 10, 12}, true, nullptr},
    {"DeviceDriver", false, {8, 18, 6, 6, 10, 10, 10, 6, 6, 20}, true, nullptr},
    {"SystemService", false, {8, 18, 8, 8, 10, 10, 12, 8, 18}, true, nullptr},
};

bool IsLinuxCase(RInventoryCase c)
{
    const std::string name = RRepository::INVENTORY_CASES[c];
    return boost::algorithm::ends_with(name, "rhel") || boost::algorithm::ends_with(name, "sles") ||
           boost::algorithm::ends_with(name, "ubuntu");
}

RInstance MakeEvent(const char* type, const std::string& display, const protocol::EventInfo& event)
{
    RInstance instance(type, display, -1);
    instance.AddProperty("T", "T", std::string());
    for (const RRecordField<protocol::EventInfo>& field : kEventFields) {
        instance.AddProperty(field.key, field.display, event.*field.member, false);
        instance.AddPropertyAttr(field.key, RRepository::VOLATILE_ATTR);
    }
    return instance;
}

// Newest first; the time stamps are ISO 8601, so their text order is their time order.
bool IsNewer(const protocol::EventInfo& a, const protocol::EventInfo& b) { return a.MessageTimestamp > b.MessageTimestamp; }

// The one record of a single-record type.
template <class Record, std::size_t N>
void AddOne(RRepository& repo, const char* type, const char* display, const Record& record,
            const RRecordField<Record> (&fields)[N])
{
    MakeRecordInstance(type, display, -1, record, fields).AddToRepository(repo);
}

// Logs the entry and exit of an enumeration, as the module's tracing does.
class Traced {
public:
    explicit Traced(const char* function) : function(function) { XLOG(4) << "Entering  " << kScope << function; }
    ~Traced() { XLOG(4) << "Exiting  " << kScope << function; }

private:
    const char* function;
};

}  // namespace

std::string ROSInventoryModule::OperatingSystemName(int number)
{
    const int count = static_cast<int>(sizeof kOperatingSystemNames / sizeof kOperatingSystemNames[0]);
    return kOperatingSystemNames[number >= 0 && number < count ? number : 0];
}

std::string ROSInventoryModule::GetName() { return "ROSInventoryModule"; }

std::string ROSInventoryModule::GetDisplay() { return "OSInventory Module"; }

void ROSInventoryModule::DelDisuseResources()
{
    std::vector<protocol::EventInfo>().swap(systemLog);
    systemLogRead = false;
}

long ROSInventoryModule::EventLimit()
{
    std::string configured;
    const int result = XModule::GlobalConfig::GetConfigItem("KESTRO_EVENTLOG_MAX", configured);
    return EventLimitOf(result, configured);
}

long ROSInventoryModule::EventLimitOf(int configResult, const std::string& configured)
{
    if (configResult != 0) return 0;
    const std::string lowered = boost::algorithm::to_lower_copy(configured);
    if (lowered == "all") return ALL_EVENTS;
    return std::atol(lowered.c_str());
}

void ROSInventoryModule::FillDefaultEvents(RRepository& repo, const char* type, const std::string& heading,
                                           const std::vector<protocol::EventInfo>& events)
{
    const std::string display = heading + std::to_string(DEFAULT_EVENTS) + ")";
    int count = 0;
    // The counter is raised before it is compared, so the page holds one record above its heading.
    for (const protocol::EventInfo& event : events) {
        MakeEvent(type, display, event).AddToRepository(repo);
        if (++count > DEFAULT_EVENTS) break;
    }
}

void ROSInventoryModule::FillFullEvents(RRepository& repo, const char* type, const std::string& heading,
                                        std::vector<protocol::EventInfo> events, long limit)
{
    std::stable_sort(events.begin(), events.end(), &IsNewer);
    const long shown = limit == ALL_EVENTS ? static_cast<long>(events.size()) : limit;
    const std::string display = heading + std::to_string(shown) + ")";
    for (const protocol::EventInfo& event : events) MakeEvent(type, display, event).AddToRepository(repo);
}

RModule::WrapCallback ROSInventoryModule::WrapOf(const std::string& type)
{
    if (type.compare(0, 13, "SecurityEvent") == 0) return &RTableForms::WrapSecurityEvent;
    if (type.find("EventDefault") != std::string::npos || type.find("EventAll") != std::string::npos)
        return &RTableForms::WrapApplicationSystemEvent;
    for (const RTableForm& form : kForms)
        if (type == form.type) return boost::bind(&RTableForms::Apply, boost::cref(form), boost::placeholders::_1);
    return WrapCallback();
}

void ROSInventoryModule::Offer(const char* type, void (ROSInventoryModule::*enumerate)(RRepository&))
{
    TypeCallbacks& callbacks = typeCallbacks[type];
    callbacks.enumCallback = boost::bind(enumerate, this, boost::placeholders::_1);
    callbacks.wrapCallback = WrapOf(type);
}

void ROSInventoryModule::InitCallbacks()
{
    if (inventoryCase == CaseEsxi)
        RegisterEsxiTypes();
    else if (IsLinuxCase(inventoryCase))
        RegisterLinuxTypes();
    else
        RegisterWindowsTypes();
}

void ROSInventoryModule::RegisterLinuxTypes()
{
    typedef ROSInventoryModule M;
    const struct {
        const char* type;
        void (M::*enumerate)(RRepository&);
    } types[] = {
        {"OperatingSystem", &M::EnumOperatingSystem},
        {"InstalledPackage", &M::EnumInstalledPackage},
        {"TimeZone", &M::EnumTimeZone},
        {"BootConfiguration", &M::EnumBootConfiguration},
        {"InitConfiguration", &M::EnumInitConfiguration},
        {"MemoryUtilization", &M::EnumMemoryUtilization},
        {"PageFile", &M::EnumPageFile},
        {"CurrentUser", &M::EnumCurrentUser},
        {"ActiveUser", &M::EnumActiveUser},
        {"LinuxKernelModule", &M::EnumKernelModule},
        {"SystemService", &M::EnumSystemService},
        {"Process", &M::EnumProcess},
        {"SystemEnvironmentVariable", &M::EnumSystemEnvironmentVariable},
        {"UserEnvironmentVariable", &M::EnumUserEnvironmentVariable},
        {"KernelRingBuffer", &M::EnumKernelRingBuffer},
        {"LinuxEventLog", &M::EnumLinuxEventLog},
        {"SystemEventDefault", &M::EnumSystemEvent},
        {"SystemEventAll", &M::EnumSystemEvent},
    };
    for (const auto& entry : types) Offer(entry.type, entry.enumerate);
}

// The tables of a Windows host's files; this build gathers none of it.
void ROSInventoryModule::RegisterWindowsTypes()
{
    const char* const windowsTypes[] = {
        "OperatingSystem", "TimeZone", "BootConfiguration", "MemoryUtilization", "PageFile", "CurrentUser",
        "ActiveUser", "SystemService", "Process", "SystemEnvironmentVariable", "UserEnvironmentVariable",
        "DeviceDriver", "InstalledApplication", "InstalledFix", "InstalledUpdatesForApp",
        "ApplicationEventDefault", "ApplicationEventAll", "SystemEventDefault", "SystemEventAll",
        "SecurityEventDefault", "SecurityEventAll"};
    for (const char* type : windowsTypes) Offer(type, &ROSInventoryModule::EnumWindowsOnly);
}

void ROSInventoryModule::RegisterEsxiTypes()
{
    Offer("OperatingSystem", &ROSInventoryModule::EnumEsxiOperatingSystem);
    Offer("InstalledPackage", &ROSInventoryModule::EnumEsxiInstalledPackage);
}

bool ROSInventoryModule::StartOnce(const std::string& enumeration) { return done.insert(enumeration).second; }

void ROSInventoryModule::EnumOperatingSystem(RRepository& repo)
{
    Traced traced("EnumOperatingSystem");
    if (!StartOnce("OperatingSystem")) return;
    XModule::XMOperatingSystem::OperatingSystem reader(RHostConnection::Of(repo));
    protocol::OperatingSystemInfo os;
    const int ret = reader.GetOperatingSystem(os);
    RLOG(3) << "OperatingSystem::GetOperatingSystem() returns ret = " << ret;
    // A host that names itself nowhere is still named by its kind.
    if (os.ProductName == protocol::UNKNOWN_VALUE) os.ProductName = OperatingSystemName(os.OSType);
    AddOne(repo, "OperatingSystem", "Operating System", os, kOperatingSystemFields);
}

void ROSInventoryModule::EnumInstalledPackage(RRepository& repo)
{
    Traced traced("EnumInstalledPackage");
    if (!StartOnce("InstalledPackage")) return;
    std::vector<protocol::InstalledPackageInfo> packages;
    Osinventory(RHostConnection::Of(repo)).GetInstalledPackage(packages);
    AddRecordInstances(repo, "InstalledPackage", "Installed Packages", packages, kPackageFields);
}

void ROSInventoryModule::EnumTimeZone(RRepository& repo)
{
    Traced traced("EnumTimeZone");
    if (!StartOnce("TimeZone")) return;
    protocol::TimeZoneInfo zone;
    Osinventory(RHostConnection::Of(repo)).GetTimeZone(zone);
    AddOne(repo, "TimeZone", "Current Time Zone", zone, kTimeZoneFields);
}

void ROSInventoryModule::EnumBootConfiguration(RRepository& repo)
{
    Traced traced("EnumBootConfiguration");
    if (!StartOnce("BootConfiguration")) return;
    protocol::BootConfigurationInfo boot;
    Osinventory(RHostConnection::Of(repo)).GetOsConfiguration(boot);
    RInstance instance = MakeRecordInstance("BootConfiguration", "Boot Configuration", -1, boot, kBootFields);
    // The loader's entries keep their line breaks on the page.
    instance.AddPropertyAttr("Contents", "raw");
    instance.AddToRepository(repo);
}

void ROSInventoryModule::EnumInitConfiguration(RRepository& repo)
{
    Traced traced("EnumInitConfiguration");
    if (!StartOnce("InitConfiguration")) return;
    protocol::InitConfigurationInfo init;
    Osinventory(RHostConnection::Of(repo)).GetInitConfiguration(init);
    AddOne(repo, "InitConfiguration", "Init Configuration", init, kInitFields);
}

void ROSInventoryModule::EnumMemoryUtilization(RRepository& repo)
{
    Traced traced("EnumMemoryUtilization");
    if (!StartOnce("MemoryUtilization")) return;
    protocol::MemoryUtilizationInfo memory;
    Osinventory(RHostConnection::Of(repo)).GetMemoryUtilization(memory);
    AddOne(repo, "MemoryUtilization", "Memory Utilization", memory, kMemoryFields);
}

void ROSInventoryModule::EnumPageFile(RRepository& repo)
{
    Traced traced("EnumPageFile");
    if (!StartOnce("PageFile")) return;
    std::vector<protocol::PageFileInfo> files;
    Osinventory(RHostConnection::Of(repo)).GetPageFile(files);
    AddRecordInstances(repo, "PageFile", "Paging File", files, kPageFileFields);
}

void ROSInventoryModule::EnumCurrentUser(RRepository& repo)
{
    Traced traced("EnumCurrentUser");
    if (!StartOnce("CurrentUser")) return;
    protocol::CurrentUserInfo user;
    Osinventory(RHostConnection::Of(repo)).RetrieveCurrentUser(user);
    AddOne(repo, "CurrentUser", "Current User", user, kCurrentUserFields);
}

void ROSInventoryModule::EnumActiveUser(RRepository& repo)
{
    Traced traced("EnumActiveUser");
    if (!StartOnce("ActiveUser")) return;
    std::vector<protocol::ActiveUserInfo> users;
    Osinventory(RHostConnection::Of(repo)).GetActiveUser(users);
    AddRecordInstances(repo, "ActiveUser", "Active User Information", users, kActiveUserFields);
}

void ROSInventoryModule::EnumKernelModule(RRepository& repo)
{
    Traced traced("EnumKernelModule");
    if (!StartOnce("LinuxKernelModule")) return;
    std::vector<protocol::KernelModuleInfo> modules;
    Osinventory(RHostConnection::Of(repo)).GetKernelModule(modules);
    AddRecordInstances(repo, "LinuxKernelModule", "Kernel Modules", modules, kKernelModuleFields);
}

void ROSInventoryModule::EnumSystemService(RRepository& repo)
{
    Traced traced("EnumSystemService");
    if (!StartOnce("SystemService")) return;
    std::vector<protocol::SystemServiceInfo> services;
    Osinventory(RHostConnection::Of(repo)).GetSystemService(services);
    AddRecordInstances(repo, "SystemService", "System Services", services, kServiceFields);
}

void ROSInventoryModule::EnumProcess(RRepository& repo)
{
    Traced traced("EnumProcess");
    if (!StartOnce("Process")) return;
    std::vector<protocol::ProcessInfo> processes;
    Osinventory(RHostConnection::Of(repo)).GetProcess(processes);
    AddRecordInstances(repo, "Process", "Processes", processes, kProcessFields);
}

void ROSInventoryModule::EnumSystemEnvironmentVariable(RRepository& repo)
{
    Traced traced("EnumSystemEnvironmentVariable");
    if (!StartOnce("SystemEnvironmentVariable")) return;
    std::vector<protocol::EnvironmentVariableInfo> variables;
    Osinventory(RHostConnection::Of(repo)).GetSystemEnvironmentVariable(variables);
    AddRecordInstances(repo, "SystemEnvironmentVariable", "System Environment Variables", variables, kVariableFields);
}

void ROSInventoryModule::EnumUserEnvironmentVariable(RRepository& repo)
{
    Traced traced("EnumUserEnvironmentVariable");
    if (!StartOnce("UserEnvironmentVariable")) return;
    std::vector<protocol::EnvironmentVariableInfo> variables;
    Osinventory(RHostConnection::Of(repo)).GetUserEnvironmentVariable(variables);
    AddRecordInstances(repo, "UserEnvironmentVariable", "User Environment Variables", variables, kVariableFields);
}

void ROSInventoryModule::EnumKernelRingBuffer(RRepository& repo)
{
    Traced traced("EnumKernelRingBuffer");
    if (!StartOnce("KernelRingBuffer")) return;
    protocol::KernelRingBufferInfo buffer;
    Osinventory(RHostConnection::Of(repo)).GetKernelRingBuffer(buffer);
    RInstance instance = MakeRecordInstance("KernelRingBuffer", "Kernel Ring Buffer", -1, buffer, kRingBufferFields);
    instance.AddPropertyAttr("Contents", "raw");
    instance.AddToRepository(repo);
}

const std::vector<protocol::EventInfo>& ROSInventoryModule::SystemLog(RRepository& repo)
{
    if (!systemLogRead) {
        const int ret = Osinventory(RHostConnection::Of(repo)).GetSystemLog(systemLog);
        RLOG(3) << "Osinventory::GetSystemLog() returns ret = " << ret << ", " << systemLog.size() << " entries";
        systemLogRead = true;
    }
    return systemLog;
}

void ROSInventoryModule::EnumLinuxEventLog(RRepository& repo)
{
    Traced traced("EnumLinuxEventLog");
    if (!StartOnce("LinuxEventLog")) return;
    AddRecordInstances(repo, "LinuxEventLog", "System Log", SystemLog(repo), kLinuxEventFields);
}

void ROSInventoryModule::EnumSystemEvent(RRepository& repo)
{
    Traced traced("EnumSystemEvent");
    if (!StartOnce("SystemEvent")) return;
    const std::vector<protocol::EventInfo>& events = SystemLog(repo);
    FillDefaultEvents(repo, "SystemEventDefault", kSystemEventHeading, events);
    FillFullEvents(repo, "SystemEventAll", kSystemEventHeading, events, EventLimit());
}

void ROSInventoryModule::EnumWindowsOnly(RRepository&)
{
    if (StartOnce("WindowsOnly"))
        RLOG(2) << "The Windows inventory of this case is gathered on Windows hosts only; its types stay empty";
}

void ROSInventoryModule::EnumEsxiOperatingSystem(RRepository& repo)
{
    if (!StartOnce("EsxiOperatingSystem")) return;
    RLOG(3) << "EnumOperatingSystem for EXSI mode";
    const std::vector<XModule::ConnectionInfo>& connections = repo.GetCIMConnectionList();
    if (connections.empty()) {
        RLOG(2) << "in ROSInventoryModule::EnumOperatingSystem(), the connection_cim_vec is empty.";
        return;
    }
    protocol::OperatingSystemInfo os;
    const int ret = XModule::Agentless::EXSIInventory(connections.front()).GetOperationSystem(os);
    RLOG(3) << "return value of GetOperationSystem() = " << ret;
    AddOne(repo, "OperatingSystem", "Operating System", os, kEsxiOperatingSystemFields);
}

void ROSInventoryModule::EnumEsxiInstalledPackage(RRepository& repo)
{
    if (!StartOnce("EsxiInstalledPackage")) return;
    RLOG(3) << "EnumInstalledPackage for EXSI mode";
    const std::vector<XModule::ConnectionInfo>& connections = repo.GetCIMConnectionList();
    if (connections.empty()) {
        RLOG(2) << "in ROSInventoryModule::EnumInstalledPackage(), the connection_cim_vec is empty.";
        return;
    }
    std::vector<protocol::InstalledPackageInfo> packages;
    const int ret = XModule::Agentless::EXSIInventory(connections.front()).GetInstalledPackages(packages);
    RLOG(3) << "return value of GetInstalledPackages() = " << ret;
    AddRecordInstances(repo, "InstalledPackage", "Installed Packages", packages, kPackageFields);
}

}  // namespace repository
}  // namespace kestro
