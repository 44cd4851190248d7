#include "xmodule/ihv/emulex.h"

#include "xmodule/ihv/utilitycommands.h"
#include "xmodule/ihv/vendorutility.h"

namespace XModule {
namespace Emulex {

namespace {

using XModuleIHV::UtilityCommand;

const std::vector<UtilityCommand> kCommands = {
    {{"listhbas"}, "Host bus adapters and their ports", "hbacmd_listhbas.txt"},
    {{"version"}, "Utility and library versions", "hbacmd_version.txt"},
    {{"listvfunctions"}, "Virtual functions of the adapters", "hbacmd_listvfunctions.txt"},
};

}  // namespace

int Emulex::GetRawData(std::vector<XModuleIHV::RawData_>& records, const std::string& partNumber)
{
    const std::string program = XModuleIHV::VendorUtility::Find("emulex", {"hbacmd"});
    if (program.empty()) return XModuleIHV::UTILITY_NOT_INSTALLED;
    return XModuleIHV::RunUtilityCommands(program, kCommands, partNumber, records);
}

}  // namespace Emulex
}  // namespace XModule
