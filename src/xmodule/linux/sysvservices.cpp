#include "xmodule/linux/sysvservices.h"

#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/hostfilestat.h"
#include "xmodule/linux/valueformat.h"

#include <boost/algorithm/string/predicate.hpp>
#include <boost/algorithm/string/trim.hpp>

#include <cctype>
#include <sstream>

namespace XModule {
namespace Linux {

namespace {

const char kInitScripts[] = "/etc/init.d";
const char* const kRunlevelFolders[] = {"/etc/rc0.d", "/etc/rc1.d", "/etc/rc2.d", "/etc/rc3.d",
                                        "/etc/rc4.d", "/etc/rc5.d", "/etc/rc6.d", "/etc/rcS.d"};
// Files of /etc/init.d that are not services.
const char* const kNotServices[] = {"README", "skeleton", "rc", "rcS", "functions"};
const char kHeaderStart[] = "### BEGIN INIT INFO";
const char kHeaderEnd[] = "### END INIT INFO";
const char kShortDescription[] = "# Short-Description:";

bool IsService(const std::string& name)
{
    if (!IsPlainFileName(name) || name[0] == '.') return false;
    for (const char* other : kNotServices)
        if (name == other) return false;
    return true;
}

// "S01ssh" starts "ssh".
std::set<std::string> ReadStartedScripts()
{
    std::set<std::string> started;
    for (const char* folder : kRunlevelFolders) {
        for (const std::string& link : HostFiles::List(folder)) {
            if (link.empty() || link[0] != 'S') continue;
            std::size_t at = 1;
            while (at < link.size() && std::isdigit(static_cast<unsigned char>(link[at]))) ++at;
            started.insert(link.substr(at));
        }
    }
    return started;
}

protocol::SystemServiceInfo ReadScript(const std::string& name, const std::set<std::string>& started)
{
    protocol::SystemServiceInfo service;
    service.Name = name;
    service.Path = std::string(kInitScripts) + "/" + name;
    std::string script;
    if (HostFiles::Read(service.Path, script)) service.Description = TextOrUnknown(ParseLsbShortDescription(script));
    const HostFileStat file = StatHostFile(service.Path);
    service.InstallDate = file.ModifiedText();
    service.FileSize = file.SizeText();
    service.Startup = started.count(name) ? "enabled" : "disabled";
    return service;
}

}  // namespace

std::string ParseLsbShortDescription(const std::string& script)
{
    std::istringstream in(script);
    std::string line;
    bool inHeader = false;
    while (std::getline(in, line)) {
        boost::algorithm::trim_right(line);
        if (line == kHeaderStart) inHeader = true;
        if (line == kHeaderEnd) return std::string();
        if (inHeader && boost::algorithm::starts_with(line, kShortDescription))
            return boost::algorithm::trim_copy(line.substr(sizeof kShortDescription - 1));
    }
    return std::string();
}

std::vector<protocol::SystemServiceInfo> ReadSysvServices(const std::set<std::string>& units)
{
    std::vector<protocol::SystemServiceInfo> services;
    const std::set<std::string> started = ReadStartedScripts();
    for (const std::string& name : HostFiles::List(kInitScripts))
        if (IsService(name) && !units.count(name + ".service")) services.push_back(ReadScript(name, started));
    return services;
}

}  // namespace Linux
}  // namespace XModule
