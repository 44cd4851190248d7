#ifndef KESTRO_XMODULE_IHV_MELLANOX_H
#define KESTRO_XMODULE_IHV_MELLANOX_H

#include "xmodule/ihv/rawdata.h"

#include <string>
#include <vector>

namespace XModule {
namespace Mellanox {

// The answers of the Mellanox firmware tools: mlxfwmanager and mlxconfig, each when installed.
class Mellanox {
public:
    // `folder`: where the tools are shipped ("<home>/utilities/mellanox/"); PATH is searched after.
    // 0 when every query ran; the number that did not finish (what they wrote is kept), or
    // UTILITY_NOT_INSTALLED.
    int GetRawData(std::vector<XModuleIHV::RawData_>& records, const std::string& folder);
};

}  // namespace Mellanox
}  // namespace XModule

#endif
