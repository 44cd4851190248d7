#include "kestro/repository/rinstance.h"
#include "kestro/repository/rrepository.h"
#include "kestro/results/kestroresult.h"
#include "kestro/xmodule/log.h"

#include <boost/filesystem/operations.hpp>

#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <iostream>
#include <map>
#include <string>
#include <vector>

namespace {

using kestro::repository::RRepository;
namespace results = kestro::results;

const char kToolName[] = "kestro";
const char kInventoryFile[] = "inventory.xml";
const char kLogFile[] = "kestro.log";

const char kUsage[] =
    "usage: kestro <command> [options]\n"
    "\n"
    "commands:\n"
    "  inventory --output DIR   gather the local host's inventory and write it into DIR\n"
    "\n"
    "options:\n"
    "  --output DIR             folder for the inventory file and the log (created if missing)\n"
    "  --log-level N            1 errors, 2 warnings, 3 progress (default), 4 tracing\n"
    "  --help                   show this text\n"
    "  --version                show the tool's version\n";

struct Options {
    std::string command;
    std::string output;
    int logLevel = XModule::LOG_INFO;
};

// The code table's number is the exit status, so scripts can tell failures apart.
int Fail(std::uint32_t code, const std::string& detail)
{
    const kestro::KestroResult result(code);
    std::cerr << "kestro: " << result.message;
    if (!detail.empty()) std::cerr << " " << detail;
    std::cerr << "\n";
    return static_cast<int>(code & 0xFF);
}

bool ParseArguments(int argc, char** argv, Options& options, std::string& problem)
{
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        const bool hasValue = i + 1 < argc;
        if (argument == "--output" && hasValue) {
            options.output = argv[++i];
        } else if (argument == "--log-level" && hasValue) {
            options.logLevel = std::atoi(argv[++i]);
        } else if (argument == "--help" || argument == "-h" || argument == "--version") {
            options.command = argument;
            return true;
        } else if (argument[0] != '-' && options.command.empty()) {
            options.command = argument;
        } else {
            problem = "unknown or incomplete argument '" + argument + "'";
            return false;
        }
    }
    return true;
}

bool IsTerminal() { return isatty(STDERR_FILENO) == 1; }

void PrintSummary(RRepository& repo, const std::string& file)
{
    if (IsTerminal()) std::cerr << "\r\033[K";
    const std::vector<std::string> types = repo.GetCollectedInstanceTypes();
    std::size_t total = 0;
    for (const std::string& type : types) {
        std::vector<kestro::repository::RInstance*> records = repo.GetInstances(type);
        std::cout << "  " << type << ": " << records.size() << "\n";
        total += records.size();
        repo.FreeInstances(records);
    }
    std::cout << total << " records of " << types.size() << " types written to " << file << "\n";
}

void RunByGroups(RRepository& repo)
{
    const kestro::repository::RGroupList groups = repo.GetInventoryGroups();
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (IsTerminal())
            std::cerr << "\r\033[K  [" << i + 1 << "/" << groups.size() << "] " << groups[i].second << std::flush;
        repo.RunInventory(groups[i].first);
    }
}

int RunInventory(const Options& options)
{
    if (options.output.empty()) return Fail(results::RESULT_INVALID_PARAMETER, "inventory needs --output DIR");
    boost::system::error_code error;
    boost::filesystem::create_directories(options.output, error);
    if (error || !boost::filesystem::is_directory(options.output, error))
        return Fail(results::RESULT_CREATE_DIRECTORY_FAILED, options.output);
    const std::string logPath = (boost::filesystem::path(options.output) / kLogFile).string();
    if (!XModule::SetLogFile(logPath)) return Fail(results::RESULT_WRITE_FILE_FAILED, logPath);
    XModule::SetLogLevel(options.logLevel);

    RRepository repo(kestro::repository::ConnectLocal);
    repo.SetDataSource(kToolName, KESTRO_BUILD_TEXT, KESTRO_VERSION_TEXT);
    // The groups of the case's category file say what to collect, and in which order.
    if (!repo.LoadCategories()) return Fail(results::RESULT_INVALID_FILE, "no readable report category file, see " + logPath);
    RunByGroups(repo);
    if (!repo.WriteXML(kInventoryFile, options.output))
        return Fail(results::RESULT_WRITE_FILE_FAILED, (boost::filesystem::path(options.output) / kInventoryFile).string());
    PrintSummary(repo, (boost::filesystem::path(options.output) / kInventoryFile).string());
    XModule::SetLogFile("");
    return 0;
}

}  // namespace

int main(int argc, char** argv)
{
    Options options;
    std::string problem;
    if (!ParseArguments(argc, argv, options, problem)) {
        std::cerr << kUsage;
        return Fail(results::RESULT_INVALID_PARAMETER, problem);
    }
    if (options.command.empty() || options.command == "--help" || options.command == "-h") {
        std::cout << kUsage;
        return options.command.empty() ? Fail(results::RESULT_INVALID_COMMAND, "no command given") : 0;
    }
    if (options.command == "--version") {
        std::cout << kToolName << " " << KESTRO_VERSION_TEXT << " (build " << KESTRO_BUILD_TEXT << ")\n";
        return 0;
    }
    if (options.command == "inventory") return RunInventory(options);
    std::cerr << kUsage;
    return Fail(results::RESULT_INVALID_COMMAND, "'" + options.command + "'");
}
