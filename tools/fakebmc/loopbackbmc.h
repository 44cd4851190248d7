#ifndef KESTRO_FAKEBMC_LOOPBACKBMC_H
#define KESTRO_FAKEBMC_LOOPBACKBMC_H

#include <cstddef>
#include <map>
#include <string>
#include <vector>

class LoopbackBmcPrivate;

// A Redfish service on a loopback address, served over real HTTP or HTTPS from a mockup folder
// (see MockupTree) by a background thread. Behaviour can be changed while it runs: failing first
// requests, latency, redirects, forced statuses, raw answers, paging, gzip. It also accepts CONNECT,
// so that it can stand as a client's proxy and then serve the tunnelled requests itself.
class LoopbackBmc {
public:
    struct Options {
        std::string fixtureRoot;           // mockup folder; empty: only documents set in memory
        std::string address = "127.0.0.1";  // "::1" for IPv6
        unsigned short port = 0;           // 0: any free port, read back with Port()
        bool https = false;                // self-signed certificate made at start
        std::string user;                  // non-empty: basic authentication required
        std::string password;
        std::string proxyUser;             // non-empty: CONNECT requires these proxy credentials
        std::string proxyPassword;
    };

    // One request as it arrived.
    struct Request {
        std::string method;
        std::string target;   // as sent, query included
        std::string path;     // decoded, without query and trailing slash
        std::map<std::string, std::string> headers;  // names in lower case
        std::string body;
        std::string user;     // from "Authorization: Basic"
        std::string password;
        std::string proxyUser;      // from "Proxy-Authorization: Basic" of a CONNECT
        std::string proxyPassword;
        bool tunnelled = false;     // arrived through CONNECT
    };

    LoopbackBmc();
    explicit LoopbackBmc(const Options& options);
    // Stops the server.
    ~LoopbackBmc();

    // Binds and starts serving; throws std::runtime_error when the address can't be bound.
    void Start();
    void Stop();
    // True when a socket can be bound on `address` (IPv6 may be off on a build machine).
    static bool CanBind(const std::string& address);

    unsigned short Port() const;
    // "http://127.0.0.1:8080", "https://[::1]:8443".
    std::string BaseUrl() const;
    std::string Url(const std::string& path) const;
    // PEM of the served certificate; empty for plain HTTP.
    std::string CertificatePem() const;
    // A new self-signed certificate for the connections made from now on.
    void ReplaceCertificate();
    // The password basic authentication accepts from now on.
    void SetPassword(const std::string& password);

    // A resource held in memory, hiding a file of the same path.
    void SetDocument(const std::string& path, const std::string& body,
                     const std::string& contentType = "application/json");
    // Members per page; 0 (the default) serves whole collections.
    void SetPageSize(std::size_t size);
    // The next `count` requests get `status` (a starting BMC answers 503) before anything else.
    void FailFirst(int count, int status = 503);
    // Every answer waits this long before it is written.
    void SetLatency(int milliseconds);
    void AddRedirect(const std::string& path, int status, const std::string& location);
    void ForceStatus(const std::string& path, int status);
    // Writes `bytes` as the whole answer to `path` and closes the connection; "" closes at once.
    void SetRawResponse(const std::string& path, const std::string& bytes);
    // Requests of `path` are read and never answered, until the server stops.
    void StallAnswers(const std::string& path);
    // The answer to `path` is written one byte per interval, then the connection closes.
    void DripAnswers(const std::string& path, int intervalMs);
    // Sent with every answer.
    void AddResponseHeader(const std::string& name, const std::string& value);
    // Compress answers for clients that accept gzip (on by default).
    void SetGzip(bool enabled);

    int RequestCount() const;
    int RequestCount(const std::string& path) const;
    std::vector<Request> Requests() const;
    // The last request; an empty record when there was none.
    Request LastRequest() const;
    void ClearRequests();

private:
    LoopbackBmc(const LoopbackBmc&) = delete;
    LoopbackBmc& operator=(const LoopbackBmc&) = delete;

    LoopbackBmcPrivate* d;
};

#endif
