#ifndef KESTRO_REST_RESTCLIENTINTERFACE_H
#define KESTRO_REST_RESTCLIENTINTERFACE_H

#include <cstdint>
#include <istream>
#include <map>
#include <string>
#include <vector>

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include "kestro/rest/restmultipartpart.h"
#include "kestro/rest/restresult.h"

namespace Rest {

// Numbered as callers pass them to Request; values outside 0..6 are accepted and refused there.
enum RequestType : int {
    RequestGet = 0,
    RequestPost = 1,
    RequestPut = 2,
    RequestPatch = 3,
    RequestDelete = 4,
    RequestHead = 5,
    RequestOptions = 6
};

typedef std::map<std::string, std::string> HeaderMap;
typedef std::vector<boost::shared_ptr<RestMultipartPart> > MultipartBody;
// Receives (total, current) byte counts of a multipart transfer.
typedef boost::function<void(std::int64_t total, std::int64_t current)> ProgressSink;

// A synchronous HTTP client: configuration stays in the object and applies to every request.
class RestClientInterface {
public:
    virtual ~RestClientInterface();

    virtual void SetCredentials(const std::string& user, const std::string& password) = 0;
    // Seconds; a negative value leaves only the low-speed rule in force.
    virtual void SetTimeout(int seconds) = 0;
    virtual void SetInsecure(bool insecure) = 0;
    virtual void SetSuppressExpect(bool suppress) = 0;
    // maxRedirects -1: no limit.
    virtual void SetFollowRedirects(bool follow, int maxRedirects) = 0;
    virtual void SetCaFile(const std::string& path) = 0;
    virtual void SetProxy(const std::string& url, const std::string& user, const std::string& password) = 0;
    virtual void SetHeaders(const HeaderMap& headers) = 0;
    virtual HeaderMap GetHeaders() const = 0;
    virtual void SetHeader(const std::string& name, const std::string& value) = 0;
    virtual int EnableGzip() = 0;
    virtual RestResult Request(RequestType type, const std::string& url, const std::string& body) = 0;
    virtual RestResult Get(const std::string& url) = 0;
    virtual RestResult PostMultipart(const std::string& url, const MultipartBody& parts,
                                     const ProgressSink& progress) = 0;
    // The stream is read from its start and rewound when libcurl asks to send it again.
    virtual RestResult PostStream(const std::string& url, std::istream& stream) = 0;
    virtual RestResult Post(const std::string& url, const std::string& body) = 0;
    virtual RestResult PutStream(const std::string& url, std::istream& stream) = 0;
    virtual RestResult Put(const std::string& url, const std::string& body) = 0;
    virtual RestResult PatchStream(const std::string& url, std::istream& stream) = 0;
    virtual RestResult Patch(const std::string& url, const std::string& body) = 0;
    virtual RestResult Delete(const std::string& url) = 0;
    virtual RestResult Head(const std::string& url) = 0;
    virtual RestResult Options(const std::string& url) = 0;
    // 0: a 2xx answer; -2: a time-out or a certificate failure; -1: anything else.
    virtual int ClassifyResult(const RestResult& result) = 0;
};

}  // namespace Rest

#endif
