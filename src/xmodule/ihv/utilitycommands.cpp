#include "xmodule/ihv/utilitycommands.h"

#include "xmodule/ihv/vendorutility.h"

namespace XModule {
namespace XModuleIHV {

int RunUtilityCommands(const std::string& program, const std::vector<UtilityCommand>& commands,
                       const std::string& deviceId, std::vector<RawData_>& records)
{
    int failed = 0;
    for (const UtilityCommand& command : commands) {
        RawData_ record;
        if (!VendorUtility::Run(program, command.args, record)) ++failed;
        record.deviceId = deviceId;
        record.description = command.description;
        record.fileName = command.fileName;
        records.push_back(record);
    }
    return failed;
}

}  // namespace XModuleIHV
}  // namespace XModule
