#ifndef KESTRO_REPOSITORY_RREPORTCATEGORY_H
#define KESTRO_REPOSITORY_RREPORTCATEGORY_H

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace kestro {
namespace repository {

class RRepositoryPrivate;

struct ReportFilter {
    std::string key;
    std::string value;
};

struct ReportType {
    std::map<std::string, std::string> attributes;
    std::string name;
    std::vector<ReportFilter> filters;
};

struct ReportGroup {
    std::map<std::string, std::string> attributes;
    std::string name;
    std::string display;
    std::vector<ReportType> types;
};

struct ReportCategory {
    std::string name;
    std::string display;
    std::vector<ReportGroup> groups;
};

// The groups and types of one inventory case, read from its reportcategory_<case>.xml.
class RReportCategory {
public:
    explicit RReportCategory(RRepositoryPrivate* repository);

    bool Load(const std::string& path);
    void Dump() const;
    std::vector<std::pair<std::string, std::string> > GetGroups() const;
    std::vector<std::pair<std::string, std::string> > GetUnHiddenGroups() const;
    std::vector<std::string> GetTypes(const std::string& group) const;
    bool IsHidden(const ReportGroup& group) const;
    bool IsLegacy(const ReportGroup& group) const;
    const std::vector<ReportCategory>& GetCategories() const { return categories; }

    // "Name?key=value" gives the name and one filter; a text without "=" after "?" keeps its name.
    static ReportType ParseTypeSpecification(const std::string& text);

private:
    RRepositoryPrivate* repository;
    std::vector<ReportCategory> categories;
};

}  // namespace repository
}  // namespace kestro

#endif
