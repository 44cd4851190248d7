#ifndef KESTRO_XMODULE_IHV_MARVELLPARSER_H
#define KESTRO_XMODULE_IHV_MARVELLPARSER_H

#include "xmodule/agentless/raidadapter.h"

#include <string>
#include <vector>

namespace XModule {
namespace MARVELL {

// Reads mvcli's text output into storage records; pure, so that captured output checks it.
class MarvellParser {
public:
    // The outputs of "info -o hba", "info -o vd" and "info -o pd": one adapter per HBA, each
    // virtual disk as a pool with its volume and member drives, the other drives on the adapter.
    // False, with a level-2 line, when the HBA text names no adapter.
    static bool Parse(const std::string& hba, const std::string& vd, const std::string& pd,
                      std::vector<XMOptions::RaidAdapter>& adapters);
};

}  // namespace MARVELL
}  // namespace XModule

#endif
