#include "rcfctestsupport.h"
#include "support/logcapture.h"
#include "xmodule/bmc/logmgrredfishcfc.h"

#include <gtest/gtest.h>

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

}  // namespace

TEST(LogmgrRedfishCFCTest, ParsesAnEntryAndSplitsItsTimeStamp)
{
    const SELREDFISHDATACFC full = LogmgrRedfishCFC::ParseEntry(boost::json::parse(R"({
        "Id": "7", "Created": "2026-11-18T22:41:57+00:00", "Severity": "Critical", "Message": "IERR",
        "SensorType": "Processor", "Oem": {"Public": {"SensorName": "CPU 2 Status",
        "EventDirection": "Assertion event", "Source": "BIOS", "User": "USERID", "IP": "10.0.0.9"}}})"));
    EXPECT_EQ("7", full.recordId);
    EXPECT_EQ("BIOS", full.source);
    EXPECT_EQ("2026-11-18T22:41:57+00:00", full.timeStamp);
    EXPECT_EQ("2026-11-18", full.date);
    EXPECT_EQ("22:41:57", full.time);
    EXPECT_EQ("CPU 2 Status", full.sensorName);
    EXPECT_EQ("Processor", full.sensorType);
    EXPECT_EQ("Critical", full.severity);
    EXPECT_EQ("Assertion event", full.direction);
    EXPECT_EQ("IERR", full.description);
    EXPECT_EQ("USERID", full.user);
    EXPECT_EQ("10.0.0.9", full.ip);

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

    const SELREDFISHDATACFC empty = LogmgrRedfishCFC::ParseEntry(boost::json::parse("[]"));
    EXPECT_EQ("N/A", empty.recordId);
    EXPECT_EQ("N/A", empty.direction);
    EXPECT_EQ("N/A", empty.description);
}

TEST(LogmgrRedfishCFCTest, ReadsEveryLogServicePageByPage)
{
    RCFCTarget target("full");
    target.Bmc().SetPageSize(3);
    LogmgrRedfishCFC reader(target.Connection());
    std::vector<SELREDFISHDATACFC> records;
    EXPECT_EQ(LogmgrRedfishCFC::Success, reader.GetSystemBiosLog(records));
    EXPECT_EQ((std::vector<std::string>{"1", "2", "3", "4"}), Ids(records));
    EXPECT_EQ(LogmgrRedfishCFC::Success, reader.GetChassisLog(records));
    EXPECT_EQ(8u, records.size());
    records.clear();
    EXPECT_EQ(LogmgrRedfishCFC::Success, reader.GetManagerSelLog(records));
    EXPECT_EQ((std::vector<std::string>{"1", "2"}), Ids(records));
    records.clear();
    EXPECT_EQ(LogmgrRedfishCFC::Success, reader.GetAuditLog(records));
    ASSERT_EQ(4u, records.size());
    EXPECT_EQ("admin", records[1].user);
    records.clear();
    EXPECT_EQ(LogmgrRedfishCFC::Success, reader.GetEventLog(records));
    ASSERT_EQ(3u, records.size());
    EXPECT_EQ("Power redundancy lost.", records[1].description);
    EXPECT_EQ("N/A", records[1].user);
}

TEST(LogmgrRedfishCFCTest, AFailedOrBadAnswerGivesItsCodeAndNoRecords)
{
    RCFCTarget target("full");
    target.Bmc().SetPageSize(2);
    LogCapture capture;
    LogmgrRedfishCFC reader(target.Connection());
    std::vector<SELREDFISHDATACFC> records;

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
