#include "rcompacttree.h"

#include <boost/property_tree/ptree.hpp>

namespace kestro {
namespace repository {

namespace pt = boost::property_tree;

namespace {

struct TreeSize {
    std::size_t nodes = 0;
    std::size_t textBytes = 0;
};

// One empty tree to copy from, so a child costs no temporary tree of its own.
const pt::ptree& EmptyTree()
{
    static const pt::ptree empty;
    return empty;
}

void Measure(const pt::ptree& tree, TreeSize& size)
{
    ++size.nodes;
    size.textBytes += tree.data().size();
    for (const pt::ptree::value_type& child : tree) Measure(child.second, size);
}

}  // namespace

RCompactTree::RCompactTree(const pt::ptree& tree, RKeyTable& keys)
{
    // Room made exactly, so a store of many records holds no spare capacity.
    TreeSize size;
    Measure(tree, size);
    nodes.reserve(size.nodes);
    text.reserve(size.textBytes);
    Append(tree, 0, keys);
}

void RCompactTree::Append(const pt::ptree& tree, std::uint32_t key, RKeyTable& keys)
{
    const std::size_t index = nodes.size();
    nodes.push_back(
        Node{key, 0, static_cast<std::uint32_t>(text.size()), static_cast<std::uint32_t>(tree.data().size())});
    text += tree.data();
    for (const pt::ptree::value_type& child : tree) Append(child.second, keys.Id(child.first), keys);
    nodes[index].end = static_cast<std::uint32_t>(nodes.size());
}

pt::ptree RCompactTree::ToPtree(const RKeyTable& keys) const
{
    pt::ptree tree;
    Build(tree, 0, keys);
    return tree;
}

void RCompactTree::Build(pt::ptree& into, std::size_t index, const RKeyTable& keys) const
{
    const Node& node = nodes[index];
    into.data().assign(text, node.dataStart, node.dataLength);
    for (std::size_t child = index + 1; child < node.end; child = nodes[child].end)
        Build(into.push_back(pt::ptree::value_type(keys.Name(nodes[child].key), EmptyTree()))->second, child, keys);
}

void RCompactTree::SetData(const std::string& data)
{
    const std::uint32_t oldLength = nodes.front().dataLength;
    text.replace(0, oldLength, data);
    nodes.front().dataLength = static_cast<std::uint32_t>(data.size());
    const std::uint32_t newLength = static_cast<std::uint32_t>(data.size());
    for (std::size_t i = 1; i < nodes.size(); ++i) nodes[i].dataStart = nodes[i].dataStart - oldLength + newLength;
}

}  // namespace repository
}  // namespace kestro
