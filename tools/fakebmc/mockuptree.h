#ifndef KESTRO_FAKEBMC_MOCKUPTREE_H
#define KESTRO_FAKEBMC_MOCKUPTREE_H

#include <cstddef>
#include <map>
#include <string>

// A Redfish service read from a mockup folder: the resource at /redfish/v1/Systems/1 is the file
// <root>/redfish/v1/Systems/1/index.json. Documents set in memory hide files of the same path.
// Answers GETs the way a BMC does: "$expand=.($levels=1)" inlines each member, and with a page
// size the Members array comes in pages joined by "Members@odata.nextLink" ("?$skip=N").
class MockupTree {
public:
    typedef std::map<std::string, std::string> Query;

    explicit MockupTree(const std::string& root = std::string());

    void SetDocument(const std::string& path, const std::string& body);
    // The stored text at `path`, as it stands; false when there is none.
    bool Load(const std::string& path, std::string& body) const;
    // The answer to a GET of `path` with `query`; false when there is no such resource.
    // Text that is not JSON is served unchanged.
    bool Render(const std::string& path, const Query& query, std::size_t pageSize, std::string& body) const;

    // "/redfish/v1/Systems/1/" and "/redfish/v1/Systems/1" name the same resource.
    static std::string NormalizePath(const std::string& path);

private:
    std::string root;
    std::map<std::string, std::string> documents;
};

#endif
