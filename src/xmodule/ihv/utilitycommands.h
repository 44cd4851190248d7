#ifndef KESTRO_XMODULE_IHV_UTILITYCOMMANDS_H
#define KESTRO_XMODULE_IHV_UTILITYCOMMANDS_H

#include "xmodule/ihv/rawdata.h"

#include <cstddef>
#include <string>
#include <vector>

namespace XModule {
namespace XModuleIHV {

// One query of a vendor utility: the program, its arguments (blank separated), what the
// answer shows and the file the report keeps it in.
struct UtilityCommand {
    const char* program;
    const char* arguments;
    const char* description;
    const char* fileName;
};

// Runs a vendor's table of queries with whichever of its programs are installed.
class UtilityCommands {
public:
    enum Result { UTILITY_OK = 0, UTILITY_NOT_INSTALLED = 1, UTILITY_FAILED = 2 };

    // `program` in `folder` when it is an executable file there, else on PATH; "" when neither.
    static std::string FindIn(const std::string& folder, const std::string& program);
    // Appends one record per command whose program is found, each with `deviceId`.
    // UTILITY_NOT_INSTALLED when no program of the table is found; UTILITY_FAILED when a command
    // did not finish, whose partial answer is kept all the same.
    static int Run(const UtilityCommand* begin, const UtilityCommand* end, const std::string& folder,
                   const std::string& deviceId, std::vector<RawData_>& records);

    template <std::size_t N>
    static int Run(const UtilityCommand (&commands)[N], const std::string& folder, const std::string& deviceId,
                   std::vector<RawData_>& records)
    {
        return Run(commands, commands + N, folder, deviceId, records);
    }
};

}  // namespace XModuleIHV
}  // namespace XModule

#endif
