#include "rstorecomparer.h"

#include "kestro/repository/rrepository.h"

#include <algorithm>
#include <cctype>
#include <iterator>

namespace kestro {
namespace repository {

namespace pt = boost::property_tree;

namespace {

bool HasNoReference(const pt::ptree& record) { return record.get<std::string>("reference", std::string()).empty(); }

std::string ValueOf(const pt::ptree& property) { return property.get<std::string>("value", std::string()); }

// A value that changes between any two runs (free space, uptime, a process's times) carries the
// attribute "volatile"; a comparison shows its newer value alone, so it never reads as a change.
bool IsVolatile(const pt::ptree& property) { return property.count(RRepository::VOLATILE_ATTR) != 0; }

// Changed values of two records of one build, compared property by property in step.
void MarkChanges(const pt::ptree& a, pt::ptree& b)
{
    pt::ptree::const_iterator older = a.begin();
    pt::ptree::iterator newer = b.begin();
    for (; older != a.end() && newer != b.end(); ++older, ++newer) {
        if (older->first != newer->first || !RStoreComparer::IsRecordKey(newer->first) || IsVolatile(newer->second))
            continue;
        const std::string oldValue = ValueOf(older->second);
        const std::string newValue = ValueOf(newer->second);
        if (oldValue != newValue) newer->second.put("value", oldValue + RRepository::COMPARE_SEP + newValue);
    }
}

void MarkValues(pt::ptree& record, const std::string& before, const std::string& after)
{
    for (pt::ptree::iterator property = record.begin(); property != record.end(); ++property)
        if (RStoreComparer::IsRecordKey(property->first))
            property->second.put("value", before + ValueOf(property->second) + after);
}

}  // namespace

bool RStoreComparer::IsRecordKey(const std::string& key)
{
    return !key.empty() && std::isupper(static_cast<unsigned char>(key[0]));
}

std::vector<std::string> RStoreComparer::RecordTypes(const pt::ptree& store)
{
    // The key-ordered index keeps each type's records together, so each type costs one jump.
    std::vector<std::string> types;
    pt::ptree::const_assoc_iterator entry = store.ordered_begin();
    while (entry != store.not_found()) {
        const std::string& key = entry->first;
        if (IsRecordKey(key)) types.push_back(key);
        entry = store.equal_range(key).second;
    }
    return types;
}

void RStoreComparer::MergeRecord(const pt::ptree& a, pt::ptree& b)
{
    if (!a.empty() && !b.empty()) {
        MarkChanges(a, b);
    } else if (!a.empty()) {
        b = a;
        MarkValues(b, std::string(), RRepository::COMPARE_SEP);
    } else if (!b.empty()) {
        MarkValues(b, RRepository::COMPARE_SEP, std::string());
    }
}

void RStoreComparer::MergeType(const std::string& type, const pt::ptree& older, pt::ptree& newer)
{
    std::vector<const pt::ptree*> first;
    std::vector<pt::ptree*> second;
    const std::pair<pt::ptree::const_assoc_iterator, pt::ptree::const_assoc_iterator> olderRange =
        older.equal_range(type);
    for (pt::ptree::const_assoc_iterator record = olderRange.first; record != olderRange.second; ++record)
        first.push_back(&record->second);
    // Collected before first-only records join the same key, so they are not marked twice.
    const std::pair<pt::ptree::assoc_iterator, pt::ptree::assoc_iterator> newerRange = newer.equal_range(type);
    for (pt::ptree::assoc_iterator record = newerRange.first; record != newerRange.second; ++record)
        second.push_back(&record->second);

    size_t paired = 0;
    if (!first.empty() && !second.empty() && HasNoReference(*first.front())) {
        paired = std::min(first.size(), second.size());
        for (size_t i = 0; i < paired; ++i) MergeRecord(*first[i], *second[i]);
    }
    if (paired < first.size() && HasNoReference(*first[paired]))
        for (size_t i = paired; i < first.size(); ++i) {
            pt::ptree firstOnly;
            MergeRecord(*first[i], firstOnly);
            newer.add_child(pt::ptree::path_type(type, '.'), firstOnly);
        }
    if (paired < second.size() && HasNoReference(*second[paired]))
        for (size_t i = paired; i < second.size(); ++i) MergeRecord(pt::ptree(), *second[i]);
}

void RStoreComparer::MergeInto(const pt::ptree& older, pt::ptree& newer)
{
    const std::vector<std::string> olderTypes = RecordTypes(older);
    const std::vector<std::string> newerTypes = RecordTypes(newer);
    std::vector<std::string> types;
    std::set_union(olderTypes.begin(), olderTypes.end(), newerTypes.begin(), newerTypes.end(),
                   std::back_inserter(types));
    for (std::vector<std::string>::const_iterator type = types.begin(); type != types.end(); ++type)
        MergeType(*type, older, newer);
}

}  // namespace repository
}  // namespace kestro
