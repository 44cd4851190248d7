#ifndef KESTRO_REST_RESTMULTIPARTPART_H
#define KESTRO_REST_RESTMULTIPARTPART_H

// libcurl's own declaration, so that no public header needs <curl/curl.h>.
struct curl_mimepart;

namespace Rest {

// One part of a multipart body; it fills the part that the client has just added.
class RestMultipartPart {
public:
    virtual ~RestMultipartPart();
    virtual void Fill(curl_mimepart* part) const = 0;
};

}  // namespace Rest

#endif
