#include "kestro/repository/rrepository.h"
#include "kestro/systemtype/systemtype.h"
#include "support/fixturehost.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

// This program's folder holds plug-ins that load but export none of the expected entries.

using namespace kestro::repository;

TEST(RRepositoryNoEntryTest, PluginsWithoutEntriesAreLoggedAndIgnored)
{
    FixtureHost host("ID=rhel\n");
    LogCapture capture;
    RRepository repo(ConnectLocal);
    EXPECT_EQ(2, capture.Count("[repo] Unable to find required interface in !!!")) << capture.Dump();
    EXPECT_EQ(0, capture.Count("Start to Load Vexa Server modules!"));
    EXPECT_EQ(kestro::SYSTEM_NO_FAMILY, kestro::SystemType::GetInstance()->GetSystemType());
    EXPECT_EQ(72u, repo.GetAvailableInstanceTypes().size());
}
