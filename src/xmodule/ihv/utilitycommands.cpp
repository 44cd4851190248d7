#include "xmodule/ihv/utilitycommands.h"

#include "xmodule/ihv/vendorutility.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/filesystem/path.hpp>
#include <boost/process/search_path.hpp>

#include <map>

namespace XModule {
namespace XModuleIHV {

namespace {

std::vector<std::string> ArgumentsOf(const char* arguments)
{
    std::vector<std::string> words;
    const std::string text(arguments);
    if (!text.empty()) boost::algorithm::split(words, text, boost::algorithm::is_space(), boost::token_compress_on);
    return words;
}

}  // namespace

std::string UtilityCommands::FindIn(const std::string& folder, const std::string& program)
{
    if (!folder.empty()) {
        const boost::filesystem::path shipped =
            boost::process::search_path(program, std::vector<boost::filesystem::path>(1, folder));
        if (!shipped.empty()) return shipped.string();
    }
    return boost::process::search_path(program).string();
}

int UtilityCommands::Run(const UtilityCommand* begin, const UtilityCommand* end, const std::string& folder,
                         const std::string& deviceId, std::vector<RawData_>& records)
{
    std::map<std::string, std::string> found;
    bool anyFound = false;
    bool allFinished = true;
    for (const UtilityCommand* command = begin; command != end; ++command) {
        if (found.find(command->program) == found.end()) found[command->program] = FindIn(folder, command->program);
        const std::string& path = found[command->program];
        if (path.empty()) continue;
        anyFound = true;
        RawData_ record;
        record.deviceId = deviceId;
        record.description = command->description;
        record.fileName = command->fileName;
        allFinished &= VendorUtility::Run(path, ArgumentsOf(command->arguments), record);
        records.push_back(record);
    }
    if (!anyFound) return UTILITY_NOT_INSTALLED;
    return allFinished ? UTILITY_OK : UTILITY_FAILED;
}

}  // namespace XModuleIHV
}  // namespace XModule
