#ifndef KESTRO_REPOSITORY_MODULES_RESXINODES_H
#define KESTRO_REPOSITORY_MODULES_RESXINODES_H

#include "kestro/xmodule/connectioninfo.h"

#include <vector>

namespace kestro {
namespace repository {

// The nodes of an ESXi target, as the storage, network and BMC log modules walk them.
class REsxiNodes {
public:
    // One connection per node of the target that `first` reaches: a copy of it with the ESXi mode
    // words and the node's index. The count comes from the BMC; when it cannot be had, one node
    // ("GetNodeNumber error when try ESXI Mode"). Logs "multi-node num is:" with the count.
    static std::vector<XModule::ConnectionInfo> Of(const XModule::ConnectionInfo& first);
};

}  // namespace repository
}  // namespace kestro

#endif
