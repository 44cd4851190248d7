#ifndef KESTRO_REST_RESTCLIENT_H
#define KESTRO_REST_RESTCLIENT_H

#include <cstdio>
#include <memory>
#include <string>
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
    // GETs of all `urls`, at most `concurrency` at a time on connections of their own, with this
    // client's settings; the results in the order of `urls`. No 503 is retried here.
    std::vector<RestResult> GetMany(const std::vector<std::string>& urls, std::size_t concurrency);
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
