#include "kestro/rest/redfishclient.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <sstream>

#include <gtest/gtest.h>

#include "kestro/xmodule/log.h"
#include "rest/redfishsettings.h"
#include "support/logcapture.h"
#include "support/minimalbmc.h"
#include "support/tempdir.h"

using Rest::RedfishClient;
using Rest::RestResult;

namespace {

const char* const REFUSAL_LINE = "[repo] curlCode: 0 | httpCode: 503 | body: {\"error\":\"service is starting\"}";

long long MillisecondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start).count();
}

// Runs in a child process, so that the settings are read there for the first time: a client
// facing a BMC that answers 503 for ever, then a 600 s time-out against 2.5 s answers.
void ReportConfiguredClient()
{
    LoopbackBmc bmc(MinimalBmcOptions());
    bmc.Start();
    bmc.FailFirst(1000);
    RedfishClient client;
    const std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
    const RestResult starting = client.Get(bmc.Url("/redfish/v1"));
    const bool paused = MillisecondsSince(start) >= 5000;
    const int tries = bmc.RequestCount();
    bmc.FailFirst(0);
    bmc.SetLatency(2500);
    client.SetTimeout(600);
    const RestResult slow = client.Get(bmc.Url("/redfish/v1"));
    bmc.Stop();
    std::fprintf(stderr, "%d after %d tries%s; curlCode %d\n", starting.httpCode, tries, paused ? ", paused" : "",
                 slow.curlCode);
    std::exit(0);
}

// Also in a child process: a time-out of `seconds` against answers that take 1.5 s.
void ReportTimeout(int seconds)
{
    LoopbackBmc bmc(MinimalBmcOptions());
    bmc.Start();
    bmc.SetLatency(1500);
    RedfishClient client;
    client.SetTimeout(seconds);
    const int curlCode = client.Get(bmc.Url("/redfish/v1")).curlCode;
    // exit() skips the destructor: the server's threads are ended first.
    bmc.Stop();
    std::fprintf(stderr, "curlCode %d\n", curlCode);
    std::exit(0);
}

class RedfishClientTest : public ::testing::Test {
protected:
    RedfishClientTest() : bmc(MinimalBmcOptions()) { bmc.Start(); }

    LoopbackBmc bmc;
    RedfishClient client;
    LogCapture log;
};

}  // namespace

// Only a 503 ("still starting") is tried again, after a pause, until the wait is over; each 503
// answer is logged. A retry of another status would wait a minute, past the test's deadline.
TEST_F(RedfishClientTest, OnlyA503IsTriedAgainAfterAPauseUntilTheWaitIsOver)
{
    const struct {
        int failures;
        int status;
        std::uint64_t waitMs;
        std::uint64_t intervalMs;
        int answer;
        int minTries;  // a try may start just before the wait is over
        int maxTries;
    } cases[] = {
        {1, 503, 60000, 200, 200, 2, 2},      {1000, 503, 300, 50, 503, 3, 1000},
        {5, 502, 60000, 60000, 502, 1, 1},    {5, 500, 60000, 60000, 500, 1, 1},
        {5, 401, 60000, 60000, 401, 1, 1},
    };
    const std::string url = bmc.Url("/redfish/v1/Systems/1");
    for (const auto& c : cases) {
        bmc.ClearRequests();
        log.Clear();
        bmc.FailFirst(c.failures, c.status);
        client.SetRetryTiming(c.waitMs, c.intervalMs);
        const std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
        const RestResult result = client.Get(url);
        const int tries = bmc.RequestCount();
        EXPECT_EQ(0, result.curlCode);
        EXPECT_EQ(c.answer, result.httpCode) << c.status;
        EXPECT_GE(tries, c.minTries) << c.status;
        EXPECT_LE(tries, c.maxTries) << c.status;
        EXPECT_GE(MillisecondsSince(start), static_cast<long long>((tries - 1) * c.intervalMs)) << c.status;
        EXPECT_EQ(c.status == 503 ? std::min(tries, c.failures) : 0, log.Count("curlCode: ")) << c.status;
        if (c.answer != 200) continue;
        EXPECT_NE(std::string::npos, result.body.find("SN-0001"));
        EXPECT_TRUE(log.Has(XModule::LOG_DEBUG, "[repo] Redfish GET action on URL: " + url)) << log.Dump();
        EXPECT_TRUE(log.Has(XModule::LOG_DEBUG, REFUSAL_LINE)) << log.Dump();
    }

    bmc.Stop();
    const RestResult refused = client.Get(url);
    EXPECT_EQ(7, refused.curlCode);
    EXPECT_EQ(-1, refused.httpCode);
    EXPECT_EQ(0, log.Count("curlCode: "));
}

TEST_F(RedfishClientTest, EveryVerbIsRetriedWithTheSameArgumentsButRequestIsNot)
{
    client.SetRetryTiming(60000, 10);
    const std::string url = bmc.Url("/redfish/v1/Systems/1");
    const std::string big(100000, 'z');
    // A stream is sent again from its start.
    const struct {
        const char* method;
        std::function<RestResult()> call;
        std::string body;
    } verbs[] = {
        {"PUT", [&] { return client.Put(url, "{\"AssetTag\":\"A\"}"); }, "{\"AssetTag\":\"A\"}"},
        {"PATCH", [&] { std::stringstream s(big); return client.PatchStream(url, s); }, big},
        {"POST", [&] { std::stringstream s(big); return client.PostStream(url, s); }, big},
        {"POST", [&] { return client.Post(url, "go"); }, "go"},
        {"DELETE", [&] { return client.Delete(bmc.Url("/redfish/v1/Systems/3")); }, ""},
        {"HEAD", [&] { return client.Head(url); }, ""},
        {"OPTIONS", [&] { return client.Options(url); }, ""},
    };
    for (const auto& verb : verbs) {
        bmc.ClearRequests();
        bmc.FailFirst(2);
        EXPECT_EQ(verb.method[0] == 'D' ? 204 : 200, verb.call().httpCode) << verb.method;
        const std::vector<LoopbackBmc::Request> seen = bmc.Requests();
        ASSERT_EQ(3u, seen.size()) << verb.method;
        for (const LoopbackBmc::Request& request : seen) {
            EXPECT_EQ(verb.method, request.method);
            EXPECT_TRUE(request.body == verb.body) << verb.method << " sent " << request.body.size() << " bytes";
        }
    }
    // Request() is passed on as it is, without a retry.
    bmc.ClearRequests();
    bmc.FailFirst(3);
    EXPECT_EQ(503, client.Request(Rest::RequestGet, url, "").httpCode);
    EXPECT_EQ(1, bmc.RequestCount());
}

// Credentials, redirects, trust and the CA file reach it through the session tests.
TEST_F(RedfishClientTest, SettersReachTheInnerClient)
{
    Rest::HeaderMap headers;
    headers["Accept"] = "application/json";
    client.SetHeaders(headers);
    client.SetHeader("X-Trace", "7");
    EXPECT_EQ(2u, client.GetHeaders().size());
    EXPECT_EQ(0, client.EnableGzip());
    const RestResult result = client.Get(bmc.Url("/redfish/v1"));
    EXPECT_EQ(200, result.httpCode);
    EXPECT_EQ("gzip", result.headers.at("Content-Encoding"));
    EXPECT_EQ("7", bmc.LastRequest().headers["x-trace"]);
    EXPECT_EQ("application/json", bmc.LastRequest().headers["accept"]);
    EXPECT_EQ(-2, client.ClassifyResult([] { RestResult r; r.curlCode = 60; return r; }()));

    client.SetSuppressExpect(true);
    EXPECT_EQ(200, client.Post(bmc.Url("/upload"), std::string(2 * 1024 * 1024, 'x')).httpCode);
    EXPECT_EQ(0u, bmc.LastRequest().headers.count("expect"));

    // The proxy answers the tunnelled request itself.
    LoopbackBmc::Options proxyOptions = MinimalBmcOptions();
    proxyOptions.proxyUser = "proxy";
    proxyOptions.proxyPassword = "secret";
    LoopbackBmc proxy(proxyOptions);
    proxy.Start();
    client.SetProxy("127.0.0.1:" + std::to_string(proxy.Port()), "proxy", "secret");
    bmc.ClearRequests();
    EXPECT_EQ(200, client.Get(bmc.Url("/redfish/v1")).httpCode);
    ASSERT_EQ(2, proxy.RequestCount());
    EXPECT_EQ("CONNECT", proxy.Requests()[0].method);
    EXPECT_EQ(0, bmc.RequestCount());
}

TEST(RedfishSettingsTest, SettingsComeFromGlobalConfigWithDefaultsAndAreReadOncePerProcess)
{
    const Rest::RedfishSettings& first = Rest::GetRedfishSettings();
    const Rest::RedfishSettings before = first;
    TempDir home;
    ScopedEnv env("KESTRO_HOME", home.Path());
    Rest::RedfishSettings settings = Rest::ReadRedfishSettings();
    EXPECT_EQ(180000u, settings.startupWaitMs);
    EXPECT_EQ(0, settings.actionTimeout);

    home.Write("global.config", "# Redfish\nREDFISH_STARTUP_WAIT_TIME=7\nREST_ACTION_TIMEOUT=30\n");
    settings = Rest::ReadRedfishSettings();
    EXPECT_EQ(7000u, settings.startupWaitMs);
    EXPECT_EQ(30, settings.actionTimeout);

    home.Write("global.config", "REDFISH_STARTUP_WAIT_TIME=-5\nREST_ACTION_TIMEOUT=soon\n");
    settings = Rest::ReadRedfishSettings();
    EXPECT_EQ(0u, settings.startupWaitMs);
    EXPECT_EQ(0, settings.actionTimeout);
    // The process keeps what it read first.
    EXPECT_EQ(&first, &Rest::GetRedfishSettings());
    EXPECT_EQ(before.startupWaitMs, first.startupWaitMs);
    EXPECT_EQ(before.actionTimeout, first.actionTimeout);

    EXPECT_EQ(30, Rest::EffectiveTimeout(600, 30));
    EXPECT_EQ(600, Rest::EffectiveTimeout(600, 0));
    EXPECT_EQ(-1, Rest::EffectiveTimeout(-1, 0));
}

TEST(RedfishSettingsTest, EveryClientOfAProcessTakesTheConfiguredWaitAndActionTimeout)
{
    // A fresh process per case: the settings are read once, at their first use.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    TempDir home;
    ScopedEnv env("KESTRO_HOME", home.Path());

    // A client built with defaults: one try, one pause of 5 s, and the second try is past the
    // 1 s wait; the 1 s action time-out replaces the 600 s one.
    home.Write("global.config", "REDFISH_STARTUP_WAIT_TIME=1\nREST_ACTION_TIMEOUT=1\n");
    EXPECT_EXIT(ReportConfiguredClient(), ::testing::ExitedWithCode(0), "503 after 2 tries, paused; curlCode 28");

    // Without an action time-out the caller's own applies.
    home.Write("global.config", "REST_ACTION_TIMEOUT=0\n");
    EXPECT_EXIT(ReportTimeout(1), ::testing::ExitedWithCode(0), "curlCode 28");
    EXPECT_EXIT(ReportTimeout(600), ::testing::ExitedWithCode(0), "curlCode 0");
}
