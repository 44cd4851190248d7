#include "repository/modules/rnetworkmodule.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rrepository.h"
#include "fakebmc/loopbackbmc.h"
#include "support/fixturehost.h"
#include "support/logcapture.h"
#include "support/sysfsfixture.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <boost/algorithm/string/join.hpp>

#include <sys/stat.h>

#include <string>
#include <vector>

using kestro::repository::ConnectMode;
using kestro::repository::RInstance;
using kestro::repository::RNetworkModule;
using kestro::repository::RRepository;

namespace {

const char* const kAdapterKeys[] = {"Name", "Slot", "Tag", "Manufacturer", "Model", "SerialNumber", "PartNumber",
                                    "FRUNumber", "OperationalStatus", "DeviceType", "Thermal", "Caption"};
const char* const kPortKeys[] = {"Name", "LinkTechnology", "MaxSpeed", "Speed", "LinkStatus", "PortNumber",
                                 "PermanentAddress", "OtherIdentifyingInfo", "ConfiguredLAMA"};
const char* const kIdentityKeys[] = {"Manufacturer", "Name", "VersionString", "SoftwareRole", "ReleaseDate"};

// Each record of `type` as its values at `keys`, "|" between them, followed by "@" and the
// adapter it refers to (or its own number for an adapter).
template <std::size_t N>
std::vector<std::string> RowsOf(RRepository& repo, const std::string& type, const char* const (&keys)[N])
{
    std::vector<std::string> rows;
    std::vector<RInstance*> records = repo.GetInstances(type);
    for (RInstance* record : records) {
        std::vector<std::string> values;
        for (const char* key : keys) {
            std::string value;
            record->GetPropertyValue(key, value);
            values.push_back(value);
        }
        int parent = record->GetID();
        for (int id = 0; id < 8; ++id)
            if (record->HasReference("PCIAdapter", id)) parent = id;
        rows.push_back(boost::algorithm::join(values, "|") + "@" + std::to_string(parent));
    }
    repo.FreeInstances(records);
    return rows;
}

std::vector<std::string> DisplaysOf(RRepository& repo, const std::string& type)
{
    std::vector<std::string> displays;
    std::vector<RInstance*> records = repo.GetInstances(type);
    for (RInstance* record : records) displays.push_back(record->GetDisplay());
    repo.FreeInstances(records);
    return displays;
}

XModule::ConnectionInfo ConnectionTo(const LoopbackBmc& bmc)
{
    XModule::ConnectionInfo connection;
    connection.host = "127.0.0.1";
    connection.port = bmc.Port();
    connection.scheme = XModule::XModuleConnection::SchemeHttp;
    connection.isBmc = true;
    return connection;
}

// A program's home without vendor utilities, and a PATH that finds none either.
struct BareHome {
    TempDir dir;
    ScopedEnv home{"KESTRO_HOME", dir.Path()};
    ScopedEnv path{"PATH", dir.Path() + "/bin"};
};

}  // namespace

TEST(RNetworkModuleTest, AdaptersOfTheBmcInBandAndOutOfBand)
{
    struct ModeCase {
        ConnectMode mode;
        const char* modeLine;
        bool utilitiesAsked;  // in band the makers' utilities are looked for on this host
    };
    const ModeCase cases[] = {
        {kestro::repository::ConnectLocal, "[repo] Entering InBand Mode For Network", true},
        {kestro::repository::ConnectOob, "[repo] Entering OOB Mode For Network.", false},
        {kestro::repository::ConnectEsxi, "[repo] Entering ESXI Mode For Network.", false},
    };
    LoopbackBmc::Options options;
    options.fixtureRoot = std::string(KESTRO_TEST_FIXTURES) + "/bmc/standard";
    LoopbackBmc bmc(options);
    bmc.Start();
    for (const ModeCase& c : cases) {
        SCOPED_TRACE(c.modeLine);
        BareHome home;
        RRepository repo(kestro::repository::ConnectNone);
        repo.SetConnectMode(c.mode);
        repo.SetRestConnectionList(std::vector<XModule::ConnectionInfo>(1, ConnectionTo(bmc)));
        repo.SetCIMConnectionList(std::vector<XModule::ConnectionInfo>(1, ConnectionTo(bmc)));
        RNetworkModule module;
        LogCapture log;
        module.EnumInstances("PCIPort", repo);
        module.EnumInstances("PCIAdapter", repo);

        EXPECT_EQ(RowsOf(repo, "PCIAdapter", kAdapterKeys),
                  (std::vector<std::string>{
                      "FC 32Gb 2-Port PCIe Adapter|PCIe Slot 3|FC-Slot3|Quantrel|QFC-3202|FC3202A7781|01PE123|"
                      "4XC7A08276|OK|FibreChannel|N/A|Fibre Channel host bus adapter@0",
                      "Mellanox ConnectX-6 Dx 100GbE 2-port QSFP56|5|NIC-Slot5|Mellanox Technologies|"
                      "MCX623106AN-CDAT|MT2231X09876|MCX623106AN-CDAT|4XC7A62580|Warning|Ethernet|N/A|"
                      "Ethernet adapter@1"}));
        EXPECT_EQ(RowsOf(repo, "PCIPort", kPortKeys),
                  (std::vector<std::string>{
                      "FC Port 1|FibreChannel|32000 Mbps|32000 Mbps|LinkUp|1|10:00:00:10:9B:AA:01:01|"
                      "10:00:00:10:9B:AA:01:01|N/A@0",
                      "FC Port 2|FibreChannel|32000 Mbps|N/A|LinkDown|2|10:00:00:10:9B:AA:01:02|"
                      "10:00:00:10:9B:AA:01:02|N/A@0",
                      "Network Port 1|Ethernet|100000 Mbps|100000 Mbps|Up|1|B8:CE:F6:01:02:0A|B8:CE:F6:01:02:0A|N/A@1",
                      "Network Port 2|Ethernet|100000 Mbps|0 Mbps|Down|2|B8:CE:F6:01:02:0B|02:00:5E:10:00:02|"
                      "02:00:5E:10:00:02@1"}));
        EXPECT_EQ(RowsOf(repo, "PCISoftwareIdentity", kIdentityKeys),
                  (std::vector<std::string>{"Quantrel|Firmware|14.0.505.11|Active|N/A@0",
                                            "Emulex|FC-Slot3-Firmware|14.0.505.11|Active|2023-06-14T00:00:00Z@0",
                                            "Mellanox Technologies|Firmware|22.36.1010|Active|N/A@1"}));
        EXPECT_EQ(DisplaysOf(repo, "PCIAdapter"), (std::vector<std::string>(2, "PCI Adapter")));
        EXPECT_EQ(DisplaysOf(repo, "PCIPort"), (std::vector<std::string>(4, "Ports")));
        EXPECT_EQ(DisplaysOf(repo, "PCISoftwareIdentity"), (std::vector<std::string>(3, "Software Identity")));

        EXPECT_TRUE(log.Has(3, c.modeLine)) << log.Dump();
        EXPECT_TRUE(log.Has(3, "[repo] EnumAdapterInstances::redfish_supported =1"));
        EXPECT_TRUE(log.Has(3, "[repo] The value of ret is:0"));
        EXPECT_EQ(log.Count("Leaving RNetworkModule::EnumAdapterInstances"), 2);
        EXPECT_EQ(log.Count("Calling IsAgentlessSupportedFun"), 0);
        EXPECT_EQ(log.Has(2, "[repo] Emulex::GetRawData() returns error = -1"), c.utilitiesAsked);
        EXPECT_EQ(log.Has(2, "[repo] Mellanox::GetRawData() with QUERY returns error = -1"), c.utilitiesAsked);
        EXPECT_EQ(log.Count("Qlogic::GetRawData()"), 0);
    }
}

TEST(RNetworkModuleTest, NoSourceIsLoggedAndTheRunGoesOn)
{
    struct NoSourceCase {
        ConnectMode mode;
        bool remoteHost;                 // a CIM connection to a host without the agentless interface
        std::vector<std::string> lines;  // level 2, in this order
    };
    const NoSourceCase cases[] = {
        {kestro::repository::ConnectLocal, false,
         {"This system is non-Agentless supported.",
          "Quantrel Essentials Kestro depends on the BMC Agentless interface,",
          "customers should update xFW and options FW to above certain levels then AC.",
          "(xFW:  2Q15 QUSP or above, Options fw:  2Q15 QUSP or above)"}},
        {kestro::repository::ConnectEsxi, false,
         {"in RNetworkModule::EnumAdapterInstances(), the connect_list is empty."}},
        {kestro::repository::ConnectCfc, false, {}},
        {kestro::repository::ConnectOob, true, {}},
        {kestro::repository::ConnectEsxi, true, {"GetNodeNumber error when try ESXI Mode"}},
    };
    for (const NoSourceCase& c : cases) {
        SCOPED_TRACE(c.mode);
        RRepository repo(kestro::repository::ConnectNone);
        repo.SetConnectMode(c.mode);
        XModule::ConnectionInfo remote;
        remote.host = "192.0.2.7";
        if (c.remoteHost) repo.SetCIMConnectionList(std::vector<XModule::ConnectionInfo>(1, remote));
        RNetworkModule module;
        LogCapture log;
        module.EnumInstances("PCIPort", repo);
        std::vector<std::string> lines;
        for (const auto& record : log.Records())
            if (record.first == 2) lines.push_back(record.second.substr(std::string("[repo] ").size()));
        EXPECT_EQ(lines, c.lines);
        EXPECT_EQ(CountOf(repo, "PCIAdapter"), 0u);
        EXPECT_TRUE(log.Has(4, "[repo] Leaving RNetworkModule::EnumAdapterInstances"));
    }
}

TEST(RNetworkModuleTest, RedfishFailureDoesNotFallBackToTheHost)
{
    struct FailureCase {
        const char* what;
        const char* chassis;
        const char* collection;  // "" when not served
        const char* retLine;
        std::size_t adapters;
    };
    const char* const linked = R"({"NetworkAdapters": {"@odata.id": "/redfish/v1/Chassis/1/NetworkAdapters"}})";
    const FailureCase cases[] = {
        {"no adapters link", R"({"Id": "1"})", "", "[repo] The value of ret is:2", 0},
        {"broken collection", linked, "{\"Members\": [", "[repo] The value of ret is:3", 0},
        {"one broken adapter", linked,
         R"({"Members": [{"@odata.id": "/redfish/v1/Chassis/1/NetworkAdapters/Bad"},
                         {"@odata.id": "/redfish/v1/Chassis/1/NetworkAdapters/Good"}]})",
         "[repo] The value of ret is:3", 1},
    };
    // This host has an adapter, which a failed Redfish read must not bring in.
    FixtureHost host("");
    WriteSysfsAttributes(host.Dir(), "sys/devices/pci0000:00/0000:00:03.0",
                         "vendor=0x8086;device=0x1572;class=0x020000");
    WriteSysfsLink(host.Dir(), "sys/bus/pci/devices/0000:00:03.0", "../../../devices/pci0000:00/0000:00:03.0");
    for (const FailureCase& c : cases) {
        SCOPED_TRACE(c.what);
        LoopbackBmc bmc;
        bmc.SetDocument("/redfish/v1", R"({"RedfishVersion": "1.15.0"})");
        bmc.SetDocument("/redfish/v1/Chassis", R"({"Members": [{"@odata.id": "/redfish/v1/Chassis/1"}]})");
        bmc.SetDocument("/redfish/v1/Chassis/1", c.chassis);
        if (*c.collection) bmc.SetDocument("/redfish/v1/Chassis/1/NetworkAdapters", c.collection);
        bmc.SetDocument("/redfish/v1/Chassis/1/NetworkAdapters/Bad", R"({"Id": "Bad", "Name": )");
        bmc.SetDocument("/redfish/v1/Chassis/1/NetworkAdapters/Good", R"({"Id": "Good", "Name": "NIC"})");
        bmc.Start();
        RRepository repo(kestro::repository::ConnectNone);
        repo.SetConnectMode(kestro::repository::ConnectLocal);
        repo.SetRestConnectionList(std::vector<XModule::ConnectionInfo>(1, ConnectionTo(bmc)));
        XModule::ConnectionInfo local;
        local.host = "localhost";
        repo.SetCIMConnectionList(std::vector<XModule::ConnectionInfo>(1, local));
        RNetworkModule module;
        LogCapture log;
        module.EnumInstances("PCIAdapter", repo);
        EXPECT_EQ(CountOf(repo, "PCIAdapter"), c.adapters);
        EXPECT_TRUE(log.Has(3, c.retLine)) << log.Dump();
        EXPECT_TRUE(log.Has(2, "[repo] Get network adapter information from rest fail or no adapter information"));
        EXPECT_EQ(log.Count("Calling IsAgentlessSupportedFun"), 0);
    }
}

namespace {

struct HostFunction {
    const char* address;
    const char* attributes;
    const char* driver;
};

const HostFunction kHostFunctions[] = {
    {"0000:3b:00.0", "vendor=0x8086;device=0x1572;class=0x020000", "i40e"},
    {"0000:3b:00.1", "vendor=0x8086;device=0x1572;class=0x020000", "i40e"},
    {"0000:5e:00.0", "vendor=0x15b3;device=0x101b;class=0x020700", "mlx5_core"},
};

struct HostInterface {
    const char* name;
    const char* function;  // "" for a virtual interface
    const char* attributes;
};

const HostInterface kHostInterfaces[] = {
    {"ens1f0", "0000:3b:00.0",
     "type=1;address=3c:fd:fe:aa:00:10;addr_assign_type=0;operstate=up;carrier=1;speed=10000;flags=0x1003"},
    {"ens1f1", "0000:3b:00.1",
     "type=1;address=02:11:22:33:44:55;addr_assign_type=3;operstate=down;carrier=0;speed=-1;flags=0x1002"},
    {"ib0", "0000:5e:00.0", "type=32;address=80:00:02:08:fe:80;addr_assign_type=0;operstate=unknown;carrier=1;"
                            "speed=100000;flags=0x1003"},
    {"veth0", "", "type=1;address=6a:00:00:00:00:01;operstate=up;carrier=1;speed=10000;flags=0x1003"},
    {"lo", "", "type=772;address=00:00:00:00:00:00;operstate=unknown;flags=0x9"},
};

// Two ports of an X710 in slot 3, a ConnectX-6 running InfiniBand, a veth pair end and lo.
void WriteNetworkHost(const TempDir& dir)
{
    dir.Write("usr/share/misc/pci.ids", "8086  Intel Corporation\n\t1572  Ethernet Controller X710 for 10GbE SFP+\n"
                                        "15b3  Mellanox Technologies\n\t101b  MT28908 Family [ConnectX-6]\n"
                                        "C 02  Network controller\n\t00  Ethernet controller\n"
                                        "\t07  Infiniband controller\n");
    for (const HostFunction& function : kHostFunctions) {
        const std::string folder = std::string("sys/devices/pci0000:00/") + function.address;
        WriteSysfsAttributes(dir, folder, function.attributes);
        WriteSysfsLink(dir, std::string("sys/bus/pci/devices/") + function.address,
                       std::string("../../../devices/pci0000:00/") + function.address);
        WriteSysfsLink(dir, folder + "/driver", std::string("../../../bus/pci/drivers/") + function.driver);
    }
    for (const HostInterface& interface : kHostInterfaces) {
        const std::string folder = std::string("sys/class/net/") + interface.name;
        WriteSysfsAttributes(dir, folder, interface.attributes);
        if (*interface.function)
            WriteSysfsLink(dir, folder + "/device", std::string("../../../devices/pci0000:00/") + interface.function);
    }
    // The card's EEPROM: identifier string, then the read-only part with part and serial number.
    dir.Write("sys/devices/pci0000:00/0000:3b:00.0/vpd",
              std::string("\x82\x05\x00X710 \x90\x15\x00PN\x07" "01PE456SN\x08" "A1B2C3D4\x78", 33));
    WriteSysfsAttributes(dir, "sys/module/i40e", "version=2.22.18");
    WriteSysfsAttributes(dir, "sys/bus/pci/slots/3", "address=0000:3b:00");
}

}  // namespace

TEST(RNetworkModuleTest, AdaptersOfThisHostFromSysfs)
{
    FixtureHost host("");
    WriteNetworkHost(host.Dir());
    ScopedEnv path("PATH", host.Dir().Path() + "/bin");
    RRepository repo(kestro::repository::ConnectNone);
    repo.SetConnectMode(kestro::repository::ConnectLocal);
    XModule::ConnectionInfo local;
    local.host = "localhost";
    repo.SetCIMConnectionList(std::vector<XModule::ConnectionInfo>(1, local));
    RNetworkModule module;
    LogCapture log;
    module.EnumInstances("PCISoftwareIdentity", repo);

    EXPECT_EQ(RowsOf(repo, "PCIAdapter", kAdapterKeys),
              (std::vector<std::string>{
                  "Intel Corporation Ethernet Controller X710 for 10GbE SFP+|3|0000:3b:00|Intel Corporation|"
                  "Ethernet Controller X710 for 10GbE SFP+|A1B2C3D4|01PE456|N/A|N/A|Ethernet controller|N/A|"
                  "PCI 0000:3b:00 [8086:1572]@0",
                  "Mellanox Technologies MT28908 Family [ConnectX-6]|N/A|0000:5e:00|Mellanox Technologies|"
                  "MT28908 Family [ConnectX-6]|N/A|N/A|N/A|N/A|Infiniband controller|N/A|"
                  "PCI 0000:5e:00 [15b3:101b]@1"}));
    EXPECT_EQ(RowsOf(repo, "PCIPort", kPortKeys),
              (std::vector<std::string>{
                  "ens1f0|Ethernet|N/A|10000 Mbps|Up|1|3c:fd:fe:aa:00:10|3c:fd:fe:aa:00:10|N/A@0",
                  "ens1f1|Ethernet|N/A|N/A|Down|2|N/A|02:11:22:33:44:55|N/A@0",
                  "ib0|InfiniBand|N/A|100000 Mbps|Up|1|80:00:02:08:fe:80|80:00:02:08:fe:80|N/A@1"}));
    EXPECT_EQ(RowsOf(repo, "PCISoftwareIdentity", kIdentityKeys),
              (std::vector<std::string>{"N/A|i40e|2.22.18|Driver|N/A@0", "N/A|mlx5_core|N/A|Driver|N/A@1"}));
    EXPECT_TRUE(log.Has(3, "[repo] Calling IsAgentlessSupportedFun")) << log.Dump();
    EXPECT_TRUE(log.Has(3, "[repo] The node id in usbinfos[i] is: 0"));
    EXPECT_TRUE(log.Has(2, "[repo] Mellanox::GetRawData() with QUERY returns error = -1"));
    EXPECT_EQ(log.Count("redfish_supported"), 0);
}

namespace {

struct RoutedAdapter {
    const char* name;
    const char* firmwareMaker;  // the maker its firmware image names
};

// A Redfish service whose one chassis holds these adapters, each with a firmware image.
void ServeAdapters(LoopbackBmc& bmc, const std::vector<RoutedAdapter>& adapters)
{
    const std::string collection = "/redfish/v1/Chassis/1/NetworkAdapters";
    bmc.SetDocument("/redfish/v1", "{\"RedfishVersion\": \"1.15.0\"}");
    bmc.SetDocument("/redfish/v1/Chassis", "{\"Members\": [{\"@odata.id\": \"/redfish/v1/Chassis/1\"}]}");
    bmc.SetDocument("/redfish/v1/Chassis/1", "{\"NetworkAdapters\": {\"@odata.id\": \"" + collection + "\"}}");
    std::vector<std::string> members;
    for (std::size_t i = 0; i < adapters.size(); ++i) {
        const std::string path = collection + "/A" + std::to_string(i);
        members.push_back("{\"@odata.id\": \"" + path + "\"}");
        bmc.SetDocument(path, "{\"Id\": \"A" + std::to_string(i) + "\", \"Name\": \"" + adapters[i].name +
                                  "\", \"Controllers\": [{\"FirmwarePackageVersion\": \"1.0\", \"Links\": "
                                  "{\"ActiveSoftwareImage\": {\"@odata.id\": \"" + path + "/Image\"}}}]}");
        bmc.SetDocument(path + "/Image", std::string("{\"Id\": \"Image\", \"Manufacturer\": \"") +
                                             adapters[i].firmwareMaker + "\"}");
    }
    bmc.SetDocument(collection, "{\"Members\": [" + boost::algorithm::join(members, ", ") + "]}");
}

// Stand-ins for the makers' utilities: each notes its call and answers with its arguments.
void WriteFakeUtilities(const TempDir& home)
{
    const char* const utilities[] = {"qlogic/qaucli", "emulex/hbacmd", "mellanox/mlxfwmanager", "mellanox/mlxconfig"};
    for (const char* utility : utilities) {
        const std::string file = home.Write(std::string("utilities/") + utility,
                                            "#!/bin/sh\necho \"${0##*/} $*\" >> " + home.Path() +
                                                "/calls.log\necho \"answer of $*\"\n");
        ::chmod(file.c_str(), 0755);
    }
}

}  // namespace

TEST(RNetworkModuleTest, RawDataRoutedByMakerOncePerRun)
{
    struct RoutingCase {
        const char* what;
        std::vector<RoutedAdapter> adapters;
        int qlogicRuns;
        int emulexRuns;
        int mellanoxRuns;
    };
    const RoutingCase cases[] = {
        {"two QLogic adapters",
         {{"QLogic QL41262 25GbE", "Quantrel"}, {"QLogic QLE2772 32Gb FC", "Quantrel"}},
         1, 0, 0},
        {"firmware made by Emulex", {{"FC 32Gb 2-Port HBA", "Emulex"}}, 0, 1, 0},
        {"names shorter than the words", {{"QLogi", "Emule"}, {"Emule", "QLogi"}}, 0, 0, 0},
        {"other letter case", {{"QLOGIC FastLinQ", "emulex"}, {"mellanox cx5", "EMULEX"}}, 0, 0, 0},
        {"two makers on one adapter", {{"Mellanox ConnectX-5", "QLogic"}}, 1, 0, 1},
    };
    for (const RoutingCase& c : cases) {
        SCOPED_TRACE(c.what);
        TempDir home;
        ScopedEnv homeVariable("KESTRO_HOME", home.Path());
        ScopedEnv path("PATH", home.Path() + "/bin");
        WriteFakeUtilities(home);
        LoopbackBmc bmc;
        ServeAdapters(bmc, c.adapters);
        bmc.Start();
        RRepository repo(kestro::repository::ConnectNone);
        repo.SetConnectMode(kestro::repository::ConnectLocal);
        repo.SetRestConnectionList(std::vector<XModule::ConnectionInfo>(1, ConnectionTo(bmc)));
        RNetworkModule module;
        module.EnumInstances("PCIAdapter", repo);
        module.EnumInstances("QlogicRawData", repo);

        const std::string calls = home.Read("calls.log");
        EXPECT_EQ(CountOf(repo, "PCIAdapter"), c.adapters.size());
        EXPECT_EQ(static_cast<int>(CountOf(repo, "QlogicRawData")), 4 * c.qlogicRuns) << calls;
        EXPECT_EQ(static_cast<int>(CountOf(repo, "EmulexRawData")), 3 * c.emulexRuns) << calls;
        EXPECT_EQ(static_cast<int>(CountOf(repo, "MellanoxRawData")), 2 * c.mellanoxRuns) << calls;
        EXPECT_EQ(calls.find("qaucli -g\n") != std::string::npos, c.qlogicRuns > 0);
        EXPECT_EQ(calls.rfind("qaucli -g\n"), calls.find("qaucli -g\n"));
    }
}

TEST(RNetworkModuleTest, RawDataRecordShowsTheUtilityAnswer)
{
    TempDir home;
    ScopedEnv homeVariable("KESTRO_HOME", home.Path());
    ScopedEnv path("PATH", home.Path() + "/bin");
    WriteFakeUtilities(home);
    LoopbackBmc bmc;
    ServeAdapters(bmc, {{"QLogic QL41262 25GbE", "Quantrel"}, {"QLogic QLE2772 32Gb FC", "QLogic"}});
    bmc.Start();
    RRepository repo(kestro::repository::ConnectNone);
    repo.SetConnectMode(kestro::repository::ConnectLocal);
    repo.SetRestConnectionList(std::vector<XModule::ConnectionInfo>(1, ConnectionTo(bmc)));
    RNetworkModule module;
    module.EnumInstances("PCIAdapter", repo);
    std::vector<RInstance*> records = repo.GetInstances("QlogicRawData");
    ASSERT_EQ(records.size(), 4u);
    std::string command, raw, file;
    records[0]->GetPropertyValue("Command", command);
    records[0]->GetPropertyValue("RawData", raw);
    records[0]->GetPropertyValue("Filename", file);
    EXPECT_EQ(command, home.Path() + "/utilities/qlogic/qaucli -g");
    EXPECT_EQ(raw, "answer of -g\n");
    EXPECT_EQ(file, "qaucli_general.txt");
    EXPECT_TRUE(records[0]->HasReference("PCIAdapter", 0));
    EXPECT_EQ(records[0]->GetDisplay(), "Qlogic Raw Data");
    repo.FreeInstances(records);
}
