#ifndef KESTRO_XMODULE_LINUX_HOSTSEL_H
#define KESTRO_XMODULE_LINUX_HOSTSEL_H

#include "xmodule/linux/selrecord.h"

#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// The system event log of this host's own BMC: through the IPMI device (/dev/ipmi0 under the root
// prefix) when there is one, else through `ipmitool sel elist` when it is installed.
class HostSel {
public:
    enum Result { HOST_SEL_READ = 0, HOST_SEL_NO_SOURCE = 1, HOST_SEL_UNREADABLE = 2 };

    // HOST_SEL_READ and every entry; entries read before a failure are kept. HOST_SEL_NO_SOURCE,
    // noted as unreadable, when the host has neither the device nor the tool.
    static int Read(std::vector<SelEvent>& events);

private:
    static int ReadDevice(const std::string& path, std::vector<SelEvent>& events);
    static int ReadIpmitool(const std::string& program, std::vector<SelEvent>& events);
};

}  // namespace Linux
}  // namespace XModule

#endif
