#ifndef KESTRO_XMODULE_BMC_LOGMGRREDFISHCFC_H
#define KESTRO_XMODULE_BMC_LOGMGRREDFISHCFC_H

#include "kestro/xmodule/connectioninfo.h"
#include "xmodule/bmc/selredfishdatacfc.h"

#include <boost/json/value.hpp>

#include <string>
#include <vector>

namespace XModule {

// The logs of a CFC BMC over Redfish: the system event log, the BIOS and the chassis log of the
// computer system, and the audit and event log of the manager. Each read walks the log service's
// entries page by page and appends one record per entry.
class LogmgrRedfishCFC {
public:
    // What a read returns.
    enum Result {
        Success = 0,
        FetchFailed = 1,  // a page could not be had; the records of earlier pages are kept
        BadAnswer = 2     // a page was not JSON; the records of earlier pages are kept
    };

    explicit LogmgrRedfishCFC(const ConnectionInfo& connection);
    ~LogmgrRedfishCFC();

    int GetSystemBiosLog(std::vector<SELREDFISHDATACFC>& records);
    int GetChassisLog(std::vector<SELREDFISHDATACFC>& records);
    int GetAuditLog(std::vector<SELREDFISHDATACFC>& records);
    int GetEventLog(std::vector<SELREDFISHDATACFC>& records);
    int GetManagerSelLog(std::vector<SELREDFISHDATACFC>& records);
    // Within an inventory run, once: the first page of the platform, audit and event logs fetched
    // at once, for the Get calls that follow.
    void ReadLogsAhead();

    // One entry as a record, apart from the request.
    static SELREDFISHDATACFC ParseEntry(const boost::json::value& entry);

private:
    LogmgrRedfishCFC(const LogmgrRedfishCFC&) = delete;
    LogmgrRedfishCFC& operator=(const LogmgrRedfishCFC&) = delete;

    int ReadEntries(const std::string& entriesUrl, std::vector<SELREDFISHDATACFC>& records);

    ConnectionInfo connection;
};

}  // namespace XModule

#endif
