#ifndef KESTRO_XMODULE_IHV_UTILITYCOMMANDS_H
#define KESTRO_XMODULE_IHV_UTILITYCOMMANDS_H

#include "xmodule/ihv/rawdata.h"

#include <string>
#include <vector>

namespace XModule {
namespace XModuleIHV {

// One diagnostic command of a vendor utility: its arguments, what it shows, the file its output
// goes to in the report.
struct UtilityCommand {
    std::vector<std::string> args;
    const char* description;
    const char* fileName;
};

// What a reader of vendor utilities answers when none of its programs is installed.
const int UTILITY_NOT_INSTALLED = -1;

// Runs each command with `program` and appends its record, with `deviceId` set; returns how many
// failed to run. What a failed command wrote is kept.
int RunUtilityCommands(const std::string& program, const std::vector<UtilityCommand>& commands,
                       const std::string& deviceId, std::vector<RawData_>& records);

}  // namespace XModuleIHV
}  // namespace XModule

#endif
