#include "xmodule/linux/initsystem.h"

#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/hostsources.h"
#include "xmodule/linux/valueformat.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/predicate.hpp>
#include <boost/algorithm/string/split.hpp>

#include <sstream>
#include <vector>

namespace XModule {
namespace Linux {

namespace {

// Present only while systemd runs as init: its own test for "booted with systemd".
const char kSystemdRunning[] = "/run/systemd/system";
const char kInitName[] = "/proc/1/comm";
const char kInittab[] = "/etc/inittab";
const char kSystemdLibraryPrefix[] = "libsystemd-shared-";
const char kLibraries[] = "/usr/lib";

// Where distributions put systemd's private library; Debian's multiarch folders are added from /usr/lib.
const char* const kSystemdLibraryFolders[] = {"/usr/lib/systemd", "/usr/lib64/systemd", "/lib/systemd"};
const char* const kDefaultTargets[] = {"/etc/systemd/system/default.target", "/usr/lib/systemd/system/default.target",
                                       "/lib/systemd/system/default.target"};

enum InittabField { ID, RUNLEVELS, ACTION, FIELDS };

std::vector<std::string> SystemdLibraryFolders()
{
    std::vector<std::string> folders(std::begin(kSystemdLibraryFolders), std::end(kSystemdLibraryFolders));
    for (const std::string& name : HostFiles::List(kLibraries))
        if (name.find("-linux-") != std::string::npos)
            folders.push_back(std::string(kLibraries) + "/" + name + "/systemd");
    return folders;
}

std::string FindSystemdVersion()
{
    for (const std::string& folder : SystemdLibraryFolders())
        for (const std::string& name : HostFiles::List(folder)) {
            const std::string version = ParseSystemdVersion(name);
            if (!version.empty()) return version;
        }
    return std::string();
}

std::string DescribeInitSystem()
{
    const std::string initName = HostFiles::ReadTrimmed(kInitName);
    if (HostFiles::Exists(kSystemdRunning) || initName == "systemd") {
        const std::string version = FindSystemdVersion();
        return version.empty() ? "systemd" : "systemd " + version;
    }
    if (initName == "init" && HostFiles::Exists(kInittab)) return "SysV init";
    return initName.empty() ? std::string(protocol::UNKNOWN_VALUE) : "other: " + initName;
}

std::string FindDefaultTarget()
{
    for (const char* link : kDefaultTargets) {
        const std::string target = HostFiles::ReadLinkName(link);
        if (!target.empty()) return target;
    }
    std::string text;
    return ReadOptionalSource(kInittab, text) ? ParseInittabDefault(text) : std::string();
}

}  // namespace

std::string ParseSystemdVersion(const std::string& fileName)
{
    using boost::algorithm::ends_with;
    using boost::algorithm::starts_with;
    if (!starts_with(fileName, kSystemdLibraryPrefix) || !ends_with(fileName, ".so")) return std::string();
    const std::size_t begin = sizeof kSystemdLibraryPrefix - 1;
    return fileName.substr(begin, fileName.size() - begin - 3);
}

std::string ParseInittabDefault(const std::string& text)
{
    std::istringstream lines(text);
    std::string line;
    while (std::getline(lines, line)) {
        std::vector<std::string> fields;
        boost::algorithm::split(fields, line, boost::algorithm::is_any_of(":"));
        if (line.empty() || line[0] == '#' || fields.size() < FIELDS) continue;
        if (TrimText(fields[ACTION]) == "initdefault") return TrimText(fields[RUNLEVELS]);
    }
    return std::string();
}

void CollectInitConfiguration(protocol::InitConfigurationInfo& init)
{
    init.InitSystem = DescribeInitSystem();
    init.DefaultTarget = TextOrUnknown(FindDefaultTarget());
}

}  // namespace Linux
}  // namespace XModule
