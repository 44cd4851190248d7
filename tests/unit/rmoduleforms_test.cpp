#include "repository/modules/rexecutionlogmodule.h"
#include "repository/modules/rlegacymodule.h"
#include "repository/modules/rreporthighlightsmodule.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rinstanceshtmlwriter.h"
#include "kestro/repository/rinstanceswrapper.h"
#include "kestro/repository/rrepository.h"
#include "support/golden.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

// The table forms of the modules that collect nothing of the host: the legacy types, the report
// highlights and the execution log.

using namespace kestro::repository;

namespace {

// An event whose fields hold their key and "1"; security events have no icon column.
RInstance Event(const std::string& type, const std::string& severity)
{
    RInstance event(type, "Application Event", -1);
    for (const std::string key : {"T", "Type", "MessageTimestamp", "Source", "Category", "Message", "EventID", "User",
                                  "Computer"}) {
        if (key == "T" && type == "SecurityEvent") continue;
        const std::string value = key == "Type" ? severity : key == "T" ? "" : key + "1";
        event.AddProperty(key, key == "EventID" ? "Event ID" : key, value, false);
    }
    return event;
}

RInstance MessageLog()
{
    RInstance message("QMMMessageLogData", "Messages", -1);
    for (int i = 0; i < 9; ++i) message.AddProperty("K" + std::to_string(i), "H" + std::to_string(i), i, false);
    return message;
}

RInstance OneValue(const std::string& type, const std::string& display, const std::string& key,
                   const std::string& heading, const std::string& value)
{
    RInstance record(type, display, -1);
    record.AddProperty(key, heading, value, false);
    return record;
}

}  // namespace

// Old event types get sortable tables with severity icons, message logs their own widths, the
// highlights and the execution log one wide column.
TEST(RModuleFormsTest, EachTypeHasItsTable)
{
    RLegacyModule legacy;
    RReportHighlightsModule highlights;
    RExecutionLogModule executionLog;
    struct {
        RModule& module;
        const char* type;
        std::vector<RInstance> records;
        const char* golden;
    } cases[] = {
        {legacy, "SystemEvent", {Event("SystemEvent", "Warning"), Event("SystemEvent", "Error")}, "system_event.html"},
        {legacy, "SecurityEvent", {Event("SecurityEvent", "Audit Success")}, "security_event.html"},
        {legacy, "QMMMessageLogData", {MessageLog()}, "message_log.html"},
        {highlights, "ReportHighlights",
         {OneValue("ReportHighlights", "Report Highlights", "Message", "Message", "Fan 2 failed")},
         "report_highlights.html"},
        {executionLog, "ExecutionErrorLog",
         {OneValue("ExecutionErrorLog", "Execution Log", "KestroErrorLog", "Log Message", "t [ERROR] a.cpp:2 broken")},
         "execution_log.html"},
    };
    for (auto& c : cases) {
        std::vector<RInstance*> records;
        for (RInstance& record : c.records) records.push_back(&record);
        TempDir dir;
        {
            RInstancesHTMLWriter writer(dir.Path(), "page", "Page");
            EXPECT_TRUE(RInstancesWrapper(c.type, records, c.module.FindWrapCallback(c.type)).WriteReport(writer));
        }
        EXPECT_TRUE(MatchesGolden(std::string("modules/") + c.golden, PageBody(dir.Read("page.html"), "Page")));
    }
}

TEST(RModuleFormsTest, LegacyAndHighlightsCollectNothing)
{
    RRepository repo(ConnectNone);
    RReportHighlightsModule().EnumInstances("ReportHighlights", repo);
    EXPECT_TRUE(repo.GetCollectedInstanceTypes().empty());
    RLegacyModule legacy;
    for (const char* type : {"QMMMessageLogData", "ApplicationEvent", "SystemEvent", "SecurityEvent"})
        EXPECT_THROW(legacy.EnumInstances(type, repo), boost::bad_function_call) << type;
}
