#include "xmodule/agentless/bmcreader.h"

#include "kestro/rest/restresult.h"
#include "rest/jsonread.h"
#include "rest/restsession.h"
#include "xmodule/rlog.h"

#include <boost/json/parse.hpp>

#include <exception>
#include <set>

namespace XModule {
namespace Agentless {

namespace {

// A collection whose next-page links loop or never end stops here.
const std::size_t kMaxPages = 1000;

void AppendMemberLinks(const boost::json::value& page, std::vector<std::string>& members)
{
    const boost::json::array* list = Rest::FindJsonArray(page, "/Members");
    if (list == nullptr) return;
    for (const boost::json::value& member : *list) {
        const std::string link = Rest::ReadJsonString(member, "/@odata.id", "");
        if (!link.empty()) members.push_back(link);
    }
}

}  // namespace

struct BmcReader::Private {
    explicit Private(const ConnectionInfo& bmc) : session(Rest::MakeRestSession(bmc)) {}
    Rest::RestSession session;
};

BmcReader::BmcReader(const ConnectionInfo& bmc) : d(new Private(bmc)) {}

BmcReader::~BmcReader() = default;

bool BmcReader::Get(const std::string& path, boost::json::value& doc)
{
    try {
        Rest::RestResult result;
        Rest::FetchUrl(d->session, result, path, 0);
        doc = boost::json::parse(result.body);
        return true;
    } catch (const std::exception& e) {
        XLOG(2) << "Redfish read of " << path << " failed: " << e.what();
    }
    return false;
}

bool BmcReader::Members(const std::string& path, std::vector<std::string>& members)
{
    std::set<std::string> seen;
    std::string page = path;
    for (std::size_t count = 0; !page.empty() && count < kMaxPages && seen.insert(page).second; ++count) {
        boost::json::value doc;
        if (!Get(page, doc)) return false;
        AppendMemberLinks(doc, members);
        Rest::GetMembersAhead(d->session, doc);
        page = Rest::ReadJsonString(doc, "/Members@odata.nextLink", "");
    }
    return true;
}

std::string BmcReader::FirstMember(const std::string& path)
{
    std::vector<std::string> members;
    if (!Members(path, members) || members.empty()) return std::string();
    return members.front();
}

std::string BmcReader::MemberAt(const std::string& path, std::size_t index)
{
    std::vector<std::string> members;
    if (!Members(path, members)) return std::string();
    if (index < members.size()) return members[index];
    RLOG(2) << "The BMC lists no member " << index << " under " << path;
    return std::string();
}

}  // namespace Agentless
}  // namespace XModule
