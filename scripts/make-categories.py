#!/usr/bin/env python3
"""Writes data/reportcategory_<case>.xml for every inventory case.

Each case is a list of sections; a section is a category of the navigator with its groups.
A group lists the instance types of the modules that the case builds, in the order the
report shows them. Run it again after changing a table and commit the files it writes.

Type marks:
  "Name"            collected and shown
  ("Name", LEGACY)  shown when a file read back holds it, never collected: the type has
                    no collector, and running it would raise
"""

import os
import sys
from xml.sax.saxutils import escape

LEGACY = "legacy"
HIDDEN = "hidden"


def group(name, display, types, *marks):
    return {"name": name, "display": display, "types": types, "marks": marks}


def section(name, display, *groups):
    return {"name": name, "display": display, "groups": list(groups)}


# Summary and the run's own log, shared by every case that reports a server.
SUMMARY = section(
    "summary", "Summary",
    group("system_overview", "System Overview", ["DataSource", "ReportHighlights"]),
)

# Last, so that the error lines of every group before it are in the log when it is read.
EXECUTION = section(
    "report", "Report",
    group("execution_log", "Execution Log", ["ExecutionErrorLog"]),
)

HARDWARE = section(
    "hardware", "Hardware",
    group("computer_system", "Computer System", ["ComputerSystem"], HIDDEN),
    group("processors", "Processors", ["Processor"]),
    group("memory", "Memory", ["Memory"]),
    group("fans_power", "Fans and Power", ["FanInband", "PowerInband"]),
    group("disks", "Disks and Partitions", ["VirtualDisk", "Partition"]),
    group("volumes", "Volumes/Mount Points", ["Volumes_MountPoints"]),
    group("graphics", "Graphics and Monitors",
          ["Graphics", "VideoController", "VideoHead", "Monitor", "Resolution"]),
    group("system_devices", "System Devices", ["SystemCard", "SystemDevice", "OpticalDevice", "OtherDevice"]),
    group("usb_devices", "USB Devices", ["UsbHub", "UsbDevice"]),
)

STORAGE_TYPES = [
    "StorageDevice", "StoragePool", "StorageVolume", "M2_7MM_StorageVolume", "StorageSoftwareIdentity",
    "StorageBattery", "StorageDiskDrive", "SSD", "NonRaidOrDirect",
    "LSIRawData", "SEACHESTRawData", "ARCCONFRawData", "MARVELLRawData", "RAIDSHOWRawData",
]

STORAGE = section("storage", "Storage", group("storage_devices", "Storage Devices", STORAGE_TYPES))

NETWORK = section(
    "network", "Network",
    group("pci_adapters", "PCI Adapters",
          ["PCIAdapter", "PCIPort", "PCISoftwareIdentity",
           "QlogicRawData", "EmulexRawData", "MellanoxRawData", "PciRawData"]),
)

BMC_LOGS = section(
    "bmc_logs", "BMC Logs",
    group("active_events", "Active System Events", ["QMMActiveEventsRest"]),
    group("bmc_platform_log", "BMC Platform Log", ["QMMPlatformLogRest", "QMMPlatformLog"]),
    group("bmc_audit_log", "BMC Audit Log", ["QMMAuditLogRest", "QMMAuditLog"]),
    group("maintenance_log", "Maintenance Log", ["MaintenanceLogRest"]),
    group("bmc_message_log", "BMC Message Log", ["QMMMessageLog", ("QMMMessageLogData", LEGACY)]),
)

WINDOWS_OS = section(
    "operating_system", "Operating System",
    group("operating_system", "Operating System",
          ["OperatingSystem", "TimeZone", "BootConfiguration", "MemoryUtilization", "PageFile"]),
    group("users", "Users", ["CurrentUser", "ActiveUser"]),
    group("installed_applications", "Installed Applications", ["InstalledApplication", "InstalledUpdatesForApp"]),
    group("installed_fixes", "Installed Hotfixes", ["InstalledFix"]),
    group("device_drivers", "Device Drivers", ["DeviceDriver"]),
    group("system_services", "System Services", ["SystemService"]),
    group("processes", "Processes", ["Process"]),
    group("environment_variables", "Environment Variables",
          ["SystemEnvironmentVariable", "UserEnvironmentVariable"]),
)


def event_pages(page, display, default_type, all_type, legacy_type):
    """A log's default page and its full page; the full one is reached from the default one's title."""
    return [
        group(page, display, [default_type, (legacy_type, LEGACY)]),
        group(page + "_all", display + " (All)", [all_type], HIDDEN),
    ]


WINDOWS_EVENTS = section(
    "event_logs", "Event Logs",
    *(event_pages("application_event", "Application Event", "ApplicationEventDefault", "ApplicationEventAll",
                  "ApplicationEvent")
      + event_pages("system_event", "System Event", "SystemEventDefault", "SystemEventAll", "SystemEvent")
      + event_pages("security_event", "Security Event", "SecurityEventDefault", "SecurityEventAll",
                    "SecurityEvent"))
)

LINUX_OS = section(
    "operating_system", "Operating System",
    group("operating_system", "Operating System",
          ["OperatingSystem", "TimeZone", "BootConfiguration", "InitConfiguration", "MemoryUtilization",
           "PageFile"]),
    group("users", "Users", ["CurrentUser", "ActiveUser"]),
    group("installed_packages", "Installed Packages", ["InstalledPackage"]),
    group("kernel_modules", "Kernel Modules", ["LinuxKernelModule"]),
    group("system_services", "System Services", ["SystemService"]),
    group("processes", "Processes", ["Process"]),
    group("environment_variables", "Environment Variables",
          ["SystemEnvironmentVariable", "UserEnvironmentVariable"]),
)

LINUX_LOGS = section(
    "system_logs", "System Logs",
    group("linux_event_log", "System Log", ["LinuxEventLog"]),
    *event_pages("system_event", "System Event", "SystemEventDefault", "SystemEventAll", "SystemEvent"),
    group("kernel_ring_buffer", "Kernel Ring Buffer", ["KernelRingBuffer"]),
)

# ESXi reports its operating system and packages through CIM; nothing else of the host's software.
ESXI_OS = section(
    "operating_system", "Operating System",
    group("operating_system", "Operating System", ["OperatingSystem"]),
    group("installed_packages", "Installed Packages", ["InstalledPackage"]),
)

# Out-of-band targets read over the BMC's Redfish service.
# Through the BMC the summary also names the machine itself.
CFC_SUMMARY = section(
    "summary", "Summary",
    group("system_overview", "System Overview", ["DataSource", "SystemVPD", "ReportHighlights"]),
)

CFC_HARDWARE = section(
    "hardware", "Hardware",
    group("processors", "Processors", ["Processor"]),
    group("memory", "Memory", ["Memory"]),
    group("fans", "Fans", ["Fan"]),
    group("power_supplies", "Power Supplies", ["Power"]),
    group("system_board", "System Board", ["SystemBoard"]),
    group("drives", "Drives", ["Drive"]),
    group("firmware", "Firmware", ["FirmwareInventory"]),
)

CFC_ENVIRONMENT = section(
    "environment", "Environment",
    group("sensors", "Sensors",
          ["NumericSensor", "DiscreteSensor", "TemperatureSensor", "FanSensor", "PowerSensor"]),
    group("leds", "LEDs", ["LED"]),
)

CFC_STORAGE_TYPES = [
    "RaidStorageDevice", "StorageDevice", "DiskDevice", "StorageUnitDiskDevice", "Volumes", "StorageUnitVolume",
    "RAIDSHOWRawData",
]

CFC_STORAGE = section("storage", "Storage", group("storage_devices", "Storage Devices", CFC_STORAGE_TYPES))

# In band the vendor utilities add their raw output beside what the BMC tells of its controllers.
CFC_INBAND_STORAGE = section(
    "storage", "Storage",
    group("storage_devices", "Storage Devices",
          CFC_STORAGE_TYPES + ["LSIRawData", "SEACHESTRawData", "ARCCONFRawData", "MARVELLRawData"]),
)

CFC_LOGS = section(
    "logs", "Logs",
    group("system_bios_log", "System BIOS Log", ["SystemBIOSLog"]),
    group("system_chassis_log", "System Chassis Log", ["SystemChassisLog"]),
    group("bmc_event_log", "BMC Event Log", ["BMCEventLog"]),
    group("bmc_audit_log", "BMC Audit Log", ["BMCAuditLog"]),
)


def chassis(name, display):
    return [section("chassis", display, group(name, display, ["DataSource"]))]


SERVER = [HARDWARE, STORAGE, NETWORK, BMC_LOGS]
WINDOWS = [SUMMARY] + SERVER + [WINDOWS_OS, WINDOWS_EVENTS, EXECUTION]
LINUX = [SUMMARY] + SERVER + [LINUX_OS, LINUX_LOGS, EXECUTION]
CFC_OOB = [CFC_SUMMARY, CFC_HARDWARE, CFC_ENVIRONMENT, CFC_STORAGE, CFC_LOGS, EXECUTION]


def cfc_in_band(*os_sections):
    return [CFC_SUMMARY, CFC_HARDWARE, CFC_ENVIRONMENT, CFC_INBAND_STORAGE, CFC_LOGS] + list(os_sections) + [EXECUTION]


CASES = {
    "windows": WINDOWS,
    "sles": LINUX,
    "rhel": LINUX,
    "ubuntu": LINUX,
    # Before an operating system runs, and through the BMC alone, there is no software to list.
    "preboot": [SUMMARY] + SERVER + [EXECUTION],
    "oob": [SUMMARY] + SERVER + [EXECUTION],
    "esxi": [SUMMARY] + SERVER + [ESXI_OS, EXECUTION],
    "cmm": chassis("cmm_inventory", "CMM Inventory"),
    "smm": chassis("smm_inventory", "SMM Inventory"),
    "cfc_windows": cfc_in_band(WINDOWS_OS, WINDOWS_EVENTS),
    "cfc_rhel": cfc_in_band(LINUX_OS, LINUX_LOGS),
    "cfc_sles": cfc_in_band(LINUX_OS, LINUX_LOGS),
    "cfc_oob": CFC_OOB,
}

# System families that share the in-band list of their operating system.
for prefix in ("vx_", "amd_", "tv5x_", "tv5x_v2_", "tv4x_v2_"):
    CASES[prefix + "windows"] = WINDOWS
    CASES[prefix + "sles"] = LINUX
    CASES[prefix + "rhel"] = LINUX


def type_line(entry):
    if isinstance(entry, tuple):
        return '      <type legacy="true">%s</type>' % escape(entry[0])
    return "      <type>%s</type>" % escape(entry)


def group_lines(g):
    attributes = ' IsHidden="true"' if HIDDEN in g["marks"] else ""
    lines = ["    <group%s>" % attributes,
             "      <name>%s</name>" % escape(g["name"]),
             "      <display>%s</display>" % escape(g["display"])]
    lines += [type_line(t) for t in g["types"]]
    lines.append("    </group>")
    return lines


def category_text(sections):
    lines = ['<?xml version="1.0" encoding="utf-8"?>', "<report>"]
    for s in sections:
        lines += ["  <category>",
                  "    <name>%s</name>" % escape(s["name"]),
                  "    <display>%s</display>" % escape(s["display"])]
        for g in s["groups"]:
            lines += group_lines(g)
        lines.append("  </category>")
    lines.append("</report>")
    return "\n".join(lines) + "\n"


def check_unique_groups(case, sections):
    names = [g["name"] for s in sections for g in s["groups"]]
    doubles = sorted({n for n in names if names.count(n) > 1})
    if doubles:
        sys.exit("%s: group names used twice: %s" % (case, ", ".join(doubles)))


def main():
    data = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "data")
    for case, sections in sorted(CASES.items()):
        check_unique_groups(case, sections)
        with open(os.path.join(data, "reportcategory_%s.xml" % case), "w", encoding="utf-8") as out:
            out.write(category_text(sections))
    print("wrote %d category files" % len(CASES))


if __name__ == "__main__":
    main()
