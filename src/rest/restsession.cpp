#include "rest/restsession.h"

#include "rest/jsonread.h"

#include <sstream>
#include <vector>

#include <boost/format.hpp>

namespace Rest {

namespace {

// Indexed by ConnectionInfo::scheme.
const char* const SCHEME_NAMES[] = {"http", "https", "ssh"};
const char* const EXPAND_PATTERN = "%s?$expand=.($levels=%d)";
const int SUCCESS_STATUS = 200;

std::string SchemeName(int scheme)
{
    const int count = static_cast<int>(sizeof(SCHEME_NAMES) / sizeof(SCHEME_NAMES[0]));
    return scheme >= 0 && scheme < count ? SCHEME_NAMES[scheme] : SCHEME_NAMES[XModule::XModuleConnection::SchemeHttps];
}

}  // namespace

std::string BuildBaseUrl(const XModule::ConnectionInfo& connection)
{
    std::ostringstream url;
    url << SchemeName(connection.scheme) << "://";
    if (connection.isIPv6)
        url << "[" << connection.host << "]";
    else
        url << connection.host;
    if (connection.port != 0)
        url << ":" << connection.port;
    return url.str();
}

RestSession MakeRestSession(const XModule::ConnectionInfo& connection)
{
    RestSession session;
    session.client.SetFollowRedirects(true, -1);
    session.client.SetInsecure(true);
    // A CA bundle the user gave wins over the unchecked default: the client checks when one is set.
    if (!connection.caFile.empty()) session.client.SetCaFile(connection.caFile);
    session.client.SetCredentials(connection.user, connection.password);
    session.baseUrl = BuildBaseUrl(connection);
    return session;
}

void FetchUrl(RestSession& session, RestResult& result, const std::string& url, int levels)
{
    const std::string path = levels == 0 ? url : (boost::format(EXPAND_PATTERN) % url % levels).str();
    const std::string fullUrl = session.baseUrl + path;
    result = session.client.Get(fullUrl);
    if (result.httpCode == SUCCESS_STATUS && result.curlCode == 0)
        return;
    std::ostringstream text;
    text << "Failed to get url " << fullUrl << ", error code is " << result.httpCode;
    throw InventoryError(text.str());
}

void GetLinksAhead(RedfishClient& client, const std::string& baseUrl, const boost::json::array& links,
                   const std::string& nextPage)
{
    std::vector<std::string> urls;
    for (const boost::json::value& entry : links) {
        // A member given whole (an expanded collection) needs no fetch of its own.
        const boost::json::object* object = entry.if_object();
        if (object == nullptr || object->size() != 1) continue;
        const std::string link = ReadJsonString(entry, "/@odata.id", "");
        if (!link.empty()) urls.push_back(baseUrl + link);
    }
    if (!nextPage.empty()) urls.push_back(baseUrl + nextPage);
    client.GetAhead(urls);
}

void GetMembersAhead(RestSession& session, const boost::json::value& page)
{
    const boost::json::array* members = FindJsonArray(page, "/Members");
    if (members == nullptr) return;
    GetLinksAhead(session.client, session.baseUrl, *members, ReadJsonString(page, "/Members@odata.nextLink", ""));
}

}  // namespace Rest
