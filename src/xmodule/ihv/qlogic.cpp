#include "xmodule/ihv/qlogic.h"

#include "xmodule/ihv/utilitycommands.h"
#include "xmodule/ihv/vendorutility.h"

namespace XModule {
namespace Qlogic {

namespace {

using XModuleIHV::UtilityCommand;

const std::vector<UtilityCommand> kQauCliCommands = {
    {{"-g"}, "General information of the host and its adapters", "qaucli_general.txt"},
    {{"-i"}, "Adapter information", "qaucli_adapters.txt"},
    {{"-pr", "fc", "-z"}, "Fibre Channel adapters: all settings and statistics", "qaucli_fc_all.txt"},
    {{"-pr", "nic", "-i"}, "Converged network adapters", "qaucli_nic_adapters.txt"},
};

// Hosts that predate QConvergeConsole carry scli alone.
const std::vector<UtilityCommand> kSCliCommands = {
    {{"-i", "all"}, "Adapter information", "scli_adapters.txt"},
    {{"-z", "all"}, "All settings and statistics", "scli_all.txt"},
};

}  // namespace

int Qlogic::GetRawData(std::vector<XModuleIHV::RawData_>& records, const std::string& folder)
{
    std::string program = XModuleIHV::VendorUtility::FindInFolder(folder, {"qaucli"});
    if (!program.empty()) return XModuleIHV::RunUtilityCommands(program, kQauCliCommands, "", records);
    program = XModuleIHV::VendorUtility::FindInFolder(folder, {"scli"});
    if (!program.empty()) return XModuleIHV::RunUtilityCommands(program, kSCliCommands, "", records);
    return XModuleIHV::UTILITY_NOT_INSTALLED;
}

}  // namespace Qlogic
}  // namespace XModule
