#include "kestro/repository/rinstance.h"
#include "kestro/repository/rrepository.h"
#include "support/commandrun.h"
#include "support/fixturehost.h"
#include "support/serverhost.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <string>

using namespace kestro::repository;

// The tool run as an administrator runs it against a snapshot of a whole server's files.
TEST(KestroLocalTest, InventoryOfAServerRootFillsEveryHardwareAndSystemType)
{
    TempDir dir;
    WriteServerHost(dir);
    const std::string out = dir.Path() + "/out";
    const CommandRun run = RunCommand("'" KESTRO_TOOL_PATH "' inventory --root '" + dir.Path() + "' --output '" + out +
                                      "' 2>&1");
    ASSERT_EQ(0, run.status) << run.output;

    RRepository repo(ConnectNone);
    ASSERT_TRUE(repo.ReadXML(out + "/inventory.xml", ""));
    const struct {
        const char* type;
        std::size_t count;
    } expected[] = {
        {"ComputerSystem", 1}, {"Processor", 2},  {"Memory", 2},       {"FanInband", 1},   {"PowerInband", 1},
        {"VirtualDisk", 1},    {"Partition", 2},  {"Volumes_MountPoints", 1}, {"Graphics", 1}, {"VideoController", 1},
        {"VideoHead", 1},      {"Monitor", 1},    {"SystemCard", 6},   {"SystemDevice", 1}, {"UsbHub", 1},
        {"UsbDevice", 1},      {"OpticalDevice", 1}, {"OtherDevice", 3},
        {"OperatingSystem", 1}, {"TimeZone", 1},     {"BootConfiguration", 1}, {"InitConfiguration", 1},
        {"MemoryUtilization", 1}, {"PageFile", 1},   {"CurrentUser", 1},       {"ActiveUser", 1},
        {"InstalledPackage", 1}, {"SystemService", 1}, {"LinuxKernelModule", 2}, {"Process", 1},
        {"SystemEnvironmentVariable", 1}, {"KernelRingBuffer", 1}, {"LinuxEventLog", 2},
        {"SystemEventDefault", 2}, {"SystemEventAll", 2},
    };
    for (const auto& type : expected) EXPECT_EQ(type.count, CountOf(repo, type.type)) << type.type << "\n" << run.output;
    EXPECT_LT(0u, CountOf(repo, "Resolution"));
    EXPECT_NE(std::string::npos, dir.Read("out/operating_system.html").find("srv-db01"));
    EXPECT_NE(std::string::npos, dir.Read("out/inventory.xml").find("ThinkSystem SR650 V2"));
    EXPECT_NE(std::string::npos, dir.Read("out/processors.html").find("Gold 6338"));
}

// This very machine, whatever it has installed: the pages every Linux host fills hold rows.
TEST(KestroLocalTest, InventoryOfThisHostFillsItsSystemPages)
{
    TempDir dir;
    const CommandRun run = RunCommand("'" KESTRO_TOOL_PATH "' inventory --output '" + dir.Path() + "' 2>&1");
    ASSERT_EQ(0, run.status) << run.output;
    for (const char* page : {"processors.html", "operating_system.html", "processes.html", "volumes.html"})
        EXPECT_NE(std::string::npos, dir.Read(page).find("<td")) << page;
}
