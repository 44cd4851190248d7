#ifndef KESTRO_XMODULE_IHV_LSIOPT_H
#define KESTRO_XMODULE_IHV_LSIOPT_H

#include "xmodule/ihv/rawdata.h"

#include <vector>

namespace XModule {
namespace LSI {

// The diagnostic output of LSI's storcli, when it is installed.
class LSIOpt {
public:
    // Runs storcli's usual show commands and appends one record per command; nothing when the
    // utility is not installed. `qcc` keeps the controller commands that a QCC BMC does not
    // answer in band out of the list. Returns the number of commands that failed to run.
    int GetRawData(std::vector<XModuleIHV::RawData_>& records, bool qcc);
};

}  // namespace LSI
}  // namespace XModule

#endif
