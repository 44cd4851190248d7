#include "kestro/rest/restdatapart.h"

#include <curl/curl.h>

namespace Rest {

RestDataPart::RestDataPart(const std::string& name, const std::string& data,
                           const std::string& contentType, const std::string& fileName)
    : name(name), data(data), contentType(contentType), fileName(fileName)
{
}

void RestDataPart::Fill(curl_mimepart* part) const
{
    curl_mime_name(part, name.c_str());
    curl_mime_data(part, data.data(), data.size());
    if (!contentType.empty())
        curl_mime_type(part, contentType.c_str());
    if (!fileName.empty())
        curl_mime_filename(part, fileName.c_str());
}

}  // namespace Rest
