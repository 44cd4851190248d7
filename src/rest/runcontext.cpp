#include "rest/runcontext.h"

#include "kestro/xmodule/globalconfig.h"
#include "rest/prefetcher.h"

#include <curl/curl.h>

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <set>

namespace Rest {

namespace {

thread_local RunContext* currentContext = nullptr;

const int kSuccessStatus = 200;
const int kDefaultConcurrency = 4;

}  // namespace

struct RunContext::Private {
    mutable std::mutex answersLock;
    std::map<std::string, RestResult> answers;
    std::set<const void*> seen;
    std::size_t concurrency = 1;
    CURLSH* share = nullptr;
    // One lock per kind of data the share holds, as libcurl asks its user to provide.
    std::mutex shareLocks[CURL_LOCK_DATA_LAST];
    std::atomic<std::uint64_t> requests{0};
    std::atomic<std::uint64_t> waitNanoseconds{0};
    std::mutex prefetcherLock;
    std::unique_ptr<Prefetcher> prefetcher;

    static void LockShare(CURL*, curl_lock_data data, curl_lock_access, void* owner)
    {
        static_cast<Private*>(owner)->shareLocks[data].lock();
    }

    static void UnlockShare(CURL*, curl_lock_data data, void* owner)
    {
        static_cast<Private*>(owner)->shareLocks[data].unlock();
    }

    void MakeShare()
    {
        share = curl_share_init();
        if (share == nullptr) return;
        curl_share_setopt(share, CURLSHOPT_LOCKFUNC, &Private::LockShare);
        curl_share_setopt(share, CURLSHOPT_UNLOCKFUNC, &Private::UnlockShare);
        curl_share_setopt(share, CURLSHOPT_USERDATA, this);
        curl_share_setopt(share, CURLSHOPT_SHARE, CURL_LOCK_DATA_CONNECT);
        curl_share_setopt(share, CURLSHOPT_SHARE, CURL_LOCK_DATA_SSL_SESSION);
        curl_share_setopt(share, CURLSHOPT_SHARE, CURL_LOCK_DATA_DNS);
    }
};

RunContext::RunContext() : d(new Private)
{
    d->MakeShare();
    const int concurrency = XModule::GetGlobalConfigValue("REDFISH_CONCURRENCY", kDefaultConcurrency);
    d->concurrency = concurrency > 0 ? static_cast<std::size_t>(concurrency) : 1;
}

RunContext::~RunContext()
{
    // The thread's transfers use the share: they end first.
    d->prefetcher.reset();
    if (d->share != nullptr) curl_share_cleanup(d->share);
}

std::string RunContext::AnswerKey(const std::string& url, const std::string& credentials)
{
    return url + '\n' + credentials;
}

bool RunContext::FindAnswer(const std::string& url, const std::string& credentials, RestResult& answer) const
{
    const std::lock_guard<std::mutex> guard(d->answersLock);
    const std::map<std::string, RestResult>::const_iterator found = d->answers.find(AnswerKey(url, credentials));
    if (found == d->answers.end()) return false;
    answer = found->second;
    return true;
}

void RunContext::KeepAnswer(const std::string& url, const std::string& credentials, const RestResult& answer)
{
    if (answer.curlCode != 0 || answer.httpCode != kSuccessStatus) return;
    const std::lock_guard<std::mutex> guard(d->answersLock);
    d->answers[AnswerKey(url, credentials)] = answer;
}

void* RunContext::Share() { return d->share; }

void RunContext::FetchAhead(const RestClient& client, const std::string& credentials,
                            const std::vector<std::string>& urls, const RestClient::FollowLinks& follow)
{
    const std::lock_guard<std::mutex> guard(d->prefetcherLock);
    if (!d->prefetcher) d->prefetcher.reset(new Prefetcher(*this));
    d->prefetcher->Fetch(client.CopySettings(), credentials, urls, follow);
}

bool RunContext::AwaitAhead(const std::string& url, const std::string& credentials, RestResult& timedOut)
{
    Prefetcher* prefetcher = nullptr;
    {
        const std::lock_guard<std::mutex> guard(d->prefetcherLock);
        prefetcher = d->prefetcher.get();
    }
    return prefetcher != nullptr && prefetcher->AwaitRunning(url, credentials, timedOut);
}

bool RunContext::FirstTime(const void* key)
{
    const std::lock_guard<std::mutex> guard(d->answersLock);
    return d->seen.insert(key).second;
}

void RunContext::CountRequests(std::uint64_t count, std::uint64_t nanoseconds)
{
    d->requests += count;
    d->waitNanoseconds += nanoseconds;
}

std::size_t RunContext::Concurrency() const { return d->concurrency; }

std::uint64_t RunContext::Requests() const { return d->requests; }

double RunContext::WaitSeconds() const { return static_cast<double>(d->waitNanoseconds) / 1e9; }

RunContext* RunContext::Current() { return currentContext; }

RunContext::Scope::Scope(RunContext* context) : previous(currentContext) { currentContext = context; }

RunContext::Scope::~Scope() { currentContext = previous; }

}  // namespace Rest
