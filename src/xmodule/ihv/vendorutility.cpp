#include "xmodule/ihv/vendorutility.h"

#include "kestro/xmodule/globalconfig.h"
#include "kestro/xmodule/kestrodirectory.h"
#include "xmodule/linux/commandoutput.h"
#include "xmodule/rlog.h"

#include <boost/algorithm/string/join.hpp>
#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>
#include <boost/process/search_path.hpp>

namespace XModule {
namespace XModuleIHV {

namespace {

const int kDefaultTimeLimit = 120;

bool IsExecutableFile(const boost::filesystem::path& path)
{
    boost::system::error_code error;
    const boost::filesystem::file_status status = boost::filesystem::status(path, error);
    return !error && boost::filesystem::is_regular_file(status) &&
           (status.permissions() & boost::filesystem::owner_exe) != 0;
}

}  // namespace

std::string VendorUtility::FolderOf(const std::string& folder)
{
    return KestroDirectory::GetExePath("utilities/" + folder + "/");
}

std::string VendorUtility::Find(const std::string& folder, const std::vector<std::string>& names)
{
    return FindInFolder(FolderOf(folder), names);
}

std::string VendorUtility::FindInFolder(const std::string& path, const std::vector<std::string>& names)
{
    for (const std::string& name : names) {
        const boost::filesystem::path shipped = boost::filesystem::path(path) / name;
        if (IsExecutableFile(shipped)) return shipped.string();
    }
    for (const std::string& name : names) {
        const boost::filesystem::path onPath = boost::process::search_path(name);
        if (!onPath.empty()) return onPath.string();
    }
    return std::string();
}

int VendorUtility::TimeLimit()
{
    const int seconds = GetGlobalConfigValue("KESTRO_UTILITY_TIME_LIMIT", kDefaultTimeLimit);
    return seconds > 0 ? seconds : kDefaultTimeLimit;
}

bool VendorUtility::Run(const std::string& program, const std::vector<std::string>& args, RawData_& record)
{
    std::vector<std::string> argv(1, program);
    argv.insert(argv.end(), args.begin(), args.end());
    record.command = boost::algorithm::join(argv, " ");
    record.utility = boost::filesystem::path(program).filename().string();
    const Linux::CommandOutput output = Linux::RunCommand(argv, TimeLimit());
    record.rawData = output.out.empty() ? output.err : output.out;
    if (!output.started || !output.finished) {
        RLOG(2) << "Vendor utility " << record.command << " gave no whole answer: " << output.why;
        return false;
    }
    return true;
}

}  // namespace XModuleIHV
}  // namespace XModule
