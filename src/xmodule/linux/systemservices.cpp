#include "xmodule/linux/systemservices.h"

#include "kestro/xmodule/rootprefix.h"
#include "kestro/xmodule/unreadable.h"
#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/systemdbus.h"
#include "xmodule/linux/systemdunits.h"
#include "xmodule/linux/sysvservices.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <set>

namespace XModule {
namespace Linux {

namespace {

// The bus answers for the machine this program runs on, never for a tree under another root.
bool SystemdRunsTheHostRead()
{
    boost::system::error_code error;
    return boost::filesystem::equivalent(GetRootPrefix(), "/", error) && HostFiles::Exists("/run/systemd/system");
}

bool ComesBefore(const protocol::SystemServiceInfo& a, const protocol::SystemServiceInfo& b) { return a.Name < b.Name; }

}  // namespace

void CollectSystemServices(std::vector<protocol::SystemServiceInfo>& services)
{
    std::vector<protocol::SystemServiceInfo> found = ReadUnitFileServices();
    std::map<std::string, BusUnit> units;
    if (SystemdRunsTheHostRead() && ReadBusUnits(units)) MergeBusUnits(units, found);
    std::set<std::string> unitNames;
    for (const protocol::SystemServiceInfo& service : found) unitNames.insert(service.Name);
    const std::vector<protocol::SystemServiceInfo> scripts = ReadSysvServices(unitNames);
    found.insert(found.end(), scripts.begin(), scripts.end());
    if (found.empty()) NoteUnreadable("service definitions", "neither systemd unit files nor init scripts were found");
    std::sort(found.begin(), found.end(), ComesBefore);
    services.insert(services.end(), found.begin(), found.end());
}

}  // namespace Linux
}  // namespace XModule
