#include "repository/modules/rosinventorymodule.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rrepository.h"
#include "support/fixturehost.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

using namespace kestro::repository;
using XModule::protocol::EventInfo;

namespace {

// `count` events a second apart, oldest first, as a log reader might hand them over unsorted.
std::vector<EventInfo> Events(int count)
{
    std::vector<EventInfo> events(count);
    for (int i = 0; i < count; ++i) {
        char stamp[32];
        std::snprintf(stamp, sizeof stamp, "2026-11-25T%02d:%02d:%02d", i / 3600, i / 60 % 60, i % 60);
        events[i].MessageTimestamp = stamp;
        events[i].Type = i % 2 ? "Warning" : "Information";
    }
    return events;
}

struct Page {
    std::size_t rows;
    std::string heading;
    std::string newest;
};

Page PageOf(RRepository& repo, const std::string& type)
{
    std::vector<RInstance*> records = repo.GetInstances(type);
    Page page = {records.size(), records.empty() ? "" : records.front()->GetDisplay(), ""};
    if (!records.empty()) records.front()->GetPropertyValue("MessageTimestamp", page.newest);
    repo.FreeInstances(records);
    return page;
}

}  // namespace

TEST(ROSInventoryModuleTest, EventPagesFollowTheLimitAndTheDefaultPageHoldsOneAboveItsHeading)
{
    const struct {
        int configResult;
        const char* configured;
        long limit;
    } limits[] = {{1, "100", 0}, {0, "ALL", ROSInventoryModule::ALL_EVENTS}, {0, "all", ROSInventoryModule::ALL_EVENTS},
                  {0, "100", 100},  {0, "abc", 0},  {0, "2048 events", 2048}, {0, "", 0}, {0, " 7", 7}};
    for (const auto& row : limits)
        EXPECT_EQ(row.limit, ROSInventoryModule::EventLimitOf(row.configResult, row.configured)) << row.configured;
    const std::pair<int, const char*> names[] = {{0, "Unknown"},       {4, ""},          {36, "LINUX"},
                                                 {78, "Windows PE 32-bit"}, {79, "Windows PE 32-bit"},
                                                 {80, "Windows PE 64-bit"}, {95, "Windows 11"}, {96, "Unknown"},
                                                 {-1, "Unknown"}};
    for (const auto& name : names) EXPECT_EQ(name.second, ROSInventoryModule::OperatingSystemName(name.first));

    const char heading[] = "System Event (Current Events:";
    const struct { int events; long limit; Page defaultPage; Page fullPage; } cases[] = {
        {600, 0, {513, "System Event (Current Events:512)", "2026-11-25T00:00:00"},
         {600, "System Event (Current Events:0)", "2026-11-25T00:09:59"}},
        {600, 100, {513, "System Event (Current Events:512)", ""}, {600, "System Event (Current Events:100)", ""}},
        {600, ROSInventoryModule::ALL_EVENTS, {513, "", ""}, {600, "System Event (Current Events:600)", ""}},
        {512, 0, {512, "System Event (Current Events:512)", ""}, {512, "", ""}},
        {513, 0, {513, "", ""}, {513, "", ""}},
        {3, 0, {3, "System Event (Current Events:512)", ""}, {3, "", ""}},
        {0, 0, {0, "", ""}, {0, "", ""}},
    };
    for (const auto& c : cases) {
        RRepository repo(ConnectNone);
        ROSInventoryModule::FillDefaultEvents(repo, "SystemEventDefault", heading, Events(c.events));
        ROSInventoryModule::FillFullEvents(repo, "SystemEventAll", heading, Events(c.events), c.limit);
        const Page pages[] = {PageOf(repo, "SystemEventDefault"), PageOf(repo, "SystemEventAll")};
        const Page* expected[] = {&c.defaultPage, &c.fullPage};
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(expected[i]->rows, pages[i].rows) << c.events << " events, page " << i;
            if (!expected[i]->heading.empty()) {
                EXPECT_EQ(expected[i]->heading, pages[i].heading);
            }
            if (!expected[i]->newest.empty()) {
                EXPECT_EQ(expected[i]->newest, pages[i].newest);
            }
        }
    }
}

TEST(ROSInventoryModuleTest, LinuxCasesOfferTheLinuxTypesOnceEachAndRefuseAnotherHost)
{
    FixtureHost host("ID=debian\nPRETTY_NAME=\"Debian GNU/Linux 12 (bookworm)\"\nVERSION_ID=\"12\"\n");
    host.Dir().Write("proc/sys/kernel/osrelease", "6.1.0-27-amd64\n");
    RRepository repo(ConnectLocal);
    ROSInventoryModule module;
    module.SetInventoryCase(CaseUbuntu);
    // Every Linux type a Debian root fills is counted end to end (KestroLocalTest); no Windows-only one is offered.
    std::vector<std::string> types;
    module.EnumTypes(types);
    EXPECT_EQ(types.end(), std::find(types.begin(), types.end(), "DeviceDriver"));

    LogCapture capture;
    module.EnumInstances("OperatingSystem", repo);
    module.EnumInstances("OperatingSystem", repo);
    EXPECT_EQ(1, capture.Count("GetOperatingSystem() returns ret = 0")) << capture.Dump();
    EXPECT_TRUE(capture.Has(4, "Entering  kestro::repository::ROSInventoryModule::EnumOperatingSystem"));
    std::vector<RInstance*> systems = repo.GetInstances("OperatingSystem");
    ASSERT_EQ(1u, systems.size());
    EXPECT_EQ("Debian GNU/Linux 12 (bookworm)", systems[0]->GetNormalizedValue("ProductName", ""));
    EXPECT_EQ("6.1.0-27-amd64", systems[0]->GetNormalizedValue("Version", ""));
    repo.FreeInstances(systems);

    RRepository remote(ConnectLocal);
    XModule::ConnectionInfo other;
    other.host = "db01.example";
    remote.SetCIMConnectionList(std::vector<XModule::ConnectionInfo>(1, other));
    ROSInventoryModule remoteModule;
    remoteModule.SetInventoryCase(CaseRhel);
    remoteModule.EnumInstances("InstalledPackage", remote);
    remoteModule.EnumInstances("OperatingSystem", remote);
    EXPECT_TRUE(capture.Has(3, "[repo] OperatingSystem::GetOperatingSystem() returns ret = 1"));
    EXPECT_EQ(0u, CountOf(remote, "InstalledPackage"));
}
