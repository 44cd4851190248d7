#ifndef KESTRO_REPOSITORY_RKEYTABLE_H
#define KESTRO_REPOSITORY_RKEYTABLE_H

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace kestro {
namespace repository {

// Each distinct element name of a store once: records share their keys by number.
class RKeyTable {
public:
    std::uint32_t Id(const std::string& name);
    const std::string& Name(std::uint32_t id) const { return *names[id]; }

private:
    std::unordered_map<std::string, std::uint32_t> ids;
    // Map keys stay where they are while the map grows, so they are named in place.
    std::vector<const std::string*> names;
};

}  // namespace repository
}  // namespace kestro

#endif
