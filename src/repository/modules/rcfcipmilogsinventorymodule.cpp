#include "repository/modules/rcfcipmilogsinventorymodule.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rinstanceswrapper.h"
#include "repository/modules/rcfclogreader.h"

#include <boost/bind/bind.hpp>

namespace kestro {
namespace repository {

namespace {

const std::vector<std::string> kSystemLogHeaders = {"Record Id", "Source",   "Time Stamp",       "Sensor Name",
                                                    "Severity",  "Status",   "Event Description"};
const std::vector<unsigned> kSystemLogPercents = {8, 8, 16, 14, 8, 8, 38};

void AddSystemLogRecord(RRepository& repo, const std::string& type, const std::string& title,
                        const XModule::SELREDFISHDATACFC& record)
{
    RInstance instance(type, title, -1);
    instance.AddProperty("RecordId", "Record Id", record.recordId);
    instance.AddProperty("Source", "Source", record.source);
    instance.AddProperty("TimeStamp", "Time Stamp", record.timeStamp);
    instance.AddProperty("SensorName", "Sensor Name", record.sensorName);
    instance.AddProperty("Severity", "Severity", record.severity);
    instance.AddProperty("Status", "Status", RCFCLogReader::DirectionWord(record.direction));
    instance.AddProperty("EventDescription", "Event Description", record.description);
    instance.AddToRepository(repo);
    RCFCLogReader::AddHighlight(repo, record.severity, "IPMI:", record.timeStamp, record.sensorName,
                                record.description);
}

}  // namespace

std::string RCFCIPMILogsInventoryModule::GetName() { return "CFCIPMILogsInventoryModule"; }

std::string RCFCIPMILogsInventoryModule::GetDisplay() { return "CFC IPMI Logs Inventory Module"; }

void RCFCIPMILogsInventoryModule::InitCallbacks()
{
    using boost::placeholders::_1;
    typedef RCFCIPMILogsInventoryModule M;
    typeCallbacks["SystemBIOSLog"].enumCallback = boost::bind(&M::EnumSystemBIOSLogInstances, this, _1);
    typeCallbacks["SystemBIOSLog"].wrapCallback = boost::bind(&M::WrapSystemLog, this, _1);
    typeCallbacks["SystemChassisLog"].enumCallback = boost::bind(&M::EnumSystemChassisLogInstances, this, _1);
    typeCallbacks["SystemChassisLog"].wrapCallback = boost::bind(&M::WrapSystemLog, this, _1);
}

void RCFCIPMILogsInventoryModule::EnumSystemBIOSLogInstances(RRepository& repo)
{
    using boost::placeholders::_1;
    using boost::placeholders::_2;
    RCFCLogReader::Enumerate(repo, "Try to enum system bios log instance.",
                             &XModule::LogmgrRedfishCFC::GetSystemBiosLog, "GetSystemBiosLog",
                             boost::bind(&RCFCIPMILogsInventoryModule::AddBIOSRecord, this, _1, _2));
}

void RCFCIPMILogsInventoryModule::EnumSystemChassisLogInstances(RRepository& repo)
{
    using boost::placeholders::_1;
    using boost::placeholders::_2;
    RCFCLogReader::Enumerate(repo, "Try to enum system chassis log instance.",
                             &XModule::LogmgrRedfishCFC::GetChassisLog, "GetChassisLog",
                             boost::bind(&RCFCIPMILogsInventoryModule::AddChassisRecord, this, _1, _2));
}

void RCFCIPMILogsInventoryModule::AddBIOSRecord(RRepository& repo, const XModule::SELREDFISHDATACFC& record)
{
    AddSystemLogRecord(repo, "SystemBIOSLog", "System BIOS Log", record);
}

void RCFCIPMILogsInventoryModule::AddChassisRecord(RRepository& repo, const XModule::SELREDFISHDATACFC& record)
{
    AddSystemLogRecord(repo, "SystemChassisLog", "System Chassis Log", record);
}

void RCFCIPMILogsInventoryModule::WrapSystemLog(RInstancesWrapper& wrapper)
{
    wrapper.SetRowHeaders(kSystemLogHeaders, kSystemLogPercents, true);
}

}  // namespace repository
}  // namespace kestro
