#include "kestro/xmodule/log.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <boost/regex.hpp>

#include <fstream>
#include <thread>
#include <vector>

TEST(LogTest, WritesOneFormattedLinePerRecordAndHonoursTheLevel)
{
    TempDir dir;
    const std::string file = dir.Path() + "/run.log";
    ASSERT_TRUE(XModule::SetLogFile(file));
    EXPECT_EQ(file, XModule::GetLogFileName());
    XModule::SetLogLevel(XModule::LOG_INFO);
    XLOG(1) << "broken " << 42;
    XLOG(4) << "dropped trace";
    XLOG(3) << "two\nlines";
    XModule::SetLogFile("");
    EXPECT_EQ("", XModule::GetLogFileName());

    const std::string text = dir.Read("run.log");
    const boost::regex format(
        "\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3} \\[ERROR\\] log_test\\.cpp:\\d+ broken 42\n"
        "\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3} \\[INFO\\] log_test\\.cpp:\\d+ two\nlines\n");
    EXPECT_TRUE(boost::regex_match(text, format)) << text;
    EXPECT_FALSE(XModule::SetLogFile(dir.Path() + "/missing/folder/run.log"));
}

TEST(LogTest, RecordsFromManyThreadsNeverInterleave)
{
    TempDir dir;
    ASSERT_TRUE(XModule::SetLogFile(dir.Path() + "/threads.log"));
    XModule::SetLogLevel(XModule::LOG_DEBUG);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([t] {
            for (int i = 0; i < 500; ++i) XLOG(4) << "thread " << t << " record " << i << " end";
        });
    for (size_t t = 0; t < threads.size(); ++t) threads[t].join();
    XModule::SetLogFile("");
    XModule::SetLogLevel(XModule::LOG_INFO);

    std::ifstream in((dir.Path() + "/threads.log").c_str());
    const boost::regex line(".*\\[DEBUG\\] log_test\\.cpp:\\d+ thread \\d record \\d+ end");
    std::string text;
    int lines = 0;
    while (std::getline(in, text)) {
        ++lines;
        EXPECT_TRUE(boost::regex_match(text, line)) << text;
    }
    EXPECT_EQ(2000, lines);
}
