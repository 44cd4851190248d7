#include "xmodule/agentless/raidlink.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rrepository.h"
#include "rcfctestsupport.h"
#include "repository/modules/rlsioptmodule.h"
#include "support/logcapture.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <cstring>

using namespace kestro::repository;

namespace {

const std::string kStorage = "/redfish/v1/Systems/Node-A1/Storage";

XModule::ConnectionInfo BmcOf(RCFCTarget& target)
{
    XModule::ConnectionInfo bmc = target.Connection();
    bmc.isBmc = true;
    return bmc;
}

// A repository of `mode` that reaches the loopback BMC through the lists given.
struct StorageRun {
    StorageRun(RCFCTarget& target, ConnectMode mode, bool whitley, bool cim, bool rest) : repo(mode)
    {
        const std::vector<XModule::ConnectionInfo> bmc(1, BmcOf(target));
        if (cim) repo.SetCIMConnectionList(bmc);
        if (rest) repo.SetRestConnectionList(bmc);
        repo.SetIsWhitleySystem(whitley);
        XModule::UserContext context;
        context.connections = bmc;
        repo.SetUserContext(context);
        std::vector<std::string> types;
        module.EnumTypes(types);
        for (const std::string& type : types) module.EnumInstances(type, repo);
    }
    std::vector<std::string> Column(const std::string& type, const std::string& key)
    {
        return ColumnOf(repo, type, key);
    }
    std::vector<std::string> Displays(const std::string& type)
    {
        std::vector<std::string> displays;
        std::vector<RInstance*> records = repo.GetInstances(type);
        for (RInstance* record : records) displays.push_back(record->GetDisplay());
        repo.FreeInstances(records);
        return displays;
    }
    // Each record's reference to `parentType`, as the position of that parent among its records
    // ("-" when it names none of them).
    std::vector<std::string> Parents(const std::string& type, const std::string& parentType)
    {
        std::vector<RInstance*> parents = repo.GetInstances(parentType);
        std::vector<RInstance*> records = repo.GetInstances(type);
        std::vector<std::string> positions;
        for (RInstance* record : records) {
            std::string position = "-";
            for (std::size_t i = 0; i < parents.size(); ++i)
                if (record->HasReference(parentType, parents[i]->GetID())) position = std::to_string(i);
            positions.push_back(position);
        }
        repo.FreeInstances(records);
        repo.FreeInstances(parents);
        return positions;
    }

    RRepository repo;
    RLSIOptModule module;
};

typedef std::vector<std::string> Texts;

}  // namespace

// Out of band on an older system the reader hands over codes, and the report shows the words.
TEST(RAIDLinkTest, OutOfBandCodesBecomeWordsAndRecordsHangUnderTheirParents)
{
    RCFCTarget target("standard");
    LogCapture capture;
    StorageRun run(target, ConnectOob, false, true, true);
    EXPECT_TRUE(capture.Has(3, "[repo] Entering OOBand Agentless Mode")) << capture.Dump();
    EXPECT_TRUE(capture.Has(3, "[repo] raid_adap_group.size():2"));

    EXPECT_EQ(Texts({"Storage Device"}), run.Displays("StorageDevice"));
    EXPECT_EQ(Texts({"ThinkSystem RAID 940-8i 4GB Flash PCIe Gen4 12Gb Adapter"}), run.Column("StorageDevice", "Name"));
    EXPECT_EQ(Texts({"4096 MiB"}), run.Column("StorageDevice", "CacheMemorySize"));
    EXPECT_EQ(Texts({"boot", "scratch"}), run.Column("StoragePool", "Name"));
    EXPECT_EQ(Texts({"RAID1", "RAID0"}), run.Column("StoragePool", "RAIDLevel"));
    EXPECT_EQ(Texts({"Degraded", "Online"}), run.Column("StoragePool", "ArrayStatus"));
    EXPECT_EQ(Texts({"0", "0"}), run.Parents("StoragePool", "StorageDevice"));
    EXPECT_EQ(Texts({"0", "1"}), run.Parents("StorageVolume", "StoragePool"));
    EXPECT_EQ(Texts({"262144", "65536"}), run.Column("StorageVolume", "StripeSize"));

    // Pool members first, pool by pool, then the adapter's spare.
    EXPECT_EQ(Texts({"Drive 1", "Drive 2", "Drive 0", "Drive 3"}), run.Column("StorageDiskDrive", "Name"));
    EXPECT_EQ(Texts({"0", "0", "1", "-"}), run.Parents("StorageDiskDrive", "StoragePool"));
    EXPECT_EQ(Texts({"-", "-", "-", "0"}), run.Parents("StorageDiskDrive", "StorageDevice"));
    EXPECT_EQ(Texts({"Online", "Online", "Online", "Hot spare"}), run.Column("StorageDiskDrive", "DiskState"));
    EXPECT_EQ(Texts({"SSD", "SSD", "Rotational", "SSD"}), run.Column("StorageDiskDrive", "MediaType"));
    EXPECT_EQ(Texts({"6.0Gb/s", "6.0Gb/s", "12.0Gb/s", "6.0Gb/s"}), run.Column("StorageDiskDrive", "DiskFormat"));
    EXPECT_EQ(Texts({"YES", "YES", "NO", "YES"}), run.Column("StorageDiskDrive", "FdeCapable"));
    EXPECT_EQ(Texts({"Unlocked", "Unlocked", "Unencrypted", "Unlocked"}), run.Column("StorageDiskDrive", "Secured"));
    EXPECT_EQ(Texts({"", "", "", ""}), run.Column("StorageDiskDrive", "EncryptionAbility"));

    EXPECT_EQ(Texts({"iBBU08"}), run.Column("StorageBattery", "BatteryType"));
    EXPECT_EQ(Texts({"9350"}), run.Column("StorageBattery", "Voltage"));
    EXPECT_EQ(Texts({"0"}), run.Parents("StorageBattery", "StorageDevice"));

    // The M.2 kit has no RAID: its SSDs in bay order, its firmware under each of them.
    EXPECT_EQ(Texts({"M.2 NVMe SSD", "M.2 NVMe SSD"}), run.Displays("NonRaidOrDirect"));
    EXPECT_EQ(Texts({"S4EVNX0R200001", "S4EVNX0R200002"}), run.Column("NonRaidOrDirect", "SerialNumber"));
    // Each drive's firmware follows the drive and belongs to the adapter, as the card's own does.
    EXPECT_EQ(Texts({"JXTC104Q", "JXTC104Q", "L4C8", "JXTC104Q", "52.26.0-5179", "1.1.0.1802", "1.1.0.1802"}),
              run.Column("StorageSoftwareIdentity", "VersionString"));
    EXPECT_EQ(Texts({"0", "0", "0", "0", "0", "-", "-"}), run.Parents("StorageSoftwareIdentity", "StorageDevice"));
    EXPECT_EQ(Texts({"-", "-", "-", "-", "-", "0", "1"}), run.Parents("StorageSoftwareIdentity", "NonRaidOrDirect"));

    // The raid show table of the same BMC; no vendor utility runs out of band.
    const Texts raidShow = run.Column("RAIDSHOWRawData", "RawData");
    ASSERT_EQ(1u, raidShow.size());
    const std::string bootRow = "    boot" + std::string(20, ' ') + " RAID1" + std::string(5, ' ') + " 479559942144" +
                                std::string(8, ' ') + " Warning" + std::string(5, ' ') + "\n";
    EXPECT_NE(std::string::npos, raidShow[0].find(bootRow)) << raidShow[0];
    EXPECT_NE(std::string::npos, raidShow[0].find("Controller 1: ThinkSystem M.2 NVMe 2-Bay Enablement Kit "
                                                  "(M.2_Direct_Attached_NVMe)\n"));
    EXPECT_TRUE(run.Column("LSIRawData", "RawData").empty());

    // A second enumeration adds nothing.
    const std::size_t drives = run.Column("StorageDiskDrive", "Name").size();
    capture.Clear();
    run.module.EnumInstances("StorageDiskDrive", run.repo);
    EXPECT_EQ(drives, run.Column("StorageDiskDrive", "Name").size());
    EXPECT_EQ(0, capture.Count("raid_adap_group.size()"));
}

// In band on Whitley the BMC's words stand as they are, read over its REST connection.
TEST(RAIDLinkTest, WhitleyInBandShowsRedfishWordsAsTheyStand)
{
    RCFCTarget target("standard");
    LogCapture capture;
    StorageRun run(target, ConnectLocal, true, false, true);
    EXPECT_TRUE(capture.Has(3, "[repo] The node id in usbinfos[i] is: 0")) << capture.Dump();
    EXPECT_EQ(Texts({"Online", "Online", "Online", "Hot spare"}), run.Column("StorageDiskDrive", "DiskState"));
    EXPECT_EQ(Texts({"SSD", "SSD", "HDD", "SSD"}), run.Column("StorageDiskDrive", "MediaType"));
    EXPECT_EQ(Texts({"6", "6", "12", "6"}), run.Column("StorageDiskDrive", "DiskFormat"));
    EXPECT_EQ(Texts({"YES", "YES", "NO", "YES"}), run.Column("StorageDiskDrive", "EncryptionAbility"));
    EXPECT_EQ(Texts({"", "", "", ""}), run.Column("StorageDiskDrive", "FdeCapable"));
    EXPECT_EQ(Texts({"Degraded", "Online"}), run.Column("StoragePool", "ArrayStatus"));
}

// One display name for a VROC kit's SSDs, from the first in bay order, whatever the others are.
TEST(RAIDLinkTest, MixedSsdsOfOneNonRaidAdapterShareTheFirstOnesName)
{
    struct Case {
        const char* bayZeroProtocol;
        const char* bayOneProtocol;
        const char* display;
    };
    const Case cases[] = {{"SATA", "NVMe", "M.2 SATA SSD"}, {"NVMe", "SATA", "M.2 NVMe SSD"}};
    for (const Case& c : cases) {
        RCFCTarget target("standard");
        const std::string vroc = kStorage + "/VROC-M2";
        target.Bmc().SetDocument(kStorage, "{\"Members\": [{\"@odata.id\": \"" + vroc + "\"}]}");
        target.Bmc().SetDocument(vroc, "{\"@odata.id\": \"" + vroc + "\", \"StorageControllers\": [{\"Name\": "
                                 "\"VROC M.2 Boot\", \"SupportedRAIDTypes\": [\"RAID1\"]}], \"Drives\": ["
                                 "{\"@odata.id\": \"" + vroc + "/Drives/1\"}, {\"@odata.id\": \"" + vroc +
                                 "/Drives/0\"}]}");
        for (const std::pair<const char*, const char*>& drive :
             {std::make_pair("0", c.bayZeroProtocol), std::make_pair("1", c.bayOneProtocol)})
            target.Bmc().SetDocument(vroc + "/Drives/" + drive.first,
                                     std::string("{\"Protocol\": \"") + drive.second + "\", \"SerialNumber\": \"SN" +
                                         drive.first + "\", \"PhysicalLocation\": {\"PartLocation\": "
                                         "{\"ServiceLabel\": \"M.2 Bay " + drive.first + "\"}}}");
        StorageRun run(target, ConnectOob, false, true, true);
        EXPECT_EQ(Texts({c.display, c.display}), run.Displays("NonRaidOrDirect")) << c.bayZeroProtocol;
        EXPECT_EQ(Texts({"SN0", "SN1"}), run.Column("NonRaidOrDirect", "SerialNumber"));
        EXPECT_TRUE(run.Displays("StorageDevice").empty());
    }
}

// A storage resource the BMC cannot give is left out with a log line; the rest still shows.
TEST(RAIDLinkTest, AStorageThatFailsIsLeftOutAndTheOthersStay)
{
    const std::string raid = kStorage + "/RAID-Slot3";
    for (const bool broken : {false, true}) {
        RCFCTarget target("standard");
        if (broken)
            target.Bmc().SetDocument(raid, "{\"Id\": \"RAID-Slot3\", \"StorageControllers\": [");
        else
            target.Bmc().ForceStatus(raid, 500);
        LogCapture capture;
        StorageRun run(target, ConnectOob, false, true, true);
        // Once for the inventory, once for the raid show table.
        EXPECT_EQ(2, capture.Count("Storage " + raid + " is left out")) << broken << capture.Dump();
        EXPECT_EQ(2, capture.Count("Redfish read of " + raid + " failed"));
        EXPECT_TRUE(run.Displays("StorageDevice").empty());
        EXPECT_EQ(2u, run.Displays("NonRaidOrDirect").size());
    }

    // A BMC without a system collection offers nothing to read.
    RCFCTarget target("standard");
    target.Bmc().ForceStatus("/redfish/v1/Systems", 404);
    EXPECT_FALSE(XModule::Agentless::RAIDLink(BmcOf(target)).IsAgentlessSupported());
    std::vector<XModule::XMOptions::RaidAdapter> adapters;
    EXPECT_EQ(XModule::Agentless::RAIDLink::RAID_UNREADABLE,
              XModule::Agentless::RAIDLink(BmcOf(target)).GetAllRaidAdapterInfo(adapters));
    EXPECT_TRUE(adapters.empty());
}

// A number no drive or battery can have reads as not given, and the rest of the storage still shows.
TEST(RAIDLinkTest, NumbersOutOfReachReadAsNotGiven)
{
    const std::string raid = kStorage + "/RAID-Slot3";
    struct Case {
        const char* what;
        std::string path;
        const char* given;  // in the fixture's document
        const char* sent;   // what the BMC sends instead
        const char* type;
        const char* key;
        std::size_t index;  // of the record among its type's
    };
    const Case cases[] = {
        {"a negative capacity", raid + "/Drives/Disk-0", "\"CapacityBytes\": 600127266816", "\"CapacityBytes\": -1",
         "StorageDiskDrive", "NumberOfBlocks", 2},
        {"a fractional block size", raid + "/Drives/Disk-0", "\"BlockSizeBytes\": 512", "\"BlockSizeBytes\": 0.5",
         "StorageDiskDrive", "NumberOfBlocks", 2},
        {"a voltage beyond any battery", raid + "/Batteries/CV-0/Metrics", "\"InputVoltage\": 9.35",
         "\"InputVoltage\": 1e300", "StorageBattery", "Voltage", 0},
    };
    for (const Case& c : cases) {
        RCFCTarget target("standard");
        std::string doc = ReadFile(std::string(KESTRO_TEST_FIXTURES) + "/bmc/standard" + c.path + "/index.json");
        const std::string::size_type at = doc.find(c.given);
        ASSERT_NE(std::string::npos, at) << c.what;
        target.Bmc().SetDocument(c.path, doc.replace(at, std::strlen(c.given), c.sent));
        StorageRun run(target, ConnectOob, true, false, true);
        const Texts values = run.Column(c.type, c.key);
        ASSERT_LT(c.index, values.size()) << c.what;
        EXPECT_EQ("N/A", values[c.index]) << c.what;
        EXPECT_EQ(4u, run.Column("StorageDiskDrive", "Name").size()) << c.what;
    }
}

// Firmware inventory entries linked from a controller replace the version it states itself.
TEST(RAIDLinkTest, FirmwareInventoryLinkedFromTheController)
{
    RCFCTarget target("standard");
    const std::string controller = kStorage + "/M2-Boot/Controllers/0";
    std::string doc = ReadFile(std::string(KESTRO_TEST_FIXTURES) + "/bmc/standard" + controller + "/index.json");
    doc.insert(doc.rfind('}'), ", \"Links\": {\"SoftwareImages\": [{\"@odata.id\": "
                               "\"/redfish/v1/UpdateService/FirmwareInventory/M2-Kit\"}]}");
    target.Bmc().SetDocument(controller, doc);
    target.Bmc().SetDocument("/redfish/v1/UpdateService/FirmwareInventory/M2-Kit",
                             "{\"Id\": \"M2-Kit\", \"Name\": \"M.2 Kit Firmware\", \"Version\": \"1.1.0.1900\", "
                             "\"ReleaseDate\": \"2026-03-02T00:00:00Z\", \"SoftwareId\": \"88NR2241\", "
                             "\"Updateable\": true, \"Status\": {\"State\": \"Enabled\"}}");
    StorageRun run(target, ConnectOob, true, false, true);
    const Texts versions = run.Column("StorageSoftwareIdentity", "VersionString");
    ASSERT_EQ(7u, versions.size());
    EXPECT_EQ("1.1.0.1900", versions[5]);
    EXPECT_EQ("2026-03-02T00:00:00Z", run.Column("StorageSoftwareIdentity", "ReleaseDate")[5]);
    EXPECT_EQ("Updateable firmware", run.Column("StorageSoftwareIdentity", "SoftwareRole")[5]);
}

// Which path each connect mode takes, and whether the coded fields arrive as words or codes.
TEST(RAIDLinkTest, EachModeTakesItsPathToTheBmc)
{
    struct Case {
        const char* what;
        ConnectMode mode;
        bool whitley;
        bool cim;
        bool rest;
        const char* forced;  // a path the BMC answers with 404, or null
        const char* line;    // logged once
        const char* media;   // MediaType of the HDD, the third drive; "" when none is read
    };
    const Case cases[] = {
        // The CIM reader hands over codes, which a Whitley system shows as they stand.
        {"Whitley in band without REST falls through", ConnectLocal, true, true, false, nullptr,
         "[repo] Entering InBand Agentless Mode", "2"},
        {"older in band reads through CIM", ConnectLocal, false, true, true, nullptr,
         "[repo] Entering InBand Agentless Mode", "Rotational"},
        {"Whitley out of band reads REST as it stands", ConnectOob, true, false, true, nullptr,
         "[repo] Entering OOBand Agentless Mode", "HDD"},
        {"ESXi node", ConnectEsxi, false, true, false, nullptr, "[repo] Entering ESXI Agentless Mode", "Rotational"},
        {"ESXi node without storage is skipped", ConnectEsxi, false, true, false,
         "/redfish/v1/Systems/Node-A1", "[repo] multi-node num is:1", ""},
        {"ESXi without a node count keeps one", ConnectEsxi, false, true, false, "/redfish/v1/Systems",
         "[repo] GetNodeNumber error when try ESXI Mode", ""},
    };
    for (const Case& c : cases) {
        RCFCTarget target("standard");
        if (c.forced != nullptr) target.Bmc().ForceStatus(c.forced, 404);
        LogCapture capture;
        StorageRun run(target, c.mode, c.whitley, c.cim, c.rest);
        EXPECT_EQ(1, capture.Count(c.line)) << c.what << capture.Dump();
        const Texts media = run.Column("StorageDiskDrive", "MediaType");
        EXPECT_EQ(c.media, media.size() > 2 ? media[2] : "") << c.what;
    }
}

// A service with its own StoragePools: each pool's volumes and providing drives, its free space.
TEST(RAIDLinkTest, PoolsOfTheServiceAreTakenAsTheyAre)
{
    RCFCTarget target("standard");
    const std::string raid = kStorage + "/RAID-Slot3";
    std::string storage = ReadFile(std::string(KESTRO_TEST_FIXTURES) + "/bmc/standard" + raid + "/index.json");
    storage.insert(storage.rfind('}'), ", \"StoragePools\": {\"@odata.id\": \"" + raid + "/StoragePools\"}");
    target.Bmc().SetDocument(raid, storage);
    target.Bmc().SetDocument(raid + "/StoragePools", "{\"Members\": [{\"@odata.id\": \"" + raid + "/StoragePools/0\"}]}");
    target.Bmc().SetDocument(raid + "/StoragePools/0",
                             "{\"Name\": \"Pool 0\", \"Status\": {\"Health\": \"Critical\"}, \"Capacity\": "
                             "{\"Data\": {\"AllocatedBytes\": 2000, \"ConsumedBytes\": 1500}}, "
                             "\"AllocatedVolumes\": {\"@odata.id\": \"" + raid + "/Volumes\"}, \"CapacitySources\": "
                             "[{\"ProvidingDrives\": {\"@odata.id\": \"" + raid + "/StoragePools/0/Drives\"}}]}");
    target.Bmc().SetDocument(raid + "/StoragePools/0/Drives",
                             "{\"Members\": [{\"@odata.id\": \"" + raid + "/Drives/Disk-0\"}, {\"@odata.id\": \"" +
                                 raid + "/Drives/Disk-2\"}]}");
    StorageRun run(target, ConnectOob, false, true, true);
    EXPECT_EQ(Texts({"Pool 0"}), run.Column("StoragePool", "Name"));
    EXPECT_EQ(Texts({"500"}), run.Column("StoragePool", "RemainingManagedSpace"));
    EXPECT_EQ(Texts({"Offline"}), run.Column("StoragePool", "ArrayStatus"));
    EXPECT_EQ(Texts({"RAID1"}), run.Column("StoragePool", "RAIDLevel"));
    EXPECT_EQ(Texts({"boot", "scratch"}), run.Column("StorageVolume", "Name"));
    EXPECT_EQ(Texts({"0", "0", "-", "-"}), run.Parents("StorageDiskDrive", "StoragePool"));
    EXPECT_EQ(Texts({"Drive 0", "Drive 2", "Drive 1", "Drive 3"}), run.Column("StorageDiskDrive", "Name"));
    EXPECT_EQ(Texts({"Online", "Online", "Unconfigured good", "Hot spare"}), run.Column("StorageDiskDrive", "DiskState"));
}
