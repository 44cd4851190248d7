#ifndef KESTRO_REPOSITORY_RRECORDSTORE_H
#define KESTRO_REPOSITORY_RRECORDSTORE_H

#include "rcompacttree.h"
#include "rkeytable.h"

#include <boost/property_tree/ptree_fwd.hpp>
#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

namespace kestro {
namespace repository {

// The repository's entries in the order they came, each kept compact, with the positions of each key's entries at hand.
// It answers as the property tree it replaces would: entries of a key in their order, a key's first entry for lookups,
// dotted paths that nest on adding.
class RRecordStore {
public:
    // Adds `record` under `path`, whose '.' separated parts nest into the first entry of each name.
    void Add(const std::string& path, const boost::property_tree::ptree& record);
    // Sets the text of the first entry `key`, or adds an entry holding it.
    void Put(const std::string& key, const std::string& value);
    // The text of the first entry `key`; empty without one.
    std::string Get(const std::string& key) const;
    std::size_t Count(const std::string& key) const;
    // The `n`th entry `key` as a tree of its own.
    boost::property_tree::ptree Entry(const std::string& key, std::size_t n) const;
    // The same in its compact form, whose key numbers name entries of Keys(). The store never
    // changes a compact tree it has handed out: it replaces it.
    boost::shared_ptr<const RCompactTree> CompactEntry(const std::string& key, std::size_t n) const;
    const RKeyTable& Keys() const { return keys; }
    // The keys that name record types (an upper-case first letter), sorted, each once.
    std::vector<std::string> RecordTypes() const;
    // Takes over the contents of `tree`, which is left empty.
    void Assign(boost::property_tree::ptree& tree);
    // Adds each entry of `other` in turn, as Add does.
    void AddAll(const RRecordStore& other);
    // The repository file: this store as its repository element, `scan` as its SCAN element.
    void WriteFile(std::ostream& out, const boost::property_tree::ptree& scan) const;

private:
    struct Stored {
        std::uint32_t key;
        boost::shared_ptr<const RCompactTree> tree;
    };

    void Append(const std::string& key, const boost::property_tree::ptree& tree);
    const Stored* First(const std::string& key) const;
    Stored* First(const std::string& key);
    boost::property_tree::ptree ToPtree() const;
    bool WritesAsPlainElement() const;
    void WriteEntries(std::ostream& out, int indent) const;

    RKeyTable keys;
    std::vector<Stored> entries;
    std::map<std::string, std::vector<std::uint32_t>> positions;
    // The repository element's own text, which only a file read can give it.
    std::string data;
};

}  // namespace repository
}  // namespace kestro

#endif
