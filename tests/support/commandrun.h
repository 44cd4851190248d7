#ifndef KESTRO_TESTS_COMMANDRUN_H
#define KESTRO_TESTS_COMMANDRUN_H

#include <string>

// What a shell command printed on stdout (and stderr where it redirects it) and its exit status,
// -1 when it did not exit normally.
struct CommandRun {
    int status;
    std::string output;
};

CommandRun RunCommand(const std::string& command);

#endif
