#ifndef KESTRO_XMODULE_IHV_EMULEX_H
#define KESTRO_XMODULE_IHV_EMULEX_H

#include "xmodule/ihv/rawdata.h"

#include <string>
#include <vector>

namespace XModule {
namespace Emulex {

// The answers of Emulex's hbacmd, shipped under "<home>/utilities/emulex/" or on PATH.
class Emulex {
public:
    // `partNumber`: the adapter the data is gathered for; the records carry it as their device.
    // 0 when every query ran; the number that did not finish (what they wrote is kept), or
    // UTILITY_NOT_INSTALLED.
    int GetRawData(std::vector<XModuleIHV::RawData_>& records, const std::string& partNumber);
};

}  // namespace Emulex
}  // namespace XModule

#endif
