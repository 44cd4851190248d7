#include "support/commandrun.h"

#include <sys/wait.h>

#include <cstdio>

CommandRun RunCommand(const std::string& command)
{
    CommandRun run{-1, std::string()};
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) return run;
    char buffer[4096];
    std::size_t got;
    while ((got = std::fread(buffer, 1, sizeof buffer, pipe)) > 0) run.output.append(buffer, got);
    const int raw = pclose(pipe);
    run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    return run;
}
