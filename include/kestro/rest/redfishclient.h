#ifndef KESTRO_REST_REDFISHCLIENT_H
#define KESTRO_REST_REDFISHCLIENT_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "kestro/rest/restclient.h"
#include "kestro/rest/restclientinterface.h"

namespace Rest {

class RedfishClientPrivate;

// A RestClient that repeats a verb while the BMC answers 503 (its Redfish service is starting),
// for up to REDFISH_STARTUP_WAIT_TIME seconds; REST_ACTION_TIMEOUT, when set, overrides time-outs.
class RedfishClient : public RestClientInterface {
public:
    RedfishClient();
    // Takes over the inner client; the moved-from object may only be destroyed.
    RedfishClient(RedfishClient&& other) noexcept;
    ~RedfishClient() override;

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
    // Not retried: it dispatches to the inner client's own verbs.
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

    // Inside an inventory run: GETs of the `urls` not fetched yet, and of the ones `follow` finds
    // in their answers (called on another thread), sent several at a time by the run's own thread
    // while the caller goes on; each answer is kept as it arrives for the Get calls that follow,
    // in their own order. Outside a run, or at a concurrency of 1, nothing.
    void GetAhead(const std::vector<std::string>& urls,
                  const RestClient::FollowLinks& follow = RestClient::FollowLinks());
    // The answer this run keeps for a GET of `url` by this client's credentials, without a request
    // and without a log line; false outside a run or when there is none.
    bool FindKept(const std::string& url, RestResult& answer) const;

    // Test seam: replaces the start-up wait and the 5000 ms pause of this object only.
    // The library never calls it; a client keeps the process-wide settings otherwise.
    void SetRetryTiming(std::uint64_t waitMs, std::uint64_t intervalMs);

private:
    RedfishClient(const RedfishClient&) = delete;
    RedfishClient& operator=(const RedfishClient&) = delete;
    RedfishClient& operator=(RedfishClient&&) = delete;

    // Owned from the first line of construction, so a throwing constructor leaks nothing.
    std::unique_ptr<RedfishClientPrivate> d;
};

}  // namespace Rest

#endif
