#include "rest/restsession.h"

#include <sstream>

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

}  // namespace Rest
