#include "rcfctestsupport.h"
#include "support/logcapture.h"
#include "xmodule/bmc/logmgrredfishcfc.h"

#include <gtest/gtest.h>

#include <boost/algorithm/string/join.hpp>
#include <boost/json/parse.hpp>

using XModule::LogmgrRedfishCFC;
using XModule::SELREDFISHDATACFC;

namespace {

std::vector<std::string> Ids(const std::vector<SELREDFISHDATACFC>& records)
{
    std::vector<std::string> ids;
    for (const SELREDFISHDATACFC& record : records) ids.push_back(record.recordId);
    return ids;
}

std::string Fields(const SELREDFISHDATACFC& r)
{
    return boost::algorithm::join(std::vector<std::string>{r.recordId, r.source, r.timeStamp, r.date, r.time,
                                                           r.sensorName, r.sensorType, r.severity, r.direction,
                                                           r.description, r.user, r.ip},
                                  "|");
}

}  // namespace

TEST(LogmgrRedfishCFCTest, ParsesAnEntryAndSplitsItsTimeStamp)
{
    EXPECT_EQ("7|BIOS|2026-11-18T22:41:57+00:00|2026-11-18|22:41:57|CPU 2 Status|Processor|Critical|"
              "Assertion event|IERR|USERID|10.0.0.9",
              Fields(LogmgrRedfishCFC::ParseEntry(boost::json::parse(R"({
        "Id": "7", "Created": "2026-11-18T22:41:57+00:00", "Severity": "Critical", "Message": "IERR",
        "SensorType": "Processor", "Oem": {"Public": {"SensorName": "CPU 2 Status",
        "EventDirection": "Assertion event", "Source": "BIOS", "User": "USERID", "IP": "10.0.0.9"}}})"))));
    EXPECT_EQ("N/A|N/A|N/A|N/A|N/A|N/A|N/A|N/A|N/A|N/A|N/A|N/A",
              Fields(LogmgrRedfishCFC::ParseEntry(boost::json::parse("[]"))));

    const struct {
        const char* created;
        const char* date;
        const char* time;
    } stamps[] = {
        {R"("2026-11-18T22:41:57Z")", "2026-11-18", "22:41:57"},
        {R"("2026-11-18T22:41:57-05:00")", "2026-11-18", "22:41:57"},
        {R"("2026-11-18T22:41:57")", "2026-11-18", "22:41:57"},
        {R"("yesterday")", "yesterday", "N/A"},
        {"20261118", "N/A", "N/A"},
    };
    for (const auto& s : stamps) {
        const SELREDFISHDATACFC record =
            LogmgrRedfishCFC::ParseEntry(boost::json::parse(std::string("{\"Created\": ") + s.created + "}"));
        EXPECT_EQ(s.date, record.date) << s.created;
        EXPECT_EQ(s.time, record.time) << s.created;
    }
}

// The module tests read the other services page by page; the SEL has no module of its own.
TEST(LogmgrRedfishCFCTest, ReadsALogServicePageByPageAndAddsToTheRecordsGivenOrGivesTheFailuresCode)
{
    RCFCTarget target("full");
    target.Bmc().SetPageSize(1);
    LogmgrRedfishCFC reader(target.Connection());
    std::vector<SELREDFISHDATACFC> records;
    EXPECT_EQ(LogmgrRedfishCFC::Success, reader.GetManagerSelLog(records));
    EXPECT_EQ((std::vector<std::string>{"1", "2"}), Ids(records));
    EXPECT_EQ(LogmgrRedfishCFC::Success, reader.GetSystemBiosLog(records));
    EXPECT_EQ((std::vector<std::string>{"1", "2", "1", "2", "3", "4"}), Ids(records));

    // A failed or bad answer gives its code and no records.
    records.clear();
    target.Bmc().SetPageSize(2);
    LogCapture capture;
    target.Bmc().SetRawResponse("/redfish/v1/Systems/1/LogServices/BIOSLog/Entries",
                                "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: 9\r\n"
                                "Connection: close\r\n\r\n{\"Members");
    EXPECT_EQ(LogmgrRedfishCFC::BadAnswer, reader.GetSystemBiosLog(records));
    EXPECT_TRUE(records.empty());
    EXPECT_EQ(1, capture.Count("are not JSON"));

    target.Bmc().ForceStatus("/redfish/v1/Managers/1/LogServices/AuditLog/Entries", 500);
    EXPECT_EQ(LogmgrRedfishCFC::FetchFailed, reader.GetAuditLog(records));
    EXPECT_TRUE(records.empty());

    RCFCTarget sparse("sparse");
    LogmgrRedfishCFC sparseReader(sparse.Connection());
    EXPECT_EQ(LogmgrRedfishCFC::FetchFailed, sparseReader.GetChassisLog(records));
    EXPECT_EQ(LogmgrRedfishCFC::Success, sparseReader.GetSystemBiosLog(records));
    EXPECT_EQ(2u, records.size());
}
