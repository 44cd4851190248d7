#ifndef KESTRO_REST_RESTRESULT_H
#define KESTRO_REST_RESTRESULT_H

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace Rest {

// What one request gave back. -1 in a code means the request did not get that far.
struct RestResult {
    std::int32_t curlCode = -1;
    std::int32_t httpCode = -1;
    // The response body; after a libcurl failure, libcurl's error text instead.
    std::string body;
    std::map<std::string, std::string> headers;
    std::vector<std::string> cookies;
};

}  // namespace Rest

#endif
