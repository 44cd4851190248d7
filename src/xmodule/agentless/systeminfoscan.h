#ifndef KESTRO_XMODULE_AGENTLESS_SYSTEMINFOSCAN_H
#define KESTRO_XMODULE_AGENTLESS_SYSTEMINFOSCAN_H

#include "kestro/xmodule/connectioninfo.h"

#include <map>
#include <string>

// The target's machine type: from its BMC's system record, or from this host's firmware tables.
class SystemInfoScan {
public:
    enum Result { MACHINE_TYPE_OK = 0, MACHINE_TYPE_UNKNOWN = 1 };

    // MACHINE_TYPE_OK and the four-character machine type ("7D76") in `machineType`.
    static int GetMachineType(const XModule::ConnectionInfo& connection, std::string& machineType);
    // From the kernel's dmi/id attributes: the first four characters of `product_sku`, else the
    // model bracketed in `product_name` ("RX650 V3 -[7D76CTO1WW]-"), else in `product_version`.
    static std::string MachineTypeOfDmi(const std::map<std::string, std::string>& dmi);
};

#endif
