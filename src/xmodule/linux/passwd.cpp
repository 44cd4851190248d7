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
        std::uint64_t uid = 0;
        if (fields.size() <= UID || fields[NAME].empty() || !ParseDecimal(fields[UID], uid)) {
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
    std::uint64_t id = 0;
    if (!ParseDecimal(uid, id)) return protocol::UNKNOWN_VALUE;
    const UserNames::const_iterator it = names.find(id);
    return it == names.end() ? uid : it->second;
}

}  // namespace Linux
}  // namespace XModule
