#include "repository/modules/rcfcbmclogsinventorymodule.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rinstanceswrapper.h"
#include "repository/modules/rcfclogreader.h"

#include <boost/bind/bind.hpp>

namespace kestro {
namespace repository {

namespace {

const std::vector<std::string> kAuditHeaders = {"Date", "Time", "User", "IP", "State", "Message"};
const std::vector<unsigned> kAuditPercents = {10, 8, 10, 12, 8, 52};
const std::vector<std::string> kEventHeaders = {"Date", "Time", "State", "Message"};
const std::vector<unsigned> kEventPercents = {10, 8, 8, 74};

// The State of a BMC record is its severity, as the BMC rates the entry.
void AddDateTimeState(RInstance& instance, const XModule::SELREDFISHDATACFC& record, bool withUser)
{
    instance.AddProperty("Date", "Date", record.date);
    instance.AddProperty("Time", "Time", record.time);
    if (withUser) {
        instance.AddProperty("User", "User", record.user);
        instance.AddProperty("IP", "IP", record.ip);
    }
    instance.AddProperty("State", "State", record.severity);
    instance.AddProperty("Message", "Message", record.description);
}

}  // namespace

std::string RCFCBmcLogsInventoryModule::GetName() { return "CFCBmcLogsInventoryModule"; }

std::string RCFCBmcLogsInventoryModule::GetDisplay() { return "CFC BMC Logs Inventory Module"; }

void RCFCBmcLogsInventoryModule::InitCallbacks()
{
    using boost::placeholders::_1;
    typedef RCFCBmcLogsInventoryModule M;
    typeCallbacks["BMCAuditLog"].enumCallback = boost::bind(&M::EnumBMCAuditLogInstances, this, _1);
    typeCallbacks["BMCAuditLog"].wrapCallback = boost::bind(&M::WrapAuditLog, this, _1);
    typeCallbacks["BMCEventLog"].enumCallback = boost::bind(&M::EnumBMCEventLogInstances, this, _1);
    typeCallbacks["BMCEventLog"].wrapCallback = boost::bind(&M::WrapEventLog, this, _1);
}

void RCFCBmcLogsInventoryModule::EnumBMCAuditLogInstances(RRepository& repo)
{
    using boost::placeholders::_1;
    using boost::placeholders::_2;
    RCFCLogReader::Enumerate(repo, "Try to enum bmc audit log instance.", &XModule::LogmgrRedfishCFC::GetAuditLog,
                             "GetAuditLog", boost::bind(&RCFCBmcLogsInventoryModule::AddAuditRecord, this, _1, _2));
}

void RCFCBmcLogsInventoryModule::EnumBMCEventLogInstances(RRepository& repo)
{
    using boost::placeholders::_1;
    using boost::placeholders::_2;
    RCFCLogReader::Enumerate(repo, "Try to enum bmc event log instance.", &XModule::LogmgrRedfishCFC::GetEventLog,
                             "GetEventLog", boost::bind(&RCFCBmcLogsInventoryModule::AddEventRecord, this, _1, _2));
}

void RCFCBmcLogsInventoryModule::AddAuditRecord(RRepository& repo, const XModule::SELREDFISHDATACFC& record)
{
    RInstance instance("BMCAuditLog", "BMC Audit Log", -1);
    AddDateTimeState(instance, record, true);
    instance.AddToRepository(repo);
    RCFCLogReader::AddHighlight(repo, record.severity, "BMC:", record.date, record.time, record.description);
}

void RCFCBmcLogsInventoryModule::AddEventRecord(RRepository& repo, const XModule::SELREDFISHDATACFC& record)
{
    RInstance instance("BMCEventLog", "BMC Event Log", -1);
    AddDateTimeState(instance, record, false);
    instance.AddToRepository(repo);
    RCFCLogReader::AddHighlight(repo, record.severity, "BMC:", record.date, record.time, record.description);
}

void RCFCBmcLogsInventoryModule::WrapAuditLog(RInstancesWrapper& wrapper)
{
    wrapper.SetRowHeaders(kAuditHeaders, kAuditPercents, true);
}

void RCFCBmcLogsInventoryModule::WrapEventLog(RInstancesWrapper& wrapper)
{
    wrapper.SetRowHeaders(kEventHeaders, kEventPercents, true);
}

}  // namespace repository
}  // namespace kestro
