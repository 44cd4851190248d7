#ifndef KESTRO_REST_JSONREAD_H
#define KESTRO_REST_JSONREAD_H

#include <cstdint>
#include <string>
#include <vector>

#include <boost/function.hpp>
#include <boost/json/value.hpp>

namespace Rest {

struct RestSession;

// Reading Redfish answers. Keys reach values through JSON pointers, and no read here throws on
// missing values or values of another kind: it gives the default instead. Missing text is "N/A".
// Only a number that the wanted type can't hold exactly (1.5 or 2^64 as int64, -3 as uint64)
// throws, a JsonReadError: "[assign failure](<pointer> >> <type>): <reason>".

extern const char* const JSON_MISSING_TEXT;  // "N/A"

// A key as one pointer token: "~" becomes "~0", then "/" becomes "~1".
std::string EscapePointerToken(const std::string& key);
// "/k1/k2/..." from keys, each escaped. A numeric array index is written as its decimal text.
std::string MakeJsonPointer(const std::vector<std::string>& keys);
// The pointer to the index'th entry of the array at `arrayPointer`.
std::string MakeJsonPointer(const std::string& arrayPointer, std::size_t index);

// The value at `pointer`, or null when there is none. "" is the whole document.
const boost::json::value* FindJsonValue(const boost::json::value& doc, const std::string& pointer);
// Shape checks: the object or array at `pointer`, or null when the value is missing or another kind.
const boost::json::object* FindJsonObject(const boost::json::value& doc, const std::string& pointer);
const boost::json::array* FindJsonArray(const boost::json::value& doc, const std::string& pointer);

// Typed reads; a missing value or one of another kind gives `defaultValue`. The number reads
// throw JsonReadError on a number out of their type's reach.
std::string ReadJsonString(const boost::json::value& doc, const std::string& pointer,
                           const std::string& defaultValue = JSON_MISSING_TEXT);
std::int64_t ReadJsonInt(const boost::json::value& doc, const std::string& pointer, std::int64_t defaultValue);
std::uint64_t ReadJsonUint(const boost::json::value& doc, const std::string& pointer, std::uint64_t defaultValue);
// Any JSON number (integer or not) as a double.
double ReadJsonDouble(const boost::json::value& doc, const std::string& pointer, double defaultValue);
bool ReadJsonBool(const boost::json::value& doc, const std::string& pointer, bool defaultValue);
// Strings as they are, numbers in decimal, booleans "true"/"false"; null, objects, arrays and
// missing values give `defaultValue`.
std::string ReadJsonText(const boost::json::value& doc, const std::string& pointer,
                         const std::string& defaultValue = JSON_MISSING_TEXT);

// Parses without throwing: false and the parser's message in `error` on bad text.
bool TryParseJson(const std::string& text, boost::json::value& out, std::string& error);

// Walking a collection ("Members", continued by "Members@odata.nextLink" pages).
enum CollectionWalk {
    // Fetch with levels 1 (or as given when the url already holds "?$expand="), members inline.
    WalkExpanded,
    // Fetch the collection, then each member's "@odata.id" with levels 0.
    WalkLinks
};
typedef boost::function<void(const boost::json::value& member)> MemberVisitor;
// Told the value of each "Members@odata.nextLink" before that page is fetched.
typedef boost::function<void(const std::string& nextLink)> NextPageVisitor;

// Visits every member of the collection at `url` (a path under the session's base), page by page.
// A member link that reads "N/A" is skipped. Returns the number of members visited.
// Throws InventoryError from FetchUrl on a failed url and boost::system::system_error on a page or
// member that is not JSON; the members visited before stay visited.
std::size_t WalkCollection(RestSession& session, const std::string& url, CollectionWalk walk,
                           const MemberVisitor& visit, const NextPageVisitor& onNextPage = NextPageVisitor());

// Where a walk gets its pages: the JSON at `url`, members expanded `levels` deep (0: links only).
typedef boost::function<boost::json::value(const std::string& url, int levels)> PageSource;
// The walk above over pages from `fetch`, which the session's form fetches with FetchUrl;
// it throws what `fetch` throws.
std::size_t WalkCollectionPages(const PageSource& fetch, const std::string& url, CollectionWalk walk,
                                const MemberVisitor& visit, const NextPageVisitor& onNextPage = NextPageVisitor());

}  // namespace Rest

#endif
