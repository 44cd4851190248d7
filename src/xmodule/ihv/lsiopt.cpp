#include "xmodule/ihv/lsiopt.h"

#include "xmodule/ihv/utilitycommands.h"
#include "xmodule/ihv/vendorutility.h"
#include "xmodule/rlog.h"

namespace XModule {
namespace LSI {

namespace {

using XModuleIHV::UtilityCommand;

const std::vector<std::string> kNames = {"storcli64", "storcli"};

const std::vector<UtilityCommand> kCommands = {
    {{"show", "all"}, "Controllers and the utility's version", "storcli_show_all.txt"},
    {{"/call", "show", "all"}, "Controller settings, volumes and drives", "storcli_call_show_all.txt"},
    {{"/call/eall/sall", "show", "all"}, "Every physical drive in detail", "storcli_drives_show_all.txt"},
    {{"/call/vall", "show", "all"}, "Every virtual drive in detail", "storcli_volumes_show_all.txt"},
    {{"/call/cv", "show", "all"}, "CacheVault module", "storcli_cachevault_show_all.txt"},
    {{"/call/bbu", "show", "all"}, "Battery backup unit", "storcli_bbu_show_all.txt"},
    {{"/call", "show", "termlog"}, "Controller firmware log", "storcli_termlog.txt"},
};

// A QCC BMC keeps the controller's event log in its own service data; reading it again here
// takes minutes on a busy controller.
const std::vector<UtilityCommand> kEventCommands = {
    {{"/call", "show", "events"}, "Controller event log", "storcli_events.txt"},
};

}  // namespace

int LSIOpt::GetRawData(std::vector<XModuleIHV::RawData_>& records, bool qcc)
{
    const std::string program = XModuleIHV::VendorUtility::Find("lsi", kNames);
    if (program.empty()) {
        RLOG(3) << "storcli is not installed; no LSI raw data";
        return 0;
    }
    int failed = XModuleIHV::RunUtilityCommands(program, kCommands, "all", records);
    if (!qcc) failed += XModuleIHV::RunUtilityCommands(program, kEventCommands, "all", records);
    return failed;
}

}  // namespace LSI
}  // namespace XModule
