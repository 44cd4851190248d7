#ifndef KESTRO_XMODULE_LINUX_PASSWD_H
#define KESTRO_XMODULE_LINUX_PASSWD_H

#include <map>
#include <string>

namespace XModule {
namespace Linux {

// Account names by user id, from the host's own /etc/passwd (not through NSS, which would
// answer for the machine running the tool rather than the root prefix).
typedef std::map<unsigned long, std::string> UserNames;

// "name:x:uid:gid:gecos:home:shell" lines; comments, NIS "+" entries and lines without a
// numeric uid are passed over.
UserNames ParsePasswd(const std::string& text);
UserNames ReadUserNames();
// The account's name, or the id itself when the host has no name for it (as ps shows it);
// "N/A" for an id that is not a number.
std::string NameOfUser(const UserNames& names, const std::string& uid);

}  // namespace Linux
}  // namespace XModule

#endif
