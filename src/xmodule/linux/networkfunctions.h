#ifndef KESTRO_XMODULE_LINUX_NETWORKFUNCTIONS_H
#define KESTRO_XMODULE_LINUX_NETWORKFUNCTIONS_H

#include "xmodule/agentless/networkadapter.h"

#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// The host's PCI network adapters: every function of network class, and every other function
// that a network interface sits on (a virtio device's interface hangs below its PCI function).
// Functions that share domain, bus and device form one adapter, in address order; each
// interface is a port. Interfaces without a PCI function (lo, bridges, bonds, veth) are left
// out. Driver and firmware become the adapter's software identities; the firmware version and
// the permanent address come from the driver itself on the live host only.
void CollectNetworkAdapters(std::vector<Agentless::NetworkAdapter>& adapters);

// The pieces of the sysfs reading, each over the text of one attribute.
// "0000:19:00.1" -> "0000:19:00"; "" for a text that is no function address.
std::string AdapterAddressOf(const std::string& function);
// The nearest PCI function above a device folder ("/sys/devices/pci0000:00/0000:00:03.0/virtio2"
// -> "0000:00:03.0"); "" when the device is on no PCI bus.
std::string PciFunctionAbove(const std::string& devicePath);
// The interface's "type" (ARPHRD number): "1" -> "Ethernet", "32" -> "InfiniBand".
std::string LinkTechnologyOf(const std::string& type);
// From "operstate", and "carrier" where the driver states no operational state.
std::string LinkStatusOf(const std::string& operstate, const std::string& carrier);
// "speed" in Mb/s ("-1" while the link is down) -> "25000 Mbps".
std::string SpeedOf(const std::string& speed);
// "flags" (hex) with IFF_UP set -> "Enabled", else "Disabled".
std::string EnabledStateOf(const std::string& flags);

}  // namespace Linux
}  // namespace XModule

#endif
