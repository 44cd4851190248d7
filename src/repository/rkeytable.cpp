#include "rkeytable.h"

namespace kestro {
namespace repository {

std::uint32_t RKeyTable::Id(const std::string& name)
{
    const auto inserted = ids.emplace(name, static_cast<std::uint32_t>(names.size()));
    if (inserted.second) names.push_back(&inserted.first->first);
    return inserted.first->second;
}

}  // namespace repository
}  // namespace kestro
