#include "kestro/repository/rtooltip.h"

#include "kestro/xmodule/kestrodirectory.h"
#include "kestro/xmodule/log.h"

#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>

#include <exception>

namespace kestro {
namespace repository {

namespace pt = boost::property_tree;

namespace {

const char kTooltipFile[] = "data/tooltip.xml";

// Missing name or tip elements raise on purpose: LoadItems stops there and keeps what it has.
RToolTip::TipType ReadType(const pt::ptree& element)
{
    RToolTip::TipType type;
    type.name = element.get<std::string>("name");
    type.tip = element.get<std::string>("tip");
    XLOG(4) << "tooltip type name: " << type.name;
    XLOG(4) << "tooltip type tip: " << type.tip;
    return type;
}

RToolTip::TipGroup ReadGroup(const pt::ptree& element)
{
    RToolTip::TipGroup group;
    group.name = element.get<std::string>("name");
    XLOG(4) << "tooltip group name: " << group.name;
    for (pt::ptree::const_iterator child = element.begin(); child != element.end(); ++child)
        if (child->first == "type") group.types.push_back(ReadType(child->second));
    return group;
}

}  // namespace

boost::shared_ptr<RToolTip> RToolTip::instance_;

boost::shared_ptr<RToolTip> RToolTip::Instance()
{
    if (!instance_) instance_.reset(new RToolTip());
    return instance_;
}

RToolTip::RToolTip()
{
    XLOG(4) << "Entering  " << "kestro::repository::RToolTip::RToolTip";
}

RToolTip::RToolTip(const RToolTip& other) : groups(other.groups) {}

RToolTip& RToolTip::operator=(const RToolTip& other)
{
    groups = other.groups;
    return *this;
}

RToolTip::~RToolTip()
{
    XLOG(4) << "Exiting  " << "kestro::repository::RToolTip::~RToolTip";
}

bool RToolTip::LoadTooltips()
{
    return LoadItems(KestroDirectory::GetExePath("") + kTooltipFile);
}

bool RToolTip::LoadItems(const std::string& path)
{
    try {
        pt::ptree file;
        pt::read_xml(path, file, 0);
        const pt::ptree& tooltip = file.get_child("tooltip");
        for (pt::ptree::const_iterator child = tooltip.begin(); child != tooltip.end(); ++child)
            if (child->first == "group") groups.push_back(ReadGroup(child->second));
        return true;
    } catch (const std::exception& error) {
        XLOG(1) << "Failed to read tooltip XML: " << error.what();
        return false;
    }
}

std::string RToolTip::GetTypeTip(const std::string& group, const std::string& type)
{
    for (size_t g = 0; g < groups.size(); ++g) {
        if (groups[g].name != group) continue;
        const std::vector<TipType>& types = groups[g].types;
        for (size_t t = 0; t < types.size(); ++t) {
            if (types[t].name != type) continue;
            XLOG(4) << "RToolTip::GetTypeTip group: " << group << " type: " << type << " tip: " << types[t].tip;
            return types[t].tip;
        }
        return std::string();
    }
    return std::string();
}

}  // namespace repository
}  // namespace kestro
