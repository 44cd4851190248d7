#ifndef KESTRO_XMODULE_PROTOCOL_OSINFO_H
#define KESTRO_XMODULE_PROTOCOL_OSINFO_H

#include "xmodule/protocol/hardwareinfo.h"

#include <string>
#include <vector>

// The operating-system records a host's readers hand to the inventory modules. As with the
// hardware records, every field is formatted text and "N/A" stands for what could not be learnt.
namespace XModule {
namespace protocol {

struct OperatingSystemInfo {
    std::string ProductName = UNKNOWN_VALUE;       // os-release PRETTY_NAME
    std::string ComputerName = UNKNOWN_VALUE;      // host name
    std::string ReleaseId = UNKNOWN_VALUE;         // os-release VERSION_ID
    std::string Version = UNKNOWN_VALUE;           // kernel release
    std::string ServicePack = UNKNOWN_VALUE;
    std::string BuildNumber = UNKNOWN_VALUE;       // kernel build
    std::string Vendor = UNKNOWN_VALUE;
    std::string RegisteredOwner = UNKNOWN_VALUE;
    std::string ProductID = UNKNOWN_VALUE;         // machine id
    std::string InstallationDate = UNKNOWN_VALUE;
    std::string Uptime = UNKNOWN_VALUE;
    std::string TimeofLastBoot = UNKNOWN_VALUE;
    int OSType = 0;  // CIM's number of the kind of system: 36 for Linux, 0 when unknown
};

struct TimeZoneInfo {
    std::string CurrentTimeZone = UNKNOWN_VALUE;
    std::string LocalDateTime = UNKNOWN_VALUE;
    std::string GMTDateandTime = UNKNOWN_VALUE;
};

// Where the boot settings come from and what they hold (the kernel command line, the loader's entries).
struct BootConfigurationInfo {
    std::string BootDataSource = UNKNOWN_VALUE;
    std::string Contents = UNKNOWN_VALUE;
};

struct InitConfigurationInfo {
    std::string InitSystem = UNKNOWN_VALUE;     // "systemd 252", "SysV init"
    std::string DefaultTarget = UNKNOWN_VALUE;  // "graphical.target", runlevel "3"
    std::string SystemState = UNKNOWN_VALUE;    // "running", "degraded"
};

// Sizes in the form of the hardware records ("15.6 GiB"); counts as bare numbers.
struct MemoryUtilizationInfo {
    std::string PercentMemoryUtilization = UNKNOWN_VALUE;
    std::string TotalVirtualMemorySize = UNKNOWN_VALUE;
    std::string FreeVirtualMemory = UNKNOWN_VALUE;
    std::string SizeStoredInPagingFiles = UNKNOWN_VALUE;
    std::string FreeSpaceInPagingFiles = UNKNOWN_VALUE;
    std::string Handles = UNKNOWN_VALUE;
    std::string Threads = UNKNOWN_VALUE;
    std::string Processes = UNKNOWN_VALUE;
    std::string TotalVisibleMemorySize = UNKNOWN_VALUE;
    std::string FreePhysicalMemory = UNKNOWN_VALUE;
    std::string PhysicalMemorySystemCache = UNKNOWN_VALUE;
    std::string CommitChargeTotal = UNKNOWN_VALUE;
    std::string CommitChargeLimit = UNKNOWN_VALUE;
    std::string CommitChargePeak = UNKNOWN_VALUE;
    std::string KernelMemoryTotal = UNKNOWN_VALUE;
    std::string KernelMemoryPaged = UNKNOWN_VALUE;
    std::string KernelMemoryNonpaged = UNKNOWN_VALUE;
};

// One swap area.
struct PageFileInfo {
    std::string Name = UNKNOWN_VALUE;
    std::string Type = UNKNOWN_VALUE;  // "partition", "file"
    std::string Size = UNKNOWN_VALUE;
    std::string Used = UNKNOWN_VALUE;
    std::string Priority = UNKNOWN_VALUE;
};

struct CurrentUserInfo {
    std::string UserName = UNKNOWN_VALUE;
};

// One logged-in session.
struct ActiveUserInfo {
    std::string UserID = UNKNOWN_VALUE;
    std::string Description = UNKNOWN_VALUE;    // the account's full name (GECOS)
    std::string LastLogonDate = UNKNOWN_VALUE;
    std::string Domain = UNKNOWN_VALUE;         // the session's seat or terminal
    std::string LogonServer = UNKNOWN_VALUE;    // the remote host, "N/A" for a local login
};

struct InstalledPackageInfo {
    std::string Name = UNKNOWN_VALUE;
    std::string Version = UNKNOWN_VALUE;
    std::string InstallDate = UNKNOWN_VALUE;
    std::string Summary = UNKNOWN_VALUE;
    std::string Group = UNKNOWN_VALUE;    // dpkg's section, rpm's group
    std::string Size = UNKNOWN_VALUE;     // bytes, as a bare number
    std::string License = UNKNOWN_VALUE;
};

struct SystemServiceInfo {
    std::string Name = UNKNOWN_VALUE;
    std::string Description = UNKNOWN_VALUE;
    std::string State = UNKNOWN_VALUE;        // "active (running)", "inactive (dead)"
    std::string Startup = UNKNOWN_VALUE;      // "enabled", "disabled", "static", "masked"
    std::string Manufacturer = UNKNOWN_VALUE;
    std::string Version = UNKNOWN_VALUE;
    std::string InstallDate = UNKNOWN_VALUE;
    std::string FileSize = UNKNOWN_VALUE;     // of the unit or script file, in bytes
    std::string Path = UNKNOWN_VALUE;         // the unit or script file
};

struct ProcessInfo {
    std::string Name = UNKNOWN_VALUE;
    std::string Handle = UNKNOWN_VALUE;          // the process id
    std::string User = UNKNOWN_VALUE;
    std::string ExecutionState = UNKNOWN_VALUE;  // "Running", "Sleeping", ...
    std::string Priority = UNKNOWN_VALUE;
    std::string KernelModeTime = UNKNOWN_VALUE;  // milliseconds
    std::string UserModeTime = UNKNOWN_VALUE;    // milliseconds
    std::string MemoryUsage = UNKNOWN_VALUE;     // resident KB
    std::string CreationDate = UNKNOWN_VALUE;
};

struct EnvironmentVariableInfo {
    std::string Name = UNKNOWN_VALUE;
    std::string Value = UNKNOWN_VALUE;
};

struct KernelModuleInfo {
    std::string Name = UNKNOWN_VALUE;
    std::string Version = UNKNOWN_VALUE;
    std::string Size = UNKNOWN_VALUE;       // bytes, as a bare number
    std::string UsedBy = UNKNOWN_VALUE;     // the modules that hold it, "-" for none
    std::string State = UNKNOWN_VALUE;      // "Live", "Loading", "Unloading", "Built-in"
    std::string Parameters = UNKNOWN_VALUE;
};

// One entry of a log: the system log, or an application or security log where a host has one.
// Type is the severity in the words of the report's icons: "Error", "Warning", "Information".
struct EventInfo {
    std::string Type = UNKNOWN_VALUE;
    std::string MessageTimestamp = UNKNOWN_VALUE;  // ISO 8601, local time
    std::string Source = UNKNOWN_VALUE;            // the program or unit
    std::string Category = UNKNOWN_VALUE;          // the syslog facility
    std::string Message = UNKNOWN_VALUE;
    std::string EventID = UNKNOWN_VALUE;
    std::string User = UNKNOWN_VALUE;
    std::string Computer = UNKNOWN_VALUE;
};

// The kernel's ring buffer as one text.
struct KernelRingBufferInfo {
    std::string Source = UNKNOWN_VALUE;    // "/dev/kmsg" or "klogctl"
    std::string Contents = UNKNOWN_VALUE;  // one line per record, "[seconds] text"
};

}  // namespace protocol
}  // namespace XModule

#endif
