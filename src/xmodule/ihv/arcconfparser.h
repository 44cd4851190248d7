#ifndef KESTRO_XMODULE_IHV_ARCCONFPARSER_H
#define KESTRO_XMODULE_IHV_ARCCONFPARSER_H

#include "xmodule/agentless/raidadapter.h"

#include <string>

namespace XModule {
namespace ARCCONF {

// Reads arcconf's text output into storage records; pure, so that captured output checks it.
class ArcconfParser {
public:
    // "Controllers found: 2" in the output of GETVERSION or GETCONFIG; 0 when it is not there.
    static int ControllerCount(const std::string& text);
    // "GETCONFIG <n> AL": the controller, its arrays as pools (their logical devices as volumes,
    // their member drives as drives), its other drives and its backup unit. False, with a
    // level-2 line, when the text has no controller section.
    static bool ParseConfig(const std::string& text, XMOptions::RaidAdapter& adapter);
};

}  // namespace ARCCONF
}  // namespace XModule

#endif
