#include "kestro/rest/restclient.h"

#include <cstdio>
#include <sstream>

#include <boost/json/parse.hpp>
#include <gtest/gtest.h>

#include "kestro/rest/restdatapart.h"
#include "rest/restclient_p.h"
#include "support/minimalbmc.h"
#include "support/tempdir.h"

using Rest::RestClient;
using Rest::RestResult;

namespace {

std::string Pattern(std::size_t size)
{
    std::string text(size, '\0');
    for (std::size_t i = 0; i < size; ++i)
        text[i] = static_cast<char>('a' + (i * 7 + i / 1000) % 26);
    return text;
}

class RestClientTest : public ::testing::Test {
protected:
    RestClientTest() : bmc(MinimalBmcOptions()) { bmc.Start(); }

    LoopbackBmc bmc;
    RestClient client;
};

}  // namespace

TEST_F(RestClientTest, GetReturnsBodyStatusHeadersAndCookiesAndSendsTheFixedUserAgent)
{
    bmc.AddResponseHeader("Set-Cookie", "QSESSIONID=abc123; Path=/");
    const RestResult result = client.Get(bmc.Url("/redfish/v1"));
    EXPECT_EQ(0, result.curlCode);
    EXPECT_EQ(200, result.httpCode);
    EXPECT_EQ(MinimalBmcDocument("/redfish/v1"), result.body);
    EXPECT_EQ("application/json", result.headers.at("Content-Type"));
    ASSERT_EQ(1u, result.cookies.size());
    EXPECT_NE(std::string::npos, result.cookies[0].find("QSESSIONID\tabc123")) << result.cookies[0];
    EXPECT_EQ("OQCE_KESTRO", bmc.LastRequest().headers["user-agent"]);
    // Gzip is asked for only when enabled (GzipIsAskedForWhenEnabledAnd...).
    EXPECT_EQ(0u, bmc.LastRequest().headers.count("accept-encoding"));
    EXPECT_EQ("GET", bmc.LastRequest().method);

    const RestResult missing = client.Get(bmc.Url("/redfish/v1/Nothing"));
    EXPECT_EQ(0, missing.curlCode);
    EXPECT_EQ(404, missing.httpCode);
}

// Request() reaches every verb through the verb's own call (Put and Patch through their
// stream forms), so this covers both.
TEST_F(RestClientTest, RequestDispatchesByTypeAndRefusesDeleteAndUnknownTypes)
{
    const Rest::RequestType refused[] = {Rest::RequestDelete, static_cast<Rest::RequestType>(7),
                                         static_cast<Rest::RequestType>(-1)};
    for (Rest::RequestType type : refused) {
        const RestResult result = client.Request(type, bmc.Url("/redfish/v1"), "body");
        EXPECT_EQ(-1, result.curlCode);
        EXPECT_EQ(-1, result.httpCode);
        EXPECT_EQ("unknown request type", result.body);
        EXPECT_TRUE(result.headers.empty());
    }
    EXPECT_EQ(0, bmc.RequestCount());

    const struct {
        Rest::RequestType type;
        const char* method;
        const char* sentBody;
    } cases[] = {
        {Rest::RequestPost, "POST", ""},     {Rest::RequestPut, "PUT", "u-body"},
        {Rest::RequestPatch, "PATCH", "a-body"}, {Rest::RequestHead, "HEAD", ""},
        {Rest::RequestOptions, "OPTIONS", ""},   {Rest::RequestGet, "GET", ""},
    };
    for (const auto& c : cases) {
        const RestResult result = client.Request(c.type, bmc.Url("/redfish/v1"), c.sentBody);
        EXPECT_EQ(200, result.httpCode) << c.method;
        EXPECT_EQ(c.method, bmc.LastRequest().method);
        EXPECT_EQ(c.sentBody, bmc.LastRequest().body) << c.method;
        if (c.type == Rest::RequestPost) { EXPECT_EQ("0", bmc.LastRequest().headers["content-length"]); }
        if (c.type == Rest::RequestHead) { EXPECT_EQ("", result.body); }
        if (c.type == Rest::RequestOptions) {
            EXPECT_EQ("GET, HEAD, POST, PUT, PATCH, DELETE, OPTIONS", result.headers.at("Allow"));
        }
        // The GET after the others shows that no verb's method leaks into the next request.
        if (c.type == Rest::RequestGet) { EXPECT_EQ(MinimalBmcDocument("/redfish/v1"), result.body); }
    }
    EXPECT_EQ(6, bmc.RequestCount());

    EXPECT_EQ(204, client.Delete(bmc.Url("/redfish/v1/Systems/3")).httpCode);
    EXPECT_EQ("DELETE", bmc.LastRequest().method);
}

TEST_F(RestClientTest, BodiesOfSeveralMegabytesGoAndComeWholeWithOrWithoutTheContinueHandshake)
{
    const std::string payload = Pattern(3 * 1024 * 1024 + 17);
    std::stringstream post(payload);
    RestResult result = client.PostStream(bmc.Url("/upload/post"), post);
    EXPECT_EQ(200, result.httpCode);
    EXPECT_EQ("POST", bmc.LastRequest().method);
    EXPECT_EQ("100-continue", bmc.LastRequest().headers["expect"]);
    EXPECT_TRUE(bmc.LastRequest().body == payload);

    // Without the continue handshake the body still goes whole.
    client.SetSuppressExpect(true);
    EXPECT_EQ(200, client.Post(bmc.Url("/upload"), payload).httpCode);
    EXPECT_EQ(0u, bmc.LastRequest().headers.count("expect"));
    EXPECT_TRUE(bmc.LastRequest().body == payload);

    // A 307 makes libcurl send the body again, from the start, to the new place.
    bmc.AddRedirect("/upload/put", 307, "/upload/moved");
    client.SetFollowRedirects(true, -1);
    std::stringstream put(payload);
    result = client.PutStream(bmc.Url("/upload/put"), put);
    EXPECT_EQ(200, result.httpCode);
    ASSERT_EQ(1, bmc.RequestCount("/upload/moved"));
    EXPECT_EQ("PUT", bmc.LastRequest().method);
    EXPECT_TRUE(bmc.LastRequest().body == payload);

    // And a body of several megabytes comes back whole.
    bmc.SetDocument("/redfish/v1/Dump", payload + payload, "application/octet-stream");
    result = client.Get(bmc.Url("/redfish/v1/Dump"));
    EXPECT_EQ(200, result.httpCode);
    EXPECT_TRUE(result.body == payload + payload);
}

// The file gets the body as libcurl decoded it.
TEST_F(RestClientTest, GzipIsAskedForWhenEnabledAndAnOutputFileTakesTheBodyInsteadOfTheResult)
{
    TempDir dir;
    const std::string path = dir.Path() + "/body.json";
    std::FILE* file = std::fopen(path.c_str(), "wb");
    ASSERT_NE(nullptr, file);
    client.SetOutputFile(file);
    EXPECT_EQ(0, client.EnableGzip());
    const RestResult result = client.Get(bmc.Url("/redfish/v1/Chassis/1"));
    std::fclose(file);
    EXPECT_EQ(200, result.httpCode);
    EXPECT_EQ("gzip", bmc.LastRequest().headers["accept-encoding"]);
    EXPECT_EQ("gzip", result.headers.at("Content-Encoding"));
    EXPECT_EQ("", result.body);
    EXPECT_EQ(MinimalBmcDocument("/redfish/v1/Chassis/1"), dir.Read("body.json"));
}

TEST_F(RestClientTest, HeadersGoOutInKeyOrderAndComeBackTrimmed)
{
    Rest::HeaderMap headers;
    headers["Accept"] = "application/json";
    headers["X-Old"] = "1";
    client.SetHeaders(headers);
    headers["X-Old"] = "changed after the call";
    EXPECT_EQ("1", client.GetHeaders()["X-Old"]);
    client.SetHeader("X-Old", "2");
    client.SetHeader("OData-Version", "4.0");
    EXPECT_EQ(3u, client.GetHeaders().size());

    bmc.AddResponseHeader("X-Spaced", "   padded value   ");
    const RestResult result = client.Get(bmc.Url("/redfish/v1"));
    const LoopbackBmc::Request sent = bmc.LastRequest();
    EXPECT_EQ("application/json", sent.headers.at("accept"));
    EXPECT_EQ("2", sent.headers.at("x-old"));
    EXPECT_EQ("4.0", sent.headers.at("odata-version"));
    EXPECT_EQ("padded value", result.headers.at("X-Spaced"));
}

TEST_F(RestClientTest, CredentialsGoWithEveryRequestOnlyWhenAUserIsSet)
{
    LoopbackBmc::Options options = MinimalBmcOptions();
    options.user = "admin";
    options.password = "";
    LoopbackBmc guarded(options);
    guarded.Start();

    EXPECT_EQ(401, client.Get(guarded.Url("/redfish/v1")).httpCode);
    client.SetCredentials("", "ignored");
    EXPECT_EQ(401, client.Get(guarded.Url("/redfish/v1")).httpCode);
    EXPECT_EQ(0u, guarded.LastRequest().headers.count("authorization"));

    client.SetCredentials("admin", "");
    EXPECT_EQ(200, client.Get(guarded.Url("/redfish/v1")).httpCode);
    EXPECT_EQ(200, client.Get(guarded.Url("/redfish/v1/Systems")).httpCode);
    EXPECT_EQ("admin", guarded.LastRequest().user);
}

TEST_F(RestClientTest, RedirectsAreFollowedOnlyWhenAskedAndCarryTheCredentials)
{
    LoopbackBmc::Options options = MinimalBmcOptions();
    options.user = "root";
    options.password = "calvin";
    LoopbackBmc target(options);
    target.Start();
    bmc.AddRedirect("/redfish/v1/Systems", 302, target.Url("/redfish/v1/Systems"));
    client.SetCredentials("root", "calvin");

    RestResult result = client.Get(bmc.Url("/redfish/v1/Systems"));
    EXPECT_EQ(302, result.httpCode);
    EXPECT_EQ(target.Url("/redfish/v1/Systems"), result.headers["Location"]);
    EXPECT_EQ(0, target.RequestCount());

    client.SetFollowRedirects(true, -1);
    result = client.Get(bmc.Url("/redfish/v1/Systems"));
    EXPECT_EQ(200, result.httpCode);
    EXPECT_EQ(boost::json::parse(MinimalBmcDocument("/redfish/v1/Systems")), boost::json::parse(result.body));
    EXPECT_EQ("calvin", target.LastRequest().password);

    client.SetFollowRedirects(true, 0);
    result = client.Get(bmc.Url("/redfish/v1/Systems"));
    EXPECT_EQ(47, result.curlCode);  // too many redirects
    EXPECT_EQ(-1, result.httpCode);
}

TEST_F(RestClientTest, TimeOutsRefusalsAndBrokenLinksComeBackAsCurlErrors)
{
    bmc.SetLatency(1500);
    client.SetTimeout(1);
    RestResult result = client.Get(bmc.Url("/redfish/v1"));
    EXPECT_EQ(28, result.curlCode);
    EXPECT_EQ(-1, result.httpCode);
    EXPECT_NE(std::string::npos, result.body.find("imed out")) << result.body;

    // Without a time-out only a transfer that stalls for a minute is given up.
    RestClient patient;
    EXPECT_EQ(200, patient.Get(bmc.Url("/redfish/v1")).httpCode);

    // 0 is libcurl's "no time-out", not an immediate one.
    bmc.SetLatency(300);
    client.SetTimeout(0);
    EXPECT_EQ(200, client.Get(bmc.Url("/redfish/v1")).httpCode);

    bmc.SetLatency(0);
    bmc.SetRawResponse("/redfish/v1/Hangup", "");
    result = client.Get(bmc.Url("/redfish/v1/Hangup"));
    EXPECT_EQ(52, result.curlCode);  // empty reply
    EXPECT_EQ(-1, result.httpCode);
    EXPECT_EQ("Empty reply from server", result.body);
    EXPECT_TRUE(result.headers.empty());

    const std::string url = bmc.Url("/redfish/v1");
    bmc.Stop();
    result = client.Get(url);
    EXPECT_EQ(7, result.curlCode);  // refused
    EXPECT_EQ(-1, result.httpCode);
    EXPECT_FALSE(result.body.empty());
}

TEST_F(RestClientTest, MultipartPostsEveryPartAndReportsProgress)
{
    const std::string image = Pattern(1024 * 1024);
    Rest::MultipartBody parts;
    parts.push_back(boost::shared_ptr<Rest::RestMultipartPart>(new Rest::RestDataPart("Targets", "[]")));
    parts.push_back(boost::shared_ptr<Rest::RestMultipartPart>(
        new Rest::RestDataPart("UpdateFile", image, "application/octet-stream", "fw.bin")));
    std::vector<std::pair<std::int64_t, std::int64_t> > calls;
    const RestResult result =
        client.PostMultipart(bmc.Url("/redfish/v1/UpdateService/upload"), parts,
                             [&calls](std::int64_t total, std::int64_t now) { calls.emplace_back(total, now); });
    EXPECT_EQ(200, result.httpCode);
    const LoopbackBmc::Request sent = bmc.LastRequest();
    EXPECT_EQ("POST", sent.method);
    EXPECT_EQ(0u, sent.headers.at("content-type").find("multipart/form-data; boundary="));
    EXPECT_NE(std::string::npos, sent.body.find("name=\"Targets\"\r\n\r\n[]\r\n"));
    EXPECT_NE(std::string::npos, sent.body.find("name=\"UpdateFile\"; filename=\"fw.bin\""));
    EXPECT_NE(std::string::npos, sent.body.find(image));

    ASSERT_FALSE(calls.empty());
    bool sawUpload = false;
    for (const auto& call : calls) {
        EXPECT_LE(call.second, call.first);
        sawUpload = sawUpload || call.first > static_cast<std::int64_t>(image.size());
    }
    EXPECT_TRUE(sawUpload);

    // An empty sink is allowed.
    EXPECT_EQ(200, client.PostMultipart(bmc.Url("/upload"), parts, Rest::ProgressSink()).httpCode);
}

TEST_F(RestClientTest, ProxyUrlsGainAnHttpSchemeUnlessTheyHaveOne)
{
    // The proxy answers the tunnelled requests itself, from the same tree.
    LoopbackBmc::Options options = MinimalBmcOptions();
    options.proxyUser = "proxy";
    options.proxyPassword = "p%41ss word";
    LoopbackBmc proxy(options);
    proxy.Start();
    const std::string hostAndPort = "127.0.0.1:" + std::to_string(proxy.Port());

    // No scheme: "http://" is put in front. libcurl decodes proxy credentials, so the password
    // is encoded first and arrives as typed, "%41" included.
    RestClient plain;
    plain.SetProxy(hostAndPort, "proxy", "p%41ss word");
    RestResult result = plain.Get(bmc.Url("/redfish/v1/Systems/1"));
    EXPECT_EQ(200, result.httpCode);
    EXPECT_EQ(MinimalBmcDocument("/redfish/v1/Systems/1"), result.body);
    ASSERT_EQ(2, proxy.RequestCount()) << result.body;
    const std::vector<LoopbackBmc::Request> seen = proxy.Requests();
    EXPECT_EQ("CONNECT", seen[0].method);
    EXPECT_EQ("127.0.0.1:" + std::to_string(bmc.Port()), seen[0].target);
    EXPECT_EQ("proxy", seen[0].proxyUser);
    EXPECT_EQ("p%41ss word", seen[0].proxyPassword);
    EXPECT_TRUE(seen[1].tunnelled);
    EXPECT_EQ("/redfish/v1/Systems/1", seen[1].target);

    // Any case of "http" is kept as it stands; "https" too, so libcurl speaks TLS to a proxy
    // that talks plain HTTP and fails.
    const struct {
        const char* scheme;
        int status;
    } schemes[] = {{"HtTp://", 200}, {"HTTPS://", -1}};
    for (const auto& c : schemes) {
        proxy.ClearRequests();
        RestClient schemed;
        schemed.SetProxy(c.scheme + hostAndPort, "proxy", "p%41ss word");
        EXPECT_EQ(c.status, schemed.Get(bmc.Url("/redfish/v1")).httpCode) << c.scheme;
        EXPECT_EQ(c.status == 200 ? 2 : 0, proxy.RequestCount()) << c.scheme;
    }

    // Credentials are only sent when both are given.
    proxy.ClearRequests();
    RestClient anonymous;
    anonymous.SetProxy(hostAndPort, "proxy", "");
    result = anonymous.Get(bmc.Url("/redfish/v1"));
    EXPECT_NE(0, result.curlCode);
    EXPECT_EQ(0u, proxy.LastRequest().headers.count("proxy-authorization"));

    // An empty url turns the proxy off.
    proxy.ClearRequests();
    client.SetProxy("", "", "");
    EXPECT_EQ(200, client.Get(bmc.Url("/redfish/v1")).httpCode);
    EXPECT_EQ(0, proxy.RequestCount());
    EXPECT_EQ(1, bmc.RequestCount());
}

TEST(RestClientHeaderLineTest, NamesValuesAndTheStatusLineAreKeptTrimmed)
{
    const struct {
        const char* line;
        const char* name;   // nullptr: the line stores nothing
        const char* value;
    } cases[] = {
        {"Content-Type: application/json\r\n", "Content-Type", "application/json"},
        {"  X-Name  :  v  \r\n", "X-Name", "v"},
        {"Location: https://bmc:443/redfish/v1\r\n", "Location", "https://bmc:443/redfish/v1"},
        {"X-Empty:\r\n", "X-Empty", ""},
        {":\r\n", "", ""},
        {"HTTP/1.1 200 OK \r\n", "HTTP/1.1 200 OK", "present"},
        {"\r\n", nullptr, nullptr},
        {"", nullptr, nullptr},
    };
    for (const auto& c : cases) {
        RestResult result;
        Rest::StoreHeaderText(c.line, result);
        if (!c.name) {
            EXPECT_TRUE(result.headers.empty()) << c.line;
            continue;
        }
        ASSERT_EQ(1u, result.headers.size()) << c.line;
        EXPECT_EQ(c.value, result.headers[c.name]) << c.line;
    }
}

TEST(RestClientClassifyTest, SortsResultsIntoSuccessFailureAndTrustOrTimeOut)
{
    const struct {
        int curlCode;
        int httpCode;
        int expected;
    } cases[] = {
        {0, 200, 0},  {0, 201, 0},   {0, 204, 0},   {0, 2, 0},     {0, 302, -1},  {0, 404, -1},
        {0, 503, -1}, {0, -1, -1},   {28, -1, -2},  {58, -1, -2},  {60, -1, -2},  {77, -1, -2},
        {91, -1, -2}, {7, -1, -1},   {35, -1, -1},  {52, -1, -1},  {-1, -1, -1},
    };
    RestClient client;
    for (const auto& c : cases) {
        RestResult result;
        result.curlCode = c.curlCode;
        result.httpCode = c.httpCode;
        EXPECT_EQ(c.expected, client.ClassifyResult(result)) << c.curlCode << "/" << c.httpCode;
    }
}

TEST(RestClientTlsTest, CertificatesAreCheckedUnlessInsecureAndACaFileWins)
{
    if (!LoopbackBmc::CanBind("127.0.0.1"))
        GTEST_SKIP() << "no loopback";
    LoopbackBmc::Options options = MinimalBmcOptions();
    options.https = true;
    LoopbackBmc bmc(options);
    bmc.Start();
    LoopbackBmc other(options);
    other.Start();
    TempDir dir;
    const std::string ownCa = dir.Write("own.pem", bmc.CertificatePem());
    const std::string otherCa = dir.Write("other.pem", other.CertificatePem());
    const std::string url = "https://localhost:" + std::to_string(bmc.Port()) + "/redfish/v1";

    RestClient client;
    RestResult result = client.Get(url);
    EXPECT_EQ(60, result.curlCode);

    client.SetInsecure(true);
    EXPECT_EQ(200, client.Get(url).httpCode);

    client.SetCaFile(otherCa);
    EXPECT_EQ(60, client.Get(url).curlCode);

    client.SetCaFile(dir.Path() + "/missing.pem");
    EXPECT_EQ(77, client.Get(url).curlCode);

    client.SetInsecure(false);
    client.SetCaFile(ownCa);
    result = client.Get(url);
    EXPECT_EQ(200, result.httpCode) << result.body;
    EXPECT_EQ(MinimalBmcDocument("/redfish/v1"), result.body);
}
