#include "rcompacttree.h"

#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>

#include <ostream>

namespace kestro {
namespace repository {

namespace pt = boost::property_tree;
namespace xp = boost::property_tree::xml_parser;

namespace {

const std::string& AttributesKey()
{
    static const std::string key = xp::xmlattr<std::string>();
    return key;
}

const std::string& TextKey()
{
    static const std::string key = xp::xmltext<std::string>();
    return key;
}

const std::string& CommentKey()
{
    static const std::string key = xp::xmlcomment<std::string>();
    return key;
}

// What decides an element's form: child elements put it on lines of its own, and an element
// of attributes alone (no text) closes in its opening tag.
struct ElementForm {
    bool hasElements = false;
    bool attributesOnly = false;
};

struct TreeSize {
    std::size_t nodes = 0;
    std::size_t textBytes = 0;
};

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
        Build(into.push_back(keys.Blank(nodes[child].key))->second, child, keys);
}

std::string RCompactTree::DataOf(std::size_t index) const
{
    return text.substr(nodes[index].dataStart, nodes[index].dataLength);
}

void RCompactTree::WriteXml(std::ostream& out, const std::string& key, int indent, const RKeyTable& keys,
                            const xp::xml_writer_settings<std::string>& settings) const
{
    WriteNode(out, 0, key, indent, keys, settings);
}

void RCompactTree::WriteAttributes(std::ostream& out, std::size_t index, const RKeyTable& keys) const
{
    for (std::size_t child = index + 1; child < nodes[index].end; child = nodes[child].end)
        if (keys.Name(nodes[child].key) == AttributesKey()) {
            for (std::size_t attr = child + 1; attr < nodes[child].end; attr = nodes[attr].end)
                out << ' ' << keys.Name(nodes[attr].key) << "=\"" << xp::encode_char_entities(DataOf(attr)) << '"';
            return;
        }
}

void RCompactTree::WriteNode(std::ostream& out, std::size_t index, const std::string& key, int indent,
                             const RKeyTable& keys, const xp::xml_writer_settings<std::string>& settings) const
{
    const Node& node = nodes[index];
    if (node.dataLength == 0 && node.end == index + 1) {
        xp::write_xml_indent(out, indent, settings);
        out << '<' << key << "/>\n";
        return;
    }
    ElementForm form;
    form.attributesOnly = node.dataLength == 0;
    for (std::size_t child = index + 1; child < node.end && !form.hasElements; child = nodes[child].end) {
        const std::string& name = keys.Name(nodes[child].key);
        if (name != AttributesKey()) form.attributesOnly = false;
        if (name != AttributesKey() && name != TextKey()) form.hasElements = true;
    }
    xp::write_xml_indent(out, indent, settings);
    out << '<' << key;
    WriteAttributes(out, index, keys);
    if (form.attributesOnly) {
        out << "/>\n";
        return;
    }
    out << '>';
    if (form.hasElements) out << '\n';
    if (node.dataLength != 0) xp::write_xml_text(out, DataOf(index), indent + 1, form.hasElements, settings);
    for (std::size_t child = index + 1; child < node.end; child = nodes[child].end) {
        const std::string& name = keys.Name(nodes[child].key);
        if (name == CommentKey())
            xp::write_xml_comment(out, DataOf(child), indent + 1, true, settings);
        else if (name == TextKey())
            xp::write_xml_text(out, DataOf(child), indent + 1, form.hasElements, settings);
        else if (name != AttributesKey())
            WriteNode(out, child, name, indent + 1, keys, settings);
    }
    if (form.hasElements) xp::write_xml_indent(out, indent, settings);
    out << "</" << key << ">\n";
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
