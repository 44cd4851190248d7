#include "xmodule/linux/bootconfiguration.h"
#include "xmodule/linux/environmentvariables.h"
#include "xmodule/linux/initsystem.h"
#include "xmodule/linux/meminfo.h"
#include "xmodule/linux/osbasics.h"
#include "xmodule/linux/osrelease.h"
#include "xmodule/linux/passwd.h"
#include "xmodule/linux/swaps.h"
#include "xmodule/linux/timezone.h"
#include "xmodule/linux/usersessions.h"
#include "xmodule/linux/valueformat.h"

#include "support/fixturehost.h"
#include "support/golden.h"
#include "support/logcapture.h"
#include "support/serverhost.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <regex>
#include <sstream>
#include <unistd.h>

using namespace XModule::Linux;

namespace {

std::string Describe(const LoginSession& s)
{
    return s.user + "|" + s.place + "|" + s.remoteHost + "|" + std::to_string(s.loginTime);
}

// A utmp record in glibc's x86-64 layout.
std::string UtmpRecord(short type, const char* line, const char* user, const char* host, std::int32_t seconds)
{
    std::string record(384, '\0');
    std::memcpy(&record[0], &type, sizeof type);
    std::memcpy(&record[8], line, std::strlen(line));
    std::memcpy(&record[44], user, std::strlen(user));
    std::memcpy(&record[76], host, std::strlen(host));
    std::memcpy(&record[340], &seconds, sizeof seconds);
    return record;
}

}  // namespace

// Every system record of the server root; the user running the test is its first account.
TEST(OsBasicsTest, FillsEveryRecordFromTheServerRoot)
{
    FixtureHost host("");
    WriteServerHost(host.Dir());
    const std::string fixtureUser = "fixture:x:" + std::to_string(geteuid()) + ":0:Fixture:/:/bin/sh\n";
    host.Dir().Write("etc/passwd", fixtureUser + host.Dir().Read("etc/passwd"));
    host.Dir().Write("etc/environment", "# pam_env\nLANG=C.UTF-8\nBACKUP_TOKEN=\"abc\"\n");
    ScopedEnv password("KESTRO_PASSWORD", "s3cret");

    XModule::protocol::OperatingSystemInfo os;
    CollectOperatingSystem(os);
    XModule::protocol::TimeZoneInfo zone;
    CollectTimeZone(zone);
    XModule::protocol::BootConfigurationInfo boot;
    CollectBootConfiguration(boot);
    XModule::protocol::InitConfigurationInfo init;
    CollectInitConfiguration(init);
    XModule::protocol::MemoryUtilizationInfo m;
    CollectMemoryUtilization(m);
    std::vector<XModule::protocol::PageFileInfo> swaps;
    CollectPageFiles(swaps);
    XModule::protocol::CurrentUserInfo current;
    CollectCurrentUser(current);
    std::vector<XModule::protocol::ActiveUserInfo> users;
    CollectActiveUsers(users);
    std::vector<XModule::protocol::EnvironmentVariableInfo> system, user;
    CollectEnvironment(system, user);

    std::string text = Joined({os.ProductName, os.ComputerName, os.ReleaseId, os.Version, os.ServicePack, os.BuildNumber,
                               os.Vendor, os.RegisteredOwner, os.ProductID, os.InstallationDate, os.Uptime,
                               os.TimeofLastBoot}) +
                       "\n" + zone.CurrentTimeZone + "|" + zone.LocalDateTime + "\n" + boot.BootDataSource + "\n" +
                       boot.Contents + "\n" + Joined({init.InitSystem, init.DefaultTarget, init.SystemState}) + "\n" +
                       Joined({m.PercentMemoryUtilization, m.TotalVisibleMemorySize, m.FreePhysicalMemory,
                               m.PhysicalMemorySystemCache, m.TotalVirtualMemorySize, m.FreeVirtualMemory,
                               m.SizeStoredInPagingFiles, m.FreeSpaceInPagingFiles, m.CommitChargeTotal,
                               m.CommitChargeLimit, m.CommitChargePeak, m.KernelMemoryTotal, m.KernelMemoryPaged,
                               m.KernelMemoryNonpaged, m.Handles, m.Threads, m.Processes}) +
                       "\n" + current.UserName + "\n";
    for (const auto& s : swaps) text += Joined({s.Name, s.Type, s.Size, s.Used, s.Priority}) + "\n";
    for (const auto& u : users)
        text += Joined({u.UserID, u.Description, u.LastLogonDate, u.Domain, u.LogonServer}) + "\n";
    for (const auto& v : system) text += v.Name + "=" + v.Value + "\n";
    EXPECT_TRUE(MatchesGolden("osbasics/server_root.txt", text,
                              {{"INSTALLED", FormatDateTime(kServerInstalled)}, {"BOOTED", FormatDateTime(1795578532)},
                               {"LOGON", FormatDateTime(1795578600)}}));
    EXPECT_TRUE(std::regex_match(zone.GMTDateandTime, std::regex("\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\dZ")))
        << zone.GMTDateandTime;
    bool sawPassword = false;
    for (const XModule::protocol::EnvironmentVariableInfo& variable : user)
        if (variable.Name == "KESTRO_PASSWORD") sawPassword = variable.Value == "(hidden)";
    EXPECT_TRUE(sawPassword);
    EXPECT_TRUE(std::is_sorted(user.begin(), user.end(), [](const XModule::protocol::EnvironmentVariableInfo& a,
                                                            const XModule::protocol::EnvironmentVariableInfo& b) {
        return a.Name < b.Name;
    }));
}

TEST(OsBasicsTest, ParsesReleaseAndClockFacts)
{
    struct Case { const char* id; const char* name; const char* version; const char* vendor; const char* servicePack; };
    const Case cases[] = {
        {"sles", "SLES", "15-SP5", "SUSE", "SP5"},
        {"sles", "SLES", "12 SP3", "SUSE", "SP3"},
        {"sles", "SLES", "15", "SUSE", ""},
        {"ubuntu", "Ubuntu", "22.04.4 LTS (Jammy Jellyfish)", "Canonical", ""},
        {"arch", "Arch Linux", "", "Arch Linux", ""},
        {"rhel", "Red Hat Enterprise Linux", "9.3 (Plow) SPx", "Red Hat", ""},
        {"", "", "ESP1", "", ""},
    };
    for (const Case& c : cases) {
        const OsRelease release = {{"ID", c.id}, {"NAME", c.name}};
        EXPECT_EQ(c.vendor, FindVendor(release)) << c.id;
        EXPECT_EQ(c.servicePack, ParseServicePack(c.version)) << c.version;
    }

    std::uint64_t seconds = 0;  // the server root's uptime is read in FillsEveryRecordFromTheServerRoot
    EXPECT_EQ("1 day, 00:00:05", FormatUptime(86405));
    EXPECT_EQ("0 days, 00:05:00", FormatUptime(300));
    EXPECT_FALSE(ParseUptime("-5.0 1.0", seconds));
    std::time_t boot = 0;
    EXPECT_TRUE(ParseBootTime("cpu  238968 56 28932 114658\nctxt 1622824\nbtime 1795578532\nprocesses 33386\n", boot));
    EXPECT_EQ(1795578532, boot);
    EXPECT_FALSE(ParseBootTime("cpu  1 2 3\nbtime x\n", boot));
}

// The family each release gives is checked through the case it picks (RRepositoryTest).
TEST(OsReleaseTest, ParsesQuotedValues)
{
    std::istringstream text(
        "# comment\n"
        "NAME=\"Rocky Linux\"\n"
        "ID=\"rocky\"\n"
        "ID_LIKE='rhel centos fedora'\n"
        "PRETTY_NAME=\"Say \\\"hi\\\"\"\n"
        "BROKEN\n"
        "=novalue\n"
        "VERSION_ID=9.3\n");
    const OsRelease release = ParseOsRelease(text);
    EXPECT_EQ("Rocky Linux", release.at("NAME"));
    EXPECT_EQ("rhel centos fedora", release.at("ID_LIKE"));
    EXPECT_EQ("Say \"hi\"", release.at("PRETTY_NAME"));
    EXPECT_EQ("9.3", release.at("VERSION_ID"));
    EXPECT_EQ(5u, release.size());
}

TEST(MemInfoTest, ParsesFieldsAndFillsUtilization)
{
    LogCapture log;
    const MemInfo info = ParseMemInfo(
        "MemTotal:       24683656 kB\n"
        "MemFree:        21044580 kB\n"
        "MemAvailable:   23053804 kB\n"
        "Active(anon):       1720 kB\n"
        "HugePages_Total:       0\n"
        "Broken line\n"
        "Negative:         -12 kB\n"
        "Pages:             12 pages\n"
        "SwapTotal:       999420 kB\n"
        "SwapFree:        9994");
    const MemInfo expected = {{"MemTotal", 24683656ull * 1024}, {"MemFree", 21044580ull * 1024},
                              {"MemAvailable", 23053804ull * 1024}, {"Active(anon)", 1720 * 1024},
                              {"HugePages_Total", 0}, {"SwapTotal", 999420ull * 1024}};
    EXPECT_EQ(expected, info);
    EXPECT_EQ(4, log.Count("meminfo")) << log.Dump();

    uint64_t threads = 0;
    EXPECT_TRUE(ParseThreadCount("7.83 4.44 2.04 9/145 16382\n", threads));
    EXPECT_EQ(145u, threads);
    EXPECT_FALSE(ParseThreadCount("7.83 4.44 2.04 9", threads));
    EXPECT_FALSE(ParseThreadCount("7.83 4.44 2.04 9/-1 16382", threads));

    // Without MemAvailable (before 3.14) free memory is MemFree, buffers and page cache; without swap
    // fields those sizes stay unknown.
    XModule::protocol::MemoryUtilizationInfo memory;
    FillMemoryUtilization({{"MemTotal", 8ull << 30}, {"MemFree", 1ull << 30}, {"Buffers", 512ull << 20},
                           {"Cached", 512ull << 20}, {"Slab", 1 << 20}},
                          memory);
    EXPECT_EQ("75.0|8 GiB|2 GiB|N/A|N/A|N/A", Joined({memory.PercentMemoryUtilization, memory.TotalVisibleMemorySize,
                                                       memory.FreePhysicalMemory, memory.TotalVirtualMemorySize,
                                                       memory.KernelMemoryTotal, memory.CommitChargePeak}));
}

TEST(SwapsTest, ParsesAreasBelowTheHeader)
{
    const char header[] = "Filename\t\t\t\tType\t\tSize\t\tUsed\t\tPriority\n";
    const struct Case { std::string text; const char* rows; } cases[] = {
        {header, ""},
        {"", ""},
        {std::string(header) + "/dev/sda3                               partition\t999420\t\t0\t\t-2\n",
         "/dev/sda3|partition|976.0 MiB|0 B|-2;"},
        {std::string(header) + "/srv/swap\\040file\\134x\t\t\tfile\t\t2097148\t\t1024\t\t-3\n",
         "/srv/swap file\\x|file|2.0 GiB|1 MiB|-3;"},
        {std::string(header) + "/swapfile\tfile\tlots\t-4\t-2\n/dev/zram0\tpartition\n",
         "/swapfile|file|N/A|N/A|-2;"},
    };
    for (const Case& c : cases) {
        std::string rows;
        for (const XModule::protocol::PageFileInfo& a : ParseSwaps(c.text))
            rows += Joined({a.Name, a.Type, a.Size, a.Used, a.Priority}) + ";";
        EXPECT_EQ(c.rows, rows) << c.text;
    }
}

TEST(UserSessionsTest, ParsesPasswdLogindAndUtmp)
{
    LogCapture log;
    const std::vector<PasswdEntry> accounts = ParsePasswd(
        "root:x:0:0:root:/root:/bin/bash\n"
        "alice:x:1000:1000:Alice Example,,,:/home/alice:/bin/bash\n"
        "nobody:x:65534\n"
        "daemon:x\n"
        "bad:x:-1:0::/:/bin/false\n"
        ":x:5:5::/:\n");
    std::string rows;
    for (const PasswdEntry& a : accounts) rows += a.name + "/" + std::to_string(a.uid) + "/" + a.fullName + ";";
    EXPECT_EQ("root/0/root;alice/1000/Alice Example;nobody/65534/;", rows);
    EXPECT_EQ(3, log.Count("passwd line not understood")) << log.Dump();

    const struct Case { const char* text; bool person; const char* session; } cases[] = {
        {"# This is private data. Do not parse.\nUID=1000\nUSER=alice\nACTIVE=1\nSTATE=active\nREMOTE=1\nTYPE=tty\n"
         "CLASS=user\nTTY=pts/0\nREMOTE_HOST=192.0.2.10\nSERVICE=sshd\nREALTIME=1795578532123456\n",
         true, "alice|pts/0|192.0.2.10|1795578532"},
        {"USER=bob\nSTATE=online\nCLASS=user\nSEAT=seat0\nTTY=tty2\nREALTIME=garbage\n", true, "bob|seat0||0"},
        {"USER=gdm\nCLASS=greeter\nSEAT=seat0\n", false, ""},
        {"USER=carol\nCLASS=user\nSTATE=closing\n", false, ""},
        {"UID=0\nCLASS=user\n", false, ""},
    };
    for (const Case& c : cases) {
        LoginSession session;
        EXPECT_EQ(c.person, ParseLogindSession(c.text, session)) << c.text;
        EXPECT_EQ(c.session, c.person ? Describe(session) : std::string());
    }

    const std::string utmp = UtmpRecord(7, "pts/1", "alice", "198.51.100.7", 1795578532) +
                             UtmpRecord(8, "pts/2", "bob", "", 1795578000) +
                             UtmpRecord(7, "tty1", "a-name-of-all-thirty-two-letters", "", 1700000000) +
                             UtmpRecord(7, "tty3", "cut", "", 1).substr(0, 200);
    log.Clear();
    const std::vector<LoginSession> sessions = ParseUtmp(utmp);
    ASSERT_EQ(2u, sessions.size());
    EXPECT_EQ("alice|pts/1|198.51.100.7|1795578532", Describe(sessions[0]));
    EXPECT_EQ("a-name-of-all-thirty-two-letters|tty1||1700000000", Describe(sessions[1]));
    EXPECT_EQ(1, log.Count("utmp ends in a cut record of 200 bytes")) << log.Dump();
}

TEST(EnvironmentVariablesTest, ParsesAssignmentsAndTellsSecrets)
{
    LogCapture log;
    const std::vector<XModule::protocol::EnvironmentVariableInfo> variables = ParseEnvironmentFile(
        "# set by pam_env\n"
        "PATH=\"/usr/local/sbin:/usr/local/bin:/usr/sbin\"\n"
        "  export LANG='C.UTF-8'\n"
        "NO_EQUALS_SIGN\n"
        "1BAD=x\n"
        "EMPTY=\n"
        "LANG=en_US.UTF-8\n"
        "HALF=\"open\n");
    std::string rows;
    for (const XModule::protocol::EnvironmentVariableInfo& v : variables) rows += v.Name + "=" + v.Value + ";";
    EXPECT_EQ("EMPTY=;HALF=\"open;LANG=en_US.UTF-8;PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin;",
              rows);
    EXPECT_EQ(2, log.Count("environment line not understood")) << log.Dump();

    // Names alone (any value) and values alone (credentials in a URL) tell a secret.
    for (const char* name : {"KESTRO_PASSWORD", "PGPASSWORD", "db_passwd", "GITHUB_TOKEN", "API_KEY", "AWS_ACCESS_KEY_ID",
                             "APIKEY", "SSH_KEYS", "CLIENT_SECRET", "GOOGLE_CREDENTIALS", "DB_PASS", "MYSQL_PWD"})
        EXPECT_TRUE(IsSecretVariable(name, "x")) << name;
    for (const char* name : {"PWD", "OLDPWD", "XKB_DEFAULT_KEYMAP", "KEYBOARD", "PASSAGE", "HOME"})
        EXPECT_FALSE(IsSecretVariable(name, "x")) << name;
    const struct Case { const char* name; const char* value; bool secret; } cases[] = {
        {"http_proxy", "http://bob:pw@proxy:3128/", true},
        {"NOTE", "see https://a.example/x and ftp://u:p@b.example", true},
        {"https_proxy", "http://proxy:3128/", false},
        {"MAIL_TO", "mailto:root@host", false},
        {"LINK", "https://host/a:b@c", false},
    };
    for (const Case& c : cases) EXPECT_EQ(c.secret, IsSecretVariable(c.name, c.value)) << c.name << "=" << c.value;
}

TEST(BootConfigurationTest, KeepsEntriesTitlesAndKernelLines)
{
    EXPECT_EQ("title Red Hat Enterprise Linux (5.14.0-362.8.1.el9_3.x86_64) 9.3 (Plow)\n"
              "    linux /vmlinuz-5.14.0-362.8.1.el9_3.x86_64\n"
              "    options root=/dev/mapper/rhel-root ro crashkernel=1G-4G:192M",
              ParseBootEntry("version 5.14.0-362.8.1.el9_3.x86_64\n"
                             "linux /vmlinuz-5.14.0-362.8.1.el9_3.x86_64\n"
                             "initrd /initramfs-5.14.0-362.8.1.el9_3.x86_64.img $tuned_initrd\n"
                             "title Red Hat Enterprise Linux (5.14.0-362.8.1.el9_3.x86_64) 9.3 (Plow)\n"
                             "options root=/dev/mapper/rhel-root ro crashkernel=1G-4G:192M\n"
                             "grub_users $grub_users\n"));
    const struct Case { const char* text; const char* menu; } cases[] = {
        {"menuentry Bare {\n linux16 /vmlinuz\n}\n", "menuentry 'Bare'\n    linux16 /vmlinuz"},
        {"menuentry 'Never closed\n", "menuentry 'Never closed'"},
        {"# menuentry 'commented'\nset default=0\nlinux_gfx_mode=keep\n", ""},
        {"menuentry\n", "menuentry ''"},
        {"", ""},
    };
    for (const Case& c : cases) EXPECT_EQ(c.menu, ParseGrubMenu(c.text)) << c.text;
    EXPECT_EQ("GRUB_DEFAULT=0\nGRUB_CMDLINE_LINUX_DEFAULT=\"quiet\"",
              ParseGrubDefaults("# If you change this file, run 'update-grub'\nGRUB_DEFAULT=0\n\n"
                                "GRUB_CMDLINE_LINUX_DEFAULT=\"quiet\"\n#GRUB_TERMINAL=console\n"));
}

TEST(InitSystemTest, ReadsSystemdVersionsAndRunLevels)
{
    const char* const names[][2] = {
        {"libsystemd-shared-252.so", "252"}, {"libsystemd-shared-255.4-1.fc40.so", "255.4-1.fc40"},
        {"libsystemd-core-252.so", ""},      {"libsystemd-shared-252.so.0", ""},
        {"libsystemd-shared-.so", ""},
    };
    for (const auto& name : names) EXPECT_EQ(name[1], ParseSystemdVersion(name[0])) << name[0];

    const char* const inittabs[][2] = {
        {"# The default runlevel.\nid:2:initdefault:\n\nsi::sysinit:/etc/init.d/rcS\n", "2"},
        {"#id:5:initdefault:\n1:2345:respawn:/sbin/getty 38400 tty1\n", ""},
        {"id:3:initdefault", "3"},
        {"id:initdefault:", ""},
        {"", ""},
    };
    for (const auto& inittab : inittabs) EXPECT_EQ(inittab[1], ParseInittabDefault(inittab[0])) << inittab[0];
}

TEST(TimeZoneTest, NamesZonesFromLinksAndZoneFiles)
{
    const char* const links[][2] = {
        {"/usr/share/zoneinfo/Europe/Berlin", "Europe/Berlin"}, {"../usr/share/zoneinfo/Etc/UTC", "Etc/UTC"},
        {"/usr/share/zoneinfo/posix/America/New_York", "America/New_York"},
        {"/etc/alternatives/localtime", ""},                      {"", ""},
    };
    for (const auto& link : links) EXPECT_EQ(link[1], ParseZoneLink(link[0])) << link[0];

    const std::string header = std::string("TZif2") + std::string(39, '\0');
    const struct Case { std::string bytes; const char* rule; } cases[] = {
        {header + "\nCET-1CEST,M3.5.0,M10.5.0/3\n", "CET-1CEST,M3.5.0,M10.5.0/3"},
        {header + "\n<+03>-3\n", "<+03>-3"},
        {std::string("TZif") + std::string(40, '\0') + "\nUTC0\n", ""},
        {header + "\nCET-1CEST", ""},
        {"Europe/Berlin\n", ""},
        {"TZif", ""},
    };
    for (const Case& c : cases) EXPECT_EQ(c.rule, ParseZoneFileRule(c.bytes)) << c.bytes.size();
}

TEST(ValueFormatTest, FormatsMomentsInLocalTimeAndUtc)
{
    const struct Case { std::time_t when; const char* local; const char* utc; } cases[] = {
        {0, "1970-01-01T01:00:00", "1970-01-01T00:00:00Z"},
        {1795578532, "2026-11-25T04:48:52", "2026-11-25T03:48:52Z"},
        {1782172800, "2026-06-23T02:00:00", "2026-06-23T00:00:00Z"},
    };
    {
        ScopedEnv zone("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
        tzset();
        for (const Case& c : cases) {
            EXPECT_EQ(c.local, FormatDateTime(c.when)) << c.when;
            EXPECT_EQ(c.utc, FormatUtcDateTime(c.when)) << c.when;
        }
    }
    tzset();
    EXPECT_EQ("N/A", FormatUtcDateTime(std::numeric_limits<std::time_t>::max()));
}
