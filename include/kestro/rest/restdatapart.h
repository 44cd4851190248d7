#ifndef KESTRO_REST_RESTDATAPART_H
#define KESTRO_REST_RESTDATAPART_H

#include <string>

#include "kestro/rest/restmultipartpart.h"

namespace Rest {

// A named part whose content is held in memory; a file name makes it an upload field.
class RestDataPart : public RestMultipartPart {
public:
    RestDataPart(const std::string& name, const std::string& data,
                 const std::string& contentType = std::string(),
                 const std::string& fileName = std::string());
    void Fill(curl_mimepart* part) const override;

private:
    std::string name;
    std::string data;
    std::string contentType;
    std::string fileName;
};

}  // namespace Rest

#endif
