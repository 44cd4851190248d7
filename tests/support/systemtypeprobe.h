#ifndef KESTRO_TESTS_SYSTEMTYPEPROBE_H
#define KESTRO_TESTS_SYSTEMTYPEPROBE_H

#include <string>

// The system type is detected once per process, so each detection under test runs in a child
// (EXPECT_EXIT) that calls this and exits with the value it got.
//
// Sets the test plug-in's answer (unless `answer` is null) and the file it counts its calls in,
// asks for the system type `queries` times, and writes to stderr the log records of the last
// query ("<level> <text>" lines, the loader's reason for a failure left out) and then
// "calls: <number of calls of the plug-in's entry>". Does not return.
[[noreturn]] void DetectSystemTypeAndExit(const char* answer, int queries);

#endif
