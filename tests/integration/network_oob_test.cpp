#include "kestro/repository/rrepository.h"
#include "fakebmc/loopbackbmc.h"
#include "support/fixturehost.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

#include <boost/filesystem/operations.hpp>

#include <string>
#include <vector>

using namespace kestro::repository;

// A server reached through its BMC alone: the adapters' group is run and written as the report
// page, each port and firmware under its adapter's row.
TEST(NetworkOutOfBandTest, AdaptersOfTheBmcReachTheReportPage)
{
    FixtureHost host("");
    const std::string category = "reportcategory_oob.xml";
    host.Dir().Write("data/" + category, ReadFile(std::string(KESTRO_SOURCE_DATA) + "/" + category));
    const std::string site = host.Dir().Path() + "/site";
    boost::filesystem::create_directory(site);
    LoopbackBmc::Options options;
    options.fixtureRoot = std::string(KESTRO_TEST_FIXTURES) + "/bmc/standard";
    LoopbackBmc bmc(options);
    bmc.Start();
    XModule::ConnectionInfo connection;
    connection.host = "127.0.0.1";
    connection.port = bmc.Port();
    connection.scheme = XModule::XModuleConnection::SchemeHttp;
    connection.isBmc = true;

    RRepository repo(ConnectOob);
    repo.SetRestConnectionList(std::vector<XModule::ConnectionInfo>(1, connection));
    repo.SetCIMConnectionList(std::vector<XModule::ConnectionInfo>(1, connection));
    ASSERT_TRUE(repo.LoadCategories());
    LogCapture log;
    repo.RunInventory("pci_adapters");
    EXPECT_EQ(CountOf(repo, "PCIAdapter"), 2u);
    EXPECT_EQ(CountOf(repo, "PCIPort"), 4u);
    EXPECT_EQ(CountOf(repo, "PCISoftwareIdentity"), 3u);
    EXPECT_EQ(CountOf(repo, "EmulexRawData"), 0u);
    EXPECT_TRUE(log.Has(3, "[repo] Entering OOB Mode For Network.")) << log.Dump();
    ASSERT_TRUE(repo.WriteHTML(site));

    const std::string page = host.Dir().Read("site/pci_adapters.html");
    // Adapters in order, each followed by what hangs under it.
    const char* const inOrder[] = {"FC 32Gb 2-Port PCIe Adapter", "FC Port 2", "LPe3500x-FW",
                                   "Mellanox ConnectX-6 Dx 100GbE 2-port QSFP56", "Network Port 2", "22.36.1010"};
    std::size_t at = 0;
    for (const char* text : inOrder) {
        at = page.find(text, at);
        EXPECT_NE(at, std::string::npos) << text;
        if (at == std::string::npos) break;
    }
    for (const char* type : {"PCIAdapter", "PCIPort", "PCISoftwareIdentity", "QlogicRawData", "EmulexRawData",
                             "MellanoxRawData", "PciRawData"})
        EXPECT_EQ(log.Count(std::string("Cannot find type name to build wrapper: ") + type), 0) << type;
}
