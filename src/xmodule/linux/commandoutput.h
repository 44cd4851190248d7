#ifndef KESTRO_XMODULE_LINUX_COMMANDOUTPUT_H
#define KESTRO_XMODULE_LINUX_COMMANDOUTPUT_H

#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// What a program run by RunCommand gave back.
struct CommandOutput {
    bool started = false;     // false when it could not be run (not on PATH, not executable)
    bool finished = false;    // false when it was killed for running too long or writing too much
    int exitStatus = -1;      // its exit code when it finished, -1 otherwise
    std::string out;
    std::string err;
    int startError = 0;       // the errno of a failed start; ENOENT when it is not on PATH
    std::string why;          // why it did not start or finish
};

// Runs `argv` (argv[0] looked up on PATH) without a shell, reads what it writes, and kills it
// after `timeoutSeconds` or 64 MiB of output, so that a hung database lock cannot stall a run.
CommandOutput RunCommand(const std::vector<std::string>& argv, int timeoutSeconds);

}  // namespace Linux
}  // namespace XModule

#endif
