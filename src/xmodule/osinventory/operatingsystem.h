#ifndef KESTRO_XMODULE_OSINVENTORY_OPERATINGSYSTEM_H
#define KESTRO_XMODULE_OSINVENTORY_OPERATINGSYSTEM_H

#include "kestro/xmodule/connectioninfo.h"
#include "xmodule/protocol/osinfo.h"

namespace XModule {
namespace XMOperatingSystem {

// The operating system of the host the program runs on: its name, release, kernel and times.
class OperatingSystem {
public:
    enum Result { OS_OK = 0, OS_NOT_LOCAL = 1 };

    explicit OperatingSystem(const ConnectionInfo& connection);
    int GetOperatingSystem(protocol::OperatingSystemInfo& os);

private:
    bool local;
};

}  // namespace XMOperatingSystem
}  // namespace XModule

#endif
