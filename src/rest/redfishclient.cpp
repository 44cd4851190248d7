#include "kestro/rest/redfishclient.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include <boost/bind/bind.hpp>
#include <curl/curl.h>
#include <boost/ref.hpp>

#include "xmodule/rlog.h"
#include "rest/redfishclient_p.h"
#include "rest/redfishsettings.h"
#include "rest/runcontext.h"
#include "xmodule/transferdeadline.h"

namespace Rest {

namespace {

const std::int32_t SERVICE_UNAVAILABLE = 503;

// Only a 503 means "still starting"; a refused connection or another error is final.
bool IsStillStarting(const RestResult& result)
{
    return result.curlCode == 0 && result.httpCode == SERVICE_UNAVAILABLE;
}

// The pause, cut short where the run's time limit comes first; false when that limit has passed,
// so that the caller returns the 503 it has rather than a try that could not be sent.
bool WaitBeforeRetry(std::uint64_t intervalMs)
{
    if (!XModule::TransferDeadline::IsSet()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(intervalMs));
        return true;
    }
    const std::uint64_t leftMs = static_cast<std::uint64_t>(XModule::TransferDeadline::RemainingMs());
    std::this_thread::sleep_for(std::chrono::milliseconds(std::min(intervalMs, leftMs)));
    return !XModule::TransferDeadline::Passed();
}

bool IsKept(const RunContext& run, const std::string& credentials, const std::string& url)
{
    RestResult known;
    return run.FindAnswer(url, credentials, known);
}

}  // namespace

RedfishClientPrivate::RedfishClientPrivate() : hasRetryTiming(false), retryTiming() {}

RestResult RedfishClientPrivate::Retry(const boost::function<RestResult()>& attempt) const
{
    const RetryPolicy policy = hasRetryTiming ? retryTiming : RetryPolicy::FromSettings();
    RestResult result;
    const std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
    for (;;) {
        result = attempt();
        if (!IsStillStarting(result))
            return result;
        RLOG(XModule::LOG_DEBUG) << "curlCode: " << result.curlCode << " | httpCode: " << result.httpCode
                                 << " | body: " << result.body;
        const std::uint64_t elapsedMs = static_cast<std::uint64_t>(
            std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start)
                .count());
        if (elapsedMs > policy.waitMs || !WaitBeforeRetry(policy.intervalMs))
            return result;
    }
}

RedfishClient::RedfishClient() : d(new RedfishClientPrivate) {}

RedfishClient::RedfishClient(RedfishClient&& other) noexcept = default;

RedfishClient::~RedfishClient() = default;

void RedfishClient::SetCredentials(const std::string& user, const std::string& password)
{
    d->inner.SetCredentials(user, password);
    d->credentials = user + '\n' + password;
}

void RedfishClient::SetTimeout(int seconds)
{
    d->inner.SetTimeout(EffectiveTimeout(seconds, GetRedfishSettings().actionTimeout));
}

void RedfishClient::SetInsecure(bool insecure)
{
    d->inner.SetInsecure(insecure);
}

void RedfishClient::SetSuppressExpect(bool suppress)
{
    d->inner.SetSuppressExpect(suppress);
}

void RedfishClient::SetFollowRedirects(bool follow, int maxRedirects)
{
    d->inner.SetFollowRedirects(follow, maxRedirects);
}

void RedfishClient::SetCaFile(const std::string& path)
{
    d->inner.SetCaFile(path);
}

void RedfishClient::SetProxy(const std::string& url, const std::string& user, const std::string& password)
{
    d->inner.SetProxy(url, user, password);
}

void RedfishClient::SetHeaders(const HeaderMap& headers)
{
    d->inner.SetHeaders(HeaderMap(headers));
}

HeaderMap RedfishClient::GetHeaders() const
{
    return d->inner.GetHeaders();
}

void RedfishClient::SetHeader(const std::string& name, const std::string& value)
{
    d->inner.SetHeader(name, value);
}

int RedfishClient::EnableGzip()
{
    return d->inner.EnableGzip();
}

RestResult RedfishClient::Request(RequestType type, const std::string& url, const std::string& body)
{
    return d->inner.Request(type, url, body);
}

RestResult RedfishClient::Get(const std::string& url)
{
    RLOG(XModule::LOG_DEBUG) << "Redfish GET action on URL: " << url;
    RunContext* run = RunContext::Current();
    RestResult answer;
    if (run != nullptr) {
        if (run->FindAnswer(url, d->credentials, answer)) return answer;
        // Looked up again after the wait: a GET sent ahead may also have ended just before it.
        if (run->AwaitAhead(url, d->credentials, answer) || run->FindAnswer(url, d->credentials, answer))
            return answer;
    }
    answer = d->Retry(boost::bind(&RestClient::Get, &d->inner, boost::cref(url)));
    if (run != nullptr) run->KeepAnswer(url, d->credentials, answer);
    return answer;
}

void RedfishClient::GetAhead(const std::vector<std::string>& urls, const RestClient::FollowLinks& follow)
{
    RunContext* run = RunContext::Current();
    if (run == nullptr || run->Concurrency() < 2) return;
    std::vector<std::string> missing;
    for (const std::string& url : urls)
        if (!IsKept(*run, d->credentials, url)) missing.push_back(url);
    if (missing.empty()) return;
    RLOG(XModule::LOG_DEBUG) << "Redfish GET ahead of " << missing.size() << " URLs, " << run->Concurrency()
                             << " at a time";
    run->FetchAhead(d->inner, d->credentials, missing, follow);
}

bool RedfishClient::FindKept(const std::string& url, RestResult& answer) const
{
    const RunContext* run = RunContext::Current();
    return run != nullptr && run->FindAnswer(url, d->credentials, answer);
}

RestResult RedfishClient::PostMultipart(const std::string& url, const MultipartBody& parts,
                                        const ProgressSink& progress)
{
    ProgressSink sink = progress;
    RestResult result = d->Retry(
        boost::bind(&RestClient::PostMultipart, &d->inner, boost::cref(url), boost::cref(parts), boost::cref(sink)));
    sink.clear();
    return result;
}

RestResult RedfishClient::PostStream(const std::string& url, std::istream& stream)
{
    return d->Retry(boost::bind(&RestClient::PostStream, &d->inner, boost::cref(url), boost::ref(stream)));
}

RestResult RedfishClient::Post(const std::string& url, const std::string& body)
{
    return d->Retry(boost::bind(&RestClient::Post, &d->inner, boost::cref(url), boost::cref(body)));
}

RestResult RedfishClient::PutStream(const std::string& url, std::istream& stream)
{
    return d->Retry(boost::bind(&RestClient::PutStream, &d->inner, boost::cref(url), boost::ref(stream)));
}

RestResult RedfishClient::Put(const std::string& url, const std::string& body)
{
    return d->Retry(boost::bind(&RestClient::Put, &d->inner, boost::cref(url), boost::cref(body)));
}

RestResult RedfishClient::PatchStream(const std::string& url, std::istream& stream)
{
    return d->Retry(boost::bind(&RestClient::PatchStream, &d->inner, boost::cref(url), boost::ref(stream)));
}

RestResult RedfishClient::Patch(const std::string& url, const std::string& body)
{
    return d->Retry(boost::bind(&RestClient::Patch, &d->inner, boost::cref(url), boost::cref(body)));
}

RestResult RedfishClient::Delete(const std::string& url)
{
    return d->Retry(boost::bind(&RestClient::Delete, &d->inner, boost::cref(url)));
}

RestResult RedfishClient::Head(const std::string& url)
{
    return d->Retry(boost::bind(&RestClient::Head, &d->inner, boost::cref(url)));
}

RestResult RedfishClient::Options(const std::string& url)
{
    return d->Retry(boost::bind(&RestClient::Options, &d->inner, boost::cref(url)));
}

int RedfishClient::ClassifyResult(const RestResult& result)
{
    return d->inner.ClassifyResult(result);
}

void RedfishClient::SetRetryTiming(std::uint64_t waitMs, std::uint64_t intervalMs)
{
    d->hasRetryTiming = true;
    d->retryTiming.waitMs = waitMs;
    d->retryTiming.intervalMs = intervalMs;
}

}  // namespace Rest
