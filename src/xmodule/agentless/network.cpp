#include "xmodule/agentless/network.h"

#include "xmodule/agentless/bmcreader.h"
#include "xmodule/agentless/networkredfish.h"
#include "xmodule/hardwareinventory/hardwareinventory.h"
#include "xmodule/linux/networkfunctions.h"

namespace XModule {
namespace Agentless {

const char* const NETWORK_NOT_GIVEN = "N/A";

Network::Network(const ConnectionInfo& connection) : connection(connection) {}

bool Network::IsAgentlessSupported()
{
    if (!connection.isBmc) return Hardwareinventory::Hardwareinventory::IsLocal(connection);
    BmcReader reader(connection);
    return !NetworkRedfish(reader).AdaptersCollection().empty();
}

int Network::GetAdapterInfo(std::vector<NetworkAdapter>& adapters)
{
    if (connection.isBmc) {
        BmcReader reader(connection);
        return NetworkRedfish(reader).ReadAdapters(adapters);
    }
    if (!Hardwareinventory::Hardwareinventory::IsLocal(connection)) return NETWORK_NOT_REACHABLE;
    Linux::CollectNetworkAdapters(adapters);
    return NETWORK_OK;
}

}  // namespace Agentless
}  // namespace XModule
