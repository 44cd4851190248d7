#ifndef KESTRO_XMODULE_AGENTLESS_NETWORK_H
#define KESTRO_XMODULE_AGENTLESS_NETWORK_H

#include "kestro/xmodule/connectioninfo.h"
#include "xmodule/agentless/networkadapter.h"

#include <vector>

namespace XModule {
namespace Agentless {

// The PCI network adapters of a server: read from its BMC's Redfish service when the connection
// is a BMC's, else from this host's sysfs.
class Network {
public:
    enum Result {
        NETWORK_OK = 0,
        NETWORK_NOT_REACHABLE = 1,  // neither a BMC nor this host
        NETWORK_NO_ADAPTERS = 2,    // the BMC's chassis lists no network adapters
        NETWORK_UNREADABLE = 3      // an adapter or one of its parts could not be read
    };

    explicit Network(const ConnectionInfo& connection);

    // A BMC whose chassis lists network adapters, or this host.
    bool IsAgentlessSupported();
    // Appends one record per adapter. On NETWORK_UNREADABLE what could be read is kept.
    int GetAdapterInfo(std::vector<NetworkAdapter>& adapters);

private:
    ConnectionInfo connection;
};

}  // namespace Agentless
}  // namespace XModule

#endif
