#include "xmodule/linux/processes.h"

#include "kestro/xmodule/unreadable.h"
#include "support/fixturehost.h"

#include <gtest/gtest.h>

#include <ctime>
#include <unistd.h>

using namespace XModule::Linux;

TEST(ProcessesTest, ParsesStatLines)
{
    struct Case {
        const char* text;
        bool parsed;
        const char* pid;
        const char* comm;
        char state;
        long long utime, stime, priority, starttime, rss;  // -1: not in the line
    };
    const Case cases[] = {
        {"812 ((sd-pam)) S 811 811 811 0 -1 1077936448 54 0 0 0 3 1 0 0 20 0 1 0 2917 105033728 1290 "
         "18446744073709551615 1 1 0 0 0 0 0 4096 0 0 0 0 17 1 0 0 0 0 0\n",
         true, "812", "(sd-pam)", 'S', 3, 1, 20, 2917, 1290},
        {"4242 (a) b (c)) R 1 2 3 0 -1 0 0 0 0 0 250 75 0 0 -51 0 1 0 9 0 77", true, "4242", "a) b (c)", 'R',
         250, 75, -51, 9, 77},
        {"2 (kthreadd) S 0 0 0 0 -1 2129984 0 0 0 0 0 0 0 0 20 0 1 0 23 0 0 18446744073709551615 0 0 0 0 0", true,
         "2", "kthreadd", 'S', 0, 0, 20, 23, 0},
        {"77 (bash) S 1 77 77 34816 77 4194560 1000 0 0 0 12 7", true, "77", "bash", 'S', 12, 7, -1, -1, -1},
        {"99 (odd) Z 1 2 3 4 5 6 7 8 9 10 x y", true, "99", "odd", 'Z', -1, -1, -1, -1, -1},
        {"5 ()", true, "5", "", 0, -1, -1, -1, -1, -1},
        {"abc (bash) S 1", false, "", "", 0, -1, -1, -1, -1, -1},
        {"12 bash S 1 2", false, "", "", 0, -1, -1, -1, -1, -1},
        {"", false, "", "", 0, -1, -1, -1, -1, -1},
    };
    for (const Case& c : cases) {
        ProcStat stat;
        ASSERT_EQ(c.parsed, ParseProcStat(c.text, stat)) << c.text;
        if (!c.parsed) continue;
        EXPECT_EQ(c.pid, stat.pid) << c.text;
        EXPECT_EQ(c.comm, stat.comm) << c.text;
        EXPECT_EQ(c.state, stat.state) << c.text;
        const std::pair<std::optional<long long>, long long> numbers[] = {
            {stat.utime, c.utime}, {stat.stime, c.stime}, {stat.priority, c.priority},
            {stat.starttime, c.starttime}, {stat.rss, c.rss}};
        for (const auto& number : numbers) EXPECT_EQ(number.second, number.first.value_or(-1)) << c.text;
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
    ASSERT_EQ(4u, processes.size());
    const char* const pids[] = {"1", "600", "812", "4321"};
    for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(pids[i], processes[i].Handle);

    const auto& init = processes[0];
    EXPECT_EQ("systemd", init.Name);
    EXPECT_EQ("root", init.User);
    EXPECT_EQ("Sleeping", init.ExecutionState);
    EXPECT_EQ("20", init.Priority);
    EXPECT_EQ("2000", init.UserModeTime);
    EXPECT_EQ("500", init.KernelModeTime);
    EXPECT_EQ(std::to_string(3200 * page / 1024), init.MemoryUsage);
    EXPECT_EQ("2023-11-14T22:13:21", init.CreationDate);

    EXPECT_EQ("N/A", processes[1].Name);
    EXPECT_EQ("(sd-pam)", processes[2].Name);
    EXPECT_EQ("alice", processes[2].User);
    EXPECT_EQ("2023-11-14T23:13:20", processes[2].CreationDate);
    EXPECT_EQ("Zombie", processes[3].ExecutionState);
    EXPECT_EQ("1001", processes[3].User);
    EXPECT_EQ("25", processes[3].Priority);
    EXPECT_EQ("0", processes[3].MemoryUsage);
    ASSERT_EQ(1u, XModule::GetUnreadableNotes().size());
    EXPECT_EQ(0u, XModule::GetUnreadableNotes()[0].find("/proc/<pid> of other users: "));
    XModule::ClearUnreadableNotes();
}
