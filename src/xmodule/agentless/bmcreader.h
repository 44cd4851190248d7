#ifndef KESTRO_XMODULE_AGENTLESS_BMCREADER_H
#define KESTRO_XMODULE_AGENTLESS_BMCREADER_H

#include "kestro/xmodule/connectioninfo.h"

#include <boost/json/value.hpp>
#include <boost/scoped_ptr.hpp>

#include <string>
#include <vector>

namespace XModule {
namespace Agentless {

// Reads a BMC's Redfish resources for the readers that stand for the BMC-side libraries: one
// session per reader, every failure a level-2 line and a false answer, never an exception.
class BmcReader {
public:
    explicit BmcReader(const ConnectionInfo& bmc);
    ~BmcReader();

    // GETs `path` ("/redfish/v1/...") and parses it.
    bool Get(const std::string& path, boost::json::value& doc);
    // The "@odata.id" of every member of the collection at `path`, over all its pages
    // ("Members@odata.nextLink"). Within an inventory run the members are fetched ahead, several at
    // a time, for the reads that follow.
    bool Members(const std::string& path, std::vector<std::string>& members);
    // The first member of the collection at `path`; empty when it has none or cannot be read.
    // Servers name their system and chassis as they like, so "1" is never assumed.
    std::string FirstMember(const std::string& path);
    // The member at `index` (a node of a multi-node server); empty, and a level-2 line, when the
    // collection holds no such member.
    std::string MemberAt(const std::string& path, std::size_t index);

private:
    struct Private;
    boost::scoped_ptr<Private> d;
};

}  // namespace Agentless
}  // namespace XModule

#endif
