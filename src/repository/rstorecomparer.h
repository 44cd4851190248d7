#ifndef KESTRO_REPOSITORY_RSTORECOMPARER_H
#define KESTRO_REPOSITORY_RSTORECOMPARER_H

#include <boost/property_tree/ptree.hpp>

#include <string>
#include <vector>

namespace kestro {
namespace repository {

// Folds an older store into a newer one: changed values become "old|||new", records of only
// the older store end in "|||", records of only the newer one begin with it.
class RStoreComparer {
public:
    // Merges `older` into `newer`, type by type; `older` is only read.
    static void MergeInto(const boost::property_tree::ptree& older, boost::property_tree::ptree& newer);
    // The record types of a store: keys that begin with an upper-case letter, sorted, each once.
    static std::vector<std::string> RecordTypes(const boost::property_tree::ptree& store);
    // Whether an entry of a store is a record: its key begins with an upper-case letter.
    static bool IsRecordKey(const std::string& key);

private:
    static void MergeRecord(const boost::property_tree::ptree& a, boost::property_tree::ptree& b);
    static void MergeType(const std::string& type, const boost::property_tree::ptree& older,
                          boost::property_tree::ptree& newer);
};

}  // namespace repository
}  // namespace kestro

#endif
