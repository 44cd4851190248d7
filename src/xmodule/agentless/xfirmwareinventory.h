#ifndef KESTRO_XMODULE_AGENTLESS_XFIRMWAREINVENTORY_H
#define KESTRO_XMODULE_AGENTLESS_XFIRMWAREINVENTORY_H

#include "kestro/xmodule/connectioninfo.h"
#include "xmodule/agentless/qmmmessagelogdata.h"

#include <boost/json/value.hpp>
#include <boost/scoped_ptr.hpp>

#include <string>
#include <vector>

namespace XModule {

enum INVENTORYRETURNCODE {
    INVENTORY_SUCCESS = 0,
    INVENTORY_NOT_BMC = 1,         // the connection is this host, which has no Redfish logs
    INVENTORY_NO_SYSTEM = 2,       // no system (or manager) at the connection's node index
    INVENTORY_NO_LOG_SERVICE = 3,  // the BMC keeps no log service of that kind
    INVENTORY_UNREADABLE = 4       // a resource could not be read or parsed; entries read before stay
};

// What identifies the target: its product name ("RX650 V3") and machine type ("7D76").
struct XFIRMWARESYSTEMVPD {
    std::string productName;
    std::string machineType;
};

// The firmware-side facts of a BMC over Redfish: the system's identity and the logs the BMC keeps.
// The system is the Systems member at the connection's node index, so a multi-node target is read
// node by node. Log services are found by their kind, never by a fixed path.
class xFirmwareInventory {
public:
    explicit xFirmwareInventory(const ConnectionInfo& connection);
    ~xFirmwareInventory();

    int GetxFirmwareSystemVPD(XFIRMWARESYSTEMVPD& vpd);
    // The system's event log (the SEL), every page of it.
    int GetQMMPlatformLogDataViaREST(std::vector<QMMMESSAGELOGDATA>& entries);
    // The manager's audit log.
    int GetQMMAuditLogDataViaREST(std::vector<QMMMESSAGELOGDATA>& entries);
    // The manager's maintenance log, with each entry's event group.
    int GetQMMMaintLogDataViaREST(std::vector<QMMMESSAGELOGDATA>& entries);
    // The conditions the system reports as active now (Status/Conditions).
    int GetQMMActiveEventsDataViaREST(std::vector<QMMMESSAGELOGDATA>& entries);
    // The system's event log as the CIM rows want it, with instance id and element name.
    int GetQMMMessageLogDataCIM(std::vector<QMMMESSAGELOGDATA>& entries);

    // The machine type of a ComputerSystem: the first four characters of its SKU ("7D76CTO1WW"),
    // else a vendor's "MachineType" under Oem; empty when neither is there.
    static std::string MachineTypeOf(const boost::json::value& system);
    // An entry's event id: "EventId", else a vendor's "EventID"/"EventId" under Oem, else the last
    // dotted part of "MessageId" ("Base.1.0.ResetRequired" gives "ResetRequired").
    static std::string EventIdOf(const boost::json::value& entry);

private:
    xFirmwareInventory(const xFirmwareInventory&) = delete;
    xFirmwareInventory& operator=(const xFirmwareInventory&) = delete;

    struct Private;
    boost::scoped_ptr<Private> d;
};

}  // namespace XModule

#endif
