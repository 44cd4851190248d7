#include "support/systemtypeprobe.h"

#include "kestro/systemtype/systemtype.h"
#include "support/logcapture.h"
#include "support/tempdir.h"

#include <boost/algorithm/string/predicate.hpp>

#include <cstdlib>
#include <iostream>
#include <memory>

namespace {

const char kAnswerVariable[] = "KESTRO_TEST_VXSYSTEM_ANSWER";
const char kCallsVariable[] = "KESTRO_TEST_VXSYSTEM_CALLS";

int CountLines(const std::string& text)
{
    int lines = 0;
    for (size_t i = 0; i < text.size(); ++i)
        if (text[i] == '\n') ++lines;
    return lines;
}

// The loader's reason for a failed load names paths that differ between builds.
bool IsLoaderReason(const std::string& text)
{
    return boost::algorithm::starts_with(text, "[repo] dlopen: ");
}

int Detect(const char* answer, int queries, std::string& report)
{
    TempDir scratch;
    std::unique_ptr<ScopedEnv> answerEnv(answer ? new ScopedEnv(kAnswerVariable, answer) : nullptr);
    ScopedEnv callsEnv(kCallsVariable, scratch.Path() + "/calls");
    LogCapture log;
    int value = 0;
    for (int i = 0; i < queries; ++i) {
        log.Clear();
        value = kestro::SystemType::GetInstance()->GetSystemType();
    }
    for (size_t i = 0; i < log.Records().size(); ++i)
        if (!IsLoaderReason(log.Records()[i].second))
            report += std::to_string(log.Records()[i].first) + " " + log.Records()[i].second + "\n";
    report += "calls: " + std::to_string(CountLines(scratch.Read("calls"))) + "\n";
    return value;
}

}  // namespace

void DetectSystemTypeAndExit(const char* answer, int queries)
{
    std::string report;
    const int value = Detect(answer, queries, report);
    std::cerr << report << std::flush;
    std::exit(value);
}
