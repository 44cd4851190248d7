#ifndef KESTRO_XMODULE_SERVICE_SERVICERAID_H
#define KESTRO_XMODULE_SERVICE_SERVICERAID_H

#include "kestro/xmodule/connectioninfo.h"
#include "kestro/xmodule/usercontext.h"
#include "xmodule/agentless/raidadapter.h"

#include <string>
#include <vector>

namespace XModule {

// Where a RAID command reads its target.
struct ConnectOption {
    ConnectionInfo connection;
};

// The first connection the caller named, or this host when it named none. Returns 0.
int ConvertUserContextToConnectOption(const UserContext& context, ConnectOption& option);

}  // namespace XModule

namespace RaidConfig {

struct RaidConfigOption {
    XModule::ConnectOption connectOption;
};

}  // namespace RaidConfig

namespace service {

// The "raid show" command: the controllers, volumes and drives of the target as a plain-text
// table an operator reads.
class ServiceRaid {
public:
    explicit ServiceRaid(const RaidConfig::RaidConfigOption& option);
    std::string GetRaidShowResult();
    // The table of `adapters`; pure, so that its layout is checked without a target.
    static std::string FormatRaidShow(const std::vector<XModule::XMOptions::RaidAdapter>& adapters);

private:
    RaidConfig::RaidConfigOption option;
};

}  // namespace service

#endif
