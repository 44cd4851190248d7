#include "repository/modules/rcfcbmclogsinventorymodule.h"
#include "rcfctestsupport.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

using namespace kestro::repository;

namespace {

const char* const kDate = "[0-9]{4}-[0-9]{2}-[0-9]{2}|N/A";
const char* const kTime = "[0-9]{2}:[0-9]{2}:[0-9]{2}|N/A";

const std::vector<RCFCColumn> kAuditColumns = {{"Date", kDate},
                                               {"Time", kTime},
                                               {"User", kAnyText},
                                               {"IP", "[0-9.]+|N/A"},
                                               {"State", "OK|Warning|Critical|N/A"},
                                               {"Message", kAnyText}};

const std::vector<RCFCColumn> kEventColumns = {
    {"Date", kDate}, {"Time", kTime}, {"State", "OK|Warning|Critical|N/A"}, {"Message", kAnyText}};

}  // namespace

TEST(RCFCBmcLogsInventoryModuleTest, FullTargetGivesAuditAndEventLogsWithHighlights)
{
    RCFCTarget target("full");
    target.Bmc().SetPageSize(2);
    RCFCBmcLogsInventoryModule module;
    LogCapture capture;
    target.RunEveryType(module);
    EXPECT_TRUE(capture.Has(3, "[repo] Try to enum bmc audit log instance."));
    EXPECT_TRUE(capture.Has(3, "[repo] Try to enum bmc event log instance."));

    const auto audit = ExpectRows(target.Repo(), "BMCAuditLog", kAuditColumns);
    ASSERT_EQ(4u, audit.size());
    EXPECT_EQ((std::vector<std::string>{"2026-11-21", "09:05:10", "admin", "10.40.12.90", "Warning",
                                        "Login from SSH by admin failed: bad password."}),
              audit[1]);
    const auto events = ExpectRows(target.Repo(), "BMCEventLog", kEventColumns);
    ASSERT_EQ(3u, events.size());
    EXPECT_EQ((std::vector<std::string>{"2026-11-21", "17:55:20", "Critical", "Power redundancy lost."}), events[1]);

    EXPECT_EQ((std::vector<std::string>{"BMC:(2026-11-21 09:07:44) Firmware update of BMC started by USERID.",
                                        "BMC:(2026-11-21 17:55:20) Power redundancy lost."}),
              ColumnOf(target.Repo(), "ReportHighlights", "Message"));
}

TEST(RCFCBmcLogsInventoryModuleTest, SparseTargetLogsTheMissingAuditLogAndKeepsTheEventLog)
{
    RCFCTarget target("sparse");
    RCFCBmcLogsInventoryModule module;
    LogCapture capture;
    target.RunEveryType(module);
    EXPECT_TRUE(capture.Has(2, "[repo] GetAuditLog returns error = 1")) << capture.Dump();
    EXPECT_TRUE(ColumnOf(target.Repo(), "BMCAuditLog", "Date").empty());

    const auto events = ExpectRows(target.Repo(), "BMCEventLog", kEventColumns);
    ASSERT_EQ(1u, events.size());
    EXPECT_EQ((std::vector<std::string>{"N/A", "N/A", "Critical", "N/A"}), events[0]);
    EXPECT_EQ((std::vector<std::string>{"BMC:( ) N/A"}), ColumnOf(target.Repo(), "ReportHighlights", "Message"));
}
