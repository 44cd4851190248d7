#ifndef KESTRO_REPOSITORY_RCOMPACTTREE_H
#define KESTRO_REPOSITORY_RCOMPACTTREE_H

#include "rkeytable.h"

#include <boost/property_tree/detail/xml_parser_writer_settings.hpp>
#include <boost/property_tree/ptree_fwd.hpp>

#include <iosfwd>

#include <cstdint>
#include <string>
#include <vector>

namespace kestro {
namespace repository {

// A property tree kept flat: its nodes in document order, keys by number, all texts in one string. It holds a tenth of
// the tree's bytes or less, and becomes a tree again when one is asked for.
class RCompactTree {
public:
    RCompactTree(const boost::property_tree::ptree& tree, RKeyTable& keys);

    boost::property_tree::ptree ToPtree(const RKeyTable& keys) const;
    std::string Data() const { return text.substr(0, nodes.front().dataLength); }
    void SetData(const std::string& data);
    // Writes the tree as element `key` at `indent`, in the very text the XML writer makes of the
    // same property tree, without making that tree.
    void WriteXml(std::ostream& out, const std::string& key, int indent, const RKeyTable& keys,
                  const boost::property_tree::xml_parser::xml_writer_settings<std::string>& settings) const;

private:
    struct Node {
        std::uint32_t key;
        // One past the last node of this node's subtree.
        std::uint32_t end;
        std::uint32_t dataStart;
        std::uint32_t dataLength;
    };

    void Append(const boost::property_tree::ptree& tree, std::uint32_t key, RKeyTable& keys);
    void Build(boost::property_tree::ptree& into, std::size_t index, const RKeyTable& keys) const;
    std::string DataOf(std::size_t index) const;
    void WriteNode(std::ostream& out, std::size_t index, const std::string& key, int indent, const RKeyTable& keys,
                   const boost::property_tree::xml_parser::xml_writer_settings<std::string>& settings) const;
    void WriteAttributes(std::ostream& out, std::size_t index, const RKeyTable& keys) const;

    std::vector<Node> nodes;
    std::string text;
};

}  // namespace repository
}  // namespace kestro

#endif
