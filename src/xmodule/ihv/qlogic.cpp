#include "xmodule/ihv/qlogic.h"

#include "xmodule/ihv/utilitycommands.h"

namespace XModule {
namespace Qlogic {

namespace {

using XModuleIHV::UtilityCommand;
using XModuleIHV::UtilityCommands;

const UtilityCommand kQauCliCommands[] = {
    {"qaucli", "-g", "General information of the host and its adapters", "qaucli_general.txt"},
    {"qaucli", "-i", "Adapter information", "qaucli_adapters.txt"},
    {"qaucli", "-pr fc -z", "Fibre Channel adapters: all settings and statistics", "qaucli_fc_all.txt"},
    {"qaucli", "-pr nic -i", "Converged network adapters", "qaucli_nic_adapters.txt"},
};

// Hosts that predate QConvergeConsole carry scli alone.
const UtilityCommand kSCliCommands[] = {
    {"scli", "-i all", "Adapter information", "scli_adapters.txt"},
    {"scli", "-z all", "All settings and statistics", "scli_all.txt"},
};

}  // namespace

int Qlogic::GetRawData(std::vector<XModuleIHV::RawData_>& records, const std::string& folder)
{
    const int result = UtilityCommands::Run(kQauCliCommands, folder, "", records);
    if (result != UtilityCommands::UTILITY_NOT_INSTALLED) return result;
    return UtilityCommands::Run(kSCliCommands, folder, "", records);
}

}  // namespace Qlogic
}  // namespace XModule
