#include "xmodule/linux/dpkgstatus.h"
#include "xmodule/linux/installedpackages.h"
#include "xmodule/linux/kernelmodules.h"
#include "xmodule/linux/rpmpackages.h"
#include "xmodule/linux/systemdbus.h"
#include "xmodule/linux/systemdunits.h"
#include "xmodule/linux/systemservices.h"
#include "xmodule/linux/sysvservices.h"
#include "xmodule/linux/valueformat.h"

#include "kestro/xmodule/unreadable.h"
#include "support/fixturehost.h"
#include "support/golden.h"
#include "support/sysfsfixture.h"

#include <boost/filesystem/operations.hpp>
#include <gtest/gtest.h>

using namespace XModule::Linux;
using XModule::protocol::InstalledPackageInfo;
using XModule::protocol::KernelModuleInfo;
using XModule::protocol::SystemServiceInfo;

namespace {

// Real stanzas: fields the reader passes over, folded fields and a description of several lines.
const char kBash[] =
    "Package: bash\nEssential: yes\nStatus: install ok installed\nPriority: required\nSection: shells\n"
    "Installed-Size: 7163\nMaintainer: Matthias Klose <doko@debian.org>\nArchitecture: amd64\nMulti-Arch: foreign\n"
    "Version: 5.2.15-2+b7\nReplaces: bash-completion (<< 20060301-0), bash-doc (<= 2.05-1)\n"
    "Depends: base-files (>= 2.1.12), debianutils (>= 5.6-0.1)\nConffiles:\n"
    " /etc/bash.bashrc 89269e1298235f1b12b4c16e4065ad0d\n /etc/skel/.bashrc 0ccf2f4b6d18c1b8b8b0b8a3d0a3c7b4\n"
    "Description: GNU Bourne Again SHell\n Bash is an sh-compatible command language interpreter that executes\n"
    " commands read from the standard input or from a file.\n .\n"
    " The Programmable Completion Code, by Ian Macdonald, is now found in\n the bash-completion package.\n"
    "Homepage: http://tiswww.case.edu/php/chet/bash/bashtop.html\n\n";
const char kLibc[] =
    "Package: libc6\nStatus: install ok installed\nPriority: optional\nSection: libs\nInstalled-Size: 13001\n"
    "Architecture: amd64\nMulti-Arch: same\nSource: glibc\nVersion: 2.36-9+deb12u14\n"
    "Description: GNU C Library: Shared libraries\n Contains the standard libraries that are used by nearly all programs on\n"
    " the system.\n";
const char kRemoved[] =
    "Package: exim4-config\nStatus: deinstall ok config-files\nPriority: standard\nSection: mail\nInstalled-Size: 453\n"
    "Architecture: all\nVersion: 4.96-15+deb12u4\nConffiles:\n"
    " /etc/exim4/conf.d/acl/00_exim4-config_header 57d2e8ef5c2e3c8b2f7f1a2b3c4d5e6f\n"
    "Description: configuration for the exim MTA (v4)\n\n";

const char kSshUnit[] =
    "[Unit]\nDescription=OpenBSD Secure Shell server\nDocumentation=man:sshd(8) man:sshd_config(5)\n"
    "After=network.target auditd.service\nConditionPathExists=!/etc/ssh/sshd_not_to_be_run\n\n"
    "[Service]\nEnvironmentFile=-/etc/default/ssh\nExecStartPre=/usr/sbin/sshd -t\nExecStart=/usr/sbin/sshd -D $SSHD_OPTS\n"
    "Restart=on-failure\n\n[Install]\nWantedBy=multi-user.target\nAlias=sshd.service\n";
const char kProcpsScript[] =
    "#! /bin/sh\n### BEGIN INIT INFO\n# Provides:          procps\n# Required-Start:    mountkernfs $local_fs\n"
    "# Default-Start:     S\n# Short-Description: Configure kernel parameters at boottime\n"
    "# Description:  Loads kernel parameters that are set in /etc/sysctl.conf\n### END INIT INFO\nDAEMON=/sbin/sysctl\n";

std::string RpmRow(const InstalledPackageInfo& p)
{
    return Joined({p.Name, p.Version, p.InstallDate, p.Summary, p.Group, p.Size, p.License});
}

std::string ServiceRow(const SystemServiceInfo& s)
{
    return Joined({s.Name, s.Description, s.State, s.Startup, s.Path, s.FileSize});
}

}  // namespace

TEST(DpkgStatusTest, KeepsInstalledPackagesOfEveryStanzaThatReads)
{
    const std::string bashRow = "bash|5.2.15-2+b7|GNU Bourne Again SHell|shells|7334912";
    const std::string libcRow = "libc6:amd64|2.36-9+deb12u14|GNU C Library: Shared libraries|libs|13313024";
    std::string crlf;
    for (char c : std::string(kBash) + kLibc) crlf += c == '\n' ? std::string("\r\n") : std::string(1, c);
    const struct Case {
        const char* name;
        std::string text;
        std::vector<std::string> packages;  // Name|Version|Summary|Group|Size
    } cases[] = {
        {"real stanzas, config-files left out", std::string(kBash) + kRemoved + kLibc, {bashRow, libcRow}},
        {"crlf line ends", crlf, {bashRow, libcRow}},
        {"cut after Status", std::string(kBash) + "Package: zlib1g\nStatus: install ok installed\nVersion: 1:1.2",
         {bashRow, "zlib1g|1:1.2|N/A|N/A|N/A"}},
        {"cut before Status", std::string(kBash) + "Package: zlib1g\nPriority: req", {bashRow}},
        {"held, half-installed, no status word, triggers pending",
         "Package: a\nStatus: hold ok installed\n\nPackage: b\nStatus: install reinstreq half-installed\n\n"
         "Package: c\nStatus: installed\n\nPackage: d\nStatus: install ok triggers-pending\nInstalled-Size: 9x\n",
         {"a|N/A|N/A|N/A|N/A", "d|N/A|N/A|N/A|N/A"}},
        {"latin-1 description, blank-only separator, bad line",
         "Package: e\nStatus: install ok installed\nDescription: caf\xe9 tools\n  \t\nno colon here\nPackage: f\n"
         "Status: install ok installed\nInstalled-Size: 99999999999999999999\n",
         {"e|N/A|caf\xe9 tools|N/A|N/A", "f|N/A|N/A|N/A|N/A"}},
        {"empty file", "", {}},
        {"blank lines only", "\n\n\r\n", {}},
    };
    for (const Case& c : cases) {
        std::vector<std::string> rows;
        for (const InstalledPackageInfo& p : ParseDpkgStatus(c.text))
            rows.push_back(Joined({p.Name, p.Version, p.Summary, p.Group, p.Size}));
        EXPECT_EQ(c.packages, rows) << c.name;
    }
}

TEST(DpkgStatusTest, ReadsAFixtureHostWithInstallDatesAndLicenses)
{
    FixtureHost host("");
    host.Dir().Write("var/lib/dpkg/status", std::string(kLibc) + "\n" + kRemoved + kBash);
    const std::time_t listed = 1700000000;
    for (const char* list : {"var/lib/dpkg/info/bash.list", "var/lib/dpkg/info/libc6:amd64.list"})
        boost::filesystem::last_write_time(host.Dir().Write(list, "/.\n/bin\n/bin/bash\n"), listed);
    // The license of the first Files paragraph that has one, not the header's; none without a Format line.
    host.Dir().Write("usr/share/doc/bash/copyright",
                     "Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/\nLicense: GPL-2+\n\n"
                     "Files: *\nCopyright: (C) 1987-2022 Free Software Foundation, Inc.\n\nFiles: debian/*\n"
                     "License: GPL-3+\n\nFiles: support/bash.xbm\nLicense: public-domain\n");
    host.Dir().Write("usr/share/doc/libc6/copyright",
                     "This is the Debian prepackaged version of the GNU C Library.\n\nLicense: LGPL-2.1\n");

    std::vector<InstalledPackageInfo> packages;
    CollectInstalledPackages(packages);
    std::vector<std::string> rows;
    for (const InstalledPackageInfo& p : packages) rows.push_back(Joined({p.Name, p.License, p.InstallDate}));
    EXPECT_EQ((std::vector<std::string>{"bash|GPL-3+|" + FormatDateTime(listed), "libc6:amd64|N/A|" + FormatDateTime(listed)}),
              rows);
}

TEST(RpmPackagesTest, ParsesQueryRecords)
{
    UtcZone utc;
    const struct { const char* name; std::string text; std::vector<std::string> rows; } cases[] = {
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
        for (const InstalledPackageInfo& package : ParseRpmQuery(c.text)) rows.push_back(RpmRow(package));
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
              RpmRow(packages[0]));

    XModule::ClearUnreadableNotes();
    {
        ScopedEnv path("PATH", host.Dir().Path() + "/nowhere");
        packages.clear();
        EXPECT_TRUE(ReadRpmPackages(packages));
    }
    EXPECT_TRUE(packages.empty());
    EXPECT_EQ(std::vector<std::string>{"rpm database: the rpm command is not installed"}, XModule::GetUnreadableNotes());
}

TEST(SystemdUnitsTest, ParsesUnitFilesAndInitScriptHeaders)
{
    const struct { const char* text; const char* description; bool rules; bool also; unsigned badLines; } cases[] = {
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
    dir.Write("lib/systemd/system/rsync.service",
              "[Unit]\nDescription=fast remote file copy\n[Install]\nWantedBy=multi-user.target\n");
    dir.Write("lib/systemd/system/multi-user.target", "[Unit]\nDescription=Multi-User System\n");
    WriteSysfsLink(dir, "lib/systemd/system/autovt@.service", "getty@.service");
    WriteSysfsLink(dir, "lib/systemd/system/cryptdisks.service", "/dev/null");
    WriteSysfsLink(dir, "etc/systemd/system/sshd.service", "/lib/systemd/system/ssh.service");
    WriteSysfsLink(dir, "etc/systemd/system/multi-user.target.wants/ssh.service", "/lib/systemd/system/ssh.service");
    WriteSysfsLink(dir, "etc/systemd/system/getty.target.wants/getty@tty1.service", "/lib/systemd/system/getty@.service");
    dir.Write("etc/init.d/ssh", "#!/bin/sh\n");
    dir.Write("etc/init.d/procps", kProcpsScript);
    dir.Write("etc/init.d/x11-common", "#!/bin/sh\n");
    dir.Write("etc/init.d/.depend.boot", "TARGETS = procps\n");
    WriteSysfsLink(dir, "etc/rcS.d/S01procps", "../init.d/procps");
    WriteSysfsLink(dir, "etc/rc6.d/K01x11-common", "../init.d/x11-common");

    std::vector<SystemServiceInfo> services;
    CollectSystemServices(services);
    std::string text;
    for (const SystemServiceInfo& service : services) text += ServiceRow(service) + "\n";
    EXPECT_TRUE(MatchesGolden("software/services.txt", text,
                              {{"PROCPS", std::to_string(sizeof kProcpsScript - 1)},
                               {"SSH", std::to_string(sizeof kSshUnit - 1)}}));
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
    for (const SystemServiceInfo& service : services) rows.push_back(ServiceRow(service));
    EXPECT_EQ((std::vector<std::string>{"ssh.service|OpenBSD Secure Shell server|active (running)|enabled|N/A|N/A",
                                        "procps.service|LSB: Configure kernel parameters|failed|generated|N/A|N/A"}),
              rows);
}

TEST(KernelModulesTest, AddsVersionsAndParametersFromSysfs)
{
    FixtureHost host("");
    host.Dir().Write("proc/modules", "nf_tables 327680 0 - Live 0xffffffffc0a5e000\ne1000e 352256 0 - Live 0xffffffffc0940000\n"
                                     "libcrc32c 12288 2 nf_tables,btrfs, Live 0x0000000000000000\n"
                                     "nvidia 56832000 1 nvidia_modeset, Live 0xffffffffc1000000 (POE)\n"
                                     "cut 4096 0\nbad notanumber 0 - Live 0x0\n\ndm_mod 184320 0 - Loading 0xffffffffc0300000");
    host.Dir().Write("sys/module/e1000e/version", "3.2.6-k\n");
    const char* const parameters[] = {"Copybreak", "CrcStripping", "EEE", "InterruptThrottleRate", "IntMode",
                                      "KumeranLockLoss", "SmartPowerDownEnable", "TxIntDelay", "WriteProtectNVM"};
    for (const char* parameter : parameters)
        host.Dir().Write(std::string("sys/module/e1000e/parameters/") + parameter, "1\n");
    host.Dir().Write("sys/module/nf_tables/parameters/policy", std::string(70, 'x') + "\n");
    host.Dir().Write("sys/module/kernel/parameters/panic", "0\n");

    std::vector<KernelModuleInfo> modules;
    CollectKernelModules(modules);
    std::string text;
    for (const KernelModuleInfo& m : modules)
        text += Joined({m.Name, m.Version, m.Size, m.UsedBy, m.State, m.Parameters}) + "\n";
    EXPECT_TRUE(MatchesGolden("software/kernel_modules.txt", text));

    XModule::ClearUnreadableNotes();
    FixtureHost empty("");
    modules.clear();
    CollectKernelModules(modules);
    EXPECT_TRUE(modules.empty());
    EXPECT_EQ(std::vector<std::string>{"/proc/modules: No such file or directory"}, XModule::GetUnreadableNotes());
}
