#ifndef KESTRO_XMODULE_AGENTLESS_REDFISHHARDWAREREADER_H
#define KESTRO_XMODULE_AGENTLESS_REDFISHHARDWAREREADER_H

#include "kestro/xmodule/connectioninfo.h"
#include "xmodule/protocol/hardwareinfo.h"

#include <boost/scoped_ptr.hpp>

#include <vector>

namespace XModule {
namespace Agentless {

// What a BMC's Redfish service tells of its server's hardware, in the records the host's own
// readers fill: the system at the connection's node index, found by its links (servers name their
// members as they like), its processors and memory modules, and the fans and power supplies of the
// chassis that holds it (Thermal and Power, else ThermalSubsystem and PowerSubsystem).
class RedfishHardwareReader {
public:
    explicit RedfishHardwareReader(const ConnectionInfo& bmc);
    ~RedfishHardwareReader();

    // False when the BMC lists no system at the node index, or it cannot be read.
    bool ReadComputerSystem(std::vector<protocol::ComputerSystem>& systems);
    // Processors, memory, fans and power; false when the system cannot be read. A list whose
    // resource is missing or unreadable stays empty, and the BMC reader logs why.
    bool ReadHardware(protocol::Hardwareinfo& info);
    // The system's installed CPUs make it a Whitley platform, by their ProcessorId's vendor, family
    // and model as /proc/cpuinfo would give them.
    bool IsWhitleyPlatform();

private:
    struct Private;
    boost::scoped_ptr<Private> d;
};

}  // namespace Agentless
}  // namespace XModule

#endif
