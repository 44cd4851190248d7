#include "fakebmc/loopbackbmc.h"
#include "kestro/repository/rrepository.h"
#include "support/commandrun.h"
#include "support/logcapture.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <fstream>
#include <future>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

// The fault table: broken BMCs and repository files that a run must survive in bounded time,
// with a log line naming the fault and the records the fault does not touch kept.

namespace {

using kestro::repository::RRepository;

const char* const kUser = "USERID";
const char* const kPassword = "S3cret-Pass";
const char* const kMemory = "/redfish/v1/Systems/1/Memory";
const std::string kFixture = std::string(KESTRO_TEST_FIXTURES) + "/bmc/full";
// Bounds a hang only: the limits of each row end it long before.
const double kCeilingSeconds = 30;

std::string FixtureDocument(const std::string& path)
{
    std::ifstream in((kFixture + path + "/index.json").c_str());
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

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

const BmcFault kBmcFaults[] = {
    {"503 for ever", [](LoopbackBmc& bmc) { bmc.ForceStatus(kMemory, 503); }, nullptr, 3, 0,
     "Systems/1/Memory?$expand=.($levels=1), error code is 503", "  Processor: 2\n", "  Memory:"},
    // Slowed, or libcurl's cap on the headers of a whole chain (300 kB) ends it first.
    {"redirect loop",
     [](LoopbackBmc& bmc) {
         bmc.AddRedirect(kMemory, 302, kMemory);
         bmc.SetLatency(20);
     },
     nullptr, 3, 0,
     "Time limit of 3 s per type reached while collecting Memory", "  FirmwareInventory: 8\n", "  Memory:"},
    {"accepts, never answers", [](LoopbackBmc& bmc) { bmc.StallAnswers(kMemory); }, nullptr, 3, 0,
     "Time limit of 3 s per type reached while collecting Memory; its records so far are kept", "  FirmwareInventory: 8\n", "  Memory:"},
    {"a byte a second", [](LoopbackBmc& bmc) { bmc.DripAnswers(kMemory, 1000); }, nullptr, 3, 0,
     "Time limit of 3 s per type reached while collecting Memory", "  FirmwareInventory: 8\n", "  Memory:"},
    {"run limit, no type limit", [](LoopbackBmc& bmc) { bmc.StallAnswers(kMemory); }, nullptr, 0, 3,
     "Time limit of 3 s per run reached while collecting FirmwareInventory", "  Processor: 2\n", "  Memory:"},
    {"body of 50 MB",
     [](LoopbackBmc& bmc) {
         std::string dimm = FixtureDocument(std::string(kMemory) + "/DIMM1");
         dimm.insert(dimm.find('{') + 1, "\"Padding\": \"" + std::string(50u << 20, 'x') + "\",");
         bmc.SetDocument(std::string(kMemory) + "/DIMM1", dimm);
     },
     nullptr, 3, 0, nullptr, "  Memory: 16\n", "Time limit"},
    {"truncated JSON", [](LoopbackBmc& bmc) { bmc.SetRawResponse(kMemory, JsonAnswer("{\"Members\": [{\"@odata")); },
     nullptr, 3, 0, "Failed to parse json with error is", "  FirmwareInventory: 8\n", "  Memory:"},
    {"invalid JSON", [](LoopbackBmc& bmc) { bmc.SetRawResponse(kMemory, JsonAnswer("{\"Members\": [nope]}")); },
     nullptr, 3, 0, "Failed to parse json with error is syntax error", "  FirmwareInventory: 8\n", "  Memory:"},
    {"JSON nested 10,000 deep",
     [](LoopbackBmc& bmc) {
         bmc.SetRawResponse(kMemory, JsonAnswer(std::string(10000, '[') + std::string(10000, ']')));
     },
     nullptr, 3, 0, "Failed to parse json with error is too deep", "  FirmwareInventory: 8\n", "  Memory:"},
    {"password changed mid-run", [](LoopbackBmc& bmc) { bmc.SetLatency(50); },
     [](LoopbackBmc& bmc) { bmc.SetPassword("Changed-Pass"); }, 3, 0, "error code is 401", "  Processor: 2\n",
     "  FirmwareInventory:"},
    {"certificate changed mid-run", [](LoopbackBmc& bmc) { bmc.SetLatency(50); },
     [](LoopbackBmc& bmc) { bmc.ReplaceCertificate(); }, 3, 0, "error code is -1", "  Processor: 2\n",
     "  FirmwareInventory:"},
};

struct Outcome {
    CommandRun run;
    double seconds;
    std::string log;
};

// The tool over the BMC with the row's limits in a home of its own, the BMC's first certificate
// trusted; the row's mid-run change is made once the run reaches the memory collection.
Outcome RunInventory(LoopbackBmc& bmc, const BmcFault& fault, const TempDir& dir)
{
    dir.Write("home/global.config", "KESTRO_TYPE_TIME_LIMIT=" + std::to_string(fault.typeLimit) +
                                        "\nKESTRO_RUN_TIME_LIMIT=" + std::to_string(fault.runLimit) + "\n");
    EXPECT_EQ(0, symlink(KESTRO_SOURCE_DATA, (dir.Path() + "/home/data").c_str()));
    const std::string command = "KESTRO_HOME='" + dir.Path() + "/home' '" KESTRO_TOOL_PATH "' inventory --redfish https://" +
                                kUser + ":" + kPassword + "@127.0.0.1:" + std::to_string(bmc.Port()) + " --ca-file " +
                                dir.Write("bmc.pem", bmc.CertificatePem()) + " --output " + dir.Path() +
                                "/out 2>&1 </dev/null";
    const std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
    std::future<CommandRun> run = std::async(std::launch::async, RunCommand, command);
    if (fault.midRun) {
        while (bmc.RequestCount(kMemory) == 0 && run.wait_for(std::chrono::milliseconds(2)) != std::future_status::ready)
            continue;
        fault.midRun(bmc);
    }
    Outcome outcome;
    outcome.run = run.get();
    outcome.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    outcome.log = dir.Read("out/kestro.log");
    return outcome;
}

}  // namespace

TEST(KestroFaultsTest, EachBrokenBmcEndsInTimeWithALogLineAndTheOtherRecordsKept)
{
    for (const BmcFault& fault : kBmcFaults) {
        LoopbackBmc::Options options;
        options.fixtureRoot = kFixture;
        options.https = true;
        options.user = kUser;
        options.password = kPassword;
        LoopbackBmc bmc(options);
        bmc.Start();
        fault.before(bmc);
        TempDir dir;
        const Outcome outcome = RunInventory(bmc, fault, dir);
        std::cout << "[ fault    ] " << fault.name << ": " << outcome.seconds << " s\n";
        EXPECT_LT(outcome.seconds, kCeilingSeconds) << fault.name;
        EXPECT_EQ(0, outcome.run.status) << fault.name << "\n" << outcome.run.output;
        if (fault.logLine) {
            EXPECT_NE(std::string::npos, outcome.log.find(fault.logLine)) << fault.name;
        }
        EXPECT_NE(std::string::npos, outcome.run.output.find(fault.kept)) << fault.name << "\n" << outcome.run.output;
        EXPECT_EQ(std::string::npos, (outcome.run.output + outcome.log).find(fault.lost)) << fault.name;
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
void WriteSparse(const std::string& path, off_t size)
{
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ASSERT_GE(fd, 0);
    const std::string tail = kTail;
    EXPECT_EQ(static_cast<ssize_t>(std::strlen(kHead)), pwrite(fd, kHead, std::strlen(kHead), 0));
    EXPECT_EQ(static_cast<ssize_t>(tail.size()),
              pwrite(fd, tail.data(), tail.size(), size - static_cast<off_t>(tail.size())));
    close(fd);
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
        const std::string path = dir.Path() + "/fault.xml";
        if (fault.text.empty())
            WriteSparse(path, fault.size);
        else
            dir.Write("fault.xml", fault.text);
        LogCapture capture;
        EXPECT_EQ(fault.read, repo.ReadXML(path, "")) << fault.name;
        EXPECT_EQ(1, capture.Count(fault.logLine)) << fault.name << "\n" << capture.Dump();
        EXPECT_EQ(std::vector<std::string>(1, fault.read ? "Memory" : "Processor"), repo.GetCollectedInstanceTypes())
            << fault.name;
    }
}
