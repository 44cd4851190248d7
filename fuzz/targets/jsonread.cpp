// The JSON reads of the Redfish readers over a BMC's answers: TryParseJson, the pointer reads
// and the collection walk. The first line of the input is a pointer to read; the rest is the
// document. A document that is an object with keys starting with "/" is also taken as a BMC:
// each such key a URL, its value the page there (a string value is the page's raw text), and
// collections are walked from the first URL both ways.
#include "fuzzsupport.h"
#include "rest/inventoryerror.h"
#include "rest/jsonread.h"
#include "rest/jsonreaderror.h"

#include <boost/json.hpp>

#include <cstdio>
#include <cstdlib>

using namespace Rest;

namespace {

// Each value costs a few reads; the cap keeps one input to a few milliseconds.
const std::size_t kMaxValuesRead = 4096;

void ReadEverything(const boost::json::value& doc, const std::string& pointer)
{
    FindJsonObject(doc, pointer);
    FindJsonArray(doc, pointer);
    ReadJsonString(doc, pointer);
    ReadJsonText(doc, pointer);
    ReadJsonBool(doc, pointer, false);
    try {
        ReadJsonInt(doc, pointer, -1);
    } catch (const JsonReadError&) {
        // The documented answer to a number out of the type's reach.
    }
    try {
        ReadJsonUint(doc, pointer, 0);
    } catch (const JsonReadError&) {
    }
    try {
        ReadJsonDouble(doc, pointer, 0.0);
    } catch (const JsonReadError&) {
    }
}

// Every value is found again at the pointer MakeJsonPointer builds for it.
void Visit(const boost::json::value& doc, const boost::json::value& value, const std::string& pointer,
           std::size_t& budget)
{
    if (budget == 0) return;
    --budget;
    if (FindJsonValue(doc, pointer) != &value) {
        std::fprintf(stderr, "pointer \"%s\" does not lead back to its value\n", pointer.c_str());
        std::abort();
    }
    ReadEverything(doc, pointer);
    if (const boost::json::object* object = value.if_object()) {
        for (const auto& member : *object)
            Visit(doc, member.value(), pointer + MakeJsonPointer({std::string(member.key())}), budget);
    } else if (const boost::json::array* array = value.if_array()) {
        for (std::size_t i = 0; i < array->size(); ++i)
            Visit(doc, (*array)[i], MakeJsonPointer(pointer, i), budget);
    }
}

void WalkPages(const boost::json::object& pages)
{
    std::string start;
    for (const auto& member : pages)
        if (!member.key().empty() && member.key()[0] == '/') {
            start = std::string(member.key());
            break;
        }
    if (start.empty()) return;
    const PageSource fetch = [&pages](const std::string& url, int) -> boost::json::value {
        const boost::json::value* page = pages.if_contains(url);
        // As FetchUrl answers a URL the BMC does not have.
        if (!page) throw InventoryError("Failed to get url " + url + ", error code is 404");
        // A string is the page's raw text; the session's parse throws on text that is no JSON.
        if (const boost::json::string* text = page->if_string()) return boost::json::parse(*text);
        return *page;
    };
    const MemberVisitor visit = [](const boost::json::value& member) {
        ReadJsonString(member, "/@odata.id");
        ReadJsonText(member, "/Id");
        ReadJsonText(member, "/Status/Health");
    };
    for (CollectionWalk walk : {WalkExpanded, WalkLinks}) {
        try {
            WalkCollectionPages(fetch, start, walk, visit, [](const std::string&) {});
        } catch (const InventoryError&) {
            // A failed URL, as the documented walk throws it.
        } catch (const boost::system::system_error&) {
            // A page or member that is no JSON, or a number out of reach, as documented.
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string pointer;
    std::string text;
    KestroFuzz::SplitAt(KestroFuzz::ToText(data, size), "\n", pointer, text);
    EscapePointerToken(pointer);

    boost::json::value doc;
    std::string error;
    if (!TryParseJson(text, doc, error)) {
        if (error.empty()) std::abort();  // a refusal always says why
        return 0;
    }
    ReadEverything(doc, pointer);
    std::size_t budget = kMaxValuesRead;
    Visit(doc, doc, "", budget);
    if (const boost::json::object* pages = doc.if_object()) WalkPages(*pages);
    return 0;
}
