#include "support/commandrun.h"
#include "support/minimalbmc.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <boost/filesystem/operations.hpp>

#include <string>

// The built tool against a loopback BMC serving the full CFC fixture.

namespace {

const char* const kUser = kFullBmcUser;
const char* const kPassword = "S3cret-Pass";

// Runs the tool with no terminal, so a missing password can't be asked for.
CommandRun RunTool(const std::string& environment, const std::string& arguments)
{
    const std::string command = environment + " '" KESTRO_TOOL_PATH "' " + arguments + " 2>&1 </dev/null";
    return RunCommand("setsid sh -c \"" + command + "\"");
}

}  // namespace

TEST(KestroRedfishTest, InventoryOfABmcWritesItsRecords)
{
    LoopbackBmc bmc(FullBmcOptions(kPassword));
    bmc.Start();
    TempDir dir;
    const std::string address = "127.0.0.1:" + std::to_string(bmc.Port());

    const CommandRun run = RunTool("", "inventory --redfish " + FullBmcUrl(bmc, kPassword) + " --output " + dir.Path() + "/oob");
    ASSERT_EQ(0, run.status) << run.output;
    EXPECT_NE(std::string::npos, run.output.find("  Memory: 16\n"));
    EXPECT_NE(std::string::npos, run.output.find("  NumericSensor: 19\n"));
    EXPECT_NE(std::string::npos, run.output.find("  StorageUnitDiskDevice: 2\n"));
    const std::string xml = dir.Read("oob/inventory.xml");
    EXPECT_NE(std::string::npos, xml.find("<mode>cfc_oob</mode>"));
    EXPECT_NE(std::string::npos, xml.find("7A9C1E6F2B4D31"));
    EXPECT_NE(std::string::npos, xml.find("Fan Zone A Redundancy, System Fan Redundancy"));
    EXPECT_NE(std::string::npos, xml.find("IPMI:(2026-11-21T17:55:19+00:00 PSU2 Status) Power supply 2 lost AC input."));

    // The password from the environment, and an in-band case by name.
    const CommandRun inBand = RunTool(std::string("KESTRO_PASSWORD=") + kPassword,
                                   "inventory --redfish https://" + std::string(kUser) + "@" + address +
                                       " --case cfc_rhel --group firmware --output " + dir.Path() + "/rhel");
    ASSERT_EQ(0, inBand.status) << inBand.output;
    EXPECT_NE(std::string::npos, dir.Read("rhel/inventory.xml").find("<mode>cfc_rhel</mode>"));
    EXPECT_NE(std::string::npos, inBand.output.find("  FirmwareInventory: 8\n"));
    EXPECT_EQ(std::string::npos, inBand.output.find("  Memory:"));
}

TEST(KestroRedfishTest, ACABundleIsCheckedByEveryCollectorAndAWrongPasswordOrNoBmcFailsTheRun)
{
    LoopbackBmc bmc(FullBmcOptions(kPassword));
    bmc.Start();
    LoopbackBmc stranger(FullBmcOptions(kPassword));
    stranger.Start();
    TempDir dir;
    const std::string url = FullBmcUrl(bmc, kPassword);

    const CommandRun trusted = RunTool("", "inventory --redfish " + url + " --ca-file " +
                                            dir.Write("bmc.pem", bmc.CertificatePem()) + " --output " + dir.Path() +
                                            "/trusted");
    ASSERT_EQ(0, trusted.status) << trusted.output;
    EXPECT_NE(std::string::npos, trusted.output.find("  Memory: 16\n"));
    EXPECT_NE(std::string::npos, trusted.output.find("  StorageUnitDiskDevice: 2\n"));

    // A certificate of another BMC: nothing of this one is believed, and the run says so.
    const CommandRun untrusted = RunTool("", "inventory --redfish " + url + " --ca-file " +
                                              dir.Write("other.pem", stranger.CertificatePem()) + " --output " +
                                              dir.Path() + "/untrusted");
    EXPECT_EQ(13, untrusted.status) << untrusted.output;
    EXPECT_NE(std::string::npos, untrusted.output.find("Connection failed. no Redfish service answers at 127.0.0.1"))
        << untrusted.output;
    EXPECT_EQ(std::string::npos, untrusted.output.find("  Memory:")) << untrusted.output;

    // A wrong password, then no BMC at all, fail the run too.
    const std::string address = "127.0.0.1:" + std::to_string(bmc.Port());
    const CommandRun denied =
        RunTool("", "inventory --redfish https://" + std::string(kUser) + ":wrong@" + address + " --output " +
                        dir.Path() + "/denied");
    EXPECT_EQ(13, denied.status) << denied.output;
    EXPECT_NE(std::string::npos, dir.Read("denied/kestro.log").find("error code is 401"));
    EXPECT_FALSE(boost::filesystem::exists(dir.Path() + "/denied/inventory.xml"));
    bmc.Stop();
    const CommandRun gone = RunTool("", "inventory --redfish " + url + " --output " + dir.Path() + "/gone");
    EXPECT_EQ(13, gone.status) << gone.output;
}

// Any standard Redfish server: the ordinary modules read the system, storage, adapters and logs through it.
TEST(KestroRedfishTest, OobCaseFillsTheHardwareStorageAdapterAndLogPagesOfAStandardServer)
{
    LoopbackBmc bmc(StandardBmcOptions(kPassword));
    bmc.Start();
    TempDir dir;
    const std::string url = "https://" + std::string(kUser) + ":" + kPassword + "@127.0.0.1:" + std::to_string(bmc.Port());
    const CommandRun run = RunTool("", "inventory --redfish " + url + " --case oob --output " + dir.Path() + "/std");
    ASSERT_EQ(0, run.status) << run.output;
    for (const char* count : {"  ComputerSystem: 1\n", "  Processor: 1\n", "  Memory: 1\n", "  StorageDevice: 1\n", "  StorageDiskDrive: 4\n", "  PCIAdapter: 2\n", "  PCIPort: 4\n",
                              "  QMMPlatformLogRest: 4\n", "  ReportHighlights: 2\n"})
        EXPECT_NE(std::string::npos, run.output.find(count)) << count << "\n" << run.output;
    EXPECT_NE(std::string::npos, run.output.find("BMC requests: "));
    EXPECT_NE(std::string::npos, dir.Read("std/inventory.xml").find("<mode>oob</mode>"));
    const struct {
        const char* page;
        const char* cell;
    } pages[] = {{"storage_devices.html", "<td>RAID 940-8i"},
                 {"pci_adapters.html", "<td>FC 32Gb 2-Port PCIe Adapter"},
                 {"bmc_platform_log.html", "<td>Processor 1 has shut down on thermal trip."},
                 {"processors.html", "CPU 1 (32 cores, 30 enabled, 60 threads)"},
                 {"memory.html", "M321R8GA0BB0-CQK"}};
    for (const auto& page : pages)
        EXPECT_NE(std::string::npos, dir.Read(std::string("std/") + page.page).find(page.cell)) << page.page;
}
