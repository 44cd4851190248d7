#ifndef KESTRO_REST_RUNCONTEXT_H
#define KESTRO_REST_RUNCONTEXT_H

#include "kestro/rest/restresult.h"

#include <boost/scoped_ptr.hpp>

#include <cstdint>
#include <string>

namespace Rest {

// What the REST clients of one inventory run share: the successful GET answers (so that no
// resource is fetched twice), one libcurl share of connections, TLS sessions and DNS answers (so
// that every session reuses the first one's connection), and the run's request count and time.
// The clients find it through the calling thread's Scope; outside a run they work alone.
class RunContext {
public:
    RunContext();
    ~RunContext();

    // The cached answer to a GET of `url` made with these credentials; false when there is none.
    bool FindAnswer(const std::string& url, const std::string& credentials, RestResult& answer) const;
    // Keeps a successful answer (HTTP 200 over a transfer without error); others are not kept.
    void KeepAnswer(const std::string& url, const std::string& credentials, const RestResult& answer);
    // The libcurl share handle (CURLSH*), thread-safe, for every easy handle of the run.
    void* Share();
    // A transport failure of a GET made ahead of its reader, handed once to the reader that asks,
    // so that a member that timed out costs its time once.
    void KeepFailure(const std::string& url, const std::string& credentials, const RestResult& answer);
    bool TakeFailure(const std::string& url, const std::string& credentials, RestResult& answer);
    // Requests sent and the wall time spent waiting on them.
    void CountRequests(std::uint64_t count, std::uint64_t nanoseconds);
    // GETs a run sends at once when it reads ahead: REDFISH_CONCURRENCY in global.config when the
    // run began, default 4; 1 reads one at a time.
    std::size_t Concurrency() const;
    std::uint64_t Requests() const;
    double WaitSeconds() const;

    // The context of the calling thread's run; null outside a run.
    static RunContext* Current();

    // Makes `context` the calling thread's for its lifetime, then restores the one before.
    class Scope {
    public:
        explicit Scope(RunContext* context);
        ~Scope();

    private:
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        RunContext* previous;
    };

private:
    RunContext(const RunContext&) = delete;
    RunContext& operator=(const RunContext&) = delete;
    struct Private;
    boost::scoped_ptr<Private> d;
};

}  // namespace Rest

#endif
