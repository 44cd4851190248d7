#include "xmodule/linux/hostfiles.h"

#include "support/fixturehost.h"

#include <boost/filesystem/operations.hpp>

#include <gtest/gtest.h>

using XModule::Linux::HostFiles;

// A snapshot's links lead to the snapshot's files, never to those of the machine reading it;
// only regular files are read, and a head read stops where asked.
TEST(HostFilesTest, ReadsRegularFilesOfTheRootAndFollowsLinksWithinIt)
{
    FixtureHost host("");
    host.Dir().Write("etc/hostname", "snapshot-host\n");
    host.Dir().Write("usr/share/zoneinfo/Europe/Berlin", "zone of the snapshot");
    boost::filesystem::create_symlink("/usr/share/zoneinfo/Europe/Berlin", host.Dir().Path() + "/etc/localtime");
    boost::filesystem::create_symlink("../../../etc/hostname", host.Dir().Path() + "/usr/share/zoneinfo/up");
    host.Dir().Write("var/big", std::string(100000, 'x'));

    std::string text;
    EXPECT_TRUE(HostFiles::Read("/etc/localtime", text));
    EXPECT_EQ("zone of the snapshot", text);
    EXPECT_EQ("snapshot-host", HostFiles::ReadTrimmed("/usr/share/zoneinfo/up"));
    EXPECT_TRUE(HostFiles::ReadHead("/var/big", 16384, text));
    EXPECT_EQ(16384u, text.size());
    EXPECT_FALSE(HostFiles::Read("/usr/share/zoneinfo", text));
}
