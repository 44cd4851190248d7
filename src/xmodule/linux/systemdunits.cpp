#include "xmodule/linux/systemdunits.h"

#include "kestro/xmodule/log.h"
#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/hostfilestat.h"
#include "xmodule/linux/valueformat.h"

#include <boost/algorithm/string/predicate.hpp>
#include <boost/algorithm/string/trim.hpp>
#include <boost/filesystem/operations.hpp>

#include <map>
#include <set>
#include <sstream>

namespace XModule {
namespace Linux {

namespace {

// In the order systemd looks: an earlier folder overrides a later one.
const char* const kUnitFolders[] = {"/etc/systemd/system", "/run/systemd/system", "/lib/systemd/system",
                                    "/usr/lib/systemd/system"};
const char kAdminUnits[] = "/etc/systemd/system";
const char* const kDependencyFolderSuffixes[] = {".wants", ".requires", ".upholds"};
const char* const kInstallRuleKeys[] = {"WantedBy", "RequiredBy", "UpheldBy", "Alias"};
const char kServiceSuffix[] = ".service";
const char kMaskTarget[] = "/dev/null";

bool IsComment(const std::string& line) { return !line.empty() && (line[0] == '#' || line[0] == ';'); }

bool IsInstallRule(const std::string& key)
{
    for (const char* rule : kInstallRuleKeys)
        if (key == rule) return true;
    return false;
}

class UnitParser {
public:
    void TakeLine(const std::string& line)
    {
        if (line[0] == '[') {
            const bool closed = line.back() == ']';
            // Settings under a broken header belong to no section this reader knows.
            section = closed ? line.substr(1, line.size() - 2) : std::string();
            if (!closed) ++unit.badLines;
            return;
        }
        const std::size_t equals = line.find('=');
        if (equals == std::string::npos || equals == 0) {
            ++unit.badLines;
            return;
        }
        const std::string key = boost::algorithm::trim_copy(line.substr(0, equals));
        const std::string value = boost::algorithm::trim_copy(line.substr(equals + 1));
        if (section == "Unit" && key == "Description") unit.description = value;
        if (section == "Install" && !value.empty()) {
            unit.installRules = unit.installRules || IsInstallRule(key);
            unit.installAlso = unit.installAlso || key == "Also";
        }
    }

    UnitFile unit;

private:
    std::string section;
};

// "getty@tty1.service" enables its template "getty@.service".
std::string TemplateOf(const std::string& name)
{
    const std::size_t at = name.find('@');
    const std::size_t dot = name.rfind('.');
    if (at == std::string::npos || dot == std::string::npos || dot < at) return std::string();
    return name.substr(0, at + 1) + name.substr(dot);
}

bool IsDependencyFolder(const std::string& name)
{
    for (const char* suffix : kDependencyFolderSuffixes)
        if (boost::algorithm::ends_with(name, suffix)) return true;
    return false;
}

// Names that `systemctl enable` linked from some target of the admin's folder.
std::set<std::string> ReadEnabledNames()
{
    std::set<std::string> enabled;
    for (const std::string& folder : HostFiles::List(kAdminUnits)) {
        if (!IsDependencyFolder(folder)) continue;
        const std::string path = std::string(kAdminUnits) + "/" + folder;
        for (const std::string& link : HostFiles::List(path)) {
            for (const std::string& name : {link, HostFiles::ReadLinkName(path + "/" + link)}) {
                enabled.insert(name);
                enabled.insert(TemplateOf(name));
            }
        }
    }
    return enabled;
}

// Each service unit name with the first folder that holds it.
std::map<std::string, std::string> FindServiceUnits()
{
    std::map<std::string, std::string> units;
    for (const char* folder : kUnitFolders)
        for (const std::string& name : HostFiles::List(folder))
            if (boost::algorithm::ends_with(name, kServiceSuffix)) units.insert(std::make_pair(name, folder));
    return units;
}

std::string StartupOf(const std::string& name, bool alias, const UnitFile& unit, const std::set<std::string>& enabled)
{
    if (enabled.count(name)) return "enabled";
    if (alias) return "alias";
    if (unit.installRules) return "disabled";
    if (unit.installAlso) return "indirect";
    return "static";
}

protocol::SystemServiceInfo ReadService(const std::string& name, const std::string& folder,
                                        const std::set<std::string>& enabled)
{
    protocol::SystemServiceInfo service;
    service.Name = name;
    std::string path = folder + "/" + name;
    boost::system::error_code error;
    const boost::filesystem::path target = boost::filesystem::read_symlink(HostFiles::Rooted(path), error);
    if (!error && target == kMaskTarget) {
        service.Startup = "masked";
        service.Path = path;
        return service;
    }
    const bool alias = !error && target.filename() != name;
    if (!error) path = target.is_absolute() ? target.string() : folder + "/" + target.string();
    // Looked at before it is opened, so that a link to a device is never opened.
    const HostFileStat file = StatHostFile(path);
    std::string text;
    if (!file.found || !HostFiles::Read(path, text)) XLOG(LOG_WARN) << "[repo] Unable to read the unit file " << path;
    const UnitFile unit = ParseUnitFile(text);
    if (unit.badLines > 0) XLOG(LOG_WARN) << "[repo] " << path << ": " << unit.badLines << " malformed lines passed over";
    service.Description = TextOrUnknown(unit.description);
    service.Startup = StartupOf(name, alias, unit, enabled);
    service.InstallDate = file.ModifiedText();
    service.FileSize = file.SizeText();
    service.Path = path;
    return service;
}

}  // namespace

UnitFile ParseUnitFile(const std::string& text)
{
    UnitParser parser;
    std::istringstream in(text);
    std::string line;
    std::string joined;
    while (std::getline(in, line)) {
        boost::algorithm::trim(line);
        if (line.empty() && joined.empty()) continue;
        if (IsComment(line)) continue;
        if (!line.empty() && line.back() == '\\') {
            line.pop_back();
            boost::algorithm::trim_right(line);
            joined += line + " ";
            continue;
        }
        joined += line;
        parser.TakeLine(joined);
        joined.clear();
    }
    if (!joined.empty()) parser.TakeLine(joined);
    return parser.unit;
}

std::vector<protocol::SystemServiceInfo> ReadUnitFileServices()
{
    std::vector<protocol::SystemServiceInfo> services;
    const std::set<std::string> enabled = ReadEnabledNames();
    for (const auto& unit : FindServiceUnits()) services.push_back(ReadService(unit.first, unit.second, enabled));
    return services;
}

}  // namespace Linux
}  // namespace XModule
