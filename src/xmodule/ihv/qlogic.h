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
    // 0 when every query ran; UtilityCommands' codes otherwise, with what did run kept.
    int GetRawData(std::vector<XModuleIHV::RawData_>& records, const std::string& folder);
};

}  // namespace Qlogic
}  // namespace XModule

#endif
