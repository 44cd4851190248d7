#ifndef KESTRO_XMODULE_IHV_MARVELL_H
#define KESTRO_XMODULE_IHV_MARVELL_H

#include "xmodule/ihv/rawdata.h"

#include <vector>

namespace XModule {
namespace MARVELL {

// The diagnostic output of Marvell's mvcli, when it is installed.
class Marvell {
public:
    // One record per command; nothing when the utility is not installed. Returns the number of
    // commands that failed to run.
    int GetRawData(std::vector<XModuleIHV::RawData_>& records);
};

}  // namespace MARVELL
}  // namespace XModule

#endif
