#ifndef KESTRO_XMODULE_AGENTLESS_RAIDCODES_H
#define KESTRO_XMODULE_AGENTLESS_RAIDCODES_H

#include "xmodule/agentless/raidadapter.h"

#include <string>
#include <vector>

namespace XModule {
namespace Agentless {

// The numeric codes older firmware uses for five fields, from the words a Redfish service or a
// RAID utility gives.
class RaidCodes {
public:
    static std::string BatteryTypeCode(const std::string& word);
    static std::string ArrayStateCode(const std::string& word);
    static std::string LinkSpeedCode(const std::string& word);
    static std::string MediaTypeCode(const std::string& word);
    static std::string DriveStateCode(const std::string& word);
    // Every coded field of every adapter, in place.
    static void Encode(std::vector<XMOptions::RaidAdapter>& adapters);
};

}  // namespace Agentless
}  // namespace XModule

#endif
