#include "xmodule/ihv/arcconfopt.h"

#include "xmodule/ihv/arcconfparser.h"
#include "xmodule/ihv/utilitycommands.h"
#include "xmodule/ihv/vendorutility.h"
#include "xmodule/rlog.h"

namespace XModule {
namespace ARCCONF {

namespace {

using XModuleIHV::UtilityCommand;

const std::vector<std::string> kNames = {"arcconf"};

const std::vector<UtilityCommand> kHostCommands = {
    {{"GETVERSION"}, "Controllers and their firmware", "arcconf_getversion.txt"},
};

// Per controller; "%" stands for its number.
const std::vector<UtilityCommand> kControllerCommands = {
    {{"GETCONFIG", "%", "AL"}, "Controller, arrays, logical and physical drives", "arcconf_getconfig_%.txt"},
    {{"GETLOGS", "%", "DEVICE", "tabular"}, "Drive error log", "arcconf_device_log_%.txt"},
    {{"GETLOGS", "%", "EVENT", "tabular"}, "Controller event log", "arcconf_event_log_%.txt"},
};

std::string Numbered(const std::string& text, int controller)
{
    std::string result = text;
    const std::size_t at = result.find('%');
    if (at != std::string::npos) result.replace(at, 1, std::to_string(controller));
    return result;
}

std::vector<UtilityCommand> CommandsOf(int controller, std::vector<std::string>& names)
{
    std::vector<UtilityCommand> commands = kControllerCommands;
    names.clear();
    for (UtilityCommand& command : commands) {
        for (std::string& arg : command.args) arg = Numbered(arg, controller);
        names.push_back(Numbered(command.fileName, controller));
    }
    return commands;
}

}  // namespace

int ArcconfOpt::GetRawData(std::vector<XModuleIHV::RawData_>& records)
{
    const std::string program = XModuleIHV::VendorUtility::Find("arcconf", kNames);
    if (program.empty()) {
        RLOG(3) << "arcconf is not installed; no Microsemi raw data";
        return 0;
    }
    int failed = XModuleIHV::RunUtilityCommands(program, kHostCommands, "", records);
    const int count = ArcconfParser::ControllerCount(records.back().rawData);
    for (int controller = 1; controller <= count; ++controller) {
        std::vector<std::string> names;
        const std::vector<UtilityCommand> commands = CommandsOf(controller, names);
        const std::size_t first = records.size();
        failed += XModuleIHV::RunUtilityCommands(program, commands, std::to_string(controller), records);
        for (std::size_t i = 0; i < names.size(); ++i) records[first + i].fileName = names[i];
    }
    return failed;
}

}  // namespace ARCCONF
}  // namespace XModule
