#include "rest/restsession.h"

#include <boost/json/parse.hpp>
#include <gtest/gtest.h>

#include "rest/runcontext.h"
#include "support/minimalbmc.h"

#include <unistd.h>

using Rest::RestResult;
using Rest::RestSession;
using XModule::ConnectionInfo;

namespace {

ConnectionInfo Connection(const std::string& host, int scheme, int port, bool ipv6)
{
    ConnectionInfo connection;
    connection.host = host;
    connection.scheme = scheme;
    connection.port = port;
    connection.isIPv6 = ipv6;
    return connection;
}

std::string ExpectFetchFailure(RestSession& session, const std::string& url, int levels)
{
    RestResult result;
    try {
        Rest::FetchUrl(session, result, url, levels);
    } catch (const Rest::InventoryError& error) {
        return error.what();
    }
    ADD_FAILURE() << "no InventoryError for " << url;
    return std::string();
}

}  // namespace

TEST(RestSessionTest, BaseUrlsBracketIpv6HostsAndOmitPortZero)
{
    const struct {
        ConnectionInfo connection;
        const char* expected;
    } cases[] = {
        {Connection("10.0.0.5", 1, 0, false), "https://10.0.0.5"},
        {Connection("fe80::1", 1, 8443, true), "https://[fe80::1]:8443"},
        {Connection("bmc.example", 0, 8080, false), "http://bmc.example:8080"},
        {Connection("::1", 0, 0, true), "http://[::1]"},
        {Connection("host", 2, 22, false), "ssh://host:22"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.expected, Rest::BuildBaseUrl(c.connection));
}

TEST(RestSessionTest, ASessionSendsCredentialsTrustsAnyCertificateAndFollowsRedirects)
{
    LoopbackBmc::Options options = MinimalBmcOptions();
    options.https = true;
    options.user = "USERID";
    options.password = "PASSW0RD";
    LoopbackBmc bmc(options);
    bmc.Start();
    bmc.AddRedirect("/redfish/v1/Old", 301, "/redfish/v1/Systems/2");

    ConnectionInfo connection = Connection("127.0.0.1", 1, bmc.Port(), false);
    connection.user = "USERID";
    connection.password = "PASSW0RD";
    RestSession session = Rest::MakeRestSession(connection);
    EXPECT_EQ(bmc.BaseUrl(), session.baseUrl);

    RestResult result;
    Rest::FetchUrl(session, result, "/redfish/v1/Systems", 1);
    EXPECT_EQ("/redfish/v1/Systems?$expand=.($levels=1)", bmc.LastRequest().target);
    const boost::json::value expanded = boost::json::parse(result.body);
    EXPECT_EQ("SN-0003", expanded.at_pointer("/Members/2/SerialNumber").as_string());

    Rest::FetchUrl(session, result, "/redfish/v1/Old", 0);
    EXPECT_EQ("/redfish/v1/Systems/2", bmc.LastRequest().target);
    EXPECT_EQ("PASSW0RD", bmc.LastRequest().password);
    EXPECT_NE(std::string::npos, result.body.find("SN-0002"));
}

TEST(RestSessionTest, FetchUrlThrowsForEverythingButA200)
{
    LoopbackBmc bmc(MinimalBmcOptions());
    bmc.Start();
    RestSession session = Rest::MakeRestSession(Connection("127.0.0.1", 0, bmc.Port(), false));
    session.client.SetRetryTiming(200, 50);
    const std::string base = session.baseUrl;

    EXPECT_EQ("Failed to get url " + base + "/redfish/v1/Nope, error code is 404",
              ExpectFetchFailure(session, "/redfish/v1/Nope", 0));
    EXPECT_EQ("Failed to get url " + base + "/redfish/v1/Nope?$expand=.($levels=2), error code is 404",
              ExpectFetchFailure(session, "/redfish/v1/Nope", 2));
    bmc.ForceStatus("/redfish/v1/Created", 201);
    EXPECT_EQ("Failed to get url " + base + "/redfish/v1/Created, error code is 201",
              ExpectFetchFailure(session, "/redfish/v1/Created", 0));
    bmc.FailFirst(1000);
    const std::string starting = ExpectFetchFailure(session, "/redfish/v1", 0);
    EXPECT_EQ(", error code is 503", starting.substr(starting.size() - 19));
    bmc.FailFirst(0);

    bmc.Stop();
    EXPECT_EQ("Failed to get url " + base + "/redfish/v1, error code is -1",
              ExpectFetchFailure(session, "/redfish/v1", 0));
}

TEST(RestSessionTest, FetchUrlReachesAnIpv6Bmc)
{
    if (!LoopbackBmc::CanBind("::1"))
        GTEST_SKIP() << "IPv6 loopback unavailable";
    LoopbackBmc::Options options = MinimalBmcOptions();
    options.address = "::1";
    LoopbackBmc bmc(options);
    bmc.Start();
    RestSession session = Rest::MakeRestSession(Connection("::1", 0, bmc.Port(), true));
    EXPECT_EQ("http://[::1]:" + std::to_string(bmc.Port()), session.baseUrl);
    RestResult result;
    Rest::FetchUrl(session, result, "/redfish/v1/Chassis/1", 0);
    EXPECT_EQ(200, result.httpCode);
    EXPECT_NE(std::string::npos, result.body.find("CH-42"));
}

// A plan reads its resources, what they link to and the pages of its collections ahead; the members
// of a collection read by links follow, those of an expanded one never do, even given as bare links
// by a BMC that ignores $expand: its walk takes them as they stand.
TEST(RestSessionTest, APlanReadsLinkedResourcesAndOnlyTheMembersAWalkFetches)
{
    const std::string memory = "/redfish/v1/Systems/1/Memory";
    const std::string bareLinks = "{\"Members\": [{\"@odata.id\": \"" + memory + "/DIMM1\"}]}";
    LoopbackBmc bmc(FullBmcOptions("Plan-Pass"));
    bmc.Start();
    bmc.SetPageSize(10);
    bmc.SetRawResponse(memory, "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: " +
                                   std::to_string(bareLinks.size()) + "\r\nConnection: close\r\n\r\n" + bareLinks);
    ConnectionInfo connection = Connection("127.0.0.1", XModule::XModuleConnection::SchemeHttps, bmc.Port(), false);
    connection.user = kFullBmcUser;
    connection.password = "Plan-Pass";
    const Rest::AheadRead reads[] = {{memory.c_str(), 1, nullptr, 0}, {"/redfish/v1/Chassis/1", 1, "/Sensors", 0}};
    const char* const lastSensor = "/redfish/v1/Chassis/1/Sensors/Discrete_11";
    {
        Rest::RunContext run;
        const Rest::RunContext::Scope scope(&run);
        RestSession session = Rest::MakeRestSession(connection);
        Rest::ReadAhead(session, Rest::AheadPlan{reads, 2});
        Rest::ReadAhead(session, Rest::AheadPlan{reads, 2});
        // The BMC counts a request when it arrives; the answer is kept a moment later, on the run's thread.
        RestResult kept;
        for (int waited = 0; !session.client.FindKept(session.baseUrl + lastSensor, kept) && waited < 500; ++waited)
            usleep(10000);
        EXPECT_EQ(4, bmc.RequestCount("/redfish/v1/Chassis/1/Sensors"));  // its four pages
        EXPECT_EQ(1, bmc.RequestCount(lastSensor));
        EXPECT_EQ(1, bmc.RequestCount(memory));
        EXPECT_EQ(0, bmc.RequestCount(memory + "/DIMM1"));
        EXPECT_TRUE(session.client.FindKept(session.baseUrl + lastSensor, kept));
    }
    // Outside a run nothing is read ahead.
    const int asked = bmc.RequestCount();
    RestSession session = Rest::MakeRestSession(connection);
    Rest::ReadAhead(session, Rest::AheadPlan{reads, 2});
    EXPECT_EQ(asked, bmc.RequestCount());
}
