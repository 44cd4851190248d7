#ifndef KESTRO_XMODULE_AGENTLESS_RAIDLINK_H
#define KESTRO_XMODULE_AGENTLESS_RAIDLINK_H

#include "kestro/xmodule/connectioninfo.h"
#include "xmodule/agentless/raidadapter.h"

#include <vector>

namespace XModule {
namespace Agentless {

// The storage adapters of a target. A BMC connection is read over Redfish; a connection to this
// host reads its NVMe and SATA SSDs from sysfs and its RAID controllers through the vendor's
// utility. A reader of one connection gives the coded fields as words; a reader of two (the CIM
// connection with the Redfish one beside it) gives them as the numeric codes of the older
// firmware, so that a caller maps both kinds to the same words; only this host's readers on a
// Whitley platform, whose coded fields are shown as they stand, give words there too.
class RAIDLink {
public:
    enum Result { RAID_OK = 0, RAID_UNREADABLE = 1 };

    explicit RAIDLink(const ConnectionInfo& connection);
    RAIDLink(const ConnectionInfo& cim, const ConnectionInfo& redfish);

    // A BMC whose service root links its systems and whose first system has storage; this
    // host always, since its sysfs is there.
    bool IsAgentlessSupported();
    // RAID_OK when the source could be read; adapters are appended in the source's order.
    int GetAllRaidAdapterInfo(std::vector<XMOptions::RaidAdapter>& adapters);

private:
    ConnectionInfo connection;
    bool numericCodes;
};

}  // namespace Agentless
}  // namespace XModule

#endif
