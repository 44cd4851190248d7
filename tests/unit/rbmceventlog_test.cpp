#include "repository/modules/rbmceventlog.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rrepository.h"
#include "kestro/xmodule/rootprefix.h"
#include "kestro/xmodule/unreadable.h"
#include "rcfctestsupport.h"
#include "repository/rmoduletable.h"
#include "support/logcapture.h"
#include "support/tempdir.h"
#include "xmodule/agentless/systeminfoscan.h"

#include <boost/filesystem/path.hpp>
#include <boost/scoped_ptr.hpp>
#include <gtest/gtest.h>

#include <algorithm>

using namespace kestro::repository;

namespace {

const char* const kLogTypes[] = {"QMMPlatformLogRest", "QMMAuditLogRest", "MaintenanceLogRest", "QMMActiveEventsRest",
                                 "QMMMessageLog",      "QMMPlatformLog",  "QMMAuditLog"};
const std::string kEventLink = "<a href=https://pubs.orvena.example/systems/7D76/events/";

// A loopback BMC serving a fixture tree, as a connection the readers take for a BMC.
class FixtureBmc {
public:
    explicit FixtureBmc(const std::string& tree)
    {
        LoopbackBmc::Options options;
        options.fixtureRoot = std::string(KESTRO_TEST_FIXTURES) + "/bmc/" + tree;
        bmc.reset(new LoopbackBmc(options));
        bmc->Start();
    }
    XModule::ConnectionInfo Connection() const
    {
        XModule::ConnectionInfo connection;
        connection.host = "127.0.0.1";
        connection.port = bmc->Port();
        connection.scheme = XModule::XModuleConnection::SchemeHttp;
        connection.isBmc = true;
        return connection;
    }

private:
    boost::scoped_ptr<LoopbackBmc> bmc;
};

// Runs the module on a repository of `mode`, the program home being the source tree (its
// shipped support list) and "/" an empty folder without IPMI device or ipmitool.
class BMCEventLogRun {
public:
    BMCEventLogRun(ConnectMode mode, const std::vector<XModule::ConnectionInfo>& rest,
                   const std::vector<XModule::ConnectionInfo>& cim)
        : home("KESTRO_HOME", boost::filesystem::path(KESTRO_SOURCE_DATA).parent_path().string()),
          path("PATH", bin.Path()),
          oldRoot(XModule::GetRootPrefix())
    {
        XModule::SetRootPrefix(root.Path());
        XModule::ClearUnreadableNotes();
        repo.reset(new RRepository(mode));
        repo->SetRestConnectionList(rest);
        repo->SetCIMConnectionList(cim);
        module.EnumInstances("QMMPlatformLogRest", *repo);
    }
    ~BMCEventLogRun() { XModule::SetRootPrefix(oldRoot); }

    std::vector<std::size_t> Counts()
    {
        std::vector<std::size_t> counts;
        for (const char* type : kLogTypes) counts.push_back(ColumnOf(*repo, type, "Index").size());
        return counts;
    }

    TempDir root, bin;
    ScopedEnv home, path;
    std::string oldRoot;
    LogCapture log;
    boost::scoped_ptr<RRepository> repo;
    RBMCEventLog module;
};

std::vector<std::string> KeysOfFirst(RRepository& repo, const std::string& type)
{
    std::vector<std::string> keys;
    std::vector<RInstance*> records = repo.GetInstances(type);
    if (!records.empty())
        for (const RProperty& property : records.front()->GetRProperty()) keys.push_back(property.name);
    repo.FreeInstances(records);
    return keys;
}

}  // namespace

TEST(RBMCEventLogTest, ReadsEachLogFromTheConnectionsTheModeGives)
{
    FixtureBmc standard("standard"), minimal("minimal");
    XModule::ConnectionInfo host;
    host.host = "localhost";
    typedef std::vector<XModule::ConnectionInfo> List;
    struct Case {
        const char* name;
        ConnectMode mode;
        List rest, cim;
        std::vector<std::size_t> counts;  // in the order of kLogTypes
        std::vector<std::string> highlights;
        std::vector<std::string> lines;
    } cases[] = {
        {"REST serves every log", ConnectOob, List{standard.Connection()}, List{standard.Connection()},
         {4, 2, 2, 2, 0, 0, 0},
         {"BMC:(2026-03-04T10:42:13+00:00)Processor 1 has shut down on thermal trip.",
          "BMC:(2026-03-05T08:02:30+00:00)DIMM 4 reports an uncorrectable error."},
         {"QMMPlatformLogRestFlag=1, QMMAuditLogRestFlag=1", "the QMM type is 3",
          "product_name_ is:RX650 V3 vpd mtm is:7D76"}},
        {"REST without logs, CIM reads them", ConnectOob, List{minimal.Connection()}, List{standard.Connection()},
         {0, 0, 0, 0, 0, 4, 2},
         {"Chassis:(2026-03-04T10:42:13+00:00)Processor 1 has shut down on thermal trip.",
          "Chassis:(2026-03-04T09:03:51+00:00)Three failed logins of user admin."},
         {"QMMPlatformLogRestFlag=0, QMMAuditLogRestFlag=0",
          "xFirmwareInventory::GetQMMPlatformLogDataViaREST() returns error = 3",
          "xFirmwareInventory::GetQMMAuditLogDataViaRESTs() returns error = ",
          "the machinetype is 7D76", "Enum XFirmware with IP is 127.0.0.1"}},
        {"ESXi reads each node's message log", ConnectEsxi, List{}, List{standard.Connection()},
         {0, 0, 0, 0, 4, 0, 0},
         {"Chassis:(2026-03-04T10:42:13+00:00)Processor 1 has shut down on thermal trip."},
         {"multi-node num is:1"}},
        {"in band without a BMC: this host has no SEL source", ConnectLocal, List{}, List{host},
         {0, 0, 0, 0, 0, 0, 0},
         {},
         {"QMMPlatformLogRestFlag=0, QMMAuditLogRestFlag=0", "neither the IPMI device /dev/ipmi0 nor ipmitool",
          "qmmapp::GetQMMPlatformEventLogForInventory() returns error = 1",
          "qmmapp::GetQMMAuditEventLogForInventory() returns error = 3"}},
        {"no connection at all", ConnectOob, List{}, List{}, {0, 0, 0, 0, 0, 0, 0}, {},
         {"the connect_list is empty."}},
        {"a mode without CIM logs", ConnectCmm, List{}, List{standard.Connection()}, {0, 0, 0, 0, 0, 0, 0}, {},
         {"XFirmware for [mode=3] not implemented."}},
    };
    for (const Case& c : cases) {
        BMCEventLogRun run(c.mode, c.rest, c.cim);
        EXPECT_EQ(c.counts, run.Counts()) << c.name;
        EXPECT_EQ(c.highlights, ColumnOf(*run.repo, "ReportHighlights", "Message")) << c.name;
        for (const std::string& line : c.lines) EXPECT_EQ(1, run.log.Count(line)) << c.name << ": " << line;
        EXPECT_EQ(1, run.log.Count("Exiting EnumXFirmwareQMMMessageLogInstances...")) << c.name;
    }
}

TEST(RBMCEventLogTest, RowsCountLinkAndFillEveryEntryOnce)
{
    FixtureBmc standard("standard");
    BMCEventLogRun run(ConnectOob, {standard.Connection()}, {standard.Connection()});
    RRepository& repo = *run.repo;
    const std::vector<std::string> platformKeys = {
        "Index",   "NodeID",           "Source",            "CreationTimeStamp", "EventID",             "MessageID",
        "Message", "MessageArguments", "PerceivedSeverity", "AuxiliaryData",     "EventSequenceNumber", "LogName"};
    EXPECT_EQ(platformKeys, KeysOfFirst(repo, "QMMPlatformLogRest"));
    std::vector<std::string> maintenanceKeys = platformKeys;
    maintenanceKeys.push_back("EventGroupId");
    EXPECT_EQ(maintenanceKeys, KeysOfFirst(repo, "MaintenanceLogRest"));

    struct Column {
        const char* type;
        const char* key;
        std::vector<std::string> values;
    } columns[] = {
        {"QMMPlatformLogRest", "Index", {"1", "2", "3", "4"}},
        {"QMMPlatformLogRest", "EventID",
         {kEventLink + "806F0107ffff.html>806F0107A1B2</a>", kEventLink + "FQXSPPW0031J.html>FQXSPPW0031J</a>",
          kEventLink + "LogCleared.html>LogCleared</a>", kEventLink + "0x80070204ffff.html>0x80070204C0DE</a>"}},
        {"QMMPlatformLogRest", "PerceivedSeverity", {"critical", "Critical", "OK", "Warning"}},
        {"QMMPlatformLogRest", "CreationTimeStamp",
         {"2026-03-04T10:42:13+00:00", "2026-03-04T11:05:40+00:00", "Unknown", "2026-03-05T07:12:09+00:00"}},
        {"QMMPlatformLogRest", "MessageArguments", {"Processor 1", "Power Supply 2, AC", "Unknown", "Fan 3, 1200"}},
        {"QMMPlatformLogRest", "LogName", {"System Event Log", "System Event Log", "System Event Log", "System Event Log"}},
        {"QMMPlatformLogRest", "NodeID", {"Node-A1", "Node-A1", "Node-A1", "Node-A1"}},
        {"QMMAuditLogRest", "Index", {"1", "2"}},
        {"QMMAuditLogRest", "EventSequenceNumber", {"17", "18"}},
        {"MaintenanceLogRest", "EventGroupId", {"12", "Hardware"}},
        {"QMMActiveEventsRest", "Source", {"/redfish/v1/Chassis/Enclosure-A", "/redfish/v1/Systems/Node-A1/Memory/DIMM4"}},
    };
    for (const Column& column : columns)
        EXPECT_EQ(column.values, ColumnOf(repo, column.type, column.key)) << column.type << " " << column.key;

    run.module.EnumInstances("QMMAuditLogRest", repo);
    EXPECT_EQ(1, run.log.Count("MessageLog has been enumerated"));
    EXPECT_EQ(4u, ColumnOf(repo, "QMMPlatformLogRest", "Index").size());
}

TEST(RBMCEventLogTest, RunsInTheOrdinaryRowRightBeforeTheExecutionLog)
{
    RModuleList modules;
    RModuleTable::AppendRow(RModuleTable::RowOrdinary, modules);
    std::vector<std::string> names;
    for (const boost::shared_ptr<RModule>& module : modules) names.push_back(module->GetName());
    const std::vector<std::string>::iterator log = std::find(names.begin(), names.end(), "BMCEventLogModule");
    ASSERT_NE(names.end(), log);
    EXPECT_EQ("RExecutionLog Module", *(log + 1));
}

TEST(RBMCEventLogTest, MachineTypeOfThisHostFromDmi)
{
    struct Case {
        const char* name;
        std::map<std::string, std::string> dmi;
        const char* expected;
    } cases[] = {
        {"SKU", {{"product_sku", "7D76CTO1WW"}, {"product_name", "RX650 V3 -[7X05CTO1WW]-"}}, "7D76"},
        {"bracketed in the product name", {{"product_sku", "N/A"}, {"product_name", "RX650 V3 -[7X05CTO1WW]-"}}, "7X05"},
        {"bracketed in the version", {{"product_name", "RX650 V3"}, {"product_version", "[7Z71CTO1WW]"}}, "7Z71"},
        {"nowhere", {{"product_name", "Virtual Machine"}}, ""},
    };
    for (const Case& c : cases) EXPECT_EQ(c.expected, SystemInfoScan::MachineTypeOfDmi(c.dmi)) << c.name;
}
