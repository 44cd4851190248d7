#include "xmodule/linux/systemlog.h"

#include "kestro/xmodule/log.h"
#include "support/commandrun.h"
#include "support/fixturehost.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <unistd.h>

using namespace XModule::Linux;

namespace {


std::string StampOf(const SyslogLine& line)
{
    char text[40];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d", line.yearKnown ? line.local.tm_year + 1900 : 0,
                  line.local.tm_mon + 1, line.local.tm_mday, line.local.tm_hour, line.local.tm_min, line.local.tm_sec);
    return text;
}

}  // namespace

TEST(SystemLogTest, ParsesSyslogLines)
{
    UtcZone utc;
    struct Case {
        const char* text;
        bool parsed;
        const char* stamp;  // year 0000 for the classic form
        const char* host;
        const char* program;
        const char* pid;
        const char* message;
    };
    const Case cases[] = {
        {"Nov 25 03:49:01 web01 CRON[4242]: (root) CMD (command -v debian-sa1 > /dev/null)", true,
         "0000-11-25T03:49:01", "web01", "CRON", "4242", "(root) CMD (command -v debian-sa1 > /dev/null)"},
        {"Feb  5 23:00:59 web01 kernel: [  1.234] EXT4-fs (vda1): mounted", true, "0000-02-05T23:00:59", "web01",
         "kernel", "", "[  1.234] EXT4-fs (vda1): mounted"},
        {"2026-11-25T03:49:01.123456+00:00 db2 systemd[1]: Started Daily apt upgrade.", true,
         "2026-11-25T03:49:01", "db2", "systemd", "1", "Started Daily apt upgrade."},
        {"2026-12-31T22:30:00-05:00 db2 sshd[77]: Accepted publickey", true, "2027-01-01T03:30:00", "db2", "sshd",
         "77", "Accepted publickey"},
        {"2026-01-02T03:04:05Z h rsyslogd: [origin] start", true, "2026-01-02T03:04:05", "h", "rsyslogd", "",
         "[origin] start"},
        {"Nov 25 03:49:01 web01 -- MARK --", true, "0000-11-25T03:49:01", "web01", "", "", "-- MARK --"},
        {"Nov 25 03:49:01 web01", true, "0000-11-25T03:49:01", "web01", "", "", ""},
        {"Foo 25 03:49:01 web01 prog: text", false, "", "", "", "", ""},
        {"2026-13-01T00:00:00Z h p: month 13", false, "", "", "", "", ""},
        {"2026-11-25T03:49:01+bad h p: x", false, "", "", "", "", ""},
        {"Nov 25 03:4", false, "", "", "", "", ""},
        {"\xff\xfe garbage line", false, "", "", "", "", ""},
    };
    for (const Case& c : cases) {
        SyslogLine line;
        ASSERT_EQ(c.parsed, ParseSyslogLine(c.text, line)) << c.text;
        if (!c.parsed) continue;
        EXPECT_EQ(c.stamp, StampOf(line)) << c.text;
        EXPECT_EQ(c.host, line.host) << c.text;
        EXPECT_EQ(c.program, line.program) << c.text;
        EXPECT_EQ(c.pid, line.pid) << c.text;
        EXPECT_EQ(c.message, line.message) << c.text;
    }
}

TEST(SystemLogTest, ReadsTheNewestLinesOfASyslogFileAndTheLimit)
{
    UtcZone utc;
    FixtureHost host("");
    EXPECT_EQ(10000u, SystemLogReadLimit());
    host.Dir().Write("global.config", "KESTRO_SYSLOG_READ_MAX=250\n");
    EXPECT_EQ(250u, SystemLogReadLimit());
    host.Dir().Write("global.config", "KESTRO_SYSLOG_READ_MAX=-3\n");
    EXPECT_EQ(10000u, SystemLogReadLimit());

    // 3000 lines over several read blocks; among the newest a stray line and one of 200 KB without a break.
    const char* const words[] = {"Started session", "Connection failed: refused", "WARNING: low disk", "CRITICAL"};
    std::string text;
    for (int i = 0; i < 3000; ++i) {
        char line[160];
        std::snprintf(line, sizeof line, "2026-11-25T%02d:%02d:%02d.000000+00:00 web01 app[%d]: %s #%d\n", i / 3600,
                      i / 60 % 60, i % 60, 100 + i, words[i % 4], i);
        text += line;
        if (i == 2990) text += "continued text without a stamp\n" + std::string(200000, 'x') + "\n";
    }
    host.Dir().Write("var/log/messages", "Nov 25 00:00:00 old messages: never read\n");
    host.Dir().Write("var/log/syslog", text);

    LogCapture log;
    std::vector<XModule::protocol::EventInfo> events;
    CollectSystemLog(events, 20);
    ASSERT_EQ(20u, events.size());
    EXPECT_EQ(1, log.Count("longer than 65536 bytes is left out"));
    EXPECT_EQ(1, log.Count("1 lines of /var/log/syslog are in no syslog form"));
    const char* const types[] = {"Information", "Error", "Warning", "Error"};
    for (int n = 0; n < 20; ++n) {
        const int i = 2999 - n;
        EXPECT_EQ(std::string(words[i % 4]) + " #" + std::to_string(i), events[n].Message);
        EXPECT_EQ(types[i % 4], events[n].Type) << events[n].Message;
        EXPECT_EQ(std::to_string(100 + i), events[n].EventID);
    }
    const XModule::protocol::EventInfo& newest = events[0];
    EXPECT_EQ("2026-11-25T00:49:59", newest.MessageTimestamp);
    EXPECT_EQ("app", newest.Source);
    EXPECT_EQ("web01", newest.Computer);
    EXPECT_EQ("N/A", newest.Category);
    EXPECT_EQ("N/A", newest.User);
}

#ifdef KESTRO_HAVE_SYSTEMD
// A journal file is written from journalctl's export form by systemd-journal-remote, when installed.
TEST(SystemLogTest, ReadsTheNewestJournalEntries)
{
    const char tool[] = "/usr/lib/systemd/systemd-journal-remote";
    if (access(tool, X_OK) != 0) GTEST_SKIP() << "systemd-journal-remote is not installed";
    UtcZone utc;
    FixtureHost host("");
    host.Dir().Write("etc/passwd", "root:x:0:0:root:/root:/bin/bash\nalice:x:1000:1000::/home/alice:/bin/sh\n");
    host.Dir().Write("var/log/syslog", "Nov 25 03:49:01 web01 cron[1]: never read while the journal has entries\n");
    std::string entries;
    const char* const fields[][6] = {
        {"4", "3", "sshd", "1000", "Failed password", "1700000000"},
        {"3", "0", "kernel", "0", "Out of memory", "1700000001"},
        {"6", "16", "app", "0", "Started", "1700000002"},
    };
    for (const auto& f : fields)
        entries += std::string("__REALTIME_TIMESTAMP=") + f[5] + "000000\n__MONOTONIC_TIMESTAMP=1\n"
                   "_BOOT_ID=fedcba9876543210fedcba9876543210\nPRIORITY=" + f[0] + "\nSYSLOG_FACILITY=" + f[1] +
                   "\nSYSLOG_IDENTIFIER=" + f[2] + "\n_UID=" + f[3] + "\n_PID=42\n_HOSTNAME=web01\nMESSAGE=" + f[4] +
                   "\n\n";
    const std::string binary("caf\xe9\x01 line\nnext");
    entries += "__REALTIME_TIMESTAMP=1700000003000000\n__MONOTONIC_TIMESTAMP=2\n"
               "_BOOT_ID=fedcba9876543210fedcba9876543210\n"
               "_COMM=bin\nMESSAGE\n" + std::string(1, char(binary.size())) + std::string(7, '\0') + binary + "\n\n";
    host.Dir().Write("export", entries);
    host.Dir().Write("var/log/journal/0123456789abcdef0123456789abcdef/.keep", "");
    const CommandRun run = RunCommand(std::string(tool) + " -o " + host.Dir().Path() +
                                      "/var/log/journal/0123456789abcdef0123456789abcdef/system.journal - < " +
                                      host.Dir().Path() + "/export 2>&1");
    ASSERT_EQ(0, run.status) << run.output;

    std::vector<XModule::protocol::EventInfo> events;
    CollectSystemLog(events, 3);
    ASSERT_EQ(3u, events.size());
    const char* const expected[][8] = {
        {"N/A", "2023-11-14T22:13:23", "bin", "N/A", "caf\\xe9\\x01 line next", "N/A", "N/A", "N/A"},
        {"Information", "2023-11-14T22:13:22", "app", "local0", "Started", "42", "root", "web01"},
        {"Error", "2023-11-14T22:13:21", "kernel", "kern", "Out of memory", "42", "root", "web01"},
    };
    for (std::size_t i = 0; i < 3; ++i) {
        const XModule::protocol::EventInfo& e = events[i];
        const std::string got[] = {e.Type,    e.MessageTimestamp, e.Source, e.Category,
                                   e.Message, e.EventID,          e.User,   e.Computer};
        for (std::size_t k = 0; k < 8; ++k) EXPECT_EQ(expected[i][k], got[k]) << i << " " << k;
    }
}
#endif
