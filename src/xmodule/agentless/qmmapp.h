#ifndef KESTRO_XMODULE_AGENTLESS_QMMAPP_H
#define KESTRO_XMODULE_AGENTLESS_QMMAPP_H

#include "kestro/xmodule/connectioninfo.h"
#include "xmodule/agentless/qmmmessagelogdata.h"
#include "xmodule/linux/selrecord.h"

#include <vector>

namespace XModule {

enum QMMAPPRETURNCODE {
    QMMAPP_SUCCESS = 0,
    QMMAPP_NO_LOG_SOURCE = 1,  // this host has no IPMI device and no ipmitool
    QMMAPP_UNREADABLE = 2,     // the log's source failed; entries read before stay
    QMMAPP_NO_AUDIT_LOG = 3    // this host keeps no audit log of its BMC
};

// The BMC's event and audit logs as CIM log records. Through a BMC connection both come over
// Redfish; through this host the event log is the IPMI system event log and there is no audit log.
class qmmapp {
public:
    explicit qmmapp(const ConnectionInfo& connection);

    int GetQMMPlatformEventLogForInventory(std::vector<QMMMESSAGELOGDATA>& entries);
    int GetQMMAuditEventLogForInventory(std::vector<QMMMESSAGELOGDATA>& entries);
    // The audit log as its source gives it, without the CIM row fields.
    int GetQMMAuditEventLog(std::vector<QMMMESSAGELOGDATA>& entries);

    // A host SEL entry as a log record: the sensor is its source, the record id its sequence number.
    static QMMMESSAGELOGDATA RecordOfSelEvent(const Linux::SelEvent& event);

private:
    ConnectionInfo connection;
};

}  // namespace XModule

#endif
