#ifndef KESTRO_REPOSITORY_RINSTANCE_P_H
#define KESTRO_REPOSITORY_RINSTANCE_P_H

#include "repository/rcompacttree.h"
#include "repository/rkeytable.h"

#include <boost/property_tree/ptree.hpp>
#include <boost/shared_ptr.hpp>

#include <string>

namespace kestro {
namespace repository {

class RInstancePrivate {
public:
    RInstancePrivate() {}
    RInstancePrivate(const std::string& name, const boost::property_tree::ptree& tree) : name(name), tree(tree) {}
    // Takes the tree over without copying it, for trees made only to be handed out.
    RInstancePrivate(const std::string& name, boost::property_tree::ptree&& made) : name(name) { tree.swap(made); }
    // A stored record in its compact form, shared with the store, made a tree when first read:
    // handing out many records costs a pointer each, not a tree of many nodes apiece.
    RInstancePrivate(const std::string& name, const boost::shared_ptr<const RCompactTree>& compact,
                     const boost::shared_ptr<const RKeyTable>& keys)
        : name(name), stored(compact), storedKeys(keys)
    {
    }

    // The record's tree, made from its compact form the first time.
    boost::property_tree::ptree& Tree()
    {
        if (stored) {
            stored->ToPtree(*storedKeys).swap(tree);
            stored.reset();
            storedKeys.reset();
        }
        return tree;
    }

    // Bytes that XML cannot carry are protected as "base64encode " + base64 of the UTF-8 text.
    static std::string EncodeText(const std::string& text);
    // Undoes EncodeText wherever its marker stands; a bad base64 byte raises the decoder's failure.
    static std::string DecodeText(const std::string& text);
    // Removes control bytes other than tab, line feed and carriage return.
    static void StripControlChars(std::string& text);
    static bool IsValidDisplayText(const std::string& text);
    static bool IsValidPropertyKey(const std::string& key);

    std::string name;

private:
    boost::property_tree::ptree tree;
    boost::shared_ptr<const RCompactTree> stored;
    boost::shared_ptr<const RKeyTable> storedKeys;
};

}  // namespace repository
}  // namespace kestro

#endif
