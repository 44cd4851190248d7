#include "support/minimalbmc.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <boost/archive/iterators/base64_from_binary.hpp>
#include <boost/archive/iterators/transform_width.hpp>
#include <boost/filesystem/operations.hpp>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <string>
#include <utility>
#include <vector>

// The built tool at its most talkative against a loopback BMC: no credential of the run may stand
// in anything it leaves behind or shows.

namespace {

const char* const kUser = kFullBmcUser;
// "USERID:" and the password make 21 bytes, a whole number of base64 groups.
const char kPassword[] = "Qx7-Unique-Pw9";
const char kToken[] = "tok-5f1e9b27c04d4a38";

std::string Base64(const std::string& bytes)
{
    typedef boost::archive::iterators::base64_from_binary<
        boost::archive::iterators::transform_width<std::string::const_iterator, 6, 8> >
        Encoder;
    return std::string(Encoder(bytes.begin()), Encoder(bytes.end()));
}

std::string Lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

// Every file the run left, by its path.
std::vector<std::pair<std::string, std::string> > FilesUnder(const std::string& folder)
{
    std::vector<std::pair<std::string, std::string> > files;
    for (boost::filesystem::recursive_directory_iterator entry(folder);
         entry != boost::filesystem::recursive_directory_iterator(); ++entry)
        if (boost::filesystem::is_regular_file(entry->status()))
            files.emplace_back(entry->path().string(), ReadFile(entry->path().string()));
    return files;
}

// Starts the tool without a shell, its output into `console`; the tool's argv is then the only
// place the password stands.
pid_t StartTool(const std::string& url, const std::string& output, const std::string& console)
{
    const char* const argv[] = {KESTRO_TOOL_PATH, "inventory", "--redfish", url.c_str(), "--log-level", "4",
                                "--output", output.c_str(), nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, console.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
    pid_t tool = 0;
    const int failed = posix_spawn(&tool, KESTRO_TOOL_PATH, &actions, nullptr, const_cast<char* const*>(argv), environ);
    posix_spawn_file_actions_destroy(&actions);
    return failed == 0 ? tool : -1;
}

}  // namespace

TEST(KestroSecretsTest, NoCredentialInTheLogTheFilesTheSiteTheConsoleOrTheProcessList)
{
    LoopbackBmc bmc(FullBmcOptions(kPassword));
    // Handed out with every answer, as a BMC hands out its session token.
    bmc.AddResponseHeader("X-Auth-Token", kToken);
    // Slow answers keep the tool alive while its command line is read.
    bmc.SetLatency(300);
    bmc.Start();
    TempDir dir;
    const std::string url = FullBmcUrl(bmc, kPassword);

    const pid_t tool = StartTool(url, dir.Path() + "/out", dir.Path() + "/console.txt");
    ASSERT_GT(tool, 0);
    while (bmc.RequestCount() == 0) usleep(20000);
    std::vector<std::pair<std::string, std::string> > outputs(
        1, std::make_pair("/proc/<tool>/cmdline", ReadFile("/proc/" + std::to_string(tool) + "/cmdline")));
    bmc.SetLatency(0);
    int status = 0;
    waitpid(tool, &status, 0);
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << ReadFile(dir.Path() + "/console.txt");
    // The listing shows the password masked, one '*' a character.
    EXPECT_NE(std::string::npos, outputs.front().second.find(std::string(kUser) + ":" +
                                                              std::string(sizeof kPassword - 1, '*') + "@127.0.0.1"))
        << outputs.front().second;
    const std::vector<std::pair<std::string, std::string> > files = FilesUnder(dir.Path());
    outputs.insert(outputs.end(), files.begin(), files.end());
    ASSERT_GT(outputs.size(), 10u) << "the log, the console, the XML file and the site's pages";
    ASSERT_NE(std::string::npos, ReadFile(dir.Path() + "/out/kestro.log").find("[DEBUG]"));

    const std::pair<const char*, std::string> secrets[] = {
        {"password", kPassword},
        {"basic credentials", Base64(std::string(kUser) + ":" + kPassword)},
        {"session token", kToken},
        {"authorization header", "Authorization:"},
    };
    // Without regard to case, so that a header or a token in another spelling is caught too.
    for (const auto& output : outputs)
        for (const auto& secret : secrets)
            EXPECT_EQ(std::string::npos, Lower(output.second).find(Lower(secret.second)))
                << secret.first << " in " << output.first;
}
