#include "repository/modules/rexecutionlogmodule.h"

#include "kestro/repository/rinstance.h"
#include "kestro/xmodule/log.h"
#include "repository/modules/rtableforms.h"
#include "xmodule/rlog.h"

#include <boost/bind/bind.hpp>

#include <fstream>

namespace kestro {
namespace repository {

namespace {
const std::streamsize kLongestLine = 4096;
const char* const kErrorMarkers[] = {"[ERROR]", "[FATAL]"};
}  // namespace

std::string RExecutionLogModule::GetName() { return "RExecutionLog Module"; }

std::string RExecutionLogModule::GetDisplay() { return "Execution Log Module"; }

void RExecutionLogModule::InitCallbacks()
{
    using boost::placeholders::_1;
    TypeCallbacks& errors = typeCallbacks["ExecutionErrorLog"];
    errors.enumCallback = boost::bind(&RExecutionLogModule::EnumExecutionErrorLogInstances, this, _1);
    errors.wrapCallback = &RTableForms::WrapSingleColumn;
}

std::vector<std::string> RExecutionLogModule::ErrorLines(std::istream& log)
{
    std::vector<std::string> kept;
    std::vector<char> buffer(kLongestLine);
    for (;;) {
        log.getline(buffer.data(), kLongestLine);
        if (log.gcount() == 0 && !log) break;
        const std::string line(buffer.data());
        // A line longer than the buffer comes in pieces, each judged on its own.
        if (log.fail() && !log.eof()) log.clear();
        for (const char* marker : kErrorMarkers)
            if (line.find(marker) != std::string::npos) {
                kept.push_back(line);
                break;
            }
        if (log.eof()) break;
    }
    return kept;
}

void RExecutionLogModule::EnumExecutionErrorLogInstances(RRepository& repo)
{
    RLOG(3) << "Enter EnumExecutionErrorLogInstances";
    const std::string fileName = XModule::GetLogFileName();
    RLOG(3) << "file name: " << fileName;
    std::ifstream log(fileName.c_str());
    if (!log) {
        RLOG(1) << "Failed to open file ";
        RLOG(3) << "Exit EnumExecutionErrorLogInstances";
        return;
    }
    const std::vector<std::string> lines = ErrorLines(log);
    if (!lines.empty()) RLOG(3) << "record execution error log... ";
    for (const std::string& line : lines) {
        RInstance record("ExecutionErrorLog", "Execution Log", -1);
        record.AddProperty("KestroErrorLog", "Log Message", line, false);
        record.AddToRepository(repo);
    }
    RLOG(3) << "Exit EnumExecutionErrorLogInstances";
}

}  // namespace repository
}  // namespace kestro
