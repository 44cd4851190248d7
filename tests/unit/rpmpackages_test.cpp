#include "xmodule/linux/rpmpackages.h"

#include "kestro/xmodule/unreadable.h"
#include "support/fixturehost.h"

#include <boost/filesystem/operations.hpp>
#include <gtest/gtest.h>

#include <ctime>
#include <memory>

using namespace XModule::Linux;
using XModule::protocol::InstalledPackageInfo;

namespace {

std::string Row(const InstalledPackageInfo& p)
{
    return p.Name + "|" + p.Version + "|" + p.InstallDate + "|" + p.Summary + "|" + p.Group + "|" + p.Size + "|" +
           p.License;
}

}  // namespace

TEST(RpmPackagesTest, ParsesQueryRecords)
{
    UtcZone utc;
    const struct {
        const char* name;
        std::string text;
        std::vector<std::string> rows;
    } cases[] = {
        {"two records, blanks and a tab inside fields",
         "bash\x1f" "5.1.8-9.el9\x1f" "1700000000\x1f" "The GNU Bourne Again shell\x1f" "System Environment/Shells\x1f"
         "7738634\x1f" "GPLv3+\x1e"
         "gpg-pubkey\x1f" "fd431d51-4ae0493b\x1f" "1699990000\x1f" "gpg(Red Hat, Inc.\t<security@redhat.com>)\x1f"
         "(none)\x1f" "0\x1f" "pubkey\x1e",
         {"bash|5.1.8-9.el9|2023-11-14T22:13:20|The GNU Bourne Again shell|System Environment/Shells|7738634|GPLv3+",
          "gpg-pubkey|fd431d51-4ae0493b|2023-11-14T19:26:40|gpg(Red Hat, Inc. <security@redhat.com>)|N/A|0|pubkey"}},
        {"a record cut short, one without a name, a bad time",
         "zlib\x1f" "1.2.11-40.el9\x1f" "1700000000\x1e" "\x1f" "1.0\x1e" "tar\x1f" "1.34-6\x1f" "soon\x1f" "x\x1f"
         "y\x1f" "1\x1f" "GPLv3+\x1f" "extra\x1e\n",
         {"zlib|1.2.11-40.el9|2023-11-14T22:13:20|N/A|N/A|N/A|N/A", "tar|1.34-6|N/A|x|y|1|GPLv3+"}},
        {"nothing", "", {}},
    };
    for (const auto& c : cases) {
        std::vector<std::string> rows;
        for (const InstalledPackageInfo& package : ParseRpmQuery(c.text)) rows.push_back(Row(package));
        EXPECT_EQ(c.rows, rows) << c.name;
    }
}

// A stand-in rpm on PATH that answers only to the argument list the reader must pass.
TEST(RpmPackagesTest, RunsRpmOnTheDatabaseUnderTheRoot)
{
    UtcZone utc;
    FixtureHost host("");
    host.Dir().Write("usr/lib/sysimage/rpm/rpmdb.sqlite", "");
    const std::string rpm = host.Dir().Write(
        "tools/rpm",
        "#!/bin/sh\n"
        "[ \"$1 $2 $3\" = \"-qa --root " + host.Dir().Path() + "\" ] && [ \"$4\" = --queryformat ] || exit 3\n"
        "printf 'bash\\0375.1.8-9.el9\\0371700000000\\037The GNU Bourne Again shell\\037System Environment/Shells"
        "\\0377738634\\037GPLv3+\\036'\n");
    boost::filesystem::permissions(rpm, boost::filesystem::owner_all);

    std::vector<InstalledPackageInfo> packages;
    {
        ScopedEnv path("PATH", host.Dir().Path() + "/tools");
        EXPECT_TRUE(ReadRpmPackages(packages));
    }
    ASSERT_EQ(1u, packages.size());
    EXPECT_EQ("bash|5.1.8-9.el9|2023-11-14T22:13:20|The GNU Bourne Again shell|System Environment/Shells|7738634|GPLv3+",
              Row(packages[0]));

    XModule::ClearUnreadableNotes();
    {
        ScopedEnv path("PATH", host.Dir().Path() + "/nowhere");
        packages.clear();
        EXPECT_TRUE(ReadRpmPackages(packages));
    }
    EXPECT_TRUE(packages.empty());
    EXPECT_EQ(std::vector<std::string>{"rpm database: the rpm command is not installed"}, XModule::GetUnreadableNotes());
}
