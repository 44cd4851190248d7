#include "rest/restsession.h"

#include "rest/jsonread.h"
#include "rest/runcontext.h"

#include <algorithm>
#include <set>
#include <sstream>
#include <vector>

#include <boost/bind/bind.hpp>
#include <boost/format.hpp>
#include <boost/json/parse.hpp>
#include <boost/shared_ptr.hpp>

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

std::string ExpandedUrl(const std::string& baseUrl, const std::string& url, int levels)
{
    return baseUrl + (levels == 0 ? url : (boost::format(EXPAND_PATTERN) % url % levels).str());
}

void AddOnce(std::vector<std::string>& urls, const std::string& url)
{
    if (std::find(urls.begin(), urls.end(), url) == urls.end()) urls.push_back(url);
}

// The links at `pointer` of a document: one link object or a list of them.
std::vector<std::string> LinksAt(const boost::json::value& document, const char* pointer)
{
    std::vector<std::string> links;
    const boost::json::value* found = FindJsonValue(document, pointer);
    if (found == nullptr) return links;
    const boost::json::array single(1, *found);
    for (const boost::json::value& entry : found->is_array() ? found->get_array() : single) {
        const std::string link = ReadJsonString(entry, "/@odata.id", "");
        if (!link.empty()) links.push_back(link);
    }
    return links;
}

// The next page first, so that its members join the queue early, then every member that is a
// bare link (a member given whole, as in an expanded collection, needs no fetch of its own).
std::vector<std::string> PageLinks(const std::string& baseUrl, const boost::json::array& links,
                                   const std::string& nextPage)
{
    std::vector<std::string> urls;
    if (!nextPage.empty()) urls.push_back(baseUrl + nextPage);
    for (const boost::json::value& entry : links) {
        const boost::json::object* object = entry.if_object();
        if (object == nullptr || object->size() != 1) continue;
        const std::string link = ReadJsonString(entry, "/@odata.id", "");
        if (!link.empty()) urls.push_back(baseUrl + link);
    }
    return urls;
}

// The links of a collection page (see PageLinks) and its next page; none for other documents.
std::vector<std::string> CollectionLinks(const std::string& baseUrl, const boost::json::value& page,
                                         std::string& nextPage)
{
    const boost::json::array* members = FindJsonArray(page, "/Members");
    if (members == nullptr) return std::vector<std::string>();
    nextPage = ReadJsonString(page, "/Members@odata.nextLink", "");
    return PageLinks(baseUrl, *members, nextPage);
}

typedef boost::shared_ptr<std::set<std::string> > PageSet;

// The resources that a plan's parent, read as `document` from `url`, links to; those read without
// expansion join `byLinks`, as a walk of such a collection fetches its members one by one.
void AddPlanLinks(const std::string& baseUrl, const AheadRead* plan, std::size_t count, const std::string& url,
                  const boost::json::value& document, std::vector<std::string>& urls, std::set<std::string>& byLinks)
{
    for (std::size_t i = 0; i < count; ++i) {
        if (plan[i].link == nullptr || ExpandedUrl(baseUrl, plan[i].url, plan[i].levels) != url) continue;
        for (const std::string& link : LinksAt(document, plan[i].link)) {
            const std::string target = ExpandedUrl(baseUrl, link, plan[i].linkLevels);
            AddOnce(urls, target);
            if (plan[i].linkLevels == 0) byLinks.insert(target);
        }
    }
}

// Run on the prefetching thread as each answer arrives, so the arguments are held by value.
// Follows a collection's pages: the links of each page that `pages` awaits.
std::vector<std::string> FollowPages(const std::string& baseUrl, const PageSet& pages, const std::string& url,
                                     const RestResult& answer)
{
    if (pages->count(url) == 0) return std::vector<std::string>();
    boost::system::error_code error;
    const boost::json::value page = boost::json::parse(answer.body, error);
    if (error) return std::vector<std::string>();
    std::string nextPage;
    const std::vector<std::string> links = CollectionLinks(baseUrl, page, nextPage);
    if (!nextPage.empty()) pages->insert(baseUrl + nextPage);
    return links;
}

// Follows what a plan reads: the resources its parents link to and every page of the collections
// it meets, since the walks read them all, with the members of those walked by links (`byLinks`);
// an expanded walk takes its members as they stand.
std::vector<std::string> FollowPlan(const std::string& baseUrl, const AheadRead* plan, std::size_t count,
                                    const PageSet& byLinks, const std::string& url, const RestResult& answer)
{
    std::vector<std::string> urls;
    boost::system::error_code error;
    const boost::json::value document = boost::json::parse(answer.body, error);
    if (error) return urls;
    AddPlanLinks(baseUrl, plan, count, url, document, urls, *byLinks);
    if (byLinks->count(url) != 0) {
        std::string nextPage;
        for (const std::string& link : CollectionLinks(baseUrl, document, nextPage)) AddOnce(urls, link);
        if (!nextPage.empty()) byLinks->insert(baseUrl + nextPage);
    } else if (FindJsonArray(document, "/Members") != nullptr) {
        const std::string nextPage = ReadJsonString(document, "/Members@odata.nextLink", "");
        if (!nextPage.empty()) AddOnce(urls, baseUrl + nextPage);
    }
    return urls;
}

// The resources that the plan's parents kept already link to: their answers come no more.
void AddKeptPlanLinks(const RestSession& session, const AheadRead* plan, std::size_t count,
                      std::vector<std::string>& urls, std::set<std::string>& byLinks)
{
    for (std::size_t i = 0; i < count; ++i) {
        const std::string parent = ExpandedUrl(session.baseUrl, plan[i].url, plan[i].levels);
        RestResult kept;
        if (plan[i].link == nullptr || !session.client.FindKept(parent, kept)) continue;
        boost::system::error_code error;
        const boost::json::value document = boost::json::parse(kept.body, error);
        if (!error) AddPlanLinks(session.baseUrl, plan + i, 1, parent, document, urls, byLinks);
    }
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
    const std::string fullUrl = ExpandedUrl(session.baseUrl, url, levels);
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
    using boost::placeholders::_1;
    using boost::placeholders::_2;
    const PageSet pages(new std::set<std::string>);
    if (!nextPage.empty()) pages->insert(baseUrl + nextPage);
    client.GetAhead(PageLinks(baseUrl, links, nextPage), boost::bind(&FollowPages, baseUrl, pages, _1, _2));
}

void GetMembersAhead(RestSession& session, const boost::json::value& page)
{
    const boost::json::array* members = FindJsonArray(page, "/Members");
    if (members == nullptr) return;
    GetLinksAhead(session.client, session.baseUrl, *members, ReadJsonString(page, "/Members@odata.nextLink", ""));
}

void ReadAhead(RestSession& session, const AheadPlan& plan)
{
    using boost::placeholders::_1;
    using boost::placeholders::_2;
    RunContext* run = RunContext::Current();
    if (run == nullptr || !run->FirstTime(plan.reads)) return;
    std::vector<std::string> urls;
    const PageSet byLinks(new std::set<std::string>);
    AddKeptPlanLinks(session, plan.reads, plan.count, urls, *byLinks);
    for (std::size_t i = 0; i < plan.count; ++i) {
        const std::string url = ExpandedUrl(session.baseUrl, plan.reads[i].url, plan.reads[i].levels);
        AddOnce(urls, url);
        if (plan.reads[i].levels == 0) byLinks->insert(url);
    }
    session.client.GetAhead(urls, boost::bind(&FollowPlan, session.baseUrl, plan.reads, plan.count, byLinks, _1, _2));
}

}  // namespace Rest
