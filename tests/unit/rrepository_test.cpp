#include "kestro/repository/rinstance.h"
#include "kestro/repository/rrepository.h"
#include "kestro/systemtype/systemtype.h"
#include "support/fixturehost.h"
#include "support/golden.h"
#include "support/logcapture.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <boost/function.hpp>



using namespace kestro::repository;

namespace {

std::string Mode(RRepository& repo, const std::string& directory)
{
    EXPECT_TRUE(repo.WriteXML("mode.xml", directory));
    const std::string text = ReadFile(directory + "/mode.xml");
    const std::string::size_type begin = text.find("<mode>");
    const std::string::size_type end = text.find("</mode>");
    if (begin == std::string::npos || end == std::string::npos) return std::string();
    return text.substr(begin + 6, end - begin - 6);
}

RInstance Record(const std::string& type, const std::string& name, int value)
{
    RInstance record(type, type, -1);
    record.AddProperty("Name", "Name", name, false);
    record.AddProperty("Value", "Value", value, false);
    return record;
}

}  // namespace

// What the log tells at the levels a run writes by default (3 and below).
std::string UserLog(const LogCapture& capture)
{
    std::string text;
    for (const auto& record : capture.Records())
        if (record.first <= 3) text += std::to_string(record.first) + " " + record.second + "\n";
    return text;
}

TEST(RRepositoryTest, EachModePicksItsCaseAndOrdinaryCasesLookForThePlugin)
{
    // No plug-in lies beside this program: the ordinary cases say so and go on without it.
    const std::string noPlugin = "2 [repo] Unable to load shared library repository_vxmodule.so !!!\n"
                                 "2 [repo] load vexa server module failed\n";
    const std::string noCase = "1 [repo] Inventory case doesn't exist \n";
    const std::string noFamily = "2 [repo] Cannot tell the operating system family from os-release, using rhel\n";
    const struct {
        ConnectMode mode;
        const char* release;
        const char* expected;  // empty: no case until a file is read
        bool ordinary;
        std::string before;  // logged before the case is set
    } cases[] = {
        // The local case follows the operating system family.
        {ConnectLocal, "ID=ubuntu\nID_LIKE=debian\n", "ubuntu", true, ""},
        {ConnectLocal, "ID=\"opensuse-leap\"\nID_LIKE=\"suse opensuse\"\n", "sles", true, ""},
        {ConnectLocal, "ID=\"rocky\"\nID_LIKE=\"rhel centos fedora\"\n", "rhel", true, ""},
        {ConnectLocal, "ID=fedora\n", "rhel", true, ""},
        {ConnectLocal, "ID=linuxmint\nID_LIKE='ubuntu debian'\n", "ubuntu", true, ""},
        {ConnectLocal, "ID=sles\n", "sles", true, ""},
        {ConnectLocal, "ID=arch\n", "rhel", true, noFamily},
        {ConnectLocal, "", "rhel", true, noFamily},
        {ConnectLocalAmd, "ID=rhel\n", "amd_rhel", true, ""},
        {ConnectLocalAmd, "ID=debian\n", "ubuntu", true, ""},
        {ConnectOob, "ID=rhel\n", "oob", true, ""},
        {ConnectCmm, "ID=rhel\n", "cmm", false, ""},
        {ConnectEsxi, "ID=rhel\n", "esxi", true, ""},
        {ConnectSmm, "ID=rhel\n", "smm", false, ""},
        {static_cast<ConnectMode>(5), "ID=rhel\n", "windows", true, noCase},
        {ConnectNone, "ID=rhel\n", "", false, ""},
    };
    // The server family is detected once per process, on first need; done here, its lines stay out.
    kestro::SystemType::GetInstance()->GetSystemType();
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.expected) + " " + c.release);
        FixtureHost host(c.release);
        LogCapture capture;
        RRepository repo(c.mode);
        const std::string set = *c.expected ? std::string("3 [repo] Set inventory case to  ") + c.expected + "\n" : "";
        EXPECT_EQ(c.before + set + (c.ordinary ? noPlugin : ""), UserLog(capture));
        EXPECT_EQ(c.expected, Mode(repo, host.Dir().Path()));
    }
}

TEST(RRepositoryTest, ConnectionConstructorKeepsTheRedfishConnection)
{
    TempDir dir;
    XModule::ConnectionInfo bmc;
    bmc.host = "10.0.0.5";
    bmc.user = "admin";
    LogCapture capture;
    RRepository inBand(bmc, CaseCfcRhel);
    EXPECT_EQ(ConnectCfc, inBand.GetConnectMode());
    EXPECT_EQ("10.0.0.5", inBand.GetRedfishConnection().host);
    EXPECT_EQ("cfc_rhel", Mode(inBand, dir.Path()));
    EXPECT_EQ("", UserLog(capture));

    RRepository outOfBand(bmc, CaseCfcOob);
    EXPECT_EQ(ConnectNone, outOfBand.GetConnectMode());
    EXPECT_EQ(1u, outOfBand.GetRestConnectionList().size());

    RRepository other(bmc, CaseRhel);
    EXPECT_TRUE(other.GetRestConnectionList().empty());
    EXPECT_EQ("", other.GetRedfishConnection().host);
    EXPECT_EQ(0, other.GetRedfishConnection().port);
}

TEST(RRepositoryTest, ModeNoneHasNothingUntilAFileIsRead)
{
    TempDir dir;
    LogCapture capture;
    RRepository repo(ConnectNone);
    EXPECT_TRUE(repo.GetAvailableInstanceTypes().empty());
    repo.RunInventory(nullptr);
    EXPECT_TRUE(repo.GetCollectedInstanceTypes().empty());
    repo.RunInventory("system");
    EXPECT_TRUE(capture.Has(2, "[repo] Category not correctly initialized, skip this function"));
    ASSERT_TRUE(repo.WriteXML("", dir.Path()));
    EXPECT_TRUE(MatchesGolden("repository/empty.xml", dir.Read("RReport20130707.xml")));

    repo.InitDepModules();
    EXPECT_TRUE(capture.Has(1, "[repo] There is NO matching case for mode: ")) << capture.Dump();
    EXPECT_TRUE(capture.Has(3, "[repo] Set inventory case to  windows"));
    // The modules of the Windows case: its own tables of the legacy, operating-system and hardware modules.
    const std::vector<std::string> available = repo.GetAvailableInstanceTypes();
    for (const char* type : {"ApplicationEvent", "DeviceDriver", "SecurityEventAll", "Processor", "ExecutionErrorLog"})
        EXPECT_EQ(1, std::count(available.begin(), available.end(), type)) << type;
    EXPECT_EQ(0, std::count(available.begin(), available.end(), "LinuxKernelModule"));
}

TEST(RRepositoryTest, StoreHandsOutCopiesListsEachTypeOnceAndCombines)
{
    TempDir dir;
    RRepository repo(ConnectNone);
    for (int i = 0; i < 3; ++i) Record("Processor", "cpu" + std::to_string(i), i).AddToRepository(repo);
    Record("Memory", "dimm", 8).AddToRepository(repo);
    Record("Processor", "cpu3", 3).AddToRepository(repo);
    EXPECT_EQ((std::vector<std::string>{"Memory", "Processor"}), repo.GetCollectedInstanceTypes());
    EXPECT_TRUE(repo.GetInstances("Disk").empty());

    std::vector<RInstance*> processors = repo.GetInstances("Processor");
    ASSERT_EQ(4u, processors.size());
    for (size_t i = 0; i < processors.size(); ++i)
        EXPECT_EQ("cpu" + std::to_string(i), processors[i]->GetNormalizedValue("Name", ""));
    processors[0]->AddProperty("Name", "Name", std::string("changed"), false);
    repo.FreeInstances(processors);
    processors = repo.GetInstances("Processor");
    EXPECT_EQ("cpu0", processors[0]->GetNormalizedValue("Name", ""));
    repo.FreeInstances(processors);

    repo.SetDataSource("kestro", "1", "4.4.1");
    repo.SetDataSource("other", "2", "9");
    std::vector<RInstance*> sources = repo.GetInstances("DataSource");
    ASSERT_EQ(1u, sources.size());
    EXPECT_EQ("kestro", sources[0]->GetNormalizedValue("Name", ""));
    repo.FreeInstances(sources);
    // Combining adds every entry of the other, each time; a repository is not combined with itself.
    RRepository target(ConnectNone);
    target.Combine(repo);
    target.Combine(repo);
    EXPECT_EQ((std::vector<std::string>{"DataSource", "Memory", "Processor"}), target.GetCollectedInstanceTypes());
    processors = target.GetInstances("Processor");
    EXPECT_EQ(8u, processors.size());
    target.FreeInstances(processors);
    LogCapture capture;
    target.Combine(target);
    EXPECT_TRUE(capture.Has(2, "[repo] Cannot combine a repository with itself"));
}

TEST(RRepositoryTest, CategoriesComeFromTheCaseOrTheStoredMode)
{
    FixtureHost host("ID=rhel\n");
    host.Dir().Write("data/reportcategory_rhel.xml",
                     "<report><category><name>c</name><display>C</display>"
                     "<group><name>system</name><display>System</display>"
                     "<type>DataSource</type><type>Nowhere</type></group>"
                     "<group IsHidden=\"true\"><name>quiet</name><display>Quiet</display></group>"
                     "</category></report>");
    LogCapture capture;
    RRepository repo(ConnectLocal);
    ASSERT_TRUE(repo.LoadCategories());
    EXPECT_TRUE(capture.Has(3, "[repo] Loading category file: " + host.Dir().Path() + "/data/reportcategory_rhel.xml"))
        << capture.Dump();
    EXPECT_EQ(1u, repo.GetUnHiddenInventoryGroups().size());

    repo.SetDataSource("kestro", "1", "2");
    repo.RunInventory("system");
    EXPECT_TRUE(capture.Has(3, "[repo] Begin to run inventory for group: system"));
    EXPECT_TRUE(capture.Has(2, "[repo] Type already finished running inventory and will be skipped: DataSource"));
    EXPECT_TRUE(capture.Has(2, "[repo] Cannot find type in all modules to run inventory: Nowhere"));
    repo.RunInventory("absent");
    EXPECT_TRUE(capture.Has(2, "[repo] Cannot find group name in category file to run inventory: absent"));
    ASSERT_TRUE(repo.LoadCategories());
    EXPECT_EQ(2u, repo.GetInventoryGroups().size());

    XModule::ConnectionInfo bmc;
    RRepository oob(bmc, CaseCfcOob);
    EXPECT_FALSE(oob.LoadCategories());
    EXPECT_TRUE(capture.Has(3, "[repo] Loading category file: " + host.Dir().Path() + "/data/reportcategory_cfc_oob.xml"));
    oob.RunInventory("system");
    EXPECT_TRUE(capture.Has(2, "[repo] Cannot find group name in category file to run inventory: system"));
}

TEST(RRepositoryTest, ModuleFormRunsEveryModuleAndReportsProgress)
{
    FixtureHost host("ID=sles\n");
    static std::vector<std::string> seen;
    seen.clear();
    RRepository fresh(ConnectLocal);
    // The legacy module comes first and collects nothing: its types raise unless already held.
    void (*record)(const std::string&, const std::string&) = [](const std::string&, const std::string& display) {
        seen.push_back(display);
    };
    EXPECT_THROW(fresh.RunInventory(record), boost::bad_function_call);
    EXPECT_EQ(std::vector<std::string>(1, "Legacy Module"), seen);

    RRepository repo(ConnectLocal);
    for (const char* type : {"ApplicationEvent", "QMMMessageLogData", "SecurityEvent", "SystemEvent"})
        RInstance(type, type, -1).AddToRepository(repo);
    seen.clear();
    LogCapture capture;
    repo.RunInventory([](const std::string& name, const std::string& display) { seen.push_back(name + "/" + display); });
    EXPECT_TRUE(capture.Has(3, "[repo] Begin to run inventory for module: LegacyModule")) << capture.Dump();
    EXPECT_TRUE(capture.Has(3, "[repo] Begin to run inventory for module: RExecutionLog Module"));
    EXPECT_TRUE(capture.Has(3, "[repo] Begin to run inventory for type: ExecutionErrorLog"));
    EXPECT_TRUE(capture.Has(2, "[repo] Type already finished running inventory and will be skipped: SystemEvent"));
    EXPECT_EQ((std::vector<std::string>{"LegacyModule/Legacy Module", "DataSource/Data Source",
                                        "ReportHighlights Module/Report Highlights Module",
                                        "ROSInventoryModule/OSInventory Module",
                                        "HardwareInventoryModule/HardwareInventory Module",
                                        "NetworkModule/Network Module",
                                        "LSIOptModule/LSIOpt Module",
                                        "BMCEventLogModule/BMC Event Log Module",
                                        "RExecutionLog Module/Execution Log Module"}),
              seen);
    EXPECT_EQ(1u, CountOf(repo, "OperatingSystem"));
}

TEST(RRepositoryTest, XmlRoundTripKeepsRecordsOrderAndEncodedValues)
{
    TempDir dir;
    XModule::ConnectionInfo bmc;
    RRepository written(bmc, CaseCfcOob);
    Record("Processor", "cpu0", 0).AddToRepository(written);
    RInstance odd("Memory", "DIMM \xe9", 4);
    odd.AddProperty("Serial", "Serial", std::string("caf\xe9\x01"), false);
    odd.AddProperty("Sizes", "Sizes", std::vector<int>{1, 2});
    odd.AddReference("Processor", 0);
    odd.AddToRepository(written);
    Record("Processor", "cpu1", 1).AddToRepository(written);
    ASSERT_TRUE(written.WriteXML("inventory", dir.Path()));
    EXPECT_EQ((std::vector<std::string>{"Memory", "Processor"}), written.GetCollectedInstanceTypes());

    RRepository read(ConnectNone);
    LogCapture capture;
    ASSERT_TRUE(read.ReadXML(dir.Path() + "/inventory", ""));
    EXPECT_TRUE(capture.Has(3, "[repo] kestro is the first node. "));
    ASSERT_TRUE(read.WriteXML("again.xml", dir.Path()));
    EXPECT_EQ(dir.Read("inventory"), dir.Read("again.xml"));

    std::vector<RInstance*> memory = read.GetInstances("Memory");
    ASSERT_EQ(1u, memory.size());
    std::string serial;
    memory[0]->GetPropertyValue("Serial", serial);
    EXPECT_EQ("base64encode Y2Fm6QE=", serial);
    EXPECT_EQ("1,2", memory[0]->GetNormalizedValue("Sizes", ","));
    EXPECT_TRUE(memory[0]->HasReference("Processor", 0));
    EXPECT_EQ(4, memory[0]->GetID());
    read.FreeInstances(memory);

    read.InitDepModules();
    EXPECT_TRUE(capture.Has(3, "[repo] Set inventory case to  cfc_oob"));
    EXPECT_EQ(0, capture.Count("repository_vxmodule"));
}

TEST(RRepositoryTest, OlderRootAndForeignRootsReadAndAWideReadOfBytesThatAreNotUtf8Raises)
{
    TempDir dir;
    LogCapture capture;
    RRepository older(ConnectNone);
    ASSERT_TRUE(older.ReadXML(dir.Write("old.xml",
                                        "<repository>\n  <mode>rhel</mode>\n  <Disk>\n    <display>D</display>\n"
                                        "    <Model><display>M</display><value>\xff\xfe</value></Model>\n"
                                        "  </Disk>\n</repository>\n"),
                              ""));
    EXPECT_TRUE(capture.Has(3, "[repo] repository is the first node. "));
    EXPECT_EQ(std::vector<std::string>(1, "Disk"), older.GetCollectedInstanceTypes());
    std::vector<RInstance*> disks = older.GetInstances("Disk");
    ASSERT_EQ(1u, disks.size());
    EXPECT_EQ("D", disks[0]->GetDisplay());
    // A wide read of bytes that are not UTF-8 raises.
    std::wstring wide;
    try {
        disks[0]->GetPropertyValue("Model", wide);
        ADD_FAILURE() << "no exception";
    } catch (const std::range_error& e) {
        EXPECT_STREQ("bad conversion", e.what());
    }
    older.FreeInstances(disks);

    RRepository foreign(ConnectNone);
    ASSERT_TRUE(foreign.ReadXML(dir.Write("foreign.xml", "<Inventory><x>1</x></Inventory>"), ""));
    EXPECT_EQ(std::vector<std::string>(1, "Inventory"), foreign.GetCollectedInstanceTypes());
    foreign.InitDepModules();
    EXPECT_TRUE(capture.Has(1, "[repo] There is NO matching case for mode: "));
}

TEST(RRepositoryTest, BadFilesAndFoldersLoseNothing)
{
    TempDir dir;
    RRepository repo(ConnectNone);
    Record("Processor", "cpu0", 0).AddToRepository(repo);
    LogCapture capture;
    const char* const broken[] = {"<kestro><repository><Processor>", "", "not xml at all", "<kestro attr=></kestro>"};
    for (const char* text : broken) {
        EXPECT_FALSE(repo.ReadXML(dir.Write("broken.xml", text), ""));
        EXPECT_EQ(std::vector<std::string>(1, "Processor"), repo.GetCollectedInstanceTypes()) << text;
    }
    EXPECT_FALSE(repo.ReadXML(dir.Path() + "/absent.xml", ""));
    EXPECT_EQ(5, capture.Count("[repo] Failed to read repository XML: ")) << capture.Dump();

    const std::string file = dir.Write("plain-file", "x");
    EXPECT_FALSE(repo.WriteXML("out.xml", file));
    EXPECT_TRUE(capture.Has(1, "[repo] Directory not exist: " + file));
    EXPECT_FALSE(repo.WriteXML("out.xml", dir.Path() + "/missing"));
    EXPECT_EQ(std::vector<std::string>(1, "Processor"), repo.GetCollectedInstanceTypes());
    ASSERT_TRUE(repo.WriteXML("ok.xml", dir.Path()));
    EXPECT_NE(std::string::npos, dir.Read("ok.xml").find("<Processor>"));
}

TEST(RRepositoryTest, DeviceScanTakesTheUserOptionsAndLeavesAnEmptyScan)
{
    FixtureHost host("ID=rhel\n");
    RRepository repo(ConnectNone);
    XModule::UserContext context;
    context.options["type"] = "fw";
    context.options["checkdevice"] = "";
    context.options["iobay"] = "2";
    repo.SetUserContext(context);
    LogCapture capture;
    repo.ReadDeviceInfo();
    EXPECT_TRUE(capture.Has(3, "[repo] Parameter --type: fw")) << capture.Dump();
    EXPECT_TRUE(capture.Has(3, "[repo] update scan --iobay 2 --checkdevice  --dir ./ --type fw")) << capture.Dump();
    EXPECT_EQ(0, capture.Count("Succeed."));

    ASSERT_TRUE(repo.WriteXML("scan.xml", host.Dir().Path()));
    EXPECT_TRUE(MatchesGolden("repository/empty.xml", host.Dir().Read("scan.xml")));
}
