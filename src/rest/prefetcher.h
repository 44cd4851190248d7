#ifndef KESTRO_REST_PREFETCHER_H
#define KESTRO_REST_PREFETCHER_H

#include "kestro/rest/restclient.h"

#include <boost/scoped_ptr.hpp>

#include <string>
#include <vector>

namespace Rest {

class RunContext;

// GETs made ahead of their readers on a thread of the run's own, so that no reader waits for
// another's resources: each answer goes into the run's cache as it arrives, and a reader waits
// only for the URL it asks, within its own time limit. A GET still queued when its reader comes is
// left to the reader, which sends it itself; one that fails is sent again by its reader, under the
// reader's retry rule, as a run without reading ahead would.
class Prefetcher {
public:
    explicit Prefetcher(RunContext& run);
    // Ends the thread: GETs still queued are never sent, those running are dropped.
    ~Prefetcher();

    // Queues GETs of `urls` and of what `follow` finds in their answers, sent by `client` (a copy
    // for the thread) `run.Concurrency()` at a time; URLs kept or on their way already are left out.
    void Fetch(RestClient client, const std::string& credentials, const std::vector<std::string>& urls,
               const RestClient::FollowLinks& follow);
    // For a reader about to GET `url`: waits for a GET of it that is running, until it ends or the
    // transfer deadline passes; one still queued becomes the reader's to send. True, with the
    // result in `timedOut`, when the GET ran out of the very time limit the reader has: the reader's
    // own GET would have timed out too, so that the member costs its time once.
    bool AwaitRunning(const std::string& url, const std::string& credentials, RestResult& timedOut);

private:
    Prefetcher(const Prefetcher&) = delete;
    Prefetcher& operator=(const Prefetcher&) = delete;
    struct Private;
    boost::scoped_ptr<Private> d;
};

}  // namespace Rest

#endif
