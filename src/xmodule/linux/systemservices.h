#ifndef KESTRO_XMODULE_LINUX_SYSTEMSERVICES_H
#define KESTRO_XMODULE_LINUX_SYSTEMSERVICES_H

#include "xmodule/protocol/osinfo.h"

#include <vector>

namespace XModule {
namespace Linux {

// The host's services, sorted by name: systemd's service units from disk, their running state
// from the system bus when systemd runs the host being read (root prefix "/"), and the init
// scripts that no unit stands for.
void CollectSystemServices(std::vector<protocol::SystemServiceInfo>& services);

}  // namespace Linux
}  // namespace XModule

#endif
