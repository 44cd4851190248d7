#include "rreportcategory.h"

#include "xmodule/rlog.h"

#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>

namespace kestro {
namespace repository {

namespace pt = boost::property_tree;

namespace {

const char kTrue[] = "true";
const char kLegacy[] = "legacy";
const char kIsHidden[] = "IsHidden";

void CopyAttributes(const pt::ptree& element, std::map<std::string, std::string>& attributes)
{
    const boost::optional<const pt::ptree&> xmlattr = element.get_child_optional("<xmlattr>");
    if (!xmlattr) return;
    for (pt::ptree::const_iterator attribute = xmlattr->begin(); attribute != xmlattr->end(); ++attribute)
        attributes[attribute->first] = attribute->second.data();
}

bool HasAttributeValue(const std::map<std::string, std::string>& attributes, const char* name, const char* value)
{
    const std::map<std::string, std::string>::const_iterator found = attributes.find(name);
    return found != attributes.end() && found->second == value;
}

bool TypeRuns(const ReportType& type)
{
    const std::map<std::string, std::string>::const_iterator legacy = type.attributes.find(kLegacy);
    return legacy == type.attributes.end() || legacy->second == "false";
}

ReportGroup ReadGroup(const pt::ptree& element)
{
    ReportGroup group;
    group.name = element.get<std::string>("name");
    group.display = element.get<std::string>("display");
    CopyAttributes(element, group.attributes);
    for (pt::ptree::const_iterator child = element.begin(); child != element.end(); ++child) {
        if (child->first != "type") continue;
        ReportType type = RReportCategory::ParseTypeSpecification(child->second.data());
        CopyAttributes(child->second, type.attributes);
        group.types.push_back(type);
    }
    return group;
}

ReportCategory ReadCategory(const pt::ptree& element)
{
    ReportCategory category;
    category.name = element.get<std::string>("name");
    category.display = element.get<std::string>("display");
    for (pt::ptree::const_iterator child = element.begin(); child != element.end(); ++child)
        if (child->first == "group") category.groups.push_back(ReadGroup(child->second));
    return category;
}

}  // namespace

RReportCategory::RReportCategory(RRepositoryPrivate* repository) : repository(repository) {}

ReportType RReportCategory::ParseTypeSpecification(const std::string& text)
{
    ReportType type;
    const std::string::size_type question = text.find('?');
    type.name = text.substr(0, question);
    if (question == std::string::npos) return type;
    const std::string filterText = text.substr(question + 1);
    const std::string::size_type equals = filterText.find('=');
    if (equals == std::string::npos) return type;
    ReportFilter filter;
    filter.key = filterText.substr(0, equals);
    filter.value = filterText.substr(equals + 1);
    type.filters.push_back(filter);
    return type;
}

bool RReportCategory::Load(const std::string& path)
{
    RLOG(3) << "Loading category file: " << path;
    try {
        pt::ptree file;
        pt::read_xml(path, file, pt::xml_parser::trim_whitespace);
        const pt::ptree& report = file.get_child("report");
        for (pt::ptree::const_iterator child = report.begin(); child != report.end(); ++child)
            if (child->first == "category") categories.push_back(ReadCategory(child->second));
    } catch (const pt::xml_parser_error& e) {
        RLOG(1) << "Failed to parse category XML: " << e.what();
        return false;
    } catch (const pt::ptree_error& e) {
        RLOG(1) << "Failed to read category XML: " << e.what();
        return false;
    }
    return true;
}

void RReportCategory::Dump() const
{
    typedef std::map<std::string, std::string>::const_iterator AttributeIterator;
    for (const ReportCategory& category : categories) {
        RLOG(4) << "Category: name = " << category.name << ", display = " << category.display << ".";
        for (const ReportGroup& group : category.groups) {
            RLOG(4) << "Group: name = " << group.name << ", display = " << group.display << ".";
            for (AttributeIterator a = group.attributes.begin(); a != group.attributes.end(); ++a)
                RLOG(4) << "    Attribute: name = " << a->first << ", value = " << a->second;
            for (const ReportType& type : group.types) {
                RLOG(4) << "    Type: " << type.name << ".";
                for (AttributeIterator a = type.attributes.begin(); a != type.attributes.end(); ++a)
                    RLOG(4) << "      Attribute: name = " << a->first << ", value = " << a->second;
                for (const ReportFilter& filter : type.filters)
                    RLOG(4) << "      Filter: " << filter.key << ", " << filter.value << ".";
            }
        }
    }
}

std::vector<std::pair<std::string, std::string> > RReportCategory::GetGroups() const
{
    std::vector<std::pair<std::string, std::string> > groups;
    for (const ReportCategory& category : categories)
        for (const ReportGroup& group : category.groups) {
            if (IsLegacy(group)) {
                RLOG(4) << "The group " << group.name << "is legacy.";
                continue;
            }
            groups.push_back(std::make_pair(group.name, group.display));
        }
    return groups;
}

std::vector<std::pair<std::string, std::string> > RReportCategory::GetUnHiddenGroups() const
{
    std::vector<std::pair<std::string, std::string> > groups;
    for (const ReportCategory& category : categories)
        for (const ReportGroup& group : category.groups) {
            if (IsHidden(group)) {
                RLOG(4) << "The group " << group.name << "has been hidden";
                continue;
            }
            if (IsLegacy(group)) {
                RLOG(4) << "The group " << group.name << "is legacy.";
                continue;
            }
            groups.push_back(std::make_pair(group.name, group.display));
        }
    return groups;
}

std::vector<std::string> RReportCategory::GetTypes(const std::string& groupName) const
{
    std::vector<std::string> types;
    for (const ReportCategory& category : categories)
        for (const ReportGroup& group : category.groups) {
            if (group.name != groupName) continue;
            for (const ReportType& type : group.types)
                if (TypeRuns(type)) types.push_back(type.name);
        }
    return types;
}

bool RReportCategory::IsHidden(const ReportGroup& group) const
{
    return HasAttributeValue(group.attributes, kIsHidden, kTrue);
}

bool RReportCategory::IsLegacy(const ReportGroup& group) const
{
    return HasAttributeValue(group.attributes, kLegacy, kTrue);
}

}  // namespace repository
}  // namespace kestro
