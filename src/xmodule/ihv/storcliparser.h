#ifndef KESTRO_XMODULE_IHV_STORCLIPARSER_H
#define KESTRO_XMODULE_IHV_STORCLIPARSER_H

#include "xmodule/agentless/raidadapter.h"

#include <string>
#include <vector>

namespace XModule {
namespace LSI {

// Reads storcli's JSON output into storage records. Both functions are pure, so that captured
// output is enough to check them.
class StorcliParser {
public:
    // "/call show all J": one adapter per controller that answered, its drive groups as pools
    // (virtual drives as their volumes, member drives as their drives), its other drives, its
    // CacheVault and firmware. False, with a level-2 line, when the text is not storcli's JSON;
    // a controller whose command failed is left out.
    static bool ParseControllers(const std::string& json, std::vector<XMOptions::RaidAdapter>& adapters);
    // "/call/eall/sall show all J": serial number, maker, firmware, link speed and temperature of
    // each drive already in `adapters`, matched by controller, enclosure and slot.
    static bool ParseDriveDetails(const std::string& json, std::vector<XMOptions::RaidAdapter>& adapters);
    // A state abbreviation of storcli ("Onln", "UGood", "Optl") in the words of the records.
    static std::string StateWord(const std::string& abbreviation);
};

}  // namespace LSI
}  // namespace XModule

#endif
