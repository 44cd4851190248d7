#include "support/commandrun.h"
#include "support/smallfilesystem.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <boost/filesystem/operations.hpp>

#include <string>

// The built tool when a file of its output cannot be written: what was gathered still reaches
// the user, and the exit status tells what failed.

namespace {

CommandRun RunTool(const std::string& arguments, const std::string& root)
{
    return RunCommand("KESTRO_ROOT='" + root + "' '" KESTRO_TOOL_PATH "' " + arguments + " 2>&1");
}

const char kInventory[] =
    "<kestro><repository><mode>rhel</mode><buildversion>b</buildversion>"
    "<DataSource><display>Data source</display><Name><display>Name</display><value>kestro</value></Name>"
    "</DataSource></repository><SCAN/></kestro>";

}  // namespace

TEST(KestroWriteFailureTest, TheSiteIsWrittenWhenOnlyTheXmlFileFails)
{
    TempDir dir;
    dir.Write("root/etc/os-release", "ID=rhel\n");
    const std::string root = dir.Path() + "/root";
    const std::string file = dir.Write("one.xml", kInventory);
    const struct {
        std::string command;
        const char* xml;
    } cases[] = {
        {"inventory", "inventory.xml"},
        {"compare " + file + " " + file, "compare.xml"},
    };
    for (const auto& c : cases) {
        const std::string out = dir.Path() + "/" + c.xml + "-run";
        boost::filesystem::create_directories(out + "/" + c.xml);
        const CommandRun run = RunTool(c.command + " --output " + out, root);
        EXPECT_EQ(11, run.status) << run.output;
        EXPECT_NE(std::string::npos, run.output.find("Failed to write file. " + out + "/" + c.xml)) << run.output;
        EXPECT_NE(std::string::npos, run.output.find("only the report site was written to " + out)) << run.output;
        EXPECT_TRUE(boost::filesystem::is_regular_file(out + "/navigator.html")) << c.command;
        EXPECT_NE(std::string::npos, dir.Read(std::string(c.xml) + "-run/kestro.log").find("Failed to write XML: "))
            << c.command;
    }
}

TEST(KestroWriteFailureTest, AFullDiskFailsTheRunAndKeepsThePreviousSite)
{
    TempDir dir;
    const std::string file = dir.Write("one.xml", kInventory);
    SmallFileSystem small("512k");
    if (!small.Mounted()) GTEST_SKIP() << "mounting a tmpfs needs root";
    ASSERT_EQ(0, RunTool("report " + file + " --output " + small.Path(), dir.Path()).status);
    const std::string navigator = ReadFile(small.Path() + "/navigator.html");
    ASSERT_NE(std::string::npos, navigator.find("</html>"));

    small.Fill();
    const CommandRun full = RunTool("report " + file + " --output " + small.Path(), dir.Path());
    EXPECT_EQ(11, full.status) << full.output;
    EXPECT_NE(std::string::npos, full.output.find("Failed to write file. report site in " + small.Path()))
        << full.output;
    EXPECT_EQ(navigator, ReadFile(small.Path() + "/navigator.html"));
}
