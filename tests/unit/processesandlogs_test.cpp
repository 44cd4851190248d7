#include "xmodule/linux/kernelringbuffer.h"
#include "xmodule/linux/logtext.h"
#include "xmodule/linux/processes.h"
#include "xmodule/linux/systemlog.h"

#include "kestro/xmodule/log.h"
#include "kestro/xmodule/unreadable.h"
#include "support/commandrun.h"
#include "support/fixturehost.h"
#include "support/golden.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <ctime>
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

TEST(ProcessesTest, ParsesStatLines)
{
    const char* const cases[][2] = {
        // pid|comm|state|utime|stime|priority|starttime|rss, "-" for what the line lacks; "" when refused
        {"812 ((sd-pam)) S 811 811 811 0 -1 1077936448 54 0 0 0 3 1 0 0 20 0 1 0 2917 105033728 1290 "
         "18446744073709551615 1 1 0 0 0 0 0 4096 0 0 0 0 17 1 0 0 0 0 0\n",
         "812|(sd-pam)|S|3|1|20|2917|1290"},
        {"4242 (a) b (c)) R 1 2 3 0 -1 0 0 0 0 0 250 75 0 0 -51 0 1 0 9 0 77", "4242|a) b (c)|R|250|75|-51|9|77"},
        {"2 (kthreadd) S 0 0 0 0 -1 2129984 0 0 0 0 0 0 0 0 20 0 1 0 23 0 0 18446744073709551615 0 0 0 0 0",
         "2|kthreadd|S|0|0|20|23|0"},
        {"77 (bash) S 1 77 77 34816 77 4194560 1000 0 0 0 12 7", "77|bash|S|12|7|-|-|-"},
        {"99 (odd) Z 1 2 3 4 5 6 7 8 9 10 x y", "99|odd|Z|-|-|-|-|-"},
        {"5 ()", "5||\\0|-|-|-|-|-"},
        {"abc (bash) S 1", ""}, {"12 bash S 1 2", ""}, {"", ""},
    };
    for (const auto& c : cases) {
        ProcStat stat;
        std::string got;
        if (ParseProcStat(c[0], stat)) {
            const auto number = [](const std::optional<long long>& n) { return n ? std::to_string(*n) : std::string("-"); };
            got = Joined({stat.pid, stat.comm, stat.state ? std::string(1, stat.state) : std::string("\\0"), number(stat.utime),
                          number(stat.stime), number(stat.priority), number(stat.starttime), number(stat.rss)});
        }
        EXPECT_EQ(c[1], got) << c[0];
    }
}

TEST(ProcessesTest, ReadsAFixtureProcTree)
{
    UtcZone utc;
    XModule::ClearUnreadableNotes();
    FixtureHost host("");
    const long hz = sysconf(_SC_CLK_TCK);
    const long page = sysconf(_SC_PAGESIZE);
    host.Dir().Write("etc/passwd", "root:x:0:0:root:/root:/bin/bash\n+nis::::::\n"
                                   "alice:x:1000:1000:Alice,,,:/home/alice:/bin/bash\n");
    host.Dir().Write("proc/stat", "cpu  139879 27 17712 95181 487 0 177 67 0 0\nbtime 1700000000\nprocesses 9001\n");
    host.Dir().Write("proc/1/stat", "1 (systemd) S 0 1 1 0 -1 4194560 31660 0 0 0 " + std::to_string(2 * hz) + " " +
                                        std::to_string(hz / 2) + " 0 0 20 0 1 0 " + std::to_string(hz) +
                                        " 171798691 3200 0\n");
    host.Dir().Write("proc/1/status", "Name:\tsystemd\nState:\tS (sleeping)\nUid:\t0\t0\t0\t0\n");
    host.Dir().Write("proc/812/stat", "812 ((sd-pam)) S 811 811 811 0 -1 1077936448 54 0 0 0 0 0 0 0 20 0 1 0 " +
                                          std::to_string(3600 * hz) + " 105033728 1290 0\n");
    host.Dir().Write("proc/812/status", "Name:\t(sd-pam)\nState:\tS (sleeping)\nUid:\t1000\t1000\t1000\t1000\n");
    host.Dir().Write("proc/4321/stat",
                     "4321 (defunct job) Z 1 4321 4321 0 -1 4227084 0 0 0 0 1 1 0 0 25 5 1 0 99 0 0 0\n");
    host.Dir().Write("proc/4321/status", "Name:\tdefunct job\nState:\tZ (zombie)\nUid:\t1001\t1001\t1001\t1001\n");
    host.Dir().Write("proc/600/.hidden", "");
    host.Dir().Write("proc/self/stat", "not a process folder");

    std::vector<XModule::protocol::ProcessInfo> processes;
    CollectProcesses(processes);
    std::string text;
    for (const auto& p : processes)
        text += Joined({p.Handle, p.Name, p.User, p.ExecutionState, p.Priority, p.UserModeTime, p.KernelModeTime,
                        p.MemoryUsage, p.CreationDate}) + "\n";
    EXPECT_TRUE(MatchesGolden("software/processes.txt", text,
                              {{"SYSTEMD_KIB", std::to_string(3200 * page / 1024)},
                               {"PAM_KIB", std::to_string(1290 * page / 1024)}, {"TICK", std::to_string(1000 / hz)}}));
    ASSERT_EQ(1u, XModule::GetUnreadableNotes().size());
    EXPECT_EQ(0u, XModule::GetUnreadableNotes()[0].find("/proc/<pid> of other users: "));
    XModule::ClearUnreadableNotes();
}

TEST(KernelRingBufferTest, ParsesKmsgRecordsAndKlogText)
{
    const std::pair<std::string, std::string> cases[] = {
        {"6,339,5140900,-;NET: Registered PF_INET6 protocol family\n",
         "[    5.140900] NET: Registered PF_INET6 protocol family"},
        {"7,160,424069,-,caller=T1;pci_root PNP0A03:00: host bridge window [io  0x0000-0x0cf7]\n"
         " SUBSYSTEM=acpi\n DEVICE=+acpi:PNP0A03:00\n",
         "[    0.424069] pci_root PNP0A03:00: host bridge window [io  0x0000-0x0cf7]"},
        {"4,1021,123456789012,c;usb 1-1: new device\\x0a\n", "[123456.789012] usb 1-1: new device\\x0a"},
        {"bare text; no prefix\n", "bare text; no prefix"},
        {"x,1,2,-;not numbers", "x,1,2,-;not numbers"},
        {"6,1,0,-;caf\xe9 \xc3\xa9 \x01\n", "[    0.000000] caf\\xe9 \xc3\xa9 \\x01"},
        {"", ""},
    };
    for (const auto& c : cases) EXPECT_EQ(c.second, ParseKmsgRecord(c.first)) << c.first;

    const std::vector<std::string> expected = {"[    0.000000] Linux version 6.1.0-18-amd64",
                                               "[    1.500000] ACPI: \\xff warning", "plain line"};
    EXPECT_EQ(expected, ParseKlogText("<5>[    0.000000] Linux version 6.1.0-18-amd64\n<4>[    1.500000] ACPI: "
                                      "\xff warning\n\n<6>\nplain line"));
}

TEST(KernelRingBufferTest, ReadsTheSavedDmesgOfAnotherRoot)
{
    XModule::ClearUnreadableNotes();
    FixtureHost host("");
    XModule::protocol::KernelRingBufferInfo missing;
    CollectKernelRingBuffer(missing);
    EXPECT_EQ("N/A", missing.Source);
    ASSERT_EQ(1u, XModule::GetUnreadableNotes().size());
    EXPECT_EQ("kernel ring buffer: /var/log/dmesg: No such file or directory", XModule::GetUnreadableNotes()[0]);

    // 20000 lines of 62 bytes: only the newest that fit in 1 MiB are kept.
    std::string dmesg;
    for (int i = 0; i < 20000; ++i) {
        char line[80];
        std::snprintf(line, sizeof line, "[%5d.%06d] usb 1-1: line %05d of a long boot log padding\n", i / 100,
                      i % 100, i);
        dmesg += line;
    }
    host.Dir().Write("var/log/dmesg", dmesg);
    XModule::protocol::KernelRingBufferInfo buffer;
    CollectKernelRingBuffer(buffer);
    EXPECT_EQ("/var/log/dmesg", buffer.Source);
    EXPECT_LE(buffer.Contents.size(), 1u << 20);
    EXPECT_GT(buffer.Contents.size(), (1u << 20) - 80);
    EXPECT_EQ(0u, buffer.Contents.find("["));
    EXPECT_EQ(std::string::npos, buffer.Contents.find("line 00000 "));
    const std::string newest = "[  199.000099] usb 1-1: line 19999 of a long boot log padding\n";
    EXPECT_EQ(newest, buffer.Contents.substr(buffer.Contents.size() - newest.size()));
    XModule::ClearUnreadableNotes();
}

TEST(SystemLogTest, ParsesSyslogLines)
{
    UtcZone utc;
    const char* const cases[][2] = {
        // stamp (year 0000 for the classic form)|host|program|pid|message; "" when refused
        {"Nov 25 03:49:01 web01 CRON[4242]: (root) CMD (command -v debian-sa1 > /dev/null)",
         "0000-11-25T03:49:01|web01|CRON|4242|(root) CMD (command -v debian-sa1 > /dev/null)"},
        {"Feb  5 23:00:59 web01 kernel: [  1.234] EXT4-fs (vda1): mounted",
         "0000-02-05T23:00:59|web01|kernel||[  1.234] EXT4-fs (vda1): mounted"},
        {"2026-11-25T03:49:01.123456+00:00 db2 systemd[1]: Started Daily apt upgrade.",
         "2026-11-25T03:49:01|db2|systemd|1|Started Daily apt upgrade."},
        {"2026-12-31T22:30:00-05:00 db2 sshd[77]: Accepted publickey", "2027-01-01T03:30:00|db2|sshd|77|Accepted publickey"},
        {"2026-01-02T03:04:05Z h rsyslogd: [origin] start", "2026-01-02T03:04:05|h|rsyslogd||[origin] start"},
        {"Nov 25 03:49:01 web01 -- MARK --", "0000-11-25T03:49:01|web01|||-- MARK --"},
        {"Nov 25 03:49:01 web01", "0000-11-25T03:49:01|web01|||"},
        {"Foo 25 03:49:01 web01 prog: text", ""}, {"2026-13-01T00:00:00Z h p: month 13", ""},
        {"2026-11-25T03:49:01+bad h p: x", ""}, {"Nov 25 03:4", ""}, {"\xff\xfe garbage line", ""},
    };
    for (const auto& c : cases) {
        SyslogLine line;
        const bool parsed = ParseSyslogLine(c[0], line);
        EXPECT_EQ(c[1], parsed ? Joined({StampOf(line), line.host, line.program, line.pid, line.message}) : "") << c[0];
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
    EXPECT_EQ("2026-11-25T00:49:59|app|web01|N/A|N/A",
              Joined({newest.MessageTimestamp, newest.Source, newest.Computer, newest.Category, newest.User}));
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
    std::string text;
    for (const auto& e : events)
        text += Joined({e.Type, e.MessageTimestamp, e.Source, e.Category, e.Message, e.EventID, e.User, e.Computer}) + "\n";
    EXPECT_TRUE(MatchesGolden("software/journal.txt", text));
}
#endif

TEST(LogTextTest, EscapesOddBytesAndCutsOnCharacterBoundaries)
{
    const std::pair<std::string, std::string> cases[] = {
        {"plain\ttext\nnext", "plain\ttext\nnext"},
        {"\xc3\xa9t\xc3\xa9 \xe2\x82\xac \xf0\x9f\x90\xa7", "\xc3\xa9t\xc3\xa9 \xe2\x82\xac \xf0\x9f\x90\xa7"},
        {std::string("nul\0bell\a del\x7f", 14), "nul\\x00bell\\x07 del\\x7f"},
        {"overlong \xc0\xaf surrogate \xed\xa0\x80", "overlong \\xc0\\xaf surrogate \\xed\\xa0\\x80"},
        {"cut \xe2\x82", "cut \\xe2\\x82"},
    };
    for (const auto& c : cases) EXPECT_EQ(c.second, EscapeLogText(c.first)) << c.first;

    const std::string euro = "ab\xe2\x82\xac";
    const std::size_t limits[] = {0, 2, 3, 4, 5, 9};
    const char* const cut[] = {"", "ab", "ab", "ab", "ab\xe2\x82\xac", "ab\xe2\x82\xac"};
    for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(cut[i], CutLogText(euro, limits[i])) << limits[i];
}
