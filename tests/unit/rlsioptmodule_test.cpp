#include "repository/modules/rlsioptmodule.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rinstanceswrapper.h"
#include "kestro/repository/rrepository.h"
#include "support/fixturehost.h"
#include "support/logcapture.h"
#include "support/sysfsfixture.h"

#include <gtest/gtest.h>

#include <boost/filesystem/operations.hpp>
#include <boost/function.hpp>

#include <algorithm>

using namespace kestro::repository;
namespace opt = XModule::XMOptions;

namespace {

opt::RaidAdapter Adapter(const std::string& name, const std::string& controllerType)
{
    opt::RaidAdapter adapter;
    adapter.Name = name;
    adapter.ControllerType = controllerType;
    return adapter;
}

opt::SSD At(const std::string& location)
{
    opt::SSD ssd;
    ssd.Location = location;
    return ssd;
}

opt::StoragePool Pool(const std::string& level, const std::string& span)
{
    opt::StoragePool pool;
    pool.RAIDLevel = level;
    pool.Span = span;
    return pool;
}

std::string Flag(bool value) { return value ? "yes" : "no"; }

XModule::ConnectionInfo ThisHost()
{
    XModule::ConnectionInfo host;
    host.host = "localhost";
    return host;
}

// A storcli stand-in under the program's utilities/lsi/: it prints captured output for the
// commands whose output RAIDLink parses and its arguments for every other one.
void InstallFakeStorcli(const TempDir& home)
{
    const std::string fixtures = std::string(KESTRO_TEST_FIXTURES) + "/storcli/";
    const std::string script = home.Write("utilities/lsi/storcli64",
                                          "#!/bin/sh\n"
                                          "case \"$*\" in\n"
                                          "  '/call show all J') cat '" + fixtures + "call_show_all.json' ;;\n"
                                          "  '/call/eall/sall show all J') cat '" + fixtures + "drives_show_all.json' ;;\n"
                                          "  *) echo \"storcli ran: $*\" ;;\n"
                                          "esac\n");
    boost::filesystem::permissions(script, boost::filesystem::owner_all);
}

std::vector<std::string> Column(RRepository& repo, const std::string& type, const std::string& key)
{
    std::vector<std::string> values;
    std::vector<RInstance*> records = repo.GetInstances(type);
    for (RInstance* record : records) {
        std::string value;
        record->GetPropertyValue(key, value);
        values.push_back(value);
    }
    repo.FreeInstances(records);
    return values;
}

}  // namespace

TEST(RLSIOptModuleTest, ClassificationSortAndCodeEdgeCases)
{
    RLSIOptModule module;  // not yet enumerated, so not Whitley: codes are looked up
    struct Case {
        const char* what;
        boost::function<std::string()> actual;
        std::string expected;
    };
    const Case cases[] = {
        {"vroc in upper case", [] { return Flag(RLSIOptModule::IsNonRaid(Adapter("VROC NVMe", "RAID"))); }, "yes"},
        {"vroc in mixed case", [] { return Flag(RLSIOptModule::IsNonRaid(Adapter("vRoC (VMD)", "M.2"))); }, "yes"},
        {"vroc of SATA drives",
         [] { return Flag(RLSIOptModule::IsNonRaid(Adapter("VROC SATA", "Direct_Attached_SATA"))); }, "no"},
        {"vroc after the fourth character",
         [] { return Flag(RLSIOptModule::IsNonRaid(Adapter("Intel VROC", "RAID"))); }, "no"},
        {"name shorter than vroc", [] { return Flag(RLSIOptModule::IsNonRaid(Adapter("vro", "RAID"))); }, "no"},
        {"direct NVMe", [] { return Flag(RLSIOptModule::IsNonRaid(Adapter("Onboard", "M.2_Direct_Attached_NVMe"))); },
         "yes"},
        {"U.2 takes its own branch", [] { return Flag(RLSIOptModule::IsNonRaid(Adapter("Onboard", "U.2"))); }, "no"},
        {"bay 10 before bay 2",
         [] { return Flag(RLSIOptModule::LocationBefore(At("Front Bay 10"), At("Rear Bay 2"))); }, "yes"},
        {"bay 2 after bay 10",
         [] { return Flag(RLSIOptModule::LocationBefore(At("Bay 2"), At("Front Bay 10"))); }, "no"},
        {"no bay compares whole texts", [] { return Flag(RLSIOptModule::LocationBefore(At("Slot 1"), At("Bay 0"))); },
         "no"},
        {"shorter first on a tie", [] { return Flag(RLSIOptModule::LocationBefore(At("x Bay 1"), At("Bay 10"))); },
         "yes"},
        {"span 255 drops the span", [] { return RLSIOptModule::PoolRaidLevel(Pool("RAID 5", "255")); }, "RAID 5"},
        {"span joined", [] { return RLSIOptModule::PoolRaidLevel(Pool("RAID 1", "0")); }, "RAID 10"},
        {"drive state 14", [&module] { return module.ShownValue("DiskState", "14"); }, "Other"},
        {"drive state 13", [&module] { return module.ShownValue("DiskState", "13"); }, "Shield configured"},
        {"media type 5", [&module] { return module.ShownValue("MediaType", "5"); }, "Other"},
        {"media type 4", [&module] { return module.ShownValue("MediaType", "4"); }, "Flash"},
        {"link speed 5", [&module] { return module.ShownValue("DiskFormat", "5"); }, "12.0Gb/s"},
        {"battery type 6", [&module] { return module.ShownValue("BatteryType", "6"); }, "TMMC"},
        {"battery type 7", [&module] { return module.ShownValue("BatteryType", "7"); }, "Other"},
        {"array state 3", [&module] { return module.ShownValue("ArrayStatus", "3"); }, "Partially Degraded"},
        {"uncoded property", [&module] { return module.ShownValue("Temperature", "14"); }, "14"},
        {"encryption true", [] { return RLSIOptModule::YesNo("TrUe"); }, "YES"},
        {"encryption N/A", [] { return RLSIOptModule::YesNo("N/A"); }, "NO"},
        {"M.2 adapter", [] { return RLSIOptModule::AdapterDisplay("ThinkSystem M.2 RAID"); }, "M.2 Adapter"},
        {"7mm adapter", [] { return RLSIOptModule::AdapterDisplay("ThinkSystem 7mm RAID"); }, "7MM Adapter"},
        {"7MM in upper case", [] { return RLSIOptModule::AdapterDisplay("ThinkSystem 7MM RAID"); }, "Storage Device"},
        {"7mm volume", [] { return RLSIOptModule::BootVolumeDisplay("7mm kit"); }, "7MM Storage Volume"},
        {"M.2 SATA", [] { return RLSIOptModule::NonRaidDisplay("M.2", "SATA"); }, "M.2 SATA SSD"},
        {"7MM NVMe", [] { return RLSIOptModule::NonRaidDisplay("7MM_Direct_Attached_NVMe", "NVMe"); }, "7MM NVMe SSD"},
        {"M.2 of neither kind", [] { return RLSIOptModule::NonRaidDisplay("M.2", "SAS"); }, ""},
        {"U.2", [] { return RLSIOptModule::NonRaidDisplay("U.2", "SATA"); }, "Direct Attached NVMe SSD"},
        {"plain RAID", [] { return RLSIOptModule::NonRaidDisplay("RAID", "NVMe"); }, ""},
    };
    LogCapture capture;
    for (const Case& c : cases) EXPECT_EQ(c.expected, c.actual()) << c.what;
    EXPECT_TRUE(capture.Has(2, "[repo] For Non Raid M.2, NVMe and SATA SSD are not found")) << capture.Dump();
    EXPECT_TRUE(capture.Has(2, "[repo] For Non Raid, M.2 and 7MM or Direct_Attached_NVMe adapter are not found"));
}

TEST(RLSIOptModuleTest, ConnectModesWithoutATargetLogTheirPathAndAddNothing)
{
    struct Case {
        ConnectMode mode;
        bool cim;
        const char* line;
        bool exitLine;
    };
    const Case cases[] = {
        {ConnectLocal, false,
         "[repo] This system is non-Agentless supported. Quantrel Essentials Kestro depends on the QMM Agentless "
         "interface, customers should update xFW and options FW to above certain levels then AC. (xFW:  2Q15 QUSP or "
         "above, Options fw:  2Q15 QUSP or above) ",
         true},
        {ConnectOob, false, "[repo] LSI for [mode=2] Agentless not implemented.", true},
        {ConnectEsxi, false, "[repo] in RLSIOptModule::EnumAdapterInstances(), the connect_list_cim is empty.", false},
        {ConnectCfc, false, "[repo] LSI for [mode=13] not implemented.", true},
    };
    FixtureHost host("");
    for (const Case& c : cases) {
        RRepository repo(c.mode);
        RLSIOptModule module;
        LogCapture capture;
        module.EnumInstances("StorageDevice", repo);
        EXPECT_TRUE(capture.Has(3, "[repo] repo.GetSystemIsWhitley()=0")) << c.mode << capture.Dump();
        EXPECT_EQ(1, capture.Count(c.line)) << c.mode << capture.Dump();
        EXPECT_EQ(c.exitLine ? 1 : 0, capture.Count("Exit RLSIOptModule::EnumAdapterInstances")) << c.mode;
        EXPECT_TRUE(repo.GetCollectedInstanceTypes().empty()) << c.mode;
    }
}

// This host's NVMe controller and SATA SSD, read through the in-band agentless path; its RAID
// controller through storcli's captured output.
TEST(RLSIOptModuleTest, InBandReadsThisHostsSsdsAndStorcliControllers)
{
    FixtureHost host("");
    WriteSysfsAttributes(host.Dir(), "sys/class/nvme/nvme0",
                         "model=SAMSUNG MZQL2960HCJR-00A07              ;serial=S64FNE0R812345;"
                         "firmware_rev=GDC5602Q;address=0000:3b:00.0;nvme0n1/size=1875385008");
    WriteSysfsAttributes(host.Dir(), "sys/block/sda",
                         "size=937703088;queue/rotational=0;device/vendor=ATA     ;device/model=MZ7L3480HCHQ-00A07;"
                         "device/rev=JXTC404Q");
    WriteSysfsAttributes(host.Dir(), "sys/block/sdb", "size=3907029168;queue/rotational=1;device/vendor=ATA");
    InstallFakeStorcli(host.Dir());

    RRepository repo(ConnectLocal);
    repo.SetCIMConnectionList(std::vector<XModule::ConnectionInfo>(1, ThisHost()));
    RLSIOptModule module;
    LogCapture capture;
    module.EnumInstances("SSD", repo);
    EXPECT_TRUE(capture.Has(3, "[repo] Entering InBand Agentless Mode")) << capture.Dump();
    EXPECT_TRUE(capture.Has(3, "[repo] raid_adap_group.size():3"));
    EXPECT_TRUE(capture.Has(4, "[repo] Calling EnumAdapterInstancesCallbackstorage_devices->NonRaidOrDirect"));

    std::vector<RInstance*> nvme = repo.GetInstances("NonRaidOrDirect");
    ASSERT_EQ(1u, nvme.size());
    EXPECT_EQ("Direct Attached NVMe SSD", nvme[0]->GetDisplay());
    std::string value;
    nvme[0]->GetPropertyValue("Capacity", value);
    EXPECT_EQ("960197124096", value);
    nvme[0]->GetPropertyValue("ProductName", value);
    EXPECT_EQ("SAMSUNG MZQL2960HCJR-00A07", value);
    nvme[0]->GetPropertyValue("Location", value);
    EXPECT_EQ("PCI 0000:3b:00.0", value);
    const int nvmeId = nvme[0]->GetID();
    repo.FreeInstances(nvme);

    std::vector<RInstance*> ssds = repo.GetInstances("SSD");
    ASSERT_EQ(1u, ssds.size());
    EXPECT_EQ("SATA SSD", ssds[0]->GetDisplay());
    ssds[0]->GetPropertyValue("Location", value);
    EXPECT_EQ("/dev/sda", value);
    repo.FreeInstances(ssds);

    // The NVMe drive's firmware hangs under its SSD; storcli's three firmware rows under the RAID card.
    std::vector<RInstance*> identities = repo.GetInstances("StorageSoftwareIdentity");
    ASSERT_EQ(4u, identities.size());
    EXPECT_TRUE(identities[0]->HasReference("NonRaidOrDirect", nvmeId));
    repo.FreeInstances(identities);

    // Storcli: the failed second controller is left out; drive groups 0 and 1 are the pools.
    EXPECT_EQ(std::vector<std::string>({"Host SATA/SAS SSDs", "ThinkSystem RAID 930-16i 4GB Flash PCIe 12Gb Adapter"}),
              Column(repo, "StorageDevice", "Name"));
    EXPECT_EQ(std::vector<std::string>({"RAID1", "RAID5"}), Column(repo, "StoragePool", "RAIDLevel"));
    EXPECT_EQ(std::vector<std::string>({"Online", "Degraded"}), Column(repo, "StoragePool", "ArrayStatus"));
    EXPECT_EQ(std::vector<std::string>({"os", "data", "logs"}), Column(repo, "StorageVolume", "Name"));
    EXPECT_EQ(std::vector<std::string>({"Online", "Online", "Online", "Online", "Failed", "Unconfigured good"}),
              Column(repo, "StorageDiskDrive", "DiskState"));
    EXPECT_EQ(std::vector<std::string>({"6.0Gb/s", "Unknown", "Unknown", "Unknown", "Unknown", "12.0Gb/s"}),
              Column(repo, "StorageDiskDrive", "DiskFormat"));
    EXPECT_EQ(std::vector<std::string>({"S47PNA0N600123", "N/A", "N/A", "N/A", "N/A", "WFK0ABCD"}),
              Column(repo, "StorageDiskDrive", "SerialNum"));
    EXPECT_EQ(std::vector<std::string>({"NO", "NO", "YES", "YES", "YES", "NO"}),
              Column(repo, "StorageDiskDrive", "FdeCapable"));
    EXPECT_EQ(std::vector<std::string>({"Other"}), Column(repo, "StorageBattery", "BatteryType"));

    // The raw output of storcli's own commands, the utility folder cut from the command.
    module.EnumInstances("LSIRawData", repo);
    // This host's own connection has no BMC to ask.
    EXPECT_TRUE(capture.Has(2, "[repo] Failed to get QMM type, set BMC type as QCC")) << capture.Dump();
    const std::vector<std::string> commands = Column(repo, "LSIRawData", "Command");
    ASSERT_EQ(7u, commands.size());  // a QCC BMC's event log is not read again
    EXPECT_EQ("storcli64 show all", commands[0]);
    const std::vector<std::string> raw = Column(repo, "LSIRawData", "RawData");
    EXPECT_EQ("storcli ran: show all\n", raw[0]);
    EXPECT_EQ("storcli_show_all.txt", Column(repo, "LSIRawData", "Filename")[0]);
}

TEST(RLSIOptModuleTest, WrapsItsTables)
{
    RLSIOptModule module;
    std::vector<std::string> types;
    module.EnumTypes(types);
    EXPECT_EQ(14u, types.size());
    LogCapture capture;
    const RInstancesWrapper adapters("StorageDevice", std::vector<RInstance*>(), module.FindWrapCallback("StorageDevice"));
    EXPECT_TRUE(capture.Has(4, "[repo] WrapAdapterInstances begin")) << capture.Dump();
    EXPECT_TRUE(capture.Has(4, "[repo] WrapAdapterInstances end"));
    EXPECT_EQ(std::vector<std::string>({"StorageBattery", "StoragePool", "StorageSoftwareIdentity", "StorageVolume",
                                        "StorageDiskDrive", "LSIRawData", "SEACHESTRawData", "SSD",
                                        "M2_7MM_StorageVolume"}),
              adapters.GetReferenceTypes());
    capture.Clear();
    const RInstancesWrapper raidShow("RAIDSHOWRawData", std::vector<RInstance*>(),
                                     module.FindWrapCallback("RAIDSHOWRawData"));
    EXPECT_EQ(0, capture.Count(" begin")) << capture.Dump();  // the raid show table logs nothing of its own
    const RInstancesWrapper pools("StoragePool", std::vector<RInstance*>(), module.FindWrapCallback("StoragePool"));
    EXPECT_EQ(1, capture.Count("WrapStoragePoolInstances begin"));
}

namespace {

void InstallUtility(const TempDir& home, const std::string& relative, const std::string& body)
{
    boost::filesystem::permissions(home.Write(relative, "#!/bin/sh\n" + body), boost::filesystem::owner_all);
}

// The rows the report shows of the first record, the raw one marked "*".
std::vector<std::string> ShownKeysOf(RRepository& repo, const std::string& type)
{
    std::vector<std::string> keys;
    std::vector<RInstance*> records = repo.GetInstances(type);
    if (!records.empty())
        for (const RProperty& property : records.front()->GetRProperty())
            keys.push_back(property.name + (property.raw ? "*" : ""));
    repo.FreeInstances(records);
    return keys;
}

}  // namespace

// Each vendor's utility runs in its own connect modes; its records carry the utility rows or not.
TEST(RLSIOptModuleTest, VendorRawDataRunsOnlyInItsModes)
{
    FixtureHost host("");
    InstallFakeStorcli(host.Dir());
    InstallUtility(host.Dir(), "utilities/arcconf/arcconf",
                   "if [ \"$1\" = GETVERSION ]; then echo 'Controllers found: 2'; else echo \"arcconf ran: $*\"; fi\n");
    InstallUtility(host.Dir(), "utilities/marvell/mvcli", "echo \"mvcli ran: $*\"\n");
    struct Case {
        ConnectMode mode;
        const char* type;
        std::size_t records;
        const char* utility;  // of the first record; empty where the type has no such row
    };
    const Case cases[] = {
        {ConnectLocal, "LSIRawData", 7, "storcli64"},     {ConnectCfc, "LSIRawData", 7, "storcli64"},
        {ConnectOob, "LSIRawData", 0, ""},                {ConnectLocalAmd, "LSIRawData", 0, ""},
        {ConnectLocal, "ARCCONFRawData", 7, "arcconf"},   {ConnectLocalAmd, "ARCCONFRawData", 0, ""},
        {ConnectLocal, "MARVELLRawData", 4, ""},          {ConnectLocalAmd, "MARVELLRawData", 4, ""},
        {ConnectEsxi, "MARVELLRawData", 0, ""},           {ConnectOob, "SEACHESTRawData", 0, ""},
        {ConnectOob, "RAIDSHOWRawData", 1, ""},
    };
    for (const Case& c : cases) {
        RRepository repo(c.mode);
        RLSIOptModule module;
        module.EnumInstances(c.type, repo);
        const std::vector<std::string> files = Column(repo, c.type, "Filename");
        ASSERT_EQ(c.records, files.size()) << c.type << " in mode " << c.mode;
        if (files.empty()) continue;
        EXPECT_EQ(std::vector<std::string>({"Command", "Description", "RawData*"}), ShownKeysOf(repo, c.type));
        EXPECT_EQ(c.utility, Column(repo, c.type, "Utility").front()) << c.type;
    }
    RRepository shown(ConnectOob);
    RLSIOptModule().EnumInstances("RAIDSHOWRawData", shown);
    EXPECT_EQ(std::vector<std::string>({"raid show"}), Column(shown, "RAIDSHOWRawData", "Description"));
    EXPECT_EQ(std::vector<std::string>({"raid_show.txt"}), Column(shown, "RAIDSHOWRawData", "Filename"));
    // arcconf: one host command, then three per controller, each named after its controller.
    RRepository repo(ConnectLocal);
    RLSIOptModule module;
    module.EnumInstances("ARCCONFRawData", repo);
    EXPECT_EQ(std::vector<std::string>({"", "1", "1", "1", "2", "2", "2"}), Column(repo, "ARCCONFRawData", "DeviceID"));
    EXPECT_EQ("arcconf_getconfig_2.txt", Column(repo, "ARCCONFRawData", "Filename")[4]);
    EXPECT_EQ("arcconf ran: GETCONFIG 2 AL\n", Column(repo, "ARCCONFRawData", "RawData")[4]);
}
