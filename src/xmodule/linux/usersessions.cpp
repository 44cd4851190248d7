#include "xmodule/linux/usersessions.h"

#include "kestro/xmodule/log.h"
#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/hostsources.h"
#include "xmodule/linux/osrelease.h"
#include "xmodule/linux/passwd.h"
#include "xmodule/linux/valueformat.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/predicate.hpp>
#include <boost/algorithm/string/split.hpp>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <pwd.h>
#include <sstream>
#include <unistd.h>

namespace XModule {
namespace Linux {

namespace {

const char kPasswd[] = "/etc/passwd";
const char kLogindSessions[] = "/run/systemd/sessions";
const char* const kUtmpFiles[] = {"/run/utmp", "/var/run/utmp"};

// glibc's struct utmp on x86-64: ut_type (short) at 0, ut_line[32] at 8, ut_user[32] at 44,
// ut_host[256] at 76, ut_tv.tv_sec (int32) at 340; 384 bytes in all.
const std::size_t kUtmpRecordSize = 384;
const std::size_t kUtmpTypeAt = 0;
const std::size_t kUtmpLineAt = 8;
const std::size_t kUtmpLineSize = 32;
const std::size_t kUtmpUserAt = 44;
const std::size_t kUtmpUserSize = 32;
const std::size_t kUtmpHostAt = 76;
const std::size_t kUtmpHostSize = 256;
const std::size_t kUtmpSecondsAt = 340;
const int kUtmpUserProcess = 7;


std::uint32_t ReadLittleEndian(const std::string& bytes, std::size_t at, std::size_t width)
{
    std::uint32_t value = 0;
    for (std::size_t i = width; i-- > 0;) value = (value << 8) | static_cast<unsigned char>(bytes[at + i]);
    return value;
}

// A fixed-size text field, ended by its first NUL or by its size.
std::string ReadFixedText(const std::string& bytes, std::size_t at, std::size_t size)
{
    const std::string field = bytes.substr(at, size);
    return TrimText(field.substr(0, field.find('\0')));
}

std::string Value(const OsRelease& fields, const char* key)
{
    const OsRelease::const_iterator found = fields.find(key);
    return found == fields.end() ? std::string() : found->second;
}

// Sessions a person opened; logind also tracks greeters, lock screens, background jobs and user managers.
bool IsPersonalClass(const std::string& sessionClass)
{
    return sessionClass.empty() || sessionClass == "user" || boost::algorithm::starts_with(sessionClass, "user-");
}

std::vector<PasswdEntry> ReadAccounts()
{
    std::string text;
    return ReadExpectedSource(kPasswd, text) ? ParsePasswd(text) : std::vector<PasswdEntry>();
}

const PasswdEntry* FindAccount(const std::vector<PasswdEntry>& accounts, const std::string& name)
{
    for (const PasswdEntry& account : accounts)
        if (account.name == name) return &account;
    return nullptr;
}

std::string FindAccountName(const std::vector<PasswdEntry>& accounts, std::uint64_t uid)
{
    for (const PasswdEntry& account : accounts)
        if (account.uid == uid) return account.name;
    return std::string();
}

// The account database of the running host, which also knows accounts of a directory service.
std::string LookUpLiveAccountName(uid_t uid)
{
    std::vector<char> buffer(16384);
    struct passwd entry;
    struct passwd* found = nullptr;
    int error = 0;
    while ((error = getpwuid_r(uid, &entry, buffer.data(), buffer.size(), &found)) == ERANGE &&
           buffer.size() < (1u << 20))
        buffer.resize(buffer.size() * 2);
    return error == 0 && found && found->pw_name ? std::string(found->pw_name) : std::string();
}

std::vector<LoginSession> ReadLogindSessions()
{
    std::vector<LoginSession> sessions;
    for (const std::string& id : HostFiles::List(kLogindSessions)) {
        std::string text;
        LoginSession session;
        // "<id>.ref" beside each session is logind's FIFO, not a record.
        if (id.find('.') == std::string::npos && ReadOptionalSource(std::string(kLogindSessions) + "/" + id, text) &&
            ParseLogindSession(text, session))
            sessions.push_back(session);
    }
    return sessions;
}

std::vector<LoginSession> ReadUtmpSessions()
{
    for (const char* path : kUtmpFiles) {
        std::string bytes;
        if (ReadOptionalSource(path, bytes)) return ParseUtmp(bytes);
    }
    return std::vector<LoginSession>();
}

protocol::ActiveUserInfo DescribeSession(const LoginSession& session, const std::vector<PasswdEntry>& accounts)
{
    protocol::ActiveUserInfo user;
    user.UserID = TextOrUnknown(session.user);
    const PasswdEntry* account = FindAccount(accounts, session.user);
    if (account) user.Description = TextOrUnknown(account->fullName);
    if (session.loginTime > 0) user.LastLogonDate = FormatDateTime(static_cast<std::time_t>(session.loginTime));
    user.Domain = TextOrUnknown(session.place);
    user.LogonServer = TextOrUnknown(session.remoteHost);
    return user;
}

}  // namespace

bool ParseLogindSession(const std::string& text, LoginSession& session)
{
    std::istringstream in(text);
    const OsRelease fields = ParseOsRelease(in);
    if (!IsPersonalClass(Value(fields, "CLASS")) || Value(fields, "STATE") == "closing") return false;
    session.user = Value(fields, "USER");
    session.place = Value(fields, "SEAT").empty() ? Value(fields, "TTY") : Value(fields, "SEAT");
    session.remoteHost = Value(fields, "REMOTE_HOST");
    std::uint64_t microseconds = 0;
    session.loginTime = ParseDecimal(Value(fields, "REALTIME"), microseconds) ? microseconds / 1000000 : 0;
    return !session.user.empty();
}

std::vector<LoginSession> ParseUtmp(const std::string& bytes)
{
    std::vector<LoginSession> sessions;
    if (bytes.size() % kUtmpRecordSize != 0)
        XLOG(XModule::LOG_WARN) << "[repo] utmp ends in a cut record of " << bytes.size() % kUtmpRecordSize
                                << " bytes, left out";
    for (std::size_t at = 0; at + kUtmpRecordSize <= bytes.size(); at += kUtmpRecordSize) {
        if (ReadLittleEndian(bytes, at + kUtmpTypeAt, 2) != kUtmpUserProcess) continue;
        LoginSession session;
        session.user = ReadFixedText(bytes, at + kUtmpUserAt, kUtmpUserSize);
        session.place = ReadFixedText(bytes, at + kUtmpLineAt, kUtmpLineSize);
        session.remoteHost = ReadFixedText(bytes, at + kUtmpHostAt, kUtmpHostSize);
        session.loginTime = static_cast<std::int32_t>(ReadLittleEndian(bytes, at + kUtmpSecondsAt, 4));
        if (!session.user.empty()) sessions.push_back(session);
    }
    return sessions;
}

void CollectCurrentUser(protocol::CurrentUserInfo& user)
{
    const uid_t uid = geteuid();
    std::string name = IsLiveHost() ? LookUpLiveAccountName(uid) : std::string();
    if (name.empty()) name = FindAccountName(ReadAccounts(), uid);
    // An account no database names (a container's arbitrary uid) is still known by its number.
    user.UserName = name.empty() ? std::to_string(uid) : name;
}

void CollectActiveUsers(std::vector<protocol::ActiveUserInfo>& users)
{
    std::vector<LoginSession> sessions = ReadLogindSessions();
    if (sessions.empty()) sessions = ReadUtmpSessions();
    if (sessions.empty()) return;
    std::stable_sort(sessions.begin(), sessions.end(),
                     [](const LoginSession& a, const LoginSession& b) { return a.loginTime < b.loginTime; });
    const std::vector<PasswdEntry> accounts = ReadAccounts();
    for (const LoginSession& session : sessions) users.push_back(DescribeSession(session, accounts));
}

}  // namespace Linux
}  // namespace XModule
