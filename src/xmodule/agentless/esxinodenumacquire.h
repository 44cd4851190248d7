#ifndef KESTRO_XMODULE_AGENTLESS_ESXINODENUMACQUIRE_H
#define KESTRO_XMODULE_AGENTLESS_ESXINODENUMACQUIRE_H

#include "kestro/xmodule/connectioninfo.h"

namespace XModule {
namespace Agentless {

// How many nodes a multi-node target holds: the members of its BMC's system collection.
class ESXINodeNumAcquire {
public:
    enum Result { NODE_NUMBER_OK = 0, NODE_NUMBER_NO_BMC = 1, NODE_NUMBER_UNREADABLE = 2 };

    explicit ESXINodeNumAcquire(const ConnectionInfo& connection);
    // NODE_NUMBER_OK and at least 1 in `count`; otherwise `count` is untouched.
    int GetNodeNumber(int& count);

private:
    ConnectionInfo connection;
};

}  // namespace Agentless
}  // namespace XModule

#endif
