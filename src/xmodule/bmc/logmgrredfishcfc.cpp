#include "xmodule/bmc/logmgrredfishcfc.h"

#include "xmodule/rlog.h"
#include "rest/jsonread.h"
#include "rest/restsession.h"

#include <boost/system/system_error.hpp>

#include <iterator>

namespace XModule {

namespace {

const char* const kBiosLogEntries = "/redfish/v1/Systems/1/LogServices/BIOSLog/Entries";
const char* const kChassisLogEntries = "/redfish/v1/Systems/1/LogServices/ChassisLog/Entries";
const char* const kSelEntries = "/redfish/v1/Systems/1/LogServices/SEL/Entries";
const char* const kAuditLogEntries = "/redfish/v1/Managers/1/LogServices/AuditLog/Entries";
const char* const kEventLogEntries = "/redfish/v1/Managers/1/LogServices/EventLog/Entries";

const Rest::AheadRead kLogsPlan[] = {
    {kBiosLogEntries, 1, nullptr, 0},
    {kChassisLogEntries, 1, nullptr, 0},
    {kEventLogEntries, 1, nullptr, 0},
    {kAuditLogEntries, 1, nullptr, 0},
};

// "2026-11-21T09:03:27+00:00" gives "2026-11-21" and "09:03:27"; a stamp without a "T" is all date.
void SplitTimeStamp(const std::string& stamp, std::string& date, std::string& time)
{
    const std::string::size_type t = stamp.find('T');
    if (stamp == Rest::JSON_MISSING_TEXT || t == std::string::npos) {
        date = stamp;
        time = Rest::JSON_MISSING_TEXT;
        return;
    }
    date = stamp.substr(0, t);
    const std::string::size_type zone = stamp.find_first_of("+-Z", t + 1);
    time = stamp.substr(t + 1, zone == std::string::npos ? std::string::npos : zone - t - 1);
}

}  // namespace

LogmgrRedfishCFC::LogmgrRedfishCFC(const ConnectionInfo& connection) : connection(connection) {}

LogmgrRedfishCFC::~LogmgrRedfishCFC() {}

int LogmgrRedfishCFC::GetSystemBiosLog(std::vector<SELREDFISHDATACFC>& records)
{
    return ReadEntries(kBiosLogEntries, records);
}

int LogmgrRedfishCFC::GetChassisLog(std::vector<SELREDFISHDATACFC>& records)
{
    return ReadEntries(kChassisLogEntries, records);
}

int LogmgrRedfishCFC::GetAuditLog(std::vector<SELREDFISHDATACFC>& records)
{
    return ReadEntries(kAuditLogEntries, records);
}

int LogmgrRedfishCFC::GetEventLog(std::vector<SELREDFISHDATACFC>& records)
{
    return ReadEntries(kEventLogEntries, records);
}

int LogmgrRedfishCFC::GetManagerSelLog(std::vector<SELREDFISHDATACFC>& records)
{
    return ReadEntries(kSelEntries, records);
}

void LogmgrRedfishCFC::ReadLogsAhead()
{
    Rest::RestSession session = Rest::MakeRestSession(connection);
    const Rest::AheadPlan plan = {kLogsPlan, std::size(kLogsPlan)};
    Rest::ReadAhead(session, plan);
}

SELREDFISHDATACFC LogmgrRedfishCFC::ParseEntry(const boost::json::value& entry)
{
    SELREDFISHDATACFC record;
    record.recordId = Rest::ReadJsonString(entry, "/Id");
    record.source = Rest::ReadJsonString(entry, "/Oem/Public/Source");
    record.timeStamp = Rest::ReadJsonString(entry, "/Created");
    SplitTimeStamp(record.timeStamp, record.date, record.time);
    record.sensorName = Rest::ReadJsonString(entry, "/Oem/Public/SensorName");
    record.sensorType = Rest::ReadJsonString(entry, "/SensorType");
    record.severity = Rest::ReadJsonString(entry, "/Severity");
    record.direction = Rest::ReadJsonString(entry, "/Oem/Public/EventDirection");
    record.description = Rest::ReadJsonString(entry, "/Message");
    record.user = Rest::ReadJsonString(entry, "/Oem/Public/User");
    record.ip = Rest::ReadJsonString(entry, "/Oem/Public/IP");
    return record;
}

int LogmgrRedfishCFC::ReadEntries(const std::string& entriesUrl, std::vector<SELREDFISHDATACFC>& records)
{
    try {
        Rest::RestSession session = Rest::MakeRestSession(connection);
        Rest::WalkCollection(session, entriesUrl, Rest::WalkExpanded,
                             [&records](const boost::json::value& entry) { records.push_back(ParseEntry(entry)); });
    } catch (const Rest::InventoryError& error) {
        RLOG(2) << "Failed to read log entries: " << error.what();
        return FetchFailed;
    } catch (const boost::system::system_error& error) {
        RLOG(2) << "Log entries of " << entriesUrl << " are not JSON: " << error.what();
        return BadAnswer;
    }
    return Success;
}

}  // namespace XModule
