#include "fakebmc/loopbackbmc.h"

#include <sys/socket.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <set>
#include <sstream>
#include <stdexcept>
#include <thread>

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/predicate.hpp>
#include <boost/archive/iterators/binary_from_base64.hpp>
#include <boost/archive/iterators/transform_width.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http.hpp>
#include <zlib.h>

#include "fakebmc/mockuptree.h"
#include "fakebmc/selfsignedcertificate.h"

namespace asio = boost::asio;
namespace http = boost::beast::http;
using asio::ip::tcp;

namespace {

// Large enough for the multi-megabyte uploads of the tests.
const std::uint64_t MAX_REQUEST_BODY = 256 * 1024 * 1024;
const char* const SERVER_NAME = "kestro-loopback-bmc";
const char* const JSON_TYPE = "application/json";
const char* const CONTINUE_LINE = "HTTP/1.1 100 Continue\r\n\r\n";
const char* const TUNNEL_OPEN_LINE = "HTTP/1.1 200 Connection established\r\n\r\n";
const char* const BASE64_ALPHABET = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::string DecodeBase64(std::string text)
{
    while (!text.empty() && text[text.size() - 1] == '=')
        text.erase(text.size() - 1);
    if (text.find_first_not_of(BASE64_ALPHABET) != std::string::npos)
        return std::string();
    typedef boost::archive::iterators::transform_width<
        boost::archive::iterators::binary_from_base64<std::string::const_iterator>, 8, 6>
        Decoder;
    return std::string(Decoder(text.begin()), Decoder(text.end()));
}

// "Basic dXNlcjpwYXNz" -> ("user", "pass"); anything else gives two empty texts.
void DecodeBasic(const std::string& header, std::string& user, std::string& password)
{
    const std::string scheme = "Basic ";
    if (header.compare(0, scheme.size(), scheme) != 0)
        return;
    const std::string pair = DecodeBase64(header.substr(scheme.size()));
    const std::string::size_type colon = pair.find(':');
    if (colon == std::string::npos)
        return;
    user = pair.substr(0, colon);
    password = pair.substr(colon + 1);
}

int HexValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

std::string PercentDecode(const std::string& text)
{
    std::string decoded;
    for (std::string::size_type i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size() && HexValue(text[i + 1]) >= 0 && HexValue(text[i + 2]) >= 0) {
            decoded += static_cast<char>(HexValue(text[i + 1]) * 16 + HexValue(text[i + 2]));
            i += 2;
        } else {
            decoded += text[i];
        }
    }
    return decoded;
}

MockupTree::Query ParseQuery(const std::string& text)
{
    MockupTree::Query query;
    std::istringstream in(text);
    std::string item;
    while (std::getline(in, item, '&')) {
        const std::string::size_type equals = item.find('=');
        if (equals == std::string::npos)
            query[PercentDecode(item)] = std::string();
        else
            query[PercentDecode(item.substr(0, equals))] = PercentDecode(item.substr(equals + 1));
    }
    return query;
}

std::string GzipCompress(const std::string& data)
{
    z_stream stream = z_stream();
    // 15 window bits plus 16: a gzip header and trailer instead of a zlib one.
    if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY) != Z_OK)
        throw std::runtime_error("deflateInit2 failed");
    std::string out(deflateBound(&stream, data.size()), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.data()));
    stream.avail_in = static_cast<uInt>(data.size());
    stream.next_out = reinterpret_cast<Bytef*>(&out[0]);
    stream.avail_out = static_cast<uInt>(out.size());
    const int status = deflate(&stream, Z_FINISH);
    out.resize(stream.total_out);
    deflateEnd(&stream);
    if (status != Z_STREAM_END)
        throw std::runtime_error("deflate failed");
    return out;
}

struct Redirect {
    int status;
    std::string location;
};

// What to write back for one request.
struct Reply {
    http::response<http::string_body> response;
    bool useRaw = false;   // write `raw` as it stands instead of `response`
    std::string raw;
    bool close = false;    // close the connection after writing
    bool openTunnel = false;
    bool stall = false;    // write nothing and hold the connection
    int dripMs = 0;        // write a byte per this many milliseconds
};

std::shared_ptr<asio::ssl::context> MakeTlsContext(const SelfSignedCertificate& certificate)
{
    std::shared_ptr<asio::ssl::context> context = std::make_shared<asio::ssl::context>(asio::ssl::context::tls_server);
    context->use_certificate_chain(asio::buffer(certificate.CertificatePem()));
    context->use_private_key(asio::buffer(certificate.PrivateKeyPem()), asio::ssl::context::pem);
    return context;
}

}  // namespace

class LoopbackBmcPrivate {
public:
    explicit LoopbackBmcPrivate(const LoopbackBmc::Options& options);

    void AcceptLoop();
    void ServeConnection(std::shared_ptr<tcp::socket> socket);
    template <class Stream>
    void ServeRequests(Stream& stream, const asio::ssl::context* startedWith);
    // True when the certificate was replaced after a connection began with `startedWith`.
    bool TlsReplacedSince(const asio::ssl::context* startedWith);
    Reply Answer(const http::request<http::string_body>& message, bool tunnelled);
    Reply AnswerConnect(LoopbackBmc::Request& record);
    Reply AnswerResource(const http::request<http::string_body>& message, const LoopbackBmc::Request& record);
    http::response<http::string_body> MakeResponse(const http::request<http::string_body>& message, int status,
                                                   const std::string& body, const std::string& contentType);
    // False when the server stops during the wait.
    bool WaitLatency();
    bool Pause(int milliseconds);
    template <class Stream>
    void Drip(Stream& stream, const Reply& reply);
    void ShutdownSocket(tcp::socket& socket);
    // Joins the connection threads that have ended; called with `mutex` held.
    void JoinFinishedWorkers();

    LoopbackBmc::Options options;
    asio::io_context io;
    tcp::acceptor acceptor;
    std::unique_ptr<SelfSignedCertificate> certificate;
    std::shared_ptr<asio::ssl::context> tls;
    std::thread acceptThread;
    bool running = false;

    mutable std::mutex mutex;
    std::condition_variable changed;
    bool stopping = false;
    // A thread per connection, joined once it ends, so that none outlives the server (or a test
    // process at exit, where a thread still tearing down its TLS state shows as a leak).
    std::map<std::thread::id, std::thread> workers;
    std::vector<std::thread> finishedWorkers;
    std::vector<std::shared_ptr<tcp::socket> > sockets;

    MockupTree tree;
    std::map<std::string, std::string> contentTypes;
    std::map<std::string, Redirect> redirects;
    std::map<std::string, int> forcedStatuses;
    std::map<std::string, std::string> rawResponses;
    std::set<std::string> stalledPaths;
    std::map<std::string, int> dripIntervals;
    std::vector<std::pair<std::string, std::string> > extraHeaders;
    std::size_t pageSize = 0;
    int failCount = 0;
    int failStatus = 503;
    int latencyMs = 0;
    bool gzip = true;
    std::vector<LoopbackBmc::Request> requests;
    std::map<std::string, int> pathCounts;
};

LoopbackBmcPrivate::LoopbackBmcPrivate(const LoopbackBmc::Options& options)
    : options(options), acceptor(io), tree(options.fixtureRoot)
{
}

void LoopbackBmcPrivate::AcceptLoop()
{
    for (;;) {
        std::shared_ptr<tcp::socket> socket = std::make_shared<tcp::socket>(io);
        boost::system::error_code ec;
        acceptor.accept(*socket, ec);
        std::lock_guard<std::mutex> lock(mutex);
        if (ec || stopping)
            return;
        // TLS writes a record in pieces; without this each answer waits out the peer's delayed ACK.
        socket->set_option(tcp::no_delay(true), ec);
        sockets.push_back(socket);
        JoinFinishedWorkers();
        std::thread worker(&LoopbackBmcPrivate::ServeConnection, this, socket);
        workers[worker.get_id()] = std::move(worker);
    }
}

void LoopbackBmcPrivate::ServeConnection(std::shared_ptr<tcp::socket> socket)
{
    std::shared_ptr<asio::ssl::context> context;
    {
        std::lock_guard<std::mutex> lock(mutex);
        context = tls;
    }
    if (context) {
        asio::ssl::stream<tcp::socket&> stream(*socket, *context);
        boost::system::error_code ec;
        stream.handshake(asio::ssl::stream_base::server, ec);
        // No TLS close_notify exchange: the TCP shutdown below ends the connection either way.
        if (!ec)
            ServeRequests(stream, context.get());
    } else {
        ServeRequests(*socket, nullptr);
    }
    std::lock_guard<std::mutex> lock(mutex);
    ShutdownSocket(*socket);
    boost::system::error_code ignored;
    socket->close(ignored);
    for (std::vector<std::shared_ptr<tcp::socket> >::iterator it = sockets.begin(); it != sockets.end(); ++it) {
        if (*it == socket) {
            sockets.erase(it);
            break;
        }
    }
    // The socket must go before the server may be destroyed: it refers to the server's io_context.
    socket.reset();
    const std::map<std::thread::id, std::thread>::iterator self = workers.find(std::this_thread::get_id());
    finishedWorkers.push_back(std::move(self->second));
    workers.erase(self);
    changed.notify_all();
}

void LoopbackBmcPrivate::JoinFinishedWorkers()
{
    for (std::thread& worker : finishedWorkers)
        worker.join();
    finishedWorkers.clear();
}

bool LoopbackBmcPrivate::TlsReplacedSince(const asio::ssl::context* startedWith)
{
    std::lock_guard<std::mutex> lock(mutex);
    return startedWith != nullptr && tls.get() != startedWith;
}

template <class Stream>
void LoopbackBmcPrivate::ServeRequests(Stream& stream, const asio::ssl::context* startedWith)
{
    boost::beast::flat_buffer buffer;
    bool tunnelled = false;
    for (;;) {
        http::request_parser<http::string_body> parser;
        parser.body_limit(MAX_REQUEST_BODY);
        boost::system::error_code ec;
        http::read_header(stream, buffer, parser, ec);
        // A server given a new certificate restarts: its kept connections end unanswered.
        if (ec || TlsReplacedSince(startedWith))
            return;
        if (boost::algorithm::iequals(std::string(parser.get()[http::field::expect]), "100-continue"))
            asio::write(stream, asio::buffer(std::string(CONTINUE_LINE)), ec);
        http::read(stream, buffer, parser, ec);
        if (ec)
            return;
        http::request<http::string_body> message = parser.release();
        Reply reply = Answer(message, tunnelled);
        if (!WaitLatency())
            return;
        if (reply.stall) {
            Pause(-1);
            return;
        }
        if (reply.dripMs > 0) {
            Drip(stream, reply);
            return;
        }
        if (reply.useRaw)
            asio::write(stream, asio::buffer(reply.raw), ec);
        else
            http::write(stream, reply.response, ec);
        if (ec || reply.close || !message.keep_alive())
            return;
        tunnelled = tunnelled || reply.openTunnel;
    }
}

bool LoopbackBmcPrivate::WaitLatency()
{
    int milliseconds = 0;
    {
        std::lock_guard<std::mutex> lock(mutex);
        milliseconds = latencyMs;
    }
    return Pause(milliseconds);
}

// A negative pause lasts until the server stops.
bool LoopbackBmcPrivate::Pause(int milliseconds)
{
    std::unique_lock<std::mutex> lock(mutex);
    if (milliseconds < 0)
        changed.wait(lock, [this] { return stopping; });
    else if (milliseconds > 0)
        changed.wait_for(lock, std::chrono::milliseconds(milliseconds), [this] { return stopping; });
    return !stopping;
}

template <class Stream>
void LoopbackBmcPrivate::Drip(Stream& stream, const Reply& reply)
{
    std::ostringstream serialized;
    serialized << reply.response;
    const std::string bytes = serialized.str();
    boost::system::error_code ec;
    for (std::size_t i = 0; i < bytes.size() && !ec && Pause(i == 0 ? 0 : reply.dripMs); ++i)
        asio::write(stream, asio::buffer(&bytes[i], 1), ec);
}

void LoopbackBmcPrivate::ShutdownSocket(tcp::socket& socket)
{
    if (socket.is_open())
        ::shutdown(socket.native_handle(), SHUT_RDWR);
}

http::response<http::string_body> LoopbackBmcPrivate::MakeResponse(const http::request<http::string_body>& message,
                                                                   int status, const std::string& body,
                                                                   const std::string& contentType)
{
    http::response<http::string_body> response(static_cast<http::status>(status), message.version());
    response.set(http::field::server, SERVER_NAME);
    if (!body.empty())
        response.set(http::field::content_type, contentType);
    for (std::size_t i = 0; i < extraHeaders.size(); ++i)
        response.insert(extraHeaders[i].first, extraHeaders[i].second);
    const bool compress = gzip && !body.empty() &&
                          std::string(message[http::field::accept_encoding]).find("gzip") != std::string::npos;
    if (compress) {
        response.set(http::field::content_encoding, "gzip");
        response.body() = GzipCompress(body);
    } else {
        response.body() = body;
    }
    response.keep_alive(message.keep_alive());
    response.prepare_payload();
    if (message.method() == http::verb::head)
        response.body().clear();  // the length of the GET answer stays in Content-Length
    return response;
}

Reply LoopbackBmcPrivate::AnswerConnect(LoopbackBmc::Request& record)
{
    Reply reply;
    if (!options.proxyUser.empty() &&
        (record.proxyUser != options.proxyUser || record.proxyPassword != options.proxyPassword)) {
        reply.useRaw = true;
        reply.raw = "HTTP/1.1 407 Proxy Authentication Required\r\n"
                    "Proxy-Authenticate: Basic realm=\"loopback-proxy\"\r\nContent-Length: 0\r\n\r\n";
        return reply;
    }
    reply.useRaw = true;
    reply.raw = TUNNEL_OPEN_LINE;
    reply.openTunnel = true;
    return reply;
}

Reply LoopbackBmcPrivate::AnswerResource(const http::request<http::string_body>& message,
                                         const LoopbackBmc::Request& record)
{
    Reply reply;
    const http::verb method = message.method();
    if (method == http::verb::get || method == http::verb::head) {
        const std::string::size_type mark = record.target.find('?');
        const MockupTree::Query query =
            ParseQuery(mark == std::string::npos ? std::string() : record.target.substr(mark + 1));
        std::string body;
        if (!tree.Render(record.path, query, pageSize, body)) {
            reply.response = MakeResponse(message, 404, "{\"error\":\"no such resource\"}", JSON_TYPE);
            return reply;
        }
        std::map<std::string, std::string>::const_iterator type = contentTypes.find(record.path);
        reply.response = MakeResponse(message, 200, body, type == contentTypes.end() ? JSON_TYPE : type->second);
        return reply;
    }
    if (method == http::verb::options) {
        reply.response = MakeResponse(message, 200, std::string(), JSON_TYPE);
        reply.response.set(http::field::allow, "GET, HEAD, POST, PUT, PATCH, DELETE, OPTIONS");
        return reply;
    }
    if (method == http::verb::delete_) {
        reply.response = MakeResponse(message, 204, std::string(), JSON_TYPE);
        return reply;
    }
    std::ostringstream summary;
    summary << "{\"Method\":\"" << record.method << "\",\"Length\":" << record.body.size() << "}";
    reply.response = MakeResponse(message, 200, summary.str(), JSON_TYPE);
    return reply;
}

Reply LoopbackBmcPrivate::Answer(const http::request<http::string_body>& message, bool tunnelled)
{
    LoopbackBmc::Request record;
    record.method = std::string(message.method_string());
    record.target = std::string(message.target());
    record.path = MockupTree::NormalizePath(PercentDecode(record.target.substr(0, record.target.find('?'))));
    for (http::fields::const_iterator field = message.begin(); field != message.end(); ++field)
        record.headers[boost::algorithm::to_lower_copy(std::string(field->name_string()))] = std::string(field->value());
    record.body = message.body();
    record.tunnelled = tunnelled;
    DecodeBasic(std::string(message[http::field::authorization]), record.user, record.password);
    DecodeBasic(std::string(message[http::field::proxy_authorization]), record.proxyUser, record.proxyPassword);

    std::lock_guard<std::mutex> lock(mutex);
    requests.push_back(record);
    ++pathCounts[record.path];
    Reply reply;
    if (message.method() == http::verb::connect)
        return AnswerConnect(record);
    if (failCount > 0) {
        --failCount;
        reply.response = MakeResponse(message, failStatus, "{\"error\":\"service is starting\"}", JSON_TYPE);
        return reply;
    }
    if (!options.user.empty() && (record.user != options.user || record.password != options.password)) {
        reply.response = MakeResponse(message, 401, "{\"error\":\"unauthorized\"}", JSON_TYPE);
        reply.response.set(http::field::www_authenticate, "Basic realm=\"loopback-bmc\"");
        return reply;
    }
    if (stalledPaths.count(record.path) != 0) {
        reply.stall = true;
        return reply;
    }
    std::map<std::string, std::string>::const_iterator raw = rawResponses.find(record.path);
    if (raw != rawResponses.end()) {
        reply.useRaw = true;
        reply.raw = raw->second;
        reply.close = true;
        return reply;
    }
    std::map<std::string, Redirect>::const_iterator redirect = redirects.find(record.path);
    if (redirect != redirects.end()) {
        reply.response = MakeResponse(message, redirect->second.status, std::string(), JSON_TYPE);
        reply.response.set(http::field::location, redirect->second.location);
        return reply;
    }
    std::map<std::string, int>::const_iterator forced = forcedStatuses.find(record.path);
    if (forced != forcedStatuses.end()) {
        reply.response = MakeResponse(message, forced->second, "{\"error\":\"forced status\"}", JSON_TYPE);
        return reply;
    }
    reply = AnswerResource(message, record);
    std::map<std::string, int>::const_iterator drip = dripIntervals.find(record.path);
    if (drip != dripIntervals.end())
        reply.dripMs = drip->second;
    return reply;
}

LoopbackBmc::LoopbackBmc() : d(new LoopbackBmcPrivate(Options())) {}

LoopbackBmc::LoopbackBmc(const Options& options) : d(new LoopbackBmcPrivate(options)) {}

LoopbackBmc::~LoopbackBmc()
{
    Stop();
    delete d;
}

void LoopbackBmc::Start()
{
    if (d->running)
        return;
    if (d->options.https)
        ReplaceCertificate();
    boost::system::error_code ec;
    const asio::ip::address address = asio::ip::make_address(d->options.address, ec);
    if (ec)
        throw std::runtime_error("loopback BMC: bad address " + d->options.address);
    const tcp::endpoint endpoint(address, d->options.port);
    d->acceptor.open(endpoint.protocol(), ec);
    if (!ec)
        d->acceptor.set_option(tcp::acceptor::reuse_address(true), ec);
    if (!ec)
        d->acceptor.bind(endpoint, ec);
    if (!ec)
        d->acceptor.listen(asio::socket_base::max_listen_connections, ec);
    if (ec) {
        boost::system::error_code ignored;
        d->acceptor.close(ignored);
        throw std::runtime_error("loopback BMC: cannot listen on " + d->options.address + ": " + ec.message());
    }
    d->stopping = false;
    d->running = true;
    d->acceptThread = std::thread(&LoopbackBmcPrivate::AcceptLoop, d);
}

void LoopbackBmc::Stop()
{
    if (!d->running)
        return;
    {
        std::lock_guard<std::mutex> lock(d->mutex);
        d->stopping = true;
        // Wakes the blocked accept and every blocked read or write of a connection.
        ::shutdown(d->acceptor.native_handle(), SHUT_RDWR);
        for (std::size_t i = 0; i < d->sockets.size(); ++i)
            d->ShutdownSocket(*d->sockets[i]);
        d->changed.notify_all();
    }
    d->acceptThread.join();
    std::unique_lock<std::mutex> lock(d->mutex);
    d->changed.wait(lock, [this] { return d->workers.empty(); });
    d->JoinFinishedWorkers();
    boost::system::error_code ignored;
    d->acceptor.close(ignored);
    d->running = false;
}

bool LoopbackBmc::CanBind(const std::string& address)
{
    asio::io_context io;
    boost::system::error_code ec;
    tcp::acceptor probe(io);
    const asio::ip::address parsed = asio::ip::make_address(address, ec);
    if (ec)
        return false;
    const tcp::endpoint endpoint(parsed, 0);
    probe.open(endpoint.protocol(), ec);
    if (!ec)
        probe.bind(endpoint, ec);
    return !ec;
}

unsigned short LoopbackBmc::Port() const
{
    boost::system::error_code ec;
    const tcp::endpoint endpoint = d->acceptor.local_endpoint(ec);
    return ec ? 0 : endpoint.port();
}

std::string LoopbackBmc::BaseUrl() const
{
    std::ostringstream url;
    url << (d->options.https ? "https" : "http") << "://";
    if (d->options.address.find(':') != std::string::npos)
        url << "[" << d->options.address << "]";
    else
        url << d->options.address;
    url << ":" << Port();
    return url.str();
}

std::string LoopbackBmc::Url(const std::string& path) const
{
    return BaseUrl() + path;
}

std::string LoopbackBmc::CertificatePem() const
{
    std::lock_guard<std::mutex> lock(d->mutex);
    return d->certificate ? d->certificate->CertificatePem() : std::string();
}

void LoopbackBmc::ReplaceCertificate()
{
    std::unique_ptr<SelfSignedCertificate> fresh(new SelfSignedCertificate);
    const std::shared_ptr<asio::ssl::context> context = MakeTlsContext(*fresh);
    std::lock_guard<std::mutex> lock(d->mutex);
    d->certificate.swap(fresh);
    d->tls = context;
}

void LoopbackBmc::SetPassword(const std::string& password)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    d->options.password = password;
}

void LoopbackBmc::SetDocument(const std::string& path, const std::string& body, const std::string& contentType)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    d->tree.SetDocument(path, body);
    d->contentTypes[MockupTree::NormalizePath(path)] = contentType;
}

void LoopbackBmc::SetPageSize(std::size_t size)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    d->pageSize = size;
}

void LoopbackBmc::FailFirst(int count, int status)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    d->failCount = count;
    d->failStatus = status;
}

void LoopbackBmc::SetLatency(int milliseconds)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    d->latencyMs = milliseconds;
}

void LoopbackBmc::AddRedirect(const std::string& path, int status, const std::string& location)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    Redirect redirect = {status, location};
    d->redirects[MockupTree::NormalizePath(path)] = redirect;
}

void LoopbackBmc::ForceStatus(const std::string& path, int status)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    d->forcedStatuses[MockupTree::NormalizePath(path)] = status;
}

void LoopbackBmc::SetRawResponse(const std::string& path, const std::string& bytes)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    d->rawResponses[MockupTree::NormalizePath(path)] = bytes;
}

void LoopbackBmc::StallAnswers(const std::string& path)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    d->stalledPaths.insert(MockupTree::NormalizePath(path));
}

void LoopbackBmc::DripAnswers(const std::string& path, int intervalMs)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    d->dripIntervals[MockupTree::NormalizePath(path)] = intervalMs;
}

void LoopbackBmc::AddResponseHeader(const std::string& name, const std::string& value)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    d->extraHeaders.push_back(std::make_pair(name, value));
}

void LoopbackBmc::SetGzip(bool enabled)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    d->gzip = enabled;
}

int LoopbackBmc::RequestCount() const
{
    std::lock_guard<std::mutex> lock(d->mutex);
    return static_cast<int>(d->requests.size());
}

int LoopbackBmc::RequestCount(const std::string& path) const
{
    std::lock_guard<std::mutex> lock(d->mutex);
    std::map<std::string, int>::const_iterator found = d->pathCounts.find(MockupTree::NormalizePath(path));
    return found == d->pathCounts.end() ? 0 : found->second;
}

std::vector<LoopbackBmc::Request> LoopbackBmc::Requests() const
{
    std::lock_guard<std::mutex> lock(d->mutex);
    return d->requests;
}

LoopbackBmc::Request LoopbackBmc::LastRequest() const
{
    std::lock_guard<std::mutex> lock(d->mutex);
    return d->requests.empty() ? Request() : d->requests.back();
}

void LoopbackBmc::ClearRequests()
{
    std::lock_guard<std::mutex> lock(d->mutex);
    d->requests.clear();
    d->pathCounts.clear();
}
