#include "xmodule/ihv/mellanox.h"

#include "xmodule/ihv/utilitycommands.h"
#include "xmodule/ihv/vendorutility.h"

namespace XModule {
namespace Mellanox {

namespace {

using XModuleIHV::UtilityCommand;

struct MellanoxTool {
    const char* program;
    std::vector<UtilityCommand> commands;
};

// Both tools find every adapter themselves, so no device is named.
const MellanoxTool kTools[] = {
    {"mlxfwmanager", {{{"--query"}, "Firmware of every adapter, running and available", "mlxfwmanager_query.txt"}}},
    {"mlxconfig", {{{"query"}, "Non-volatile configuration of every adapter", "mlxconfig_query.txt"}}},
};

}  // namespace

int Mellanox::GetRawData(std::vector<XModuleIHV::RawData_>& records, const std::string& folder)
{
    bool installed = false;
    int failed = 0;
    for (const MellanoxTool& tool : kTools) {
        const std::string program = XModuleIHV::VendorUtility::FindInFolder(folder, {tool.program});
        if (program.empty()) continue;
        installed = true;
        failed += XModuleIHV::RunUtilityCommands(program, tool.commands, "", records);
    }
    return installed ? failed : XModuleIHV::UTILITY_NOT_INSTALLED;
}

}  // namespace Mellanox
}  // namespace XModule
