#ifndef KESTRO_XMODULE_IHV_QLOGIC_H
#define KESTRO_XMODULE_IHV_QLOGIC_H

#include "xmodule/ihv/rawdata.h"

#include <string>
#include <vector>

namespace XModule {
namespace Qlogic {

// The answers of QLogic's command-line utility: QConvergeConsole's qaucli, else the older scli.
class Qlogic {
public:
    // `folder`: where the utility is shipped ("<home>/utilities/qlogic/"); PATH is searched after.
    // 0 when every query ran; the number that did not finish (what they wrote is kept), or
    // UTILITY_NOT_INSTALLED.
    int GetRawData(std::vector<XModuleIHV::RawData_>& records, const std::string& folder);
};

}  // namespace Qlogic
}  // namespace XModule

#endif
