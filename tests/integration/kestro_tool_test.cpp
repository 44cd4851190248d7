#include "support/commandrun.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

// The built tool, run as a user runs it, on a fixture host root.

namespace {

CommandRun RunTool(const std::string& arguments, const std::string& root)
{
    return RunCommand("KESTRO_ROOT='" + root + "' '" KESTRO_TOOL_PATH "' " + arguments + " 2>&1");
}

bool Exists(const std::string& path) { return std::ifstream(path.c_str()).good(); }

std::string Replace(std::string text, const std::string& from, const std::string& to)
{
    const std::string::size_type at = text.find(from);
    if (at != std::string::npos) text.replace(at, from.size(), to);
    return text;
}

}  // namespace

TEST(KestroToolTest, InventoryReportAndCompareWorkTogether)
{
    TempDir dir;
    dir.Write("root/etc/os-release", "ID=rhel\n");
    const std::string root = dir.Path() + "/root";

    const CommandRun inventory = RunTool("inventory --output " + dir.Path() + "/first", root);
    ASSERT_EQ(0, inventory.status) << inventory.output;
    const std::string first = dir.Path() + "/first/inventory.xml";
    for (const char* file : {"/first/inventory.xml", "/first/index.html", "/first/navigator.html",
                             "/first/header.html", "/first/data/repository.css", "/first/kestro.log"})
        EXPECT_TRUE(Exists(dir.Path() + file)) << file;
    EXPECT_NE(std::string::npos, dir.Read("first/inventory.xml").find("<mode>rhel</mode>"));

    const CommandRun report = RunTool("report " + first + " --output " + dir.Path() + "/report", root);
    ASSERT_EQ(0, report.status) << report.output;
    EXPECT_EQ(dir.Read("first/navigator.html"), dir.Read("report/navigator.html"));

    const std::string second =
        dir.Write("second.xml", Replace(dir.Read("first/inventory.xml"), "<value>kestro</value>", "<value>other</value>"));
    const CommandRun compare = RunTool("compare " + first + " " + second + " --output " + dir.Path() + "/compare", root);
    ASSERT_EQ(0, compare.status) << compare.output;
    EXPECT_NE(std::string::npos, dir.Read("compare/compare.xml").find("<value>kestro|||other</value>"));
}

TEST(KestroToolTest, FailuresExitWithTheirResultCodes)
{
    TempDir dir;
    const std::string root = dir.Path();
    const std::string good = dir.Write("good.xml",
                                       "<kestro><repository><mode>rhel</mode><buildversion>b</buildversion>"
                                       "</repository><SCAN/></kestro>");
    const std::string other = dir.Write("other.xml", Replace(dir.Read("good.xml"), "rhel", "sles"));
    const std::string broken = dir.Write("broken.xml", "<kestro><repository>");
    const std::string out = " --output " + dir.Path() + "/out";
    const std::string never = " --output " + dir.Path() + "/never";
    const struct {
        std::string arguments;
        int status;
        const char* words;
    } cases[] = {
        {"report " + dir.Path() + "/missing.xml" + out, 6, "File doesn't exist."},
        {"report " + broken + out, 7, "Invalid file."},
        {"compare " + good + " " + other + out, 88, "Incompatible compare/query/scan xml result."},
        {"compare " + good + " " + broken + out, 7, "Invalid file."},
        {"report " + good + " --output /dev/null/x", 8, "Failed to create directory."},
        {"report " + good, 5, "Invalid parameter."},
        {"frobnicate", 4, "Invalid command."},
        {"inventory --bogus", 5, "Invalid parameter."},
        {"inventory --redfish ftp://admin:pw@bmc" + never, 5, "http:// or https://"},
        {"inventory --redfish https://bmc" + never, 5, "names no user"},
        {"inventory --redfish https://admin:pw@bmc/redfish/v1" + never, 5, "nothing after it"},
        {"inventory --redfish https://admin:pw@bmc --case rhel" + never, 5, "no Redfish case"},
        {"inventory --redfish https://admin:pw@bmc --ca-file " + dir.Path() + "/none.pem" + never, 6, "none.pem"},
        {"inventory --case cfc_oob" + never, 5, "--case goes with --redfish"},
        {"inventory --ca-file " + good + never, 5, "--ca-file goes with --redfish or --bmc"},
        {"inventory --redfish https://admin:pw@bmc --bmc https://admin:pw@bmc" + never, 5, "not --redfish"},
        {"inventory --bmc https://bmc" + never, 5, "names no user"},
        {"inventory --group no_such_group" + out, 5, "no group 'no_such_group' in this case's report category; groups: "
                                                     "system_overview, "},
        {"inventory" + never + " --redfish", 5, "needs a value"},
    };
    for (const auto& c : cases) {
        const CommandRun run = RunTool(c.arguments, root);
        EXPECT_EQ(c.status, run.status) << c.arguments << "\n" << run.output;
        EXPECT_NE(std::string::npos, run.output.find(c.words)) << run.output;
    }
    // A failure found in the arguments leaves no output folder behind.
    EXPECT_FALSE(Exists(dir.Path() + "/never/kestro.log"));
    EXPECT_EQ(0, RunTool("--version", root).status);
    EXPECT_EQ(0, RunTool("--help", root).status);
}

// An installed tree moved to another prefix: the tool finds its data under ../share/kestro.
TEST(KestroToolTest, AToolMovedWithItsShareFolderFindsItsData)
{
    TempDir dir;
    dir.Write("root/etc/os-release", "ID=ubuntu\n");
    const std::string prefix = dir.Path() + "/opt/kestro";
    const std::string toolFolder = std::string(KESTRO_TOOL_PATH).substr(0, std::string(KESTRO_TOOL_PATH).rfind('/'));
    ASSERT_EQ(0, RunCommand("mkdir -p '" + prefix + "/bin' '" + prefix + "/share/kestro' && cp '" KESTRO_TOOL_PATH "' '" +
                            prefix + "/bin/' && cp -r '" + toolFolder + "/data' '" + prefix + "/share/kestro/'")
                     .status);

    const CommandRun run = RunCommand("env -u KESTRO_HOME KESTRO_ROOT='" + dir.Path() + "/root' '" + prefix +
                                      "/bin/kestro' inventory --output '" + dir.Path() + "/out' 2>&1");
    EXPECT_EQ(0, run.status) << run.output;
    EXPECT_TRUE(Exists(dir.Path() + "/out/data/repository.css"));
}
