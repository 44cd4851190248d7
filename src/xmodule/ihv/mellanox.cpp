#include "xmodule/ihv/mellanox.h"

#include "xmodule/ihv/utilitycommands.h"

namespace XModule {
namespace Mellanox {

namespace {

using XModuleIHV::UtilityCommand;
using XModuleIHV::UtilityCommands;

// Both tools find every adapter themselves, so no device is named.
const UtilityCommand kCommands[] = {
    {"mlxfwmanager", "--query", "Firmware of every adapter, running and available", "mlxfwmanager_query.txt"},
    {"mlxconfig", "query", "Non-volatile configuration of every adapter", "mlxconfig_query.txt"},
};

}  // namespace

int Mellanox::GetRawData(std::vector<XModuleIHV::RawData_>& records, const std::string& folder)
{
    return UtilityCommands::Run(kCommands, folder, "", records);
}

}  // namespace Mellanox
}  // namespace XModule
