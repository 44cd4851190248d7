#include "xmodule/linux/passwd.h"

#include "kestro/xmodule/log.h"
#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/valueformat.h"
#include "xmodule/protocol/hardwareinfo.h"

#include <boost/algorithm/string/split.hpp>

#include <cerrno>
#include <cstdlib>
#include <sstream>
#include <vector>

namespace XModule {
namespace Linux {

namespace {

bool ReadUserId(const std::string& text, unsigned long& uid)
{
    if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos) return false;
    errno = 0;
    uid = std::strtoul(text.c_str(), nullptr, 10);
    return errno == 0;
}

}  // namespace

std::vector<PasswdEntry> ParsePasswd(const std::string& text)
{
    enum PasswdField { NAME, PASSWORD, UID, GID, GECOS };
    std::vector<PasswdEntry> accounts;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line)) {
        if (TrimText(line).empty() || line[0] == '#' || line[0] == '+' || line[0] == '-') continue;
        std::vector<std::string> fields;
        boost::algorithm::split(fields, line, [](char c) { return c == ':'; });
        unsigned long uid = 0;
        if (fields.size() <= UID || fields[NAME].empty() || !ReadUserId(fields[UID], uid)) {
            XLOG(LOG_WARN) << "[repo] passwd line not understood: " << line.substr(0, 40);
            continue;
        }
        PasswdEntry account;
        account.name = fields[NAME];
        account.uid = uid;
        if (fields.size() > GECOS) account.fullName = TrimText(fields[GECOS].substr(0, fields[GECOS].find(',')));
        accounts.push_back(account);
    }
    return accounts;
}

UserNames ReadUserNames()
{
    std::string text;
    UserNames names;
    if (!HostFiles::Read("/etc/passwd", text)) return names;
    for (const PasswdEntry& account : ParsePasswd(text)) names.emplace(account.uid, account.name);
    return names;
}

std::string NameOfUser(const UserNames& names, const std::string& uid)
{
    unsigned long id = 0;
    if (!ReadUserId(uid, id)) return protocol::UNKNOWN_VALUE;
    const UserNames::const_iterator it = names.find(id);
    return it == names.end() ? uid : it->second;
}

}  // namespace Linux
}  // namespace XModule
