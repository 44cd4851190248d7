#ifndef KESTRO_XMODULE_IHV_ARCCONFOPT_H
#define KESTRO_XMODULE_IHV_ARCCONFOPT_H

#include "xmodule/ihv/rawdata.h"

#include <vector>

namespace XModule {
namespace ARCCONF {

// The diagnostic output of Microsemi's arcconf, when it is installed.
class ArcconfOpt {
public:
    // One record per command; nothing when the utility is not installed. Returns the number of
    // commands that failed to run.
    int GetRawData(std::vector<XModuleIHV::RawData_>& records);
};

}  // namespace ARCCONF
}  // namespace XModule

#endif
