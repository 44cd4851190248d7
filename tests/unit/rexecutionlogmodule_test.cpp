#include "repository/modules/rexecutionlogmodule.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rrepository.h"
#include "kestro/xmodule/log.h"
#include "support/logcapture.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace kestro::repository;

namespace {

typedef std::vector<std::string> Lines;

// The run's log goes to a file of the test while it lives.
class ScopedLogFile {
public:
    explicit ScopedLogFile(const std::string& path) { EXPECT_TRUE(XModule::SetLogFile(path)); }
    ~ScopedLogFile() { XModule::SetLogFile(""); }
};

std::vector<std::string> ValuesOf(RRepository& repo)
{
    std::vector<RInstance*> records = repo.GetInstances("ExecutionErrorLog");
    std::vector<std::string> values;
    for (RInstance* record : records) {
        EXPECT_EQ("Execution Log", record->GetDisplay());
        EXPECT_EQ("Log Message", record->GetPropertyDisplay("KestroErrorLog"));
        values.push_back(record->GetNormalizedValue("KestroErrorLog", ""));
    }
    repo.FreeInstances(records);
    return values;
}

}  // namespace

TEST(RExecutionLogModuleTest, KeepsWholeLinesWithAnErrorOrFatalMarker)
{
    const std::string longLine = std::string(4095, 'x') + "tail [ERROR] late";
    const struct {
        std::string log;
        Lines kept;
    } cases[] = {
        {"", {}},
        {"2026-01-01 00:00:00.000 [INFO] a.cpp:1 fine\n", {}},
        {"t [ERROR] a.cpp:2 broken\nt [WARN] a.cpp:3 odd\n", {"t [ERROR] a.cpp:2 broken"}},
        {"[FATAL] gone\n[ERROR] and [FATAL] both\n", {"[FATAL] gone", "[ERROR] and [FATAL] both"}},
        {"[error] lower case\n[ERROR\nERROR]\n", {}},
        {"\n\n[ERROR]", {"[ERROR]"}},
        // A line longer than the buffer is read in pieces, each judged alone.
        {longLine + "\nnext\n", {"tail [ERROR] late"}},
    };
    for (const auto& c : cases) {
        std::istringstream log(c.log);
        EXPECT_EQ(c.kept, RExecutionLogModule::ErrorLines(log)) << c.log.substr(0, 80);
    }
}

// The error lines of the run's own log file become records; a clean or missing log adds none.
TEST(RExecutionLogModuleTest, RecordsTheErrorLinesOfTheRunsLogFile)
{
    TempDir dir;
    RRepository repo(ConnectNone);
    RExecutionLogModule module;
    {
        ScopedLogFile logFile(dir.Path() + "/clean.log");
        XLOG(3) << "all went well";
        LogCapture capture;
        module.EnumInstances("ExecutionErrorLog", repo);
        EXPECT_EQ(0, capture.Count("record execution error log"));
    }
    EXPECT_TRUE(ValuesOf(repo).empty());
    {
        ScopedLogFile logFile(dir.Path() + "/run.log");
        XLOG(1) << "first failure";
        XLOG(2) << "only a warning";
        XLOG(1) << "second failure";
        LogCapture capture;
        module.EnumInstances("ExecutionErrorLog", repo);
        const std::string steps[] = {"[repo] Enter EnumExecutionErrorLogInstances",
                                     "[repo] file name: " + dir.Path() + "/run.log",
                                     "[repo] record execution error log... ", "[repo] Exit EnumExecutionErrorLogInstances"};
        for (const std::string& line : steps) EXPECT_TRUE(capture.Has(3, line)) << line;
    }
    const Lines values = ValuesOf(repo);
    ASSERT_EQ(2u, values.size());
    EXPECT_NE(std::string::npos, values[0].find(" [ERROR] rexecutionlogmodule_test.cpp:"));
    EXPECT_EQ(" first failure", values[0].substr(values[0].size() - 14));
    EXPECT_EQ(" second failure", values[1].substr(values[1].size() - 15));

    RRepository none(ConnectNone);
    LogCapture capture;
    module.EnumInstances("ExecutionErrorLog", none);
    EXPECT_TRUE(capture.Has(3, "[repo] file name: "));
    EXPECT_TRUE(capture.Has(1, "[repo] Failed to open file "));
    EXPECT_TRUE(capture.Has(3, "[repo] Exit EnumExecutionErrorLogInstances"));
    EXPECT_TRUE(ValuesOf(none).empty());
}
