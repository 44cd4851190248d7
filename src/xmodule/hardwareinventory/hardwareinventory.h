#ifndef KESTRO_XMODULE_HARDWAREINVENTORY_HARDWAREINVENTORY_H
#define KESTRO_XMODULE_HARDWAREINVENTORY_HARDWAREINVENTORY_H

#include "kestro/xmodule/connectioninfo.h"
#include "xmodule/protocol/hardwareinfo.h"

#include <boost/scoped_ptr.hpp>

#include <vector>

namespace XModule {
namespace Agentless {
class RedfishHardwareReader;
}

namespace Hardwareinventory {

// What a host's hardware looks like: the host the program runs on, as its operating system sees
// it; a server out of band, as its BMC's Redfish service tells it (systems, processors, memory,
// fans and power supplies). Any other connection gives HARDWARE_NOT_LOCAL and empty lists.
class Hardwareinventory {
public:
    enum Result { HARDWARE_OK = 0, HARDWARE_NOT_LOCAL = 1, HARDWARE_BMC_UNREADABLE = 2 };

    explicit Hardwareinventory(const ConnectionInfo& connection);
    ~Hardwareinventory();

    int GetComputerSystems(std::vector<protocol::ComputerSystem>& systems);
    // Every list but computer systems and volumes.
    int GetHardwareInfo(protocol::Hardwareinfo& info);
    int GetMountPoints(std::vector<protocol::Volumes_MountPoints>& volumes);

    // True for a connection that names this host ("localhost" or a loopback address).
    static bool IsLocal(const ConnectionInfo& connection);
    // Whether the processors make this a Whitley platform, which reports fans and power in band.
    static bool IsWhitleyPlatform();

private:
    bool local;
    boost::scoped_ptr<Agentless::RedfishHardwareReader> bmc;  // set for a BMC's connection only
};

}  // namespace Hardwareinventory
}  // namespace XModule

#endif
