#include "repository/modules/rbmceventlog.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rrepository.h"
#include "repository/modules/resxinodes.h"
#include "repository/modules/reventidlink.h"
#include "repository/modules/rhostconnection.h"
#include "repository/modules/rtableforms.h"
#include "xmodule/agentless/qmmapp.h"
#include "xmodule/agentless/qmmtypeacquire.h"
#include "xmodule/agentless/systeminfoscan.h"
#include "xmodule/agentless/xfirmwareinventory.h"
#include "xmodule/rlog.h"

#include <boost/bind/bind.hpp>

namespace kestro {
namespace repository {

using XModule::QMMMESSAGELOGDATA;

// Which records an entry of one log becomes, and which of its severities are highlights.
struct RBMCLogType {
    const char* type;
    const char* display;
    bool cimRows;         // LogInstanceID and ElementName lead the row
    bool eventGroup;      // EventGroupId closes the row
    const char* highlightOpening;
    std::vector<std::string> highlightSeverities;
};

namespace {

const char kUnknown[] = "Unknown";
// The mode words of a connection that reaches an ESXi host's nodes through its BMC.
// Each log's Index counts its entries from here.
const int kFirstIndex = 1;

const std::vector<std::string> kRestHighlights = {"critical"};
const std::vector<std::string> kCimHighlights = {"major", "critical", "fatal/nonrecoverable"};

const RBMCLogType kPlatformLogRest = {"QMMPlatformLogRest", "BMC Platform Log", false, false, "BMC:(", kRestHighlights};
const RBMCLogType kAuditLogRest = {"QMMAuditLogRest", "BMC Audit Log", false, false, "BMC:(", kRestHighlights};
const RBMCLogType kMaintenanceLogRest = {"MaintenanceLogRest", "Maintenance Log", false, true, "BMC:(", kRestHighlights};
const RBMCLogType kActiveEventsRest = {"QMMActiveEventsRest", "Active System Events", false, false, "BMC:(",
                                       kRestHighlights};
const RBMCLogType kMessageLog = {"QMMMessageLog", "BMC Message Log", true, false, "Chassis:(", kCimHighlights};
const RBMCLogType kPlatformLog = {"QMMPlatformLog", "BMC Platform Log", true, false, "Chassis:(", kCimHighlights};
const RBMCLogType kAuditLog = {"QMMAuditLog", "BMC Audit Log", true, false, "Chassis:(", kCimHighlights};

const RBMCLogType* const kAllTypes[] = {&kPlatformLogRest, &kAuditLogRest, &kMaintenanceLogRest, &kActiveEventsRest,
                                        &kMessageLog,      &kPlatformLog,  &kAuditLog};

// The REST logs in the order they are read, each with the line its failure logs.
typedef int (XModule::xFirmwareInventory::*RestSource)(std::vector<QMMMESSAGELOGDATA>& entries);
struct RestLog {
    const RBMCLogType* type;
    RestSource source;
    const char* failure;
    bool RBMCEventLog::*servedFlag;
};

// The CIM logs that qmmapp reads, each with the line its failure logs and the flag of a log read.
typedef int (XModule::qmmapp::*CimSource)(std::vector<QMMMESSAGELOGDATA>& entries);
struct CimLog {
    const RBMCLogType* type;
    CimSource source;
    const char* failure;
    bool RBMCEventLog::*readFlag;
};

struct RowField {
    const char* key;
    const char* display;
    std::string QMMMESSAGELOGDATA::*field;
};

// The platform log's row after Index and before EventID, and after EventID.
const RowField kLeadingFields[] = {
    {"NodeID", "Node ID", &QMMMESSAGELOGDATA::nodeId},
    {"Source", "Source", &QMMMESSAGELOGDATA::source},
    {"CreationTimeStamp", "Creation Timestamp", &QMMMESSAGELOGDATA::creationTimeStamp},
};
const RowField kTrailingFields[] = {
    {"MessageID", "Message ID", &QMMMESSAGELOGDATA::messageId},
    {"Message", "Message", &QMMMESSAGELOGDATA::message},
    {"MessageArguments", "Message Arguments", &QMMMESSAGELOGDATA::messageArguments},
    {"PerceivedSeverity", "Perceived Severity", &QMMMESSAGELOGDATA::perceivedSeverity},
    {"AuxiliaryData", "Auxiliary Data", &QMMMESSAGELOGDATA::auxiliaryData},
    {"EventSequenceNumber", "Event Sequence Number", &QMMMESSAGELOGDATA::eventSequenceNumber},
    {"LogName", "Log Name", &QMMMESSAGELOGDATA::logName},
};
const RowField kCimFields[] = {
    {"LogInstanceID", "Log Instance ID", &QMMMESSAGELOGDATA::logInstanceId},
    {"ElementName", "Element Name", &QMMMESSAGELOGDATA::elementName},
};
const RowField kEventGroupField = {"EventGroupId", "Event Group", &QMMMESSAGELOGDATA::eventGroupId};

// Widths of the row forms: the platform log's twelve columns, with the event group, with the CIM ids.
const RTableForm kRestForm = {nullptr, false, {4, 5, 7, 10, 8, 10, 24, 8, 6, 6, 5, 7}, true, nullptr};
const RTableForm kMaintenanceForm = {nullptr, false, {4, 5, 7, 10, 8, 10, 20, 8, 6, 6, 5, 5, 6}, true, nullptr};
const RTableForm kCimForm = {nullptr, false, {7, 6, 3, 5, 6, 9, 7, 8, 18, 7, 6, 6, 5, 7}, true, nullptr};

const RTableForm& FormOf(const RBMCLogType& log)
{
    if (log.cimRows) return kCimForm;
    return log.eventGroup ? kMaintenanceForm : kRestForm;
}

std::string Shown(const std::string& value) { return value.empty() ? std::string(kUnknown) : value; }

void AddField(RInstance& instance, const RowField& row, const QMMMESSAGELOGDATA& entry)
{
    instance.AddProperty(row.key, row.display, Shown(entry.*row.field));
}

bool IsHighlight(const RBMCLogType& log, const std::string& severity)
{
    for (const std::string& wanted : log.highlightSeverities)
        if (severity == wanted) return true;
    return false;
}

void AddHighlight(RRepository& repo, const RBMCLogType& log, const QMMMESSAGELOGDATA& entry)
{
    if (!IsHighlight(log, entry.perceivedSeverity)) return;
    RInstance highlight("ReportHighlights", "Report Highlights", -1);
    highlight.AddProperty("Message", "Message",
                          log.highlightOpening + Shown(entry.creationTimeStamp) + ")" + Shown(entry.message));
    highlight.AddToRepository(repo);
}

}  // namespace

RBMCEventLog::RBMCEventLog()
    : enumerated(false),
      QMMPlatformLogRestFlag(false),
      QMMAuditLogRestFlag(false),
      platformLogRead(false),
      auditLogRead(false),
      qmmType(XModule::Agentless::QMM_TYPE_UNKNOWN)
{
}

std::string RBMCEventLog::GetName() { return "BMCEventLogModule"; }

std::string RBMCEventLog::GetDisplay() { return "BMC Event Log Module"; }

void RBMCEventLog::InitCallbacks()
{
    using boost::placeholders::_1;
    for (const RBMCLogType* log : kAllTypes) {
        TypeCallbacks& callbacks = typeCallbacks[log->type];
        callbacks.enumCallback = boost::bind(&RBMCEventLog::EnumXFirmwareQMMMessageLogInstances, this, _1);
        callbacks.wrapCallback = boost::bind(&RTableForms::Apply, boost::cref(FormOf(*log)), _1);
    }
}

void RBMCEventLog::EnumXFirmwareQMMMessageLogInstances(RRepository& repo)
{
    RLOG(4) << "Entering RBMCEventLog::EnumXFirmwareMessageLogInstances()...";
    if (enumerated) {
        RLOG(3) << "MessageLog has been enumerated";
        return;
    }
    enumerated = true;
    const std::vector<XModule::ConnectionInfo>& rest = repo.GetRestConnectionList();
    if (!rest.empty()) ReadViaRest(repo, rest.front());
    RLOG(3) << "QMMPlatformLogRestFlag=" << QMMPlatformLogRestFlag << ", QMMAuditLogRestFlag=" << QMMAuditLogRestFlag;
    platformLogRead = QMMPlatformLogRestFlag;
    auditLogRead = QMMAuditLogRestFlag;
    if (!platformLogRead || !auditLogRead) ReadViaCim(repo);
    RLOG(4) << "Exiting EnumXFirmwareQMMMessageLogInstances...";
}

void RBMCEventLog::ReadViaRest(RRepository& repo, const XModule::ConnectionInfo& connection)
{
    static const RestLog kRestLogs[] = {
        {&kPlatformLogRest, &XModule::xFirmwareInventory::GetQMMPlatformLogDataViaREST,
         "xFirmwareInventory::GetQMMPlatformLogDataViaREST() returns error = ", &RBMCEventLog::QMMPlatformLogRestFlag},
        {&kAuditLogRest, &XModule::xFirmwareInventory::GetQMMAuditLogDataViaREST,
         "xFirmwareInventory::GetQMMAuditLogDataViaRESTs() returns error = ", &RBMCEventLog::QMMAuditLogRestFlag},
        {&kMaintenanceLogRest, &XModule::xFirmwareInventory::GetQMMMaintLogDataViaREST,
         "xFirmwareInventory::GetQMMMaintLogDataViaREST() returns error = ", nullptr},
        {&kActiveEventsRest, &XModule::xFirmwareInventory::GetQMMActiveEventsDataViaREST,
         "xFirmwareInventory::GetQMMActiveEventsDataViaREST() returns error = ", nullptr},
    };
    XModule::xFirmwareInventory inventory(connection);
    ReadTargetIdentity(connection, inventory);
    for (const RestLog& log : kRestLogs) {
        std::vector<QMMMESSAGELOGDATA> entries;
        const int ret = (inventory.*log.source)(entries);
        if (ret != XModule::INVENTORY_SUCCESS) RLOG(2) << log.failure << ret;
        if (ret == XModule::INVENTORY_SUCCESS && log.servedFlag) this->*log.servedFlag = true;
        AddEntries(repo, *log.type, entries);
    }
}

void RBMCEventLog::ReadTargetIdentity(const XModule::ConnectionInfo& connection,
                                      XModule::xFirmwareInventory& inventory)
{
    XModule::Agentless::QMMTypeValue type = XModule::Agentless::QMM_TYPE_UNKNOWN;
    XModule::Agentless::QMMTypeAcquire(connection).GetQMMType(type);
    qmmType = type;
    RLOG(3) << "EnumXFirmwareQMMMessageLogInstances, the QMM type is " << qmmType;
    XModule::XFIRMWARESYSTEMVPD vpd;
    const int ret = inventory.GetxFirmwareSystemVPD(vpd);
    if (ret != XModule::INVENTORY_SUCCESS) {
        RLOG(2) << "Get machine type failed. with ret_r code:" << ret;
        return;
    }
    productName = vpd.productName;
    machineType = vpd.machineType;
    RLOG(3) << "product_name_ is:" << productName << " vpd mtm is:" << machineType;
}

void RBMCEventLog::ReadViaCim(RRepository& repo)
{
    typedef void (RBMCEventLog::*CimReader)(RRepository& repo);
    struct CimMode {
        ConnectMode mode;
        CimReader read;
    };
    static const CimMode kCimModes[] = {
        {ConnectLocal, &RBMCEventLog::ReadEachConnection},
        {ConnectOob, &RBMCEventLog::ReadFirstConnection},
        {ConnectEsxi, &RBMCEventLog::ReadEsxiNodes},
    };
    std::string scanned;
    SystemInfoScan::GetMachineType(RHostConnection::Of(repo), scanned);
    RLOG(3) << "EnumXFirmwareQMMMessageLogInstances, the machinetype is " << scanned;
    if (machineType.empty()) machineType = scanned;
    const ConnectMode mode = repo.GetConnectMode();
    for (const CimMode& served : kCimModes) {
        if (served.mode != mode) continue;
        if (repo.GetCIMConnectionList().empty())
            RLOG(2) << "in RBMCEventLog::EnumXFirmwareQMMMessageLogInstances(), the connect_list is empty.";
        else
            (this->*served.read)(repo);
        return;
    }
    RLOG(2) << "XFirmware for [mode=" << mode << "] not implemented.";
}

void RBMCEventLog::ReadEachConnection(RRepository& repo)
{
    for (const XModule::ConnectionInfo& connection : repo.GetCIMConnectionList()) ReadThroughQmmapp(repo, connection);
}

void RBMCEventLog::ReadFirstConnection(RRepository& repo)
{
    ReadThroughQmmapp(repo, repo.GetCIMConnectionList().front());
}

void RBMCEventLog::ReadThroughQmmapp(RRepository& repo, const XModule::ConnectionInfo& connection)
{
    static const CimLog kCimLogs[] = {
        {&kPlatformLog, &XModule::qmmapp::GetQMMPlatformEventLogForInventory,
         "qmmapp::GetQMMPlatformEventLogForInventory() returns error = ", &RBMCEventLog::platformLogRead},
        {&kAuditLog, &XModule::qmmapp::GetQMMAuditEventLogForInventory,
         "qmmapp::GetQMMAuditEventLogForInventory() returns error = ", &RBMCEventLog::auditLogRead},
    };
    RLOG(3) << "Enum XFirmware with IP is " << connection.host;
    XModule::qmmapp app(connection);
    for (const CimLog& log : kCimLogs) {
        if (this->*log.readFlag) continue;
        std::vector<QMMMESSAGELOGDATA> entries;
        const int ret = (app.*log.source)(entries);
        this->*log.readFlag = ret == XModule::QMMAPP_SUCCESS;
        // A failed read leaves its list empty, whatever came before the failure.
        if (ret != XModule::QMMAPP_SUCCESS)
            RLOG(2) << log.failure << ret;
        else
            AddEntries(repo, *log.type, entries);
    }
}

void RBMCEventLog::ReadEsxiNodes(RRepository& repo)
{
    for (const XModule::ConnectionInfo& node : REsxiNodes::Of(repo.GetCIMConnectionList().front())) {
        std::vector<QMMMESSAGELOGDATA> entries;
        const int ret = XModule::xFirmwareInventory(node).GetQMMMessageLogDataCIM(entries);
        if (ret != XModule::INVENTORY_SUCCESS) {
            RLOG(2) << "xFirmwareInventory::GetQMMMessageLogDataCIM() returns error = " << ret;
            continue;
        }
        AddEntries(repo, kMessageLog, entries);
    }
}

void RBMCEventLog::AddEntries(RRepository& repo, const RBMCLogType& log, const std::vector<QMMMESSAGELOGDATA>& entries)
{
    int index = kFirstIndex;
    for (const QMMMESSAGELOGDATA& entry : entries) AddEntry(repo, log, index++, entry);
}

void RBMCEventLog::AddEntry(RRepository& repo, const RBMCLogType& log, int index, const QMMMESSAGELOGDATA& entry)
{
    RInstance instance(log.type, log.display, -1);
    if (log.cimRows)
        for (const RowField& row : kCimFields) AddField(instance, row, entry);
    instance.AddProperty("Index", "Index", index);
    for (const RowField& row : kLeadingFields) AddField(instance, row, entry);
    instance.AddProperty("EventID", "Event ID", EventIdText(entry.eventId));
    for (const RowField& row : kTrailingFields) AddField(instance, row, entry);
    if (log.eventGroup) AddField(instance, kEventGroupField, entry);
    instance.AddToRepository(repo);
    AddHighlight(repo, log, entry);
}

std::string RBMCEventLog::EventIdText(const std::string& eventId)
{
    if (eventId.empty()) return kUnknown;
    return REventIdLink::ChangeEventIdToLink(eventId, machineType, productName, qmmType, !productName.empty());
}

}  // namespace repository
}  // namespace kestro
