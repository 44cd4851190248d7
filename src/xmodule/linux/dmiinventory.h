#ifndef KESTRO_XMODULE_LINUX_DMIINVENTORY_H
#define KESTRO_XMODULE_LINUX_DMIINVENTORY_H

#include "xmodule/protocol/hardwareinfo.h"

#include <string>
#include <vector>

// The host's systems, processors, memory modules, boards, fans and power supplies, from the SMBIOS
// table under the root prefix. The table is root-only and virtual machines often have none, so
// each list falls back to what a normal user can read: /sys/class/dmi/id for the system and
// boards, udev's DMI record for memory modules, /proc/cpuinfo and sysfs for processors. Fans and
// power supplies come from SMBIOS alone. The table is read once per root prefix. Every collector
// appends; a source that cannot be read is noted once and leaves its facts "N/A".
namespace XModule {
namespace Linux {

// One record. Model is the SKU number, else the family; CurrentNodeIndex is "0".
void CollectComputerSystems(std::vector<protocol::ComputerSystem>& systems);

// One record per populated socket. Core reads "<socket> (<n> cores[, <m> enabled], <t> threads)",
// the socket as the firmware names it ("CPU1") or "CPU <n>" in package order; SMBIOS sockets meet
// the operating system's packages in order. Hyper-threading is supported when a package has more
// threads than cores, and "Enabled" when the operating system runs more logical CPUs than cores in
// the package. SerialNumber is the PPIN, else the firmware's serial number.
void CollectProcessors(std::vector<protocol::Processor>& processors);

// One record per installed module of a system memory array; MaxSpeed is the rated MT/s. Where
// neither SMBIOS nor udev names a module, one "System Memory" record of the memory online.
void CollectMemory(std::vector<protocol::Memory>& modules);

// "<socket> (<n> cores[, <m> enabled], <t> threads)"; a count of 0 is left out.
std::string DescribeCores(const std::string& socket, unsigned cores, unsigned enabled, unsigned threads);

// The BIOS, boards, enclosures, slots and onboard devices. Type reads "<kind>[: <what>][ (<details>)]":
// "BIOS (2023-05-12)", "Baseboard: X12DPi-N6 (Motherboard)", "Chassis: Rack Mount Chassis",
// "Slot: PCI Express 4 x16 (SLOT 1, In Use, 0000:17:00.0)", "Onboard: Ethernet (NIC1, Enabled, 0000:01:00.0)".
void CollectSystemCards(std::vector<protocol::SystemCard>& cards);

// Cooling devices: DesiredSpeed is the nominal RPM. Power supplies: TotalOutputPower is the
// maximum capacity in W; a supply that is not plugged in reads "Not Present".
void CollectSmbiosFans(std::vector<protocol::FanInband>& fans);
void CollectSmbiosPowerSupplies(std::vector<protocol::PowerInband>& supplies);

// True on 3rd generation Xeon Scalable hosts (Intel family 6, model 0x6A or 0x6C), after /proc/cpuinfo.
bool IsWhitleyPlatform();

}  // namespace Linux
}  // namespace XModule

#endif
