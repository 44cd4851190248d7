#include "rkeytable.h"

namespace kestro {
namespace repository {

std::uint32_t RKeyTable::Id(const std::string& name)
{
    const auto inserted = ids.emplace(name, static_cast<std::uint32_t>(blanks.size()));
    if (inserted.second) blanks.emplace_back(name, boost::property_tree::ptree());
    return inserted.first->second;
}

}  // namespace repository
}  // namespace kestro
