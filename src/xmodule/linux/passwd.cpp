#include "xmodule/linux/passwd.h"

#include "xmodule/linux/hostfiles.h"
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

UserNames ParsePasswd(const std::string& text)
{
    UserNames names;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#' || line[0] == '+' || line[0] == '-') continue;
        std::vector<std::string> fields;
        boost::algorithm::split(fields, line, [](char c) { return c == ':'; });
        unsigned long uid = 0;
        if (fields.size() < 3 || fields[0].empty() || !ReadUserId(fields[2], uid)) continue;
        names.emplace(uid, fields[0]);
    }
    return names;
}

UserNames ReadUserNames()
{
    std::string text;
    if (!HostFiles::Read("/etc/passwd", text)) return UserNames();
    return ParsePasswd(text);
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
