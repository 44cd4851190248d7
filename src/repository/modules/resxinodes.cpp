#include "repository/modules/resxinodes.h"

#include "xmodule/agentless/esxinodenumacquire.h"
#include "xmodule/rlog.h"

#include <cstdint>

namespace kestro {
namespace repository {

namespace {

// The two mode words of a connection that reaches a node through the ESXi host.
const int kEsxiMode = 1;
const int kEsxiSubMode = 3;

}  // namespace

std::vector<XModule::ConnectionInfo> REsxiNodes::Of(const XModule::ConnectionInfo& first)
{
    XModule::ConnectionInfo node = first;
    node.mode = kEsxiMode;
    node.subMode = kEsxiSubMode;
    int count = 1;
    if (XModule::Agentless::ESXINodeNumAcquire(node).GetNodeNumber(count) != 0)
        RLOG(2) << "GetNodeNumber error when try ESXI Mode";
    RLOG(3) << "multi-node num is:" << count;
    std::vector<XModule::ConnectionInfo> nodes;
    for (int index = 0; index < count; ++index) {
        node.nodeIndex = static_cast<std::uint16_t>(index);
        nodes.push_back(node);
    }
    return nodes;
}

}  // namespace repository
}  // namespace kestro
