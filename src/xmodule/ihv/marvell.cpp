#include "xmodule/ihv/marvell.h"

#include "xmodule/ihv/utilitycommands.h"
#include "xmodule/ihv/vendorutility.h"
#include "xmodule/rlog.h"

namespace XModule {
namespace MARVELL {

namespace {

using XModuleIHV::UtilityCommand;

const std::vector<std::string> kNames = {"mvcli"};

const std::vector<UtilityCommand> kCommands = {
    {{"info", "-o", "hba"}, "Adapters", "mvcli_info_hba.txt"},
    {{"info", "-o", "vd"}, "Virtual disks", "mvcli_info_vd.txt"},
    {{"info", "-o", "pd"}, "Physical disks", "mvcli_info_pd.txt"},
    {{"event"}, "Adapter events", "mvcli_event.txt"},
};

}  // namespace

int Marvell::GetRawData(std::vector<XModuleIHV::RawData_>& records)
{
    const std::string program = XModuleIHV::VendorUtility::Find("marvell", kNames);
    if (program.empty()) {
        RLOG(3) << "mvcli is not installed; no Marvell raw data";
        return 0;
    }
    return XModuleIHV::RunUtilityCommands(program, kCommands, "", records);
}

}  // namespace MARVELL
}  // namespace XModule
