#ifndef KESTRO_XMODULE_IHV_VENDORUTILITY_H
#define KESTRO_XMODULE_IHV_VENDORUTILITY_H

#include "xmodule/ihv/rawdata.h"

#include <string>
#include <vector>

namespace XModule {
namespace XModuleIHV {

// A vendor's command-line utility: found under the program's utilities/ folder or on PATH, run
// with a time limit so that a hung adapter cannot stall the inventory.
class VendorUtility {
public:
    // "<home>/utilities/<folder>/", where a vendor's utility is shipped beside the program.
    static std::string FolderOf(const std::string& folder);
    // The full path of the first of `names` in FolderOf(folder), else of the first on PATH;
    // empty when none is installed.
    static std::string Find(const std::string& folder, const std::vector<std::string>& names);
    // The same with the shipping folder given as a full path ("<home>/utilities/qlogic/").
    static std::string FindInFolder(const std::string& path, const std::vector<std::string>& names);
    // Runs `program` with `args`; fills `record`'s raw data (standard output, or standard error when
    // that is all it wrote), utility and command. False, with a level-2 line, when it could not
    // start or was stopped; what it wrote before being stopped is kept.
    static bool Run(const std::string& program, const std::vector<std::string>& args, RawData_& record);
    // Seconds one run may take: KESTRO_UTILITY_TIME_LIMIT in global.config, default 120.
    static int TimeLimit();
};

}  // namespace XModuleIHV
}  // namespace XModule

#endif
