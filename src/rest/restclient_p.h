#ifndef KESTRO_REST_RESTCLIENT_P_H
#define KESTRO_REST_RESTCLIENT_P_H

#include <cstdio>
#include <istream>
#include <memory>
#include <string>
#include <vector>

#define CURL_DISABLE_DEPRECATION  // CURLOPT_PUT is still what a streamed PUT sets
#include <curl/curl.h>

#include "kestro/rest/restclient.h"

namespace Rest {

class RunContext;

// One line of a response's header block, as libcurl hands it over, into `result.headers`:
// "Name: value" with blanks trimmed off both, the status line as its own name with "present";
// the blank line that ends the block is dropped.
void StoreHeaderText(std::string line, RestResult& result);

class RestClientPrivate {
public:
    RestClientPrivate();
    ~RestClientPrivate();

    // Runs the request on the options the verb has set, then resets the handle.
    RestResult Perform(const std::string& url);
    // GETs of `urls` and of what `follow` finds in their answers, `concurrency` at a time over
    // copies of the handle; each URL once, in the order asked.
    RestClient::Answers PerformMany(const std::vector<std::string>& urls, std::size_t concurrency,
                                    const RestClient::Batch& batch);
    // Every setting of `other`, none of its state (handle, output file, progress sink).
    void CopySettingsOf(const RestClientPrivate& other);
    void SetStreamOptions(std::istream& stream);

    CURL* handle;
    HeaderMap headers;
    int timeout;
    bool followRedirects;
    bool insecure;
    bool suppressExpect;
    int maxRedirects;
    std::string user;
    std::string password;
    std::string userAgent;
    std::string caFile;
    std::string certFile;
    std::string certType;
    std::string keyFile;
    std::string keyPassword;
    std::string proxyUrl;
    std::string proxyUser;
    std::string proxyPassword;
    std::string cookieLine;
    bool gzip;
    std::FILE* outputFile;
    ProgressSink progress;
    char errorBuffer[CURL_ERROR_SIZE];

private:
    struct Transfer;
    // Sets every option of a request of `url` on the handle, answering into `result`; the header
    // list it returns is freed once the request is done.
    curl_slist* Prepare(const std::string& url, RestResult& result);
    void Complete(CURL* easy, CURLcode code, const char* errors, RestResult& result);
    bool Start(Transfer& transfer, RunContext* run);
    void RunTransfers(std::vector<std::unique_ptr<Transfer> >& transfers, std::size_t concurrency,
                      const RestClient::Batch& batch);
    void SetWriteOptions(RestResult& result);
    curl_slist* BuildHeaderList() const;
    void SetAuthOptions();
    void SetTimeoutOptions();
    void BoundByDeadline();
    RestResult RefusePastDeadline();
    void SetTlsOptions();
    void SetProxyOptions();
    void CollectCookies(CURL* easy, RestResult& result);
};

}  // namespace Rest

#endif
