#include "xmodule/linux/commandoutput.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace XModule {
namespace Linux {

namespace {

const std::size_t kLargestOutput = 64u << 20;

struct Pipe {
    int fds[2] = {-1, -1};
    ~Pipe() { CloseBoth(); }
    bool Open() { return ::pipe2(fds, O_CLOEXEC) == 0; }
    void CloseWriteEnd() { CloseEnd(1); }
    void CloseBoth()
    {
        CloseEnd(0);
        CloseEnd(1);
    }
    void CloseEnd(int end)
    {
        if (fds[end] >= 0) ::close(fds[end]);
        fds[end] = -1;
    }
};

bool Spawn(const std::vector<std::string>& argv, Pipe& out, Pipe& err, pid_t& pid, CommandOutput& result)
{
    std::vector<char*> args;
    for (const std::string& arg : argv) args.push_back(const_cast<char*>(arg.c_str()));
    args.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, out.fds[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, err.fds[1], STDERR_FILENO);
    const int error = ::posix_spawnp(&pid, args[0], &actions, nullptr, args.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    result.startError = error;
    if (error != 0) result.why = std::strerror(error);
    return error == 0;
}

bool Stop(CommandOutput& result, const std::string& why)
{
    result.why = why;
    return false;
}

// Reads both pipes until the program closes them; false on expiry or too much output.
bool Drain(Pipe& out, Pipe& err, int timeoutSeconds, CommandOutput& result)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(timeoutSeconds);
    Pipe* pipes[] = {&out, &err};
    std::string* texts[] = {&result.out, &result.err};
    while (out.fds[0] >= 0 || err.fds[0] >= 0) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0) return Stop(result, "timed out after " + std::to_string(timeoutSeconds) + " s");
        pollfd polls[] = {{out.fds[0], POLLIN, 0}, {err.fds[0], POLLIN, 0}};
        if (::poll(polls, 2, static_cast<int>(left.count())) < 0 && errno != EINTR)
            return Stop(result, std::strerror(errno));
        for (int i = 0; i < 2; ++i) {
            if (polls[i].fd < 0 || polls[i].revents == 0) continue;
            char buffer[65536];
            const ssize_t got = ::read(polls[i].fd, buffer, sizeof buffer);
            if (got < 0 && errno == EINTR) continue;
            if (got <= 0) {
                pipes[i]->CloseBoth();
                continue;
            }
            texts[i]->append(buffer, static_cast<std::size_t>(got));
            if (result.out.size() + result.err.size() > kLargestOutput) return Stop(result, "too much output");
        }
    }
    return true;
}

}  // namespace

CommandOutput RunCommand(const std::vector<std::string>& argv, int timeoutSeconds)
{
    CommandOutput result;
    Pipe out;
    Pipe err;
    pid_t pid = 0;
    if (argv.empty()) return result;
    if (!out.Open() || !err.Open()) {
        result.why = std::strerror(errno);
        return result;
    }
    if (!Spawn(argv, out, err, pid, result)) return result;
    result.started = true;
    out.CloseWriteEnd();
    err.CloseWriteEnd();
    result.finished = Drain(out, err, timeoutSeconds, result);
    if (!result.finished) ::kill(pid, SIGKILL);
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    if (result.finished && WIFEXITED(status)) result.exitStatus = WEXITSTATUS(status);
    return result;
}

}  // namespace Linux
}  // namespace XModule
