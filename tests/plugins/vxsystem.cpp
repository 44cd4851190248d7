// A stand-in for the optional system-type plug-in. Its answer comes from
// KESTRO_TEST_VXSYSTEM_ANSWER ("throw" makes it throw; unset or not a number: -1), and every
// call appends a line to the file named by KESTRO_TEST_VXSYSTEM_CALLS, so a test can count them.
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>

namespace {

void RecordCall()
{
    const char* callsFile = std::getenv("KESTRO_TEST_VXSYSTEM_CALLS");
    if (!callsFile) return;
    std::ofstream out(callsFile, std::ios::app);
    out << "CheckVexaServer\n";
}

int ChosenAnswer()
{
    const char* answer = std::getenv("KESTRO_TEST_VXSYSTEM_ANSWER");
    if (!answer) return -1;
    if (std::string(answer) == "throw") throw std::runtime_error("test plug-in told to throw");
    char* end = nullptr;
    const long value = std::strtol(answer, &end, 10);
    return end != answer && *end == '\0' ? static_cast<int>(value) : -1;
}

}  // namespace

extern "C" int CheckVexaServer()
{
    RecordCall();
    return ChosenAnswer();
}
