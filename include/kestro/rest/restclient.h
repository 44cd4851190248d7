#ifndef KESTRO_REST_RESTCLIENT_H
#define KESTRO_REST_RESTCLIENT_H

#include <cstdio>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "kestro/rest/restclientinterface.h"

namespace Rest {

class RestClientPrivate;

// HTTP over one libcurl easy handle, reused so that connections stay open between requests.
// Not to be shared between threads. Throws std::runtime_error when libcurl gives no handle.
class RestClient : public RestClientInterface {
public:
    RestClient();
    // Takes over the handle; the moved-from object may only be destroyed.
    RestClient(RestClient&& other) noexcept;
    ~RestClient() override;

    void SetCredentials(const std::string& user, const std::string& password) override;
    void SetTimeout(int seconds) override;
    void SetInsecure(bool insecure) override;
    void SetSuppressExpect(bool suppress) override;
    void SetFollowRedirects(bool follow, int maxRedirects) override;
    void SetCaFile(const std::string& path) override;
    void SetProxy(const std::string& url, const std::string& user, const std::string& password) override;
    void SetHeaders(const HeaderMap& headers) override;
    HeaderMap GetHeaders() const override;
    void SetHeader(const std::string& name, const std::string& value) override;
    int EnableGzip() override;
    RestResult Request(RequestType type, const std::string& url, const std::string& body) override;
    RestResult Get(const std::string& url) override;
    RestResult PostMultipart(const std::string& url, const MultipartBody& parts,
                             const ProgressSink& progress) override;
    RestResult PostStream(const std::string& url, std::istream& stream) override;
    RestResult Post(const std::string& url, const std::string& body) override;
    RestResult PutStream(const std::string& url, std::istream& stream) override;
    RestResult Put(const std::string& url, const std::string& body) override;
    RestResult PatchStream(const std::string& url, std::istream& stream) override;
    RestResult Patch(const std::string& url, const std::string& body) override;
    RestResult Delete(const std::string& url) override;
    RestResult Head(const std::string& url) override;
    RestResult Options(const std::string& url) override;
    int ClassifyResult(const RestResult& result) override;

    // Outside the interface: the library itself leaves these at their defaults.
    void SetClientCertificate(const std::string& certFile, const std::string& certType,
                              const std::string& keyFile, const std::string& keyPassword);
    void SetCookieLine(const std::string& cookieLine);
    // The URLs to GET next that an answer of GetMany names (the members and next page of a page).
    typedef boost::function<std::vector<std::string>(const std::string& url, const RestResult& answer)> FollowLinks;
    typedef std::vector<std::pair<std::string, RestResult> > Answers;
    // How a batch of GetMany is steered; every part may be left empty.
    struct Batch {
        Batch() : waited(true) {}
        // Called on each answer as it arrives; the URLs it gives join the batch.
        FollowLinks follow;
        // Asked before each GET is sent; false leaves that URL out (its result stays empty).
        boost::function<bool(const std::string& url)> wanted;
        // Asked while the batch runs; true ends it at once, GETs still running dropped.
        boost::function<bool()> cancelled;
        // Whether the caller waits for the batch, so that its time counts as the run's waiting.
        bool waited;
    };
    // GETs of all `urls` and of what the batch follows, at most `concurrency` at a time on
    // connections of their own, with this client's settings; each URL once, with its result, in
    // the order asked. No 503 is retried here.
    Answers GetMany(const std::vector<std::string>& urls, std::size_t concurrency, const Batch& batch = Batch());
    // A new client with this one's settings (credentials, TLS, redirects, headers, time-out,
    // proxy, cookies), for another thread; it shares no connection and no output file.
    RestClient CopySettings() const;
    // The body goes to this open file instead of the result; null restores the default.
    void SetOutputFile(std::FILE* file);

private:
    RestClient(const RestClient&) = delete;
    RestClient& operator=(const RestClient&) = delete;
    RestClient& operator=(RestClient&&) = delete;

    // Owned from the first line of construction, so a throwing constructor leaks nothing.
    std::unique_ptr<RestClientPrivate> d;
};

}  // namespace Rest

#endif
