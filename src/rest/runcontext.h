#ifndef KESTRO_REST_RUNCONTEXT_H
#define KESTRO_REST_RUNCONTEXT_H

#include "kestro/rest/restclient.h"
#include "kestro/rest/restresult.h"

#include <boost/scoped_ptr.hpp>

#include <cstdint>
#include <string>
#include <vector>

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
    // GETs of `urls`, and of what `follow` finds in their answers, sent ahead of their readers on
    // the run's own thread by a copy of `client` (see Prefetcher).
    void FetchAhead(const RestClient& client, const std::string& credentials, const std::vector<std::string>& urls,
                    const RestClient::FollowLinks& follow);
    // Waits, within the transfer deadline, for a GET of `url` sent ahead and running; one still
    // queued is left to the caller to send. True, with its result in `timedOut`, when that GET ran
    // out of the caller's own time limit (see Prefetcher::AwaitRunning).
    bool AwaitAhead(const std::string& url, const std::string& credentials, RestResult& timedOut);
    // True the first time a run meets `key` (a read-ahead plan), so that each plan is sent once.
    bool FirstTime(const void* key);
    // Requests sent and the wall time spent waiting on them.
    void CountRequests(std::uint64_t count, std::uint64_t nanoseconds);
    // GETs a run sends at once when it reads ahead: REDFISH_CONCURRENCY in global.config when the
    // run began, default 4; 1 reads one at a time.
    std::size_t Concurrency() const;
    std::uint64_t Requests() const;
    double WaitSeconds() const;

    // The key of a URL asked with some credentials, in the cache and among GETs on their way.
    static std::string AnswerKey(const std::string& url, const std::string& credentials);
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
