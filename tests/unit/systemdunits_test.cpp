#include "xmodule/linux/systemdunits.h"
#include "xmodule/linux/valueformat.h"
#include "xmodule/linux/hostfilestat.h"
#include "xmodule/linux/systemdbus.h"
#include "xmodule/linux/systemservices.h"
#include "xmodule/linux/sysvservices.h"

#include "support/fixturehost.h"

#include <boost/filesystem/operations.hpp>
#include <gtest/gtest.h>

using namespace XModule::Linux;
using XModule::protocol::SystemServiceInfo;

namespace {

const char kSshUnit[] =
    "[Unit]\n"
    "Description=OpenBSD Secure Shell server\n"
    "Documentation=man:sshd(8) man:sshd_config(5)\n"
    "After=network.target auditd.service\n"
    "ConditionPathExists=!/etc/ssh/sshd_not_to_be_run\n"
    "\n"
    "[Service]\n"
    "EnvironmentFile=-/etc/default/ssh\n"
    "ExecStartPre=/usr/sbin/sshd -t\n"
    "ExecStart=/usr/sbin/sshd -D $SSHD_OPTS\n"
    "Restart=on-failure\n"
    "\n"
    "[Install]\n"
    "WantedBy=multi-user.target\n"
    "Alias=sshd.service\n";

const char kProcpsScript[] =
    "#! /bin/sh\n"
    "### BEGIN INIT INFO\n"
    "# Provides:          procps\n"
    "# Required-Start:    mountkernfs $local_fs\n"
    "# Default-Start:     S\n"
    "# Short-Description: Configure kernel parameters at boottime\n"
    "# Description:  Loads kernel parameters that are set in /etc/sysctl.conf\n"
    "### END INIT INFO\n"
    "DAEMON=/sbin/sysctl\n";

std::string Row(const SystemServiceInfo& s)
{
    return s.Name + "|" + s.Description + "|" + s.State + "|" + s.Startup + "|" + s.Path + "|" + s.FileSize;
}

void Link(const TempDir& dir, const std::string& target, const std::string& link)
{
    boost::filesystem::create_directories(boost::filesystem::path(dir.Path() + "/" + link).parent_path());
    boost::filesystem::create_symlink(target, dir.Path() + "/" + link);
}

}  // namespace

TEST(SystemdUnitsTest, ParsesUnitFilesAndInitScriptHeaders)
{
    const struct {
        const char* text;
        const char* description;
        bool rules;
        bool also;
        unsigned badLines;
    } cases[] = {
        {kSshUnit, "OpenBSD Secure Shell server", true, false, 0},
        {"# comment\n; another\r\n[Unit]\r\nDescription = Daily apt \\\n# skipped inside\n   download activities\n"
         "[Service]\nExecStart=/usr/lib/apt/apt.systemd.daily \\\n  update\n",
         "Daily apt download activities", false, false, 0},
        {"[Unit]\nthis is no setting\n[Install\nDescription=In the wrong place\n[Install]\nAlso=foo.socket\nWantedBy=\n",
         "", false, true, 2},
        {"", "", false, false, 0},
    };
    for (const auto& c : cases) {
        const UnitFile unit = ParseUnitFile(c.text);
        EXPECT_EQ(c.description, unit.description) << c.text;
        EXPECT_EQ(c.rules, unit.installRules) << c.text;
        EXPECT_EQ(c.also, unit.installAlso) << c.text;
        EXPECT_EQ(c.badLines, unit.badLines) << c.text;
    }
    EXPECT_EQ("Configure kernel parameters at boottime", ParseLsbShortDescription(kProcpsScript));
    EXPECT_EQ("", ParseLsbShortDescription("#!/bin/sh\n# Short-Description: outside the header\n"));
}

TEST(SystemdUnitsTest, ReadsUnitsLinksAndInitScriptsOfAFixtureHost)
{
    FixtureHost host("");
    const TempDir& dir = host.Dir();
    const std::time_t written = 1700000000;
    boost::filesystem::last_write_time(dir.Write("lib/systemd/system/ssh.service", kSshUnit), written);
    dir.Write("lib/systemd/system/apt-daily.service", "[Unit]\nDescription=Daily apt download activities\n");
    dir.Write("etc/systemd/system/apt-daily.service", "[Unit]\nDescription=Local apt downloads\n");
    dir.Write("lib/systemd/system/getty@.service", "[Unit]\nDescription=Getty on %I\n[Install]\nWantedBy=getty.target\n");
    dir.Write("lib/systemd/system/rsync.service", "[Unit]\nDescription=fast remote file copy\n[Install]\nWantedBy=multi-user.target\n");
    dir.Write("lib/systemd/system/multi-user.target", "[Unit]\nDescription=Multi-User System\n");
    Link(dir, "getty@.service", "lib/systemd/system/autovt@.service");
    Link(dir, "/dev/null", "lib/systemd/system/cryptdisks.service");
    Link(dir, "/lib/systemd/system/ssh.service", "etc/systemd/system/sshd.service");
    Link(dir, "/lib/systemd/system/ssh.service", "etc/systemd/system/multi-user.target.wants/ssh.service");
    Link(dir, "/lib/systemd/system/getty@.service", "etc/systemd/system/getty.target.wants/getty@tty1.service");
    dir.Write("etc/init.d/ssh", "#!/bin/sh\n");
    dir.Write("etc/init.d/procps", kProcpsScript);
    dir.Write("etc/init.d/x11-common", "#!/bin/sh\n");
    dir.Write("etc/init.d/.depend.boot", "TARGETS = procps\n");
    Link(dir, "../init.d/procps", "etc/rcS.d/S01procps");
    Link(dir, "../init.d/x11-common", "etc/rc6.d/K01x11-common");

    std::vector<SystemServiceInfo> services;
    CollectSystemServices(services);
    std::vector<std::string> rows;
    for (const SystemServiceInfo& service : services) rows.push_back(Row(service));
    const std::vector<std::string> expected = {
        "apt-daily.service|Local apt downloads|N/A|static|/etc/systemd/system/apt-daily.service|39",
        "autovt@.service|Getty on %I|N/A|alias|/lib/systemd/system/getty@.service|63",
        "cryptdisks.service|N/A|N/A|masked|/lib/systemd/system/cryptdisks.service|N/A",
        "getty@.service|Getty on %I|N/A|enabled|/lib/systemd/system/getty@.service|63",
        "procps|Configure kernel parameters at boottime|N/A|enabled|/etc/init.d/procps|" + std::to_string(sizeof kProcpsScript - 1),
        "rsync.service|fast remote file copy|N/A|disabled|/lib/systemd/system/rsync.service|78",
        "ssh.service|OpenBSD Secure Shell server|N/A|enabled|/lib/systemd/system/ssh.service|" + std::to_string(sizeof kSshUnit - 1),
        "sshd.service|OpenBSD Secure Shell server|N/A|alias|/lib/systemd/system/ssh.service|" + std::to_string(sizeof kSshUnit - 1),
        "x11-common|N/A|N/A|disabled|/etc/init.d/x11-common|10",
    };
    EXPECT_EQ(expected, rows);
    ASSERT_EQ(9u, services.size());
    EXPECT_EQ(FormatDateTime(written), services[6].InstallDate);
}

TEST(SystemdUnitsTest, BusStatesOverDiskRecordsAndBusOnlyUnitsAdded)
{
    std::vector<SystemServiceInfo> services(1);
    services[0].Name = "ssh.service";
    services[0].Description = "OpenBSD Secure Shell server";
    services[0].Startup = "enabled";
    const std::map<std::string, BusUnit> units = {
        {"ssh.service", {"OpenBSD Secure Shell server", "active (running)", "enabled", "/lib/systemd/system/ssh.service"}},
        {"procps.service", {"LSB: Configure kernel parameters", "failed", "generated", ""}},
    };
    MergeBusUnits(units, services);
    std::vector<std::string> rows;
    for (const SystemServiceInfo& service : services) rows.push_back(Row(service));
    EXPECT_EQ((std::vector<std::string>{"ssh.service|OpenBSD Secure Shell server|active (running)|enabled|N/A|N/A",
                                        "procps.service|LSB: Configure kernel parameters|failed|generated|N/A|N/A"}),
              rows);
}
