#ifndef KESTRO_REST_RESTSESSION_H
#define KESTRO_REST_RESTSESSION_H

#include <boost/json/array.hpp>
#include <boost/json/value.hpp>

#include <string>

#include "kestro/rest/redfishclient.h"
#include "kestro/rest/restresult.h"
#include "kestro/xmodule/connectioninfo.h"
#include "rest/inventoryerror.h"

namespace Rest {

// The client and base address of one enumeration; dropping it closes the client. Nothing is sent
// to the BMC to open or close it: credentials go with every request.
struct RestSession {
    std::string baseUrl;
    RedfishClient client;
};

// "<scheme>://<host>[:<port>]", with the host in brackets when it is an IPv6 address.
std::string BuildBaseUrl(const XModule::ConnectionInfo& connection);

// A client that follows redirects without limit, checks no certificate and sends the
// connection's credentials; no time-out of its own.
RestSession MakeRestSession(const XModule::ConnectionInfo& connection);

// GETs baseUrl + url (with "?$expand=.($levels=N)" when levels is not 0) into `result`.
// Anything but curlCode 0 and HTTP 200 throws InventoryError
// "Failed to get url <full url>, error code is <httpCode>".
void FetchUrl(RestSession& session, RestResult& result, const std::string& url, int levels);

// Within an inventory run, GETs ahead the "@odata.id" of every member of a collection page that is
// a bare link, and its next page, so that a walk that reads them one by one finds them fetched.
void GetMembersAhead(RestSession& session, const boost::json::value& page);
// The same for a list of link objects ({"@odata.id": ...}) under `baseUrl`, read by `client`.
void GetLinksAhead(RedfishClient& client, const std::string& baseUrl, const boost::json::array& links,
                   const std::string& nextPage = std::string());

// One resource a walk reads: `url` fetched with `levels` of expansion, or, when `link` is set, the
// resources that `url` links to at that JSON pointer (a link object or a list of them), each
// fetched with `linkLevels`.
struct AheadRead {
    const char* url;
    int levels;
    const char* link;
    int linkLevels;
};

// The reads of one module's walks, in a constant table.
struct AheadPlan {
    const AheadRead* reads;
    std::size_t count;
};

// Within an inventory run, once per plan: GETs the plan's resources ahead, with the ones they link
// to and the pages and members of its collections, so that walks reading them one after another
// find them fetched or on their way. Returns at once; logs nothing but the debug line of the
// request: the walks log their reads as they make them.
void ReadAhead(RestSession& session, const AheadPlan& plan);

}  // namespace Rest

#endif
