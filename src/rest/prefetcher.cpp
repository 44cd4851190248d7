#include "rest/prefetcher.h"

#include "rest/runcontext.h"
#include "xmodule/rlog.h"
#include "xmodule/transferdeadline.h"

#include <boost/bind/bind.hpp>
#include <curl/curl.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <exception>
#include <iterator>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

namespace Rest {

namespace {

struct Job {
    Job(RestClient&& sender, const std::string& user, const RestClient::FollowLinks& links)
        : client(std::move(sender)), credentials(user), follow(links)
    {
    }
    RestClient client;
    std::string credentials;
    std::vector<std::string> urls;
    RestClient::FollowLinks follow;
};

typedef XModule::TransferDeadline::Clock Clock;

// Where a GET of the thread stands; it leaves the table once it has ended or a reader took it.
struct OnItsWay {
    const Job* job;
    bool running;
    // The time limit in force when it was sent, which bounds it.
    Clock::time_point deadline;
};

// A GET of the thread that ran out of its time limit, for a reader under the same limit.
struct TimedOut {
    RestResult result;
    Clock::time_point deadline;
};

std::uint64_t NanosecondsSince(std::chrono::steady_clock::time_point start)
{
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now() - start).count());
}

}  // namespace

struct Prefetcher::Private {
    explicit Private(RunContext& owner) : run(owner) {}

    RunContext& run;
    std::mutex lock;
    // Signalled when a GET ends or a job comes, and on stopping.
    std::condition_variable changed;
    std::map<std::string, OnItsWay> onItsWay;
    std::map<std::string, TimedOut> timedOut;
    std::deque<std::unique_ptr<Job> > jobs;
    std::atomic<bool> stopping{false};
    std::thread worker;

    // Under `lock`: the URLs neither kept nor on their way, now queued for `job`.
    std::vector<std::string> Claim(const Job& job, const std::vector<std::string>& urls)
    {
        std::vector<std::string> fresh;
        RestResult kept;
        for (const std::string& url : urls) {
            const std::string key = RunContext::AnswerKey(url, job.credentials);
            if (onItsWay.count(key) != 0 || run.FindAnswer(url, job.credentials, kept)) continue;
            onItsWay[key] = OnItsWay{&job, false, Clock::time_point()};
            fresh.push_back(url);
        }
        return fresh;
    }

    void Forget(const Job& job, const std::string& url)
    {
        const std::map<std::string, OnItsWay>::iterator found =
            onItsWay.find(RunContext::AnswerKey(url, job.credentials));
        if (found != onItsWay.end() && found->second.job == &job) onItsWay.erase(found);
    }

    bool Begin(const Job* job, const std::string& url)
    {
        const std::lock_guard<std::mutex> guard(lock);
        const std::map<std::string, OnItsWay>::iterator found =
            onItsWay.find(RunContext::AnswerKey(url, job->credentials));
        if (found == onItsWay.end() || found->second.job != job) return false;
        found->second.running = true;
        found->second.deadline = XModule::TransferDeadline::When();
        return true;
    }

    std::vector<std::string> Arrived(const Job* job, const std::string& url, const RestResult& answer)
    {
        // Kept before the GET leaves the table, so that a reader woken by it finds the answer.
        run.KeepAnswer(url, job->credentials, answer);
        const std::vector<std::string> links = job->follow ? job->follow(url, answer) : std::vector<std::string>();
        std::vector<std::string> fresh;
        {
            const std::lock_guard<std::mutex> guard(lock);
            const std::string key = RunContext::AnswerKey(url, job->credentials);
            const std::map<std::string, OnItsWay>::const_iterator sent = onItsWay.find(key);
            if (answer.curlCode == CURLE_OPERATION_TIMEDOUT && sent != onItsWay.end() && sent->second.job == job)
                timedOut[key] = TimedOut{answer, sent->second.deadline};
            Forget(*job, url);
            fresh = Claim(*job, links);
        }
        changed.notify_all();
        return fresh;
    }

    bool Stopping() const { return stopping; }

    void RunJob(Job& job)
    {
        using boost::placeholders::_1;
        using boost::placeholders::_2;
        RestClient::Batch batch;
        batch.follow = boost::bind(&Private::Arrived, this, &job, _1, _2);
        batch.wanted = boost::bind(&Private::Begin, this, &job, _1);
        batch.cancelled = boost::bind(&Private::Stopping, this);
        batch.waited = false;
        try {
            job.client.GetMany(job.urls, run.Concurrency(), batch);
        } catch (const std::exception& error) {
            // Nothing is lost: the readers send what did not come.
            RLOG(XModule::LOG_DEBUG) << "Redfish GETs ahead ended early: " << error.what();
        }
        ForgetJob(job);
    }

    // GETs of a job refused past a deadline, dropped or never sent are no longer on their way.
    void ForgetJob(const Job& job)
    {
        {
            const std::lock_guard<std::mutex> guard(lock);
            for (std::map<std::string, OnItsWay>::iterator entry = onItsWay.begin(); entry != onItsWay.end();)
                entry = entry->second.job == &job ? onItsWay.erase(entry) : std::next(entry);
        }
        changed.notify_all();
    }

    void Work()
    {
        const RunContext::Scope scope(&run);
        for (;;) {
            std::unique_ptr<Job> job;
            {
                std::unique_lock<std::mutex> guard(lock);
                changed.wait(guard, [this]() { return stopping || !jobs.empty(); });
                if (stopping) return;
                job = std::move(jobs.front());
                jobs.pop_front();
            }
            RunJob(*job);
        }
    }

    // A time-out is handed once, to a reader under the limit that cut it; any other reader sends
    // its own GET, as it would have without reading ahead.
    bool TakeTimedOut(const std::string& key, RestResult& result)
    {
        const std::map<std::string, TimedOut>::iterator found = timedOut.find(key);
        if (found == timedOut.end()) return false;
        const bool sameLimit = found->second.deadline == XModule::TransferDeadline::When();
        if (sameLimit) result = found->second.result;
        timedOut.erase(found);
        return sameLimit;
    }

    bool IsRunning(const std::string& key) const
    {
        const std::map<std::string, OnItsWay>::const_iterator found = onItsWay.find(key);
        return found != onItsWay.end() && found->second.running;
    }
};

Prefetcher::Prefetcher(RunContext& run) : d(new Private(run)) {}

Prefetcher::~Prefetcher()
{
    {
        const std::lock_guard<std::mutex> guard(d->lock);
        d->stopping = true;
    }
    d->changed.notify_all();
    if (d->worker.joinable()) d->worker.join();
}

void Prefetcher::Fetch(RestClient client, const std::string& credentials, const std::vector<std::string>& urls,
                       const RestClient::FollowLinks& follow)
{
    std::unique_ptr<Job> job(new Job(std::move(client), credentials, follow));
    {
        const std::lock_guard<std::mutex> guard(d->lock);
        job->urls = d->Claim(*job, urls);
        if (job->urls.empty()) return;
        d->jobs.push_back(std::move(job));
        if (!d->worker.joinable()) d->worker = std::thread(&Private::Work, d.get());
    }
    d->changed.notify_all();
}

bool Prefetcher::AwaitRunning(const std::string& url, const std::string& credentials, RestResult& timedOut)
{
    const std::string key = RunContext::AnswerKey(url, credentials);
    const std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
    bool handed = false;
    {
        std::unique_lock<std::mutex> guard(d->lock);
        const std::map<std::string, OnItsWay>::iterator found = d->onItsWay.find(key);
        if (found != d->onItsWay.end() && !found->second.running) {
            d->onItsWay.erase(found);
            return false;
        }
        while (d->IsRunning(key)) {
            if (!XModule::TransferDeadline::IsSet()) {
                d->changed.wait(guard);
                continue;
            }
            const std::int64_t leftMs = XModule::TransferDeadline::RemainingMs();
            if (leftMs == 0) break;
            d->changed.wait_for(guard, std::chrono::milliseconds(leftMs));
        }
        handed = d->TakeTimedOut(key, timedOut);
    }
    d->run.CountRequests(0, NanosecondsSince(start));
    return handed;
}

}  // namespace Rest
