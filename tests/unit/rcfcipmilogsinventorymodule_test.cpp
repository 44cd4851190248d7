#include "repository/modules/rcfcipmilogsinventorymodule.h"
#include "repository/modules/rcfclogreader.h"
#include "rcfctestsupport.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

using namespace kestro::repository;

namespace {

const std::vector<RCFCColumn> kSystemLogColumns = {
    {"RecordId", "[0-9]+|N/A"},   {"Source", "BIOS|BMC|N/A"},
    {"TimeStamp", kAnyText},      {"SensorName", kAnyText},
    {"Severity", "OK|Warning|Critical|N/A"}, {"Status", "Assert|Deassert|Unknown"},
    {"EventDescription", kAnyText}};

}  // namespace

TEST(RCFCIPMILogsInventoryModuleTest, DirectionWordsMatchExactly)
{
    const struct {
        const char* text;
        const char* word;
    } cases[] = {
        {"Assertion event", "Assert"},   {"Deassertion event", "Deassert"}, {"assertion event", "Unknown"},
        {"Assertion event ", "Unknown"}, {"Assertion", "Unknown"},          {"", "Unknown"},
        {"N/A", "Unknown"},
    };
    for (const auto& c : cases) EXPECT_EQ(c.word, RCFCLogReader::DirectionWord(c.text)) << '"' << c.text << '"';
}

TEST(RCFCIPMILogsInventoryModuleTest, FullTargetGivesBothLogsAndHighlightsTheCriticalRecords)
{
    RCFCTarget target("full");
    RCFCIPMILogsInventoryModule module;
    LogCapture capture;
    target.RunEveryType(module);
    EXPECT_TRUE(capture.Has(3, "[repo] Try to enum system bios log instance."));
    EXPECT_TRUE(capture.Has(3, "[repo] Try to enum system chassis log instance."));
    EXPECT_EQ(0, capture.Count("returns error"));

    const auto bios = ExpectRows(target.Repo(), "SystemBIOSLog", kSystemLogColumns);
    ASSERT_EQ(4u, bios.size());
    EXPECT_EQ((std::vector<std::string>{"2", "BIOS", "2026-11-18T22:41:57+00:00", "CPU 2 Status", "Critical", "Assert",
                                        "Uncorrectable machine check on processor 2."}),
              bios[1]);
    EXPECT_EQ((std::vector<std::string>{"Assert", "Assert", "Deassert", "Unknown"}),
              ColumnOf(target.Repo(), "SystemBIOSLog", "Status"));
    EXPECT_EQ((std::vector<std::string>{"Assert", "Deassert", "Assert", "Unknown"}),
              ColumnOf(target.Repo(), "SystemChassisLog", "Status"));

    EXPECT_EQ((std::vector<std::string>{
                  "IPMI:(2026-11-18T22:41:57+00:00 CPU 2 Status) Uncorrectable machine check on processor 2.",
                  "IPMI:(2026-11-21T17:55:19+00:00 PSU2 Status) Power supply 2 lost AC input."}),
              ColumnOf(target.Repo(), "ReportHighlights", "Message"));
}

TEST(RCFCIPMILogsInventoryModuleTest, MissingLogsAndFieldsAreLoggedAndShownAsNA)
{
    RCFCTarget target("sparse");
    RCFCIPMILogsInventoryModule module;
    LogCapture capture;
    target.RunEveryType(module);

    const auto bios = ExpectRows(target.Repo(), "SystemBIOSLog", kSystemLogColumns);
    ASSERT_EQ(2u, bios.size());
    EXPECT_EQ((std::vector<std::string>{"1", "N/A", "N/A", "N/A", "Critical", "Unknown", "N/A"}), bios[0]);
    EXPECT_EQ((std::vector<std::string>{"N/A", "N/A", "yesterday", "N/A", "N/A", "Unknown", "N/A"}), bios[1]);
    // Fields that read "N/A" stand empty inside the brackets.
    EXPECT_EQ((std::vector<std::string>{"IPMI:( ) N/A"}), ColumnOf(target.Repo(), "ReportHighlights", "Message"));

    EXPECT_TRUE(capture.Has(2, "[repo] GetChassisLog returns error = 1")) << capture.Dump();
    EXPECT_TRUE(ColumnOf(target.Repo(), "SystemChassisLog", "RecordId").empty());

    RCFCTarget empty("full");
    empty.Bmc().SetDocument("/redfish/v1/Systems/1/LogServices/BIOSLog/Entries",
                            R"({"@odata.id": "/redfish/v1/Systems/1/LogServices/BIOSLog/Entries", "Members": []})");
    capture.Clear();
    empty.Run(module, "SystemBIOSLog");
    EXPECT_TRUE(empty.Repo().GetCollectedInstanceTypes().empty());
    EXPECT_EQ(0, capture.Count("error"));

    empty.Repo().SetRestConnectionList(std::vector<XModule::ConnectionInfo>());
    empty.Bmc().ClearRequests();
    empty.Run(module, "SystemChassisLog");
    EXPECT_TRUE(capture.Has(1, "[repo] There is no rest connection info in repo."));
    EXPECT_EQ(0, empty.Bmc().RequestCount());
}
