#ifndef KESTRO_XMODULE_LINUX_SYSVSERVICES_H
#define KESTRO_XMODULE_LINUX_SYSVSERVICES_H

#include "xmodule/protocol/osinfo.h"

#include <set>
#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// The Short-Description of an init script's LSB header ("### BEGIN INIT INFO" to
// "### END INIT INFO"); "" when the script has none.
std::string ParseLsbShortDescription(const std::string& script);

// The scripts of /etc/init.d under the root prefix that no service unit stands for ("ssh" is
// left out when `units` holds "ssh.service"). Startup is "enabled" when an /etc/rc<N>.d/S* link
// of any runlevel starts the script, else "disabled"; State stays "N/A", since without the
// service manager nothing tells whether it runs.
std::vector<protocol::SystemServiceInfo> ReadSysvServices(const std::set<std::string>& units);

}  // namespace Linux
}  // namespace XModule

#endif
