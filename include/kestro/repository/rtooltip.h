#ifndef KESTRO_REPOSITORY_RTOOLTIP_H
#define KESTRO_REPOSITORY_RTOOLTIP_H

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace kestro {
namespace repository {

// The report's help texts per group and instance type, read from data/tooltip.xml.
// One object per process; a report without tips simply gets empty texts.
class RToolTip {
public:
    struct TipType {
        std::string name;
        std::string tip;
    };

    struct TipGroup {
        std::string name;
        std::vector<TipType> types;
    };

    // Creates the object on first use; the first call must not race with another.
    static boost::shared_ptr<RToolTip> Instance();

    RToolTip(const RToolTip& other);
    RToolTip& operator=(const RToolTip& other);
    ~RToolTip();

    // Appends the groups of the program's tooltip file; loading twice changes no answer.
    bool LoadTooltips();
    // The first matching tip, or an empty text.
    std::string GetTypeTip(const std::string& group, const std::string& type);

private:
    RToolTip();
    bool LoadItems(const std::string& path);

    static boost::shared_ptr<RToolTip> instance_;
    std::vector<TipGroup> groups;
};

}  // namespace repository
}  // namespace kestro

#endif
