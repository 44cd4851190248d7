#ifndef KESTRO_XMODULE_LINUX_PASSWD_H
#define KESTRO_XMODULE_LINUX_PASSWD_H

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// One account of a passwd file.
struct PasswdEntry {
    std::string name;
    std::uint64_t uid = 0;
    std::string fullName;  // the first part of the GECOS field
};

// Account names by user id, from the host's own /etc/passwd (not through NSS, which would
// answer for the machine running the tool rather than the root prefix).
typedef std::map<unsigned long, std::string> UserNames;

// "name:x:uid:gid:gecos:home:shell" lines; comments, NIS "+" and "-" entries pass silently,
// other lines without a name and a numeric uid with a log line.
std::vector<PasswdEntry> ParsePasswd(const std::string& text);
UserNames ReadUserNames();
// The account's name, or the id itself when the host has no name for it (as ps shows it);
// "N/A" for an id that is not a number.
std::string NameOfUser(const UserNames& names, const std::string& uid);

}  // namespace Linux
}  // namespace XModule

#endif
