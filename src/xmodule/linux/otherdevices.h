#ifndef KESTRO_XMODULE_LINUX_OTHERDEVICES_H
#define KESTRO_XMODULE_LINUX_OTHERDEVICES_H

#include "xmodule/protocol/hardwareinfo.h"

#include <vector>

namespace XModule {
namespace Linux {

// Every PCI function of the host in address order, but display functions, which the graphics
// list shows. Each row reads, for the AHCI controller at 0000:00:17.0:
//   DeviceName  "C620 Series Chipset Family SATA Controller [AHCI mode]" (pci.ids, else "a182")
//   DeviceID    "0000:00:17.0 [8086:a182]", the address and the vendor and device ids, as lspci -nn
//   VendorInfo  "Intel Corporation" (pci.ids, else "8086")
//   Description "Driver: ahci; Subsystem: Dell [1028:0716]; Revision: 09": the bound driver
//               ("none" when unbound), the board maker's ids that tell one OEM card from another
//               (left out when zero), and the silicon revision
//   Class       "SATA controller", the subclass's name, else the class's, else "0106"
void CollectOtherPciDevices(std::vector<protocol::OtherDevice>& devices);

}  // namespace Linux
}  // namespace XModule

#endif
