#include "kestro/rest/restclient.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <set>
#include <sstream>
#include <stdexcept>

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/predicate.hpp>
#include <boost/algorithm/string/trim.hpp>

#include "kestro/xmodule/uri.h"
#include "rest/restclient_p.h"
#include "rest/runcontext.h"
#include "xmodule/transferdeadline.h"

namespace Rest {

namespace {

const char* const USER_AGENT = "OQCE_KESTRO";
const char* const UNKNOWN_REQUEST_TYPE = "unknown request type";
const char* const PAST_DEADLINE_TEXT = "Time limit reached before the request was sent";
// How long a batch of transfers waits for any of them to move before it looks again.
const int MULTI_POLL_MS = 100;
// Without a fixed time-out a transfer dies only when it stays this slow for this long.
const long LOW_SPEED_TIME_SECONDS = 60;
const long LOW_SPEED_LIMIT_BYTES = 30;
// libcurl codes of a time-out or of a certificate that could not be used or trusted.
const int TIMEOUT_OR_CERTIFICATE_CODES[] = {
    CURLE_OPERATION_TIMEDOUT, CURLE_SSL_CERTPROBLEM, CURLE_PEER_FAILED_VERIFICATION,
    CURLE_SSL_CACERT_BADFILE, CURLE_SSL_INVALIDCERTSTATUS};

size_t AppendToBody(char* data, size_t size, size_t count, void* userdata)
{
    static_cast<RestResult*>(userdata)->body.append(data, size * count);
    return size * count;
}

size_t WriteToFile(char* data, size_t size, size_t count, void* userdata)
{
    std::FILE* file = static_cast<std::FILE*>(userdata);
    if (!file || std::fwrite(data, size, count, file) < count)
        return 0;
    return size * count;
}

size_t StoreHeaderLine(char* data, size_t size, size_t count, void* userdata)
{
    StoreHeaderText(std::string(data, size * count), *static_cast<RestResult*>(userdata));
    return size * count;
}

size_t ReadFromStream(char* buffer, size_t size, size_t count, void* userdata)
{
    std::istream* stream = static_cast<std::istream*>(userdata);
    if (!stream)
        return static_cast<size_t>(-1);
    if (stream->bad() || stream->fail() || stream->eof())
        return 0;
    stream->read(buffer, static_cast<std::streamsize>(size * count));
    return static_cast<size_t>(stream->gcount());
}

// libcurl only ever needs to send the body again from the start.
int RewindStream(void* userdata, curl_off_t, int)
{
    std::istream* stream = static_cast<std::istream*>(userdata);
    if (!stream)
        return CURL_SEEKFUNC_FAIL;
    stream->clear();
    stream->seekg(0, std::ios::beg);
    return CURL_SEEKFUNC_OK;
}

int ReportProgress(void* userdata, curl_off_t downloadTotal, curl_off_t downloadNow,
                   curl_off_t uploadTotal, curl_off_t uploadNow)
{
    const ProgressSink* sink = static_cast<const ProgressSink*>(userdata);
    if (!sink || sink->empty())
        return 0;
    if (downloadTotal >= 1)
        (*sink)(downloadTotal, downloadNow);
    else if (uploadTotal >= 1)
        (*sink)(uploadTotal, uploadNow);
    return 0;
}

std::uint64_t NanosecondsSince(std::chrono::steady_clock::time_point start)
{
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now() - start).count());
}

}  // namespace

void StoreHeaderText(std::string line, RestResult& result)
{
    std::string::size_type colon = line.find(':');
    if (colon != std::string::npos) {
        std::string name = boost::algorithm::trim_copy(line.substr(0, colon));
        result.headers[name] = boost::algorithm::trim_copy(line.substr(colon + 1));
    } else {
        boost::algorithm::trim(line);
        // The status line is kept this way; the blank line that ends the block is not.
        if (!line.empty())
            result.headers[line] = "present";
    }
}

RestClientPrivate::RestClientPrivate()
    : handle(curl_easy_init()), timeout(-1), followRedirects(false), insecure(false),
      suppressExpect(false), maxRedirects(-1), userAgent(USER_AGENT), gzip(false), outputFile(nullptr)
{
    errorBuffer[0] = '\0';
}

void RestClientPrivate::CopySettingsOf(const RestClientPrivate& other)
{
    headers = other.headers;
    timeout = other.timeout;
    followRedirects = other.followRedirects;
    insecure = other.insecure;
    suppressExpect = other.suppressExpect;
    maxRedirects = other.maxRedirects;
    user = other.user;
    password = other.password;
    userAgent = other.userAgent;
    caFile = other.caFile;
    certFile = other.certFile;
    certType = other.certType;
    keyFile = other.keyFile;
    keyPassword = other.keyPassword;
    proxyUrl = other.proxyUrl;
    proxyUser = other.proxyUser;
    proxyPassword = other.proxyPassword;
    cookieLine = other.cookieLine;
    gzip = other.gzip;
}

RestClientPrivate::~RestClientPrivate()
{
    if (handle)
        curl_easy_cleanup(handle);
}

void RestClientPrivate::SetWriteOptions(RestResult& result)
{
    if (outputFile) {
        curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, &WriteToFile);
        curl_easy_setopt(handle, CURLOPT_WRITEDATA, outputFile);
    } else {
        curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, &AppendToBody);
        curl_easy_setopt(handle, CURLOPT_WRITEDATA, &result);
    }
    curl_easy_setopt(handle, CURLOPT_HEADERFUNCTION, &StoreHeaderLine);
    curl_easy_setopt(handle, CURLOPT_HEADERDATA, &result);
}

curl_slist* RestClientPrivate::BuildHeaderList() const
{
    curl_slist* list = nullptr;
    for (HeaderMap::const_iterator it = headers.begin(); it != headers.end(); ++it)
        list = curl_slist_append(list, (it->first + ": " + it->second).c_str());
    if (suppressExpect)
        list = curl_slist_append(list, "Expect:");
    return list;
}

void RestClientPrivate::SetAuthOptions()
{
    if (user.empty())
        return;
    curl_easy_setopt(handle, CURLOPT_HTTPAUTH, CURLAUTH_BASIC);
    curl_easy_setopt(handle, CURLOPT_USERPWD, (user + ":" + password).c_str());
}

void RestClientPrivate::SetTimeoutOptions()
{
    if (timeout < 0) {
        curl_easy_setopt(handle, CURLOPT_LOW_SPEED_TIME, LOW_SPEED_TIME_SECONDS);
        curl_easy_setopt(handle, CURLOPT_LOW_SPEED_LIMIT, LOW_SPEED_LIMIT_BYTES);
    } else {
        curl_easy_setopt(handle, CURLOPT_TIMEOUT, static_cast<long>(timeout));
        curl_easy_setopt(handle, CURLOPT_CONNECTTIMEOUT, static_cast<long>(timeout));
    }
    BoundByDeadline();
}

// The run's time limit cuts a transfer on top of its own time-out, whichever ends first.
void RestClientPrivate::BoundByDeadline()
{
    if (!XModule::TransferDeadline::IsSet())
        return;
    const std::int64_t leftMs = std::max<std::int64_t>(XModule::TransferDeadline::RemainingMs(), 1);
    if (timeout > 0 && leftMs >= static_cast<std::int64_t>(timeout) * 1000)
        return;
    curl_easy_setopt(handle, CURLOPT_TIMEOUT_MS, static_cast<long>(leftMs));
}

// Past the deadline nothing is sent: the answer is libcurl's own time-out, so callers treat it as one.
RestResult RestClientPrivate::RefusePastDeadline()
{
    curl_easy_reset(handle);
    RestResult result;
    result.curlCode = CURLE_OPERATION_TIMEDOUT;
    result.httpCode = -1;
    result.body = PAST_DEADLINE_TEXT;
    return result;
}

void RestClientPrivate::SetTlsOptions()
{
    // A CA file wins over `insecure`: a caller who names one wants it used.
    if (!caFile.empty()) {
        curl_easy_setopt(handle, CURLOPT_CAINFO, caFile.c_str());
    } else if (insecure) {
        curl_easy_setopt(handle, CURLOPT_SSL_VERIFYPEER, 0L);
        curl_easy_setopt(handle, CURLOPT_SSL_VERIFYHOST, 0L);
    }
    if (!certFile.empty())
        curl_easy_setopt(handle, CURLOPT_SSLCERT, certFile.c_str());
    if (!certType.empty())
        curl_easy_setopt(handle, CURLOPT_SSLCERTTYPE, certType.c_str());
    if (!keyFile.empty())
        curl_easy_setopt(handle, CURLOPT_SSLKEY, keyFile.c_str());
    if (!keyPassword.empty())
        curl_easy_setopt(handle, CURLOPT_KEYPASSWD, keyPassword.c_str());
}

void RestClientPrivate::SetProxyOptions()
{
    if (proxyUrl.empty())
        return;
    curl_easy_setopt(handle, CURLOPT_PROXY, proxyUrl.c_str());
    curl_easy_setopt(handle, CURLOPT_HTTPPROXYTUNNEL, 1L);
    if (!proxyUser.empty() && !proxyPassword.empty()) {
        curl_easy_setopt(handle, CURLOPT_PROXYUSERNAME, proxyUser.c_str());
        curl_easy_setopt(handle, CURLOPT_PROXYPASSWORD, XModule::Uri::encodeURI(proxyPassword).c_str());
    }
}

void RestClientPrivate::CollectCookies(CURL* easy, RestResult& result)
{
    curl_slist* cookies = nullptr;
    if (curl_easy_getinfo(easy, CURLINFO_COOKIELIST, &cookies) != CURLE_OK || !cookies)
        return;
    for (curl_slist* item = cookies; item; item = item->next)
        result.cookies.push_back(item->data);
    curl_slist_free_all(cookies);
}

curl_slist* RestClientPrivate::Prepare(const std::string& url, RestResult& result)
{
    if (gzip)
        curl_easy_setopt(handle, CURLOPT_ACCEPT_ENCODING, "gzip");
    curl_easy_setopt(handle, CURLOPT_URL, url.c_str());
    SetWriteOptions(result);
    curl_slist* headerList = BuildHeaderList();
    curl_easy_setopt(handle, CURLOPT_HTTPHEADER, headerList);
    SetAuthOptions();
    curl_easy_setopt(handle, CURLOPT_USERAGENT, userAgent.c_str());
    SetTimeoutOptions();
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    if (followRedirects) {
        // Credentials follow a redirect to another host.
        curl_easy_setopt(handle, CURLOPT_UNRESTRICTED_AUTH, 1L);
        curl_easy_setopt(handle, CURLOPT_FOLLOWLOCATION, 1L);
        curl_easy_setopt(handle, CURLOPT_MAXREDIRS, static_cast<long>(maxRedirects));
    }
    SetTlsOptions();
    SetProxyOptions();
    curl_easy_setopt(handle, CURLOPT_COOKIEJAR, "-");
    if (!cookieLine.empty())
        curl_easy_setopt(handle, CURLOPT_COOKIELIST, cookieLine.c_str());
    return headerList;
}

void RestClientPrivate::Complete(CURL* easy, CURLcode code, const char* errors, RestResult& result)
{
    result.curlCode = code;
    if (code == CURLE_OK) {
        long status = -1;
        curl_easy_getinfo(easy, CURLINFO_RESPONSE_CODE, &status);
        result.httpCode = static_cast<std::int32_t>(status);
        CollectCookies(easy, result);
    } else {
        result.httpCode = -1;
        result.body = errors;
    }
}

RestResult RestClientPrivate::Perform(const std::string& url)
{
    if (XModule::TransferDeadline::Passed())
        return RefusePastDeadline();
    RestResult result;
    curl_slist* headerList = Prepare(url, result);
    std::memset(errorBuffer, 0, sizeof(errorBuffer));
    curl_easy_setopt(handle, CURLOPT_ERRORBUFFER, errorBuffer);
    RunContext* run = RunContext::Current();
    if (run != nullptr) curl_easy_setopt(handle, CURLOPT_SHARE, run->Share());
    const std::chrono::steady_clock::time_point sent = std::chrono::steady_clock::now();
    const CURLcode code = curl_easy_perform(handle);
    if (run != nullptr) {
        run->CountRequests(1, NanosecondsSince(sent));
        curl_easy_setopt(handle, CURLOPT_SHARE, static_cast<CURLSH*>(nullptr));
    }
    Complete(handle, code, errorBuffer, result);
    curl_slist_free_all(headerList);
    // Forget every option but keep the connections and cookies of the handle.
    curl_easy_reset(handle);
    return result;
}

// One GET of a batch: its own copy of the prepared handle, header list, error text and answer.
struct RestClientPrivate::Transfer {
    explicit Transfer(const std::string& target) : url(target) {}
    std::string url;
    RestResult result;
    CURL* easy = nullptr;
    curl_slist* headerList = nullptr;
    char errors[CURL_ERROR_SIZE] = {0};
};

RestClient::Answers RestClientPrivate::PerformMany(const std::vector<std::string>& urls, std::size_t concurrency,
                                                   const RestClient::Batch& batch)
{
    std::vector<std::unique_ptr<Transfer> > transfers;
    for (const std::string& url : urls) transfers.emplace_back(new Transfer(url));
    RunContext* run = RunContext::Current();
    const std::chrono::steady_clock::time_point sent = std::chrono::steady_clock::now();
    RunTransfers(transfers, std::max<std::size_t>(concurrency, 1), batch);
    if (run != nullptr && batch.waited) run->CountRequests(0, NanosecondsSince(sent));
    RestClient::Answers answers;
    answers.reserve(transfers.size());
    for (const std::unique_ptr<Transfer>& transfer : transfers) {
        answers.emplace_back(transfer->url, std::move(transfer->result));
        if (transfer->easy == nullptr) continue;
        // Reset first: a copy still holding the cookie-jar option would print its cookies at cleanup.
        curl_easy_reset(transfer->easy);
        curl_easy_cleanup(transfer->easy);
        curl_slist_free_all(transfer->headerList);
    }
    return answers;
}

// Gives the transfer its copy of the handle; false when the deadline has passed and it is refused.
bool RestClientPrivate::Start(Transfer& transfer, RunContext* run)
{
    if (XModule::TransferDeadline::Passed()) {
        transfer.result = RefusePastDeadline();
        return false;
    }
    transfer.headerList = Prepare(transfer.url, transfer.result);
    transfer.easy = curl_easy_duphandle(handle);
    curl_easy_reset(handle);
    curl_easy_setopt(transfer.easy, CURLOPT_ERRORBUFFER, transfer.errors);
    curl_easy_setopt(transfer.easy, CURLOPT_PRIVATE, &transfer);
    if (run != nullptr) curl_easy_setopt(transfer.easy, CURLOPT_SHARE, run->Share());
    return true;
}

// At most `concurrency` transfers at a time through one multi handle, each completed as it ends
// and its followed links queued behind the others. Each request counts in the run as it is sent,
// so that the run's total is whole while a batch of another thread still runs.
void RestClientPrivate::RunTransfers(std::vector<std::unique_ptr<Transfer> >& transfers,
                                            std::size_t concurrency, const RestClient::Batch& batch)
{
    RunContext* run = RunContext::Current();
    std::set<std::string> asked;
    for (const std::unique_ptr<Transfer>& transfer : transfers) asked.insert(transfer->url);
    CURLM* multi = curl_multi_init();
    std::size_t next = 0;
    std::size_t running = 0;
    while (!batch.cancelled || !batch.cancelled()) {
        for (; next < transfers.size() && running < concurrency; ++next) {
            if (batch.wanted && !batch.wanted(transfers[next]->url)) continue;
            if (!Start(*transfers[next], run)) continue;
            curl_multi_add_handle(multi, transfers[next]->easy);
            ++running;
            if (run != nullptr) run->CountRequests(1, 0);
        }
        if (running == 0) break;
        int stillRunning = 0;
        curl_multi_perform(multi, &stillRunning);
        int queued = 0;
        bool ended = false;
        while (CURLMsg* message = curl_multi_info_read(multi, &queued)) {
            if (message->msg != CURLMSG_DONE) continue;
            ended = true;
            Transfer* done = nullptr;
            curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &done);
            Complete(done->easy, message->data.result, done->errors, done->result);
            curl_multi_remove_handle(multi, done->easy);
            --running;
            if (!batch.follow) continue;
            for (const std::string& link : batch.follow(done->url, done->result))
                if (asked.insert(link).second) transfers.emplace_back(new Transfer(link));
        }
        // A transfer that ended leaves room for the next one: fill it before waiting.
        if (!ended) curl_multi_poll(multi, nullptr, 0, MULTI_POLL_MS, nullptr);
    }
    // Transfers still running when the batch was cancelled leave the multi handle before it goes.
    for (const std::unique_ptr<Transfer>& transfer : transfers)
        if (transfer->easy != nullptr) curl_multi_remove_handle(multi, transfer->easy);
    curl_multi_cleanup(multi);
}

void RestClientPrivate::SetStreamOptions(std::istream& stream)
{
    // A stream sent before (a retried verb) is at its end with its fail bit set: start it afresh.
    stream.clear();
    stream.seekg(0, std::ios::end);
    const std::streamoff size = stream.tellg();
    stream.seekg(0, std::ios::beg);
    curl_easy_setopt(handle, CURLOPT_READFUNCTION, &ReadFromStream);
    curl_easy_setopt(handle, CURLOPT_READDATA, &stream);
    curl_easy_setopt(handle, CURLOPT_INFILESIZE, static_cast<long>(size));
    curl_easy_setopt(handle, CURLOPT_SEEKFUNCTION, &RewindStream);
    curl_easy_setopt(handle, CURLOPT_SEEKDATA, &stream);
}

RestClient::RestClient() : d(new RestClientPrivate)
{
    if (!d->handle) throw std::runtime_error("Couldn't initialize curl handle");
}

RestClient::RestClient(RestClient&& other) noexcept = default;

RestClient::~RestClient() = default;

void RestClient::SetCredentials(const std::string& user, const std::string& password)
{
    d->user = user;
    d->password = password;
}

void RestClient::SetTimeout(int seconds)
{
    d->timeout = seconds;
}

void RestClient::SetInsecure(bool insecure)
{
    d->insecure = insecure;
}

void RestClient::SetSuppressExpect(bool suppress)
{
    d->suppressExpect = suppress;
}

void RestClient::SetFollowRedirects(bool follow, int maxRedirects)
{
    d->followRedirects = follow;
    d->maxRedirects = maxRedirects;
}

void RestClient::SetCaFile(const std::string& path)
{
    d->caFile = path;
}

void RestClient::SetProxy(const std::string& url, const std::string& user, const std::string& password)
{
    if (url.empty() || boost::algorithm::starts_with(boost::algorithm::to_upper_copy(url), "HTTP"))
        d->proxyUrl = url;
    else
        d->proxyUrl = "http://" + url;
    d->proxyUser = user;
    d->proxyPassword = password;
}

void RestClient::SetHeaders(const HeaderMap& headers)
{
    d->headers = headers;
}

HeaderMap RestClient::GetHeaders() const
{
    return d->headers;
}

void RestClient::SetHeader(const std::string& name, const std::string& value)
{
    d->headers[name] = value;
}

int RestClient::EnableGzip()
{
    d->gzip = true;
    return 0;
}

RestResult RestClient::Request(RequestType type, const std::string& url, const std::string& body)
{
    // DELETE (4) has no case here on purpose: callers that pass it get the refusal below.
    switch (type) {
    case RequestGet:
        return Get(url);
    case RequestPost:
        return Post(url, body);
    case RequestPut:
        return Put(url, body);
    case RequestPatch:
        return Patch(url, body);
    case RequestHead:
        return Head(url);
    case RequestOptions:
        return Options(url);
    default:
        break;
    }
    RestResult refused;
    refused.body = UNKNOWN_REQUEST_TYPE;
    return refused;
}

RestClient::Answers RestClient::GetMany(const std::vector<std::string>& urls, std::size_t concurrency,
                                        const Batch& batch)
{
    return d->PerformMany(urls, concurrency, batch);
}

RestClient RestClient::CopySettings() const
{
    RestClient copy;
    copy.d->CopySettingsOf(*d);
    return copy;
}

RestResult RestClient::Get(const std::string& url)
{
    return d->Perform(url);
}

RestResult RestClient::PostMultipart(const std::string& url, const MultipartBody& parts,
                                     const ProgressSink& progress)
{
    d->progress = progress;
    curl_easy_setopt(d->handle, CURLOPT_POST, 1L);
    curl_mime* mime = curl_mime_init(d->handle);
    for (MultipartBody::const_iterator it = parts.begin(); it != parts.end(); ++it)
        (*it)->Fill(curl_mime_addpart(mime));
    curl_easy_setopt(d->handle, CURLOPT_MIMEPOST, mime);
    curl_easy_setopt(d->handle, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(d->handle, CURLOPT_XFERINFOFUNCTION, &ReportProgress);
    curl_easy_setopt(d->handle, CURLOPT_XFERINFODATA, &d->progress);
    RestResult result = d->Perform(url);
    curl_mime_free(mime);
    d->progress.clear();
    return result;
}

RestResult RestClient::PostStream(const std::string& url, std::istream& stream)
{
    curl_easy_setopt(d->handle, CURLOPT_POST, 1L);
    d->SetStreamOptions(stream);
    return d->Perform(url);
}

RestResult RestClient::Post(const std::string& url, const std::string& body)
{
    curl_easy_setopt(d->handle, CURLOPT_POST, 1L);
    curl_easy_setopt(d->handle, CURLOPT_POSTFIELDS, body.c_str());
    curl_easy_setopt(d->handle, CURLOPT_POSTFIELDSIZE, static_cast<long>(body.size()));
    return d->Perform(url);
}

RestResult RestClient::PutStream(const std::string& url, std::istream& stream)
{
    curl_easy_setopt(d->handle, CURLOPT_PUT, 1L);
    curl_easy_setopt(d->handle, CURLOPT_UPLOAD, 1L);
    d->SetStreamOptions(stream);
    return d->Perform(url);
}

RestResult RestClient::Put(const std::string& url, const std::string& body)
{
    std::istringstream stream(body);
    return PutStream(url, stream);
}

RestResult RestClient::PatchStream(const std::string& url, std::istream& stream)
{
    curl_easy_setopt(d->handle, CURLOPT_CUSTOMREQUEST, "PATCH");
    curl_easy_setopt(d->handle, CURLOPT_UPLOAD, 1L);
    d->SetStreamOptions(stream);
    return d->Perform(url);
}

RestResult RestClient::Patch(const std::string& url, const std::string& body)
{
    std::istringstream stream(body);
    return PatchStream(url, stream);
}

RestResult RestClient::Delete(const std::string& url)
{
    curl_easy_setopt(d->handle, CURLOPT_CUSTOMREQUEST, "DELETE");
    return d->Perform(url);
}

RestResult RestClient::Head(const std::string& url)
{
    curl_easy_setopt(d->handle, CURLOPT_CUSTOMREQUEST, "HEAD");
    curl_easy_setopt(d->handle, CURLOPT_NOBODY, 1L);
    return d->Perform(url);
}

RestResult RestClient::Options(const std::string& url)
{
    curl_easy_setopt(d->handle, CURLOPT_CUSTOMREQUEST, "OPTIONS");
    curl_easy_setopt(d->handle, CURLOPT_NOBODY, 1L);
    return d->Perform(url);
}

int RestClient::ClassifyResult(const RestResult& result)
{
    if (result.curlCode == CURLE_OK)
        return std::to_string(result.httpCode)[0] == '2' ? 0 : -1;
    for (int code : TIMEOUT_OR_CERTIFICATE_CODES) {
        if (result.curlCode == code)
            return -2;
    }
    return -1;
}

void RestClient::SetClientCertificate(const std::string& certFile, const std::string& certType,
                                      const std::string& keyFile, const std::string& keyPassword)
{
    d->certFile = certFile;
    d->certType = certType;
    d->keyFile = keyFile;
    d->keyPassword = keyPassword;
}

void RestClient::SetCookieLine(const std::string& cookieLine)
{
    d->cookieLine = cookieLine;
}

void RestClient::SetOutputFile(std::FILE* file)
{
    d->outputFile = file;
}

}  // namespace Rest
