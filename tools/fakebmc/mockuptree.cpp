#include "fakebmc/mockuptree.h"

#include <fstream>
#include <sstream>

#include <boost/json.hpp>

namespace {

const char* const INDEX_FILE = "/index.json";
const char* const EXPAND_KEY = "$expand";
const char* const SKIP_KEY = "$skip";
const char* const EXPAND_ONE_LEVEL = ".($levels=1)";

bool ReadFile(const std::string& file, std::string& body)
{
    std::ifstream in(file.c_str(), std::ios::binary);
    if (!in)
        return false;
    std::ostringstream text;
    text << in.rdbuf();
    body = text.str();
    return true;
}

std::size_t ReadSkip(const MockupTree::Query& query)
{
    MockupTree::Query::const_iterator it = query.find(SKIP_KEY);
    if (it == query.end())
        return 0;
    std::istringstream in(it->second);
    std::size_t skip = 0;
    return (in >> skip) ? skip : 0;
}

bool WantsExpand(const MockupTree::Query& query)
{
    MockupTree::Query::const_iterator it = query.find(EXPAND_KEY);
    return it != query.end() && it->second.find("$levels=0") == std::string::npos;
}

}  // namespace

MockupTree::MockupTree(const std::string& root) : root(root) {}

std::string MockupTree::NormalizePath(const std::string& path)
{
    std::string normal = path;
    while (normal.size() > 1 && normal[normal.size() - 1] == '/')
        normal.erase(normal.size() - 1);
    return normal;
}

void MockupTree::SetDocument(const std::string& path, const std::string& body)
{
    documents[NormalizePath(path)] = body;
}

bool MockupTree::Load(const std::string& path, std::string& body) const
{
    const std::string normal = NormalizePath(path);
    std::map<std::string, std::string>::const_iterator stored = documents.find(normal);
    if (stored != documents.end()) {
        body = stored->second;
        return true;
    }
    // Nothing outside the tree is served.
    if (root.empty() || normal.empty() || normal[0] != '/' || normal.find("..") != std::string::npos)
        return false;
    return ReadFile(root + (normal == "/" ? std::string() : normal) + INDEX_FILE, body);
}

bool MockupTree::Render(const std::string& path, const Query& query, std::size_t pageSize, std::string& body) const
{
    if (!Load(path, body))
        return false;
    boost::system::error_code ec;
    boost::json::value doc = boost::json::parse(body, ec);
    boost::json::object* object = ec ? nullptr : doc.if_object();
    boost::json::value* membersValue = object ? object->if_contains("Members") : nullptr;
    boost::json::array* members = membersValue ? membersValue->if_array() : nullptr;
    if (!members)
        return true;

    const bool expand = WantsExpand(query);
    if (pageSize > 0) {
        const std::size_t skip = ReadSkip(query);
        boost::json::array page;
        for (std::size_t i = skip; i < members->size() && i < skip + pageSize; ++i)
            page.push_back((*members)[i]);
        const bool more = skip + pageSize < members->size();
        *members = page;
        if (more) {
            std::ostringstream next;
            next << NormalizePath(path) << "?" << SKIP_KEY << "=" << skip + pageSize;
            if (expand)
                next << "&" << EXPAND_KEY << "=" << EXPAND_ONE_LEVEL;
            // Inserting may move the object's values, so `members` is looked up again below.
            (*object)["Members@odata.nextLink"] = next.str();
            members = object->at("Members").if_array();
        }
    }
    if (expand) {
        for (boost::json::value& member : *members) {
            const boost::json::object* link = member.if_object();
            const boost::json::value* id = link ? link->if_contains("@odata.id") : nullptr;
            std::string memberBody;
            if (!id || !id->is_string() || !Load(std::string(id->get_string().c_str()), memberBody))
                continue;
            boost::json::value memberDoc = boost::json::parse(memberBody, ec);
            if (!ec)
                member = memberDoc;
        }
    }
    body = boost::json::serialize(doc);
    return true;
}
