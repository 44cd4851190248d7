#include "kestro/repository/rrepository.h"
#include "support/commandrun.h"
#include "support/logcapture.h"
#include "support/minimalbmc.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <boost/filesystem/operations.hpp>

#include <unistd.h>

#include <chrono>
#include <fstream>
#include <future>
#include <iostream>
#include <string>
#include <vector>

// The fault table: broken BMCs and repository files that a run must survive in bounded time,
// with a log line naming the fault and the records the fault does not touch kept.

namespace {

using kestro::repository::RRepository;

const char* const kPassword = "S3cret-Pass";
const std::string kMemory = "/redfish/v1/Systems/1/Memory";

// A whole HTTP answer around `body`, for the rows that break the JSON and not the transfer.
std::string JsonAnswer(const std::string& body)
{
    return "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: " + std::to_string(body.size()) +
           "\r\nConnection: close\r\n\r\n" + body;
}

struct BmcFault {
    const char* name;
    void (*before)(LoopbackBmc& bmc);
    void (*midRun)(LoopbackBmc& bmc);  // once the memory collection is asked for; may be null
    int typeLimit;
    int runLimit;
    const char* logLine;  // in kestro.log; null where nothing fails
    const char* kept;     // in the tool's summary
    const char* lost;     // not in it
};

const char* const kFirmware = "  FirmwareInventory: 8\n";
const char* const kProcessors = "  Processor: 2\n";

const BmcFault kBmcFaults[] = {
    {"503 for ever", [](LoopbackBmc& bmc) { bmc.ForceStatus(kMemory, 503); }, nullptr, 3, 0,
     "Systems/1/Memory?$expand=.($levels=1), error code is 503", kProcessors, "  Memory:"},
    // Slowed, or libcurl's cap on the headers of a whole chain (300 kB) ends it first.
    {"redirect loop", [](LoopbackBmc& bmc) { bmc.AddRedirect(kMemory, 302, kMemory), bmc.SetLatency(20); }, nullptr,
     3, 0, "Time limit of 3 s per type reached while collecting Memory", kFirmware, "  Memory:"},
    {"accepts, never answers", [](LoopbackBmc& bmc) { bmc.StallAnswers(kMemory); }, nullptr, 3, 0,
     "Time limit of 3 s per type reached while collecting Memory; its records so far are kept", kFirmware, "  Memory:"},
    {"a byte a second", [](LoopbackBmc& bmc) { bmc.DripAnswers(kMemory, 1000); }, nullptr, 3, 0,
     "Time limit of 3 s per type reached while collecting Memory", kFirmware, "  Memory:"},
    {"run limit, no type limit", [](LoopbackBmc& bmc) { bmc.StallAnswers(kMemory); }, nullptr, 0, 3,
     "Time limit of 3 s per run reached while collecting FirmwareInventory", kProcessors, "  Memory:"},
    {"body of 50 MB",
     [](LoopbackBmc& bmc) {
         std::string dimm = FullBmcDocument(kMemory + "/DIMM1");
         dimm.insert(dimm.find('{') + 1, "\"Padding\": \"" + std::string(50u << 20, 'x') + "\",");
         bmc.SetDocument(kMemory + "/DIMM1", dimm);
     },
     nullptr, 20, 0, nullptr, "  Memory: 16\n", "Time limit"},
    {"truncated JSON", [](LoopbackBmc& bmc) { bmc.SetRawResponse(kMemory, JsonAnswer("{\"Members\": [{\"@odata")); },
     nullptr, 3, 0, "Failed to parse json with error is", kFirmware, "  Memory:"},
    {"invalid JSON", [](LoopbackBmc& bmc) { bmc.SetRawResponse(kMemory, JsonAnswer("{\"Members\": [nope]}")); },
     nullptr, 3, 0, "Failed to parse json with error is syntax error", kFirmware, "  Memory:"},
    {"JSON nested 10,000 deep",
     [](LoopbackBmc& bmc) { bmc.SetRawResponse(kMemory, JsonAnswer(std::string(10000, '[') + std::string(10000, ']'))); },
     nullptr, 3, 0, "Failed to parse json with error is too deep", kFirmware, "  Memory:"},
    // The firmware is read, ahead of its type, before the memory; the sensors after it.
    {"password changed mid-run", [](LoopbackBmc& bmc) { bmc.SetLatency(50); },
     [](LoopbackBmc& bmc) { bmc.SetPassword("Changed-Pass"); }, 3, 0, "error code is 401", kFirmware,
     "  NumericSensor:"},
    {"certificate changed mid-run", [](LoopbackBmc& bmc) { bmc.SetLatency(50); },
     [](LoopbackBmc& bmc) { bmc.ReplaceCertificate(); }, 3, 0, "error code is -1", kFirmware, "  NumericSensor:"},
};

}  // namespace

// Each row runs the tool with its limits in a home of its own, the BMC's first certificate trusted;
// its mid-run change is made once the run reaches the memory collection. 30 s bounds a hang only.
TEST(KestroFaultsTest, EachBrokenBmcEndsInTimeWithALogLineAndTheOtherRecordsKept)
{
    for (const BmcFault& fault : kBmcFaults) {
        LoopbackBmc bmc(FullBmcOptions(kPassword));
        bmc.Start();
        fault.before(bmc);
        TempDir dir;
        dir.Write("home/global.config", "KESTRO_TYPE_TIME_LIMIT=" + std::to_string(fault.typeLimit) +
                                            "\nKESTRO_RUN_TIME_LIMIT=" + std::to_string(fault.runLimit) + "\n");
        EXPECT_EQ(0, symlink(KESTRO_SOURCE_DATA, (dir.Path() + "/home/data").c_str()));
        const std::string command = "KESTRO_HOME='" + dir.Path() + "/home' '" KESTRO_TOOL_PATH "' inventory --redfish " +
                                    FullBmcUrl(bmc, kPassword) + " --ca-file " + dir.Write("bmc.pem", bmc.CertificatePem()) +
                                    " --output " + dir.Path() + "/out 2>&1 </dev/null";
        const auto start = std::chrono::steady_clock::now();
        std::future<CommandRun> running = std::async(std::launch::async, RunCommand, command);
        while (fault.midRun && bmc.RequestCount(kMemory) == 0 &&
               running.wait_for(std::chrono::milliseconds(2)) != std::future_status::ready)
            continue;
        if (fault.midRun) fault.midRun(bmc);
        const CommandRun run = running.get();
        const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        const std::string log = dir.Read("out/kestro.log");
        std::cout << "[ fault    ] " << fault.name << ": " << seconds << " s\n";
        EXPECT_LT(seconds, 30) << fault.name;
        EXPECT_EQ(0, run.status) << fault.name << "\n" << run.output;
        EXPECT_TRUE(!fault.logLine || log.find(fault.logLine) != std::string::npos) << fault.name;
        EXPECT_NE(std::string::npos, run.output.find(fault.kept)) << fault.name << "\n" << run.output;
        EXPECT_EQ(std::string::npos, (run.output + log).find(fault.lost)) << fault.name;
    }
}

// The first check of a BMC, before any type runs, ends at the time limit of one type too.
TEST(KestroFaultsTest, AServiceRootThatNeverAnswersEndsTheFirstCheckAtTheTypeLimit)
{
    for (const char* option : {"--redfish", "--bmc"}) {
        LoopbackBmc bmc(FullBmcOptions(kPassword));
        bmc.Start();
        bmc.StallAnswers("/redfish/v1");
        TempDir dir;
        dir.Write("home/global.config", "KESTRO_TYPE_TIME_LIMIT=2\n");
        EXPECT_EQ(0, symlink(KESTRO_SOURCE_DATA, (dir.Path() + "/home/data").c_str()));
        const auto start = std::chrono::steady_clock::now();
        const CommandRun run = RunCommand("KESTRO_HOME='" + dir.Path() + "/home' '" KESTRO_TOOL_PATH "' inventory " +
                                          option + " " + FullBmcUrl(bmc, kPassword) + " --output " + dir.Path() +
                                          "/out 2>&1 </dev/null");
        EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), 30) << option;
        EXPECT_EQ(13, run.status) << option << "\n" << run.output;
    }
}

namespace {

const char* const kGoodFile = "<kestro><repository><mode>cfc_oob</mode><Processor><display>cpu0</display>"
                              "</Processor></repository></kestro>";
const char* const kHead = "<kestro><repository><mode>cfc_oob</mode><Memory><display>";
const char* const kTail = "</display></Memory></repository></kestro>";

std::string Nested(int levels)
{
    std::string text = std::string(kHead) + "</display>";
    for (int i = 0; i < levels; ++i) text += "<a>";
    for (int i = 0; i < levels; ++i) text += "</a>";
    return text + "</Memory></repository></kestro>";
}

// A file of `size` bytes, a value between head and tail; the gap is a hole, so nothing is written.
void WriteSparse(const TempDir& dir, off_t size)
{
    const std::string path = dir.Write("fault.xml", kHead);
    boost::filesystem::resize_file(path, size - std::string(kTail).size());
    std::ofstream(path.c_str(), std::ios::app) << kTail;
}

struct FileFault {
    const char* name;
    std::string text;  // the file; empty: a sparse file of `size` bytes
    off_t size;
    bool read;  // read in place of the store; else the store keeps its records
    const char* logLine;
};

}  // namespace

TEST(KestroFaultsTest, EachBrokenRepositoryFileIsRefusedOrReadWithALogLineAndNoCrash)
{
    // Larger files than the reader's bound (256 MB) are refused before they are read; a value
    // of 16 MB below it is read whole.
    const FileFault faults[] = {
        {"nested 100,000 deep", Nested(100000), 0, false, "elements nested more than 256 levels deep"},
        {"a 1 GB value", "", off_t(1) << 30, false, "1073741824 bytes, more than the 268435456"},
        {"a 16 MB value", kHead + std::string(16u << 20, 'x') + kTail, 0, true, "kestro is the first node"},
        {"invalid UTF-8", std::string(kHead) + "DIMM \xff\xfe" + kTail, 0, true,
         "holds bytes that are not UTF-8, the first at offset 62"},
        {"missing root", "<?xml version=\"1.0\"?>\n<!-- no element -->\n", 0, false, "no element in file"},
    };
    for (const FileFault& fault : faults) {
        TempDir dir;
        RRepository repo(kestro::repository::ConnectNone);
        ASSERT_TRUE(repo.ReadXML(dir.Write("good.xml", kGoodFile), ""));
        if (fault.text.empty())
            WriteSparse(dir, fault.size);
        else
            dir.Write("fault.xml", fault.text);
        LogCapture capture;
        EXPECT_EQ(fault.read, repo.ReadXML(dir.Path() + "/fault.xml", "")) << fault.name;
        EXPECT_EQ(1, capture.Count(fault.logLine)) << fault.name << "\n" << capture.Dump();
        EXPECT_EQ(std::vector<std::string>(1, fault.read ? "Memory" : "Processor"), repo.GetCollectedInstanceTypes())
            << fault.name;
    }
}
