#ifndef KESTRO_REPOSITORY_RKEYTABLE_H
#define KESTRO_REPOSITORY_RKEYTABLE_H

#include <boost/property_tree/ptree.hpp>

#include <cstdint>
#include <deque>
#include <string>
#include <unordered_map>

namespace kestro {
namespace repository {

// Each distinct element name of a store once: records share their keys by number.
class RKeyTable {
public:
    std::uint32_t Id(const std::string& name);
    const std::string& Name(std::uint32_t id) const { return blanks[id].first; }
    // An empty child under the name: a tree grows by copying it, with no temporary of its own.
    const boost::property_tree::ptree::value_type& Blank(std::uint32_t id) const { return blanks[id]; }

private:
    std::unordered_map<std::string, std::uint32_t> ids;
    std::deque<boost::property_tree::ptree::value_type> blanks;
};

}  // namespace repository
}  // namespace kestro

#endif
