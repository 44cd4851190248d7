#include "xmodule/agentless/esxinodenumacquire.h"

#include "xmodule/agentless/bmcreader.h"

#include <string>
#include <vector>

namespace XModule {
namespace Agentless {

ESXINodeNumAcquire::ESXINodeNumAcquire(const ConnectionInfo& connection) : connection(connection) {}

int ESXINodeNumAcquire::GetNodeNumber(int& count)
{
    if (!connection.isBmc) return NODE_NUMBER_NO_BMC;
    BmcReader reader(connection);
    std::vector<std::string> systems;
    if (!reader.Members("/redfish/v1/Systems", systems) || systems.empty()) return NODE_NUMBER_UNREADABLE;
    count = static_cast<int>(systems.size());
    return NODE_NUMBER_OK;
}

}  // namespace Agentless
}  // namespace XModule
