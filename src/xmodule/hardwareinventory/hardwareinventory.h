#ifndef KESTRO_XMODULE_HARDWAREINVENTORY_HARDWAREINVENTORY_H
#define KESTRO_XMODULE_HARDWAREINVENTORY_HARDWAREINVENTORY_H

#include "kestro/xmodule/connectioninfo.h"
#include "xmodule/protocol/hardwareinfo.h"

#include <vector>

namespace XModule {
namespace Hardwareinventory {

// What the operating system of a host sees of its hardware. Only the host the program runs on
// can be read; any other connection gives HARDWARE_NOT_LOCAL and empty lists.
class Hardwareinventory {
public:
    enum Result { HARDWARE_OK = 0, HARDWARE_NOT_LOCAL = 1 };

    explicit Hardwareinventory(const ConnectionInfo& connection);

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
};

}  // namespace Hardwareinventory
}  // namespace XModule

#endif
