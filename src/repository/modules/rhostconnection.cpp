#include "repository/modules/rhostconnection.h"

#include "kestro/repository/rrepository.h"

namespace kestro {
namespace repository {

XModule::ConnectionInfo RHostConnection::Of(RRepository& repo)
{
    const std::vector<XModule::ConnectionInfo>& connections = repo.GetCIMConnectionList();
    if (!connections.empty()) return connections.front();
    XModule::ConnectionInfo connection;
    const ConnectMode mode = repo.GetConnectMode();
    // In-band Redfish runs on the host too: its BMC is reached through the host.
    if (mode == ConnectLocal || mode == ConnectLocalAmd || mode == ConnectCfc) connection.host = "localhost";
    return connection;
}

}  // namespace repository
}  // namespace kestro
