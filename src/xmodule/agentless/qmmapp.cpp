#include "xmodule/agentless/qmmapp.h"

#include "xmodule/agentless/xfirmwareinventory.h"
#include "xmodule/linux/hostsel.h"

#include <boost/lexical_cast.hpp>

namespace XModule {

namespace {

const char kSelLogName[] = "IPMI SEL";

struct CodeMap {
    int from;
    QMMAPPRETURNCODE to;
};

const CodeMap kHostSelCodes[] = {
    {Linux::HostSel::HOST_SEL_READ, QMMAPP_SUCCESS},
    {Linux::HostSel::HOST_SEL_NO_SOURCE, QMMAPP_NO_LOG_SOURCE},
};

int CodeOfHostSel(int result)
{
    for (const CodeMap& map : kHostSelCodes)
        if (map.from == result) return map.to;
    return QMMAPP_UNREADABLE;
}

int CodeOfInventory(int result) { return result == INVENTORY_SUCCESS ? QMMAPP_SUCCESS : QMMAPP_UNREADABLE; }

// The CIM rows need an instance id and an element name; a log read over Redfish names its entries
// by their resource path already.
void FillCimFields(std::vector<QMMMESSAGELOGDATA>& entries, const std::string& host)
{
    for (QMMMESSAGELOGDATA& entry : entries) {
        if (entry.logInstanceId.empty()) entry.logInstanceId = host + ":" + entry.logName + ":" + entry.eventSequenceNumber;
        if (entry.elementName.empty()) entry.elementName = entry.logName;
    }
}

}  // namespace

qmmapp::qmmapp(const ConnectionInfo& c) : connection(c) {}

int qmmapp::GetQMMPlatformEventLogForInventory(std::vector<QMMMESSAGELOGDATA>& entries)
{
    int ret = QMMAPP_SUCCESS;
    if (connection.isBmc) {
        ret = CodeOfInventory(xFirmwareInventory(connection).GetQMMPlatformLogDataViaREST(entries));
    } else {
        std::vector<Linux::SelEvent> events;
        ret = CodeOfHostSel(Linux::HostSel::Read(events));
        for (const Linux::SelEvent& event : events) entries.push_back(RecordOfSelEvent(event));
    }
    FillCimFields(entries, connection.host);
    return ret;
}

int qmmapp::GetQMMAuditEventLogForInventory(std::vector<QMMMESSAGELOGDATA>& entries)
{
    const int ret = GetQMMAuditEventLog(entries);
    FillCimFields(entries, connection.host);
    return ret;
}

int qmmapp::GetQMMAuditEventLog(std::vector<QMMMESSAGELOGDATA>& entries)
{
    if (!connection.isBmc) return QMMAPP_NO_AUDIT_LOG;
    return CodeOfInventory(xFirmwareInventory(connection).GetQMMAuditLogDataViaREST(entries));
}

QMMMESSAGELOGDATA qmmapp::RecordOfSelEvent(const Linux::SelEvent& event)
{
    QMMMESSAGELOGDATA record;
    record.source = event.sensor;
    record.creationTimeStamp = event.timestamp;
    record.message = event.sensor + ": " + event.event + (event.asserted ? " (asserted)" : " (deasserted)");
    record.perceivedSeverity = event.severity;
    record.auxiliaryData = event.raw;
    record.eventSequenceNumber = boost::lexical_cast<std::string>(event.recordId);
    record.logName = kSelLogName;
    return record;
}

}  // namespace XModule
