#ifndef KESTRO_XMODULE_LINUX_USERSESSIONS_H
#define KESTRO_XMODULE_LINUX_USERSESSIONS_H

#include "xmodule/protocol/osinfo.h"

#include <cstdint>
#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// One logged-in session, as logind or utmp records it.
struct LoginSession {
    std::string user;
    std::string place;       // the seat, else the terminal
    std::string remoteHost;  // empty for a local login
    std::int64_t loginTime = 0;  // seconds since the epoch; 0 when unknown
};

// A logind session file (/run/systemd/sessions/<id>); false for a session that is no person's
// login (a greeter, a background job, a user manager) or that is closing after its logout.
bool ParseLogindSession(const std::string& text, LoginSession& session);
// The USER_PROCESS records of utmp bytes, in glibc's x86-64 layout of 384-byte records.
std::vector<LoginSession> ParseUtmp(const std::string& bytes);

// The account this program runs as.
void CollectCurrentUser(protocol::CurrentUserInfo& user);
// The host's login sessions by logon time: logind's when it keeps any, else utmp's.
void CollectActiveUsers(std::vector<protocol::ActiveUserInfo>& users);

}  // namespace Linux
}  // namespace XModule

#endif
