#include "xmodule/ihv/emulex.h"

#include "xmodule/ihv/utilitycommands.h"
#include "xmodule/ihv/vendorutility.h"

namespace XModule {
namespace Emulex {

namespace {

using XModuleIHV::UtilityCommand;
using XModuleIHV::UtilityCommands;

const UtilityCommand kCommands[] = {
    {"hbacmd", "listhbas", "Host bus adapters and their ports", "hbacmd_listhbas.txt"},
    {"hbacmd", "version", "Utility and library versions", "hbacmd_version.txt"},
    {"hbacmd", "listvfunctions", "Virtual functions of the adapters", "hbacmd_listvfunctions.txt"},
};

}  // namespace

int Emulex::GetRawData(std::vector<XModuleIHV::RawData_>& records, const std::string& partNumber)
{
    return UtilityCommands::Run(kCommands, XModuleIHV::VendorUtility::FolderOf("emulex"), partNumber, records);
}

}  // namespace Emulex
}  // namespace XModule
