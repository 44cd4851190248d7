#include "rrecordstore.h"

#include "rstorecomparer.h"

#include <boost/make_shared.hpp>
#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>

#include <ostream>

namespace kestro {
namespace repository {

namespace pt = boost::property_tree;
namespace xp = boost::property_tree::xml_parser;

namespace {

const xp::xml_writer_settings<std::string> kSettings = pt::xml_writer_make_settings<std::string>(' ', 2, "utf-8");
const char kRootName[] = "kestro";
const char kRepositoryName[] = "repository";
const char kScanName[] = "SCAN";

}  // namespace

void RRecordStore::Add(const std::string& path, const pt::ptree& record)
{
    const std::string::size_type dot = path.find('.');
    if (dot == std::string::npos) {
        Append(path, record);
        return;
    }
    // Rare: the first entry of the head name takes the rest of the path, as a tree would.
    const std::string head = path.substr(0, dot);
    Stored* existing = First(head);
    pt::ptree parent = existing ? existing->tree->ToPtree(keys) : pt::ptree();
    parent.add_child(pt::ptree::path_type(path.substr(dot + 1), '.'), record);
    if (existing)
        existing->tree = boost::make_shared<RCompactTree>(parent, keys);
    else
        Append(head, parent);
}

void RRecordStore::Append(const std::string& key, const pt::ptree& tree)
{
    const std::uint32_t id = keys.Id(key);
    positions[key].push_back(static_cast<std::uint32_t>(entries.size()));
    entries.push_back(Stored{id, boost::make_shared<RCompactTree>(tree, keys)});
}

const RRecordStore::Stored* RRecordStore::First(const std::string& key) const
{
    const auto found = positions.find(key);
    return found == positions.end() ? nullptr : &entries[found->second.front()];
}

RRecordStore::Stored* RRecordStore::First(const std::string& key)
{
    return const_cast<Stored*>(static_cast<const RRecordStore*>(this)->First(key));
}

void RRecordStore::Put(const std::string& key, const std::string& value)
{
    Stored* existing = First(key);
    if (existing) {
        const boost::shared_ptr<RCompactTree> changed = boost::make_shared<RCompactTree>(*existing->tree);
        changed->SetData(value);
        existing->tree = changed;
    } else
        Append(key, pt::ptree(value));
}

std::string RRecordStore::Get(const std::string& key) const
{
    const Stored* existing = First(key);
    return existing ? existing->tree->Data() : std::string();
}

std::size_t RRecordStore::Count(const std::string& key) const
{
    const auto found = positions.find(key);
    return found == positions.end() ? 0 : found->second.size();
}

pt::ptree RRecordStore::Entry(const std::string& key, std::size_t n) const
{
    return entries[positions.at(key).at(n)].tree->ToPtree(keys);
}

boost::shared_ptr<const RCompactTree> RRecordStore::CompactEntry(const std::string& key, std::size_t n) const
{
    return entries[positions.at(key).at(n)].tree;
}

std::vector<std::string> RRecordStore::RecordTypes() const
{
    std::vector<std::string> types;
    for (const auto& key : positions)
        if (RStoreComparer::IsRecordKey(key.first)) types.push_back(key.first);
    return types;
}

void RRecordStore::Assign(pt::ptree& tree)
{
    RRecordStore taken;
    taken.data.swap(tree.data());
    // Each entry leaves the tree as soon as it is kept, so the two forms are never both whole.
    while (!tree.empty()) {
        taken.Append(tree.front().first, tree.front().second);
        tree.pop_front();
    }
    std::swap(*this, taken);
}

void RRecordStore::AddAll(const RRecordStore& other)
{
    for (const Stored& entry : other.entries) Add(other.keys.Name(entry.key), entry.tree->ToPtree(other.keys));
}

pt::ptree RRecordStore::ToPtree() const
{
    pt::ptree tree(data);
    for (const Stored& entry : entries)
        tree.push_back(pt::ptree::value_type(keys.Name(entry.key), entry.tree->ToPtree(keys)));
    return tree;
}

// Entries written one by one make the same text as the whole tree would when the element has no text, no attributes and
// at least one child; otherwise the tree is made and written whole.
bool RRecordStore::WritesAsPlainElement() const
{
    return data.empty() && !entries.empty() && Count(xp::xmlattr<std::string>()) == 0 &&
           Count(xp::xmltext<std::string>()) == 0;
}

void RRecordStore::WriteEntries(std::ostream& out, int indent) const
{
    for (const Stored& entry : entries) {
        const std::string& key = keys.Name(entry.key);
        if (key == xp::xmlcomment<std::string>())
            xp::write_xml_comment(out, entry.tree->Data(), indent, true, kSettings);
        else
            entry.tree->WriteXml(out, key, indent, keys, kSettings);
    }
}

void RRecordStore::WriteFile(std::ostream& out, const pt::ptree& scan) const
{
    out << "<?xml version=\"1.0\" encoding=\"" << kSettings.encoding << "\"?>\n";
    out << '<' << kRootName << ">\n";
    if (WritesAsPlainElement()) {
        xp::write_xml_indent(out, 1, kSettings);
        out << '<' << kRepositoryName << ">\n";
        WriteEntries(out, 2);
        xp::write_xml_indent(out, 1, kSettings);
        out << "</" << kRepositoryName << ">\n";
    } else {
        xp::write_xml_element(out, std::string(kRepositoryName), ToPtree(), 1, kSettings);
    }
    xp::write_xml_element(out, std::string(kScanName), scan, 1, kSettings);
    out << "</" << kRootName << ">\n";
}

}  // namespace repository
}  // namespace kestro
