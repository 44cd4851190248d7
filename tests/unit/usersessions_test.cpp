#include "xmodule/linux/usersessions.h"
#include "xmodule/linux/passwd.h"

#include "support/logcapture.h"

#include <gtest/gtest.h>

#include <cstring>

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

    struct Case {
        const char* text;
        bool person;
        const char* session;
    };
    const Case cases[] = {
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
