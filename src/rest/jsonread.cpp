#include "rest/jsonread.h"

#include <iomanip>
#include <set>
#include <sstream>

#include <boost/algorithm/string/replace.hpp>
#include <boost/json/parse.hpp>

#include "xmodule/rlog.h"
#include "rest/jsonreaderror.h"
#include "rest/restsession.h"

namespace Rest {

const char* const JSON_MISSING_TEXT = "N/A";

namespace {

const char* const MEMBERS_POINTER = "/Members";
const char* const NEXT_LINK_POINTER = "/Members@odata.nextLink";
const char* const MEMBER_LINK_POINTER = "/@odata.id";
const char* const EXPAND_QUERY = "$expand=";

// The number at `pointer` as T; `defaultValue` when there is none or the value is no number.
// A number that T can't hold exactly throws JsonReadError naming `typeName`.
template <class T>
T ReadNumber(const boost::json::value& doc, const std::string& pointer, T defaultValue, const char* typeName)
{
    const boost::json::value* found = FindJsonValue(doc, pointer);
    if (!found || !found->is_number())
        return defaultValue;
    boost::system::error_code ec;
    const T number = found->to_number<T>(ec);
    if (ec)
        throw JsonReadError(pointer, typeName, ec);
    return number;
}

// Plain decimal where it fits ("412.5"), not the serializer's exponent form ("4.125E2").
std::string FormatDouble(double number)
{
    std::ostringstream text;
    text << std::setprecision(15) << number;
    return text.str();
}

bool HasExpandQuery(const std::string& url)
{
    return url.find(std::string("?") + EXPAND_QUERY) != std::string::npos ||
           url.find(std::string("&") + EXPAND_QUERY) != std::string::npos;
}

boost::json::value FetchJson(RestSession& session, const std::string& url, int levels)
{
    RestResult result;
    FetchUrl(session, result, url, levels);
    // Throws boost::system::system_error on text that is not JSON; the module reports it.
    return boost::json::parse(result.body);
}

std::size_t VisitPage(const PageSource& fetch, const boost::json::value& page, CollectionWalk walk,
                      const MemberVisitor& visit)
{
    const boost::json::array* members = FindJsonArray(page, MEMBERS_POINTER);
    if (!members)
        return 0;
    std::size_t visited = 0;
    for (const boost::json::value& member : *members) {
        if (walk == WalkExpanded) {
            visit(member);
            ++visited;
            continue;
        }
        const std::string link = ReadJsonString(member, MEMBER_LINK_POINTER);
        if (link == JSON_MISSING_TEXT)
            continue;
        visit(fetch(link, 0));
        ++visited;
    }
    return visited;
}

}  // namespace

std::string EscapePointerToken(const std::string& key)
{
    // "~" first, or the "~" of an escaped "/" would be escaped again.
    std::string token = boost::algorithm::replace_all_copy(key, "~", "~0");
    boost::algorithm::replace_all(token, "/", "~1");
    return token;
}

std::string MakeJsonPointer(const std::vector<std::string>& keys)
{
    std::string pointer;
    for (const std::string& key : keys)
        pointer += "/" + EscapePointerToken(key);
    return pointer;
}

std::string MakeJsonPointer(const std::string& arrayPointer, std::size_t index)
{
    return arrayPointer + "/" + std::to_string(index);
}

const boost::json::value* FindJsonValue(const boost::json::value& doc, const std::string& pointer)
{
    boost::system::error_code ec;
    const boost::json::value* found = doc.find_pointer(pointer, ec);
    return ec ? nullptr : found;
}

const boost::json::object* FindJsonObject(const boost::json::value& doc, const std::string& pointer)
{
    const boost::json::value* found = FindJsonValue(doc, pointer);
    return found ? found->if_object() : nullptr;
}

const boost::json::array* FindJsonArray(const boost::json::value& doc, const std::string& pointer)
{
    const boost::json::value* found = FindJsonValue(doc, pointer);
    return found ? found->if_array() : nullptr;
}

std::string ReadJsonString(const boost::json::value& doc, const std::string& pointer, const std::string& defaultValue)
{
    const boost::json::value* found = FindJsonValue(doc, pointer);
    const boost::json::string* text = found ? found->if_string() : nullptr;
    return text ? std::string(text->c_str(), text->size()) : defaultValue;
}

std::int64_t ReadJsonInt(const boost::json::value& doc, const std::string& pointer, std::int64_t defaultValue)
{
    return ReadNumber(doc, pointer, defaultValue, "int64");
}

std::uint64_t ReadJsonUint(const boost::json::value& doc, const std::string& pointer, std::uint64_t defaultValue)
{
    return ReadNumber(doc, pointer, defaultValue, "uint64");
}

double ReadJsonDouble(const boost::json::value& doc, const std::string& pointer, double defaultValue)
{
    return ReadNumber(doc, pointer, defaultValue, "double");
}

bool ReadJsonBool(const boost::json::value& doc, const std::string& pointer, bool defaultValue)
{
    const boost::json::value* found = FindJsonValue(doc, pointer);
    const bool* flag = found ? found->if_bool() : nullptr;
    return flag ? *flag : defaultValue;
}

std::string ReadJsonText(const boost::json::value& doc, const std::string& pointer, const std::string& defaultValue)
{
    const boost::json::value* found = FindJsonValue(doc, pointer);
    if (!found)
        return defaultValue;
    if (const boost::json::string* text = found->if_string())
        return std::string(text->c_str(), text->size());
    if (found->is_int64())
        return std::to_string(found->get_int64());
    if (found->is_uint64())
        return std::to_string(found->get_uint64());
    if (found->is_double())
        return FormatDouble(found->get_double());
    if (found->is_bool())
        return found->get_bool() ? "true" : "false";
    return defaultValue;
}

bool TryParseJson(const std::string& text, boost::json::value& out, std::string& error)
{
    boost::system::error_code ec;
    boost::json::value parsed = boost::json::parse(text, ec);
    if (ec) {
        error = ec.message();
        return false;
    }
    out = std::move(parsed);
    return true;
}

std::size_t WalkCollection(RestSession& session, const std::string& url, CollectionWalk walk,
                           const MemberVisitor& visit, const NextPageVisitor& onNextPage)
{
    const PageSource fetch = [&session, walk](const std::string& pageUrl, int levels) {
        boost::json::value document = FetchJson(session, pageUrl, levels);
        if (walk == WalkLinks) GetMembersAhead(session, document);
        return document;
    };
    return WalkCollectionPages(fetch, url, walk, visit, onNextPage);
}

std::size_t WalkCollectionPages(const PageSource& fetch, const std::string& url, CollectionWalk walk,
                                const MemberVisitor& visit, const NextPageVisitor& onNextPage)
{
    const int levels = walk == WalkExpanded && !HasExpandQuery(url) ? 1 : 0;
    boost::json::value page = fetch(url, levels);
    std::size_t visited = VisitPage(fetch, page, walk, visit);
    std::set<std::string> seenPages;
    seenPages.insert(url);
    for (;;) {
        const std::string next = ReadJsonString(page, NEXT_LINK_POINTER);
        if (next == JSON_MISSING_TEXT)
            break;
        // A BMC that links a page to itself would otherwise keep the walk going for ever.
        if (!seenPages.insert(next).second) {
            RLOG(XModule::LOG_WARN) << "Collection " << url << " links again to page " << next << ", walk ends";
            break;
        }
        if (!onNextPage.empty())
            onNextPage(next);
        page = fetch(next, 0);
        visited += VisitPage(fetch, page, walk, visit);
    }
    return visited;
}

}  // namespace Rest
