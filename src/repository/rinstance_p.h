#ifndef KESTRO_REPOSITORY_RINSTANCE_P_H
#define KESTRO_REPOSITORY_RINSTANCE_P_H

#include <boost/property_tree/ptree.hpp>

#include <string>

namespace kestro {
namespace repository {

class RInstancePrivate {
public:
    RInstancePrivate() {}
    RInstancePrivate(const std::string& name, const boost::property_tree::ptree& tree) : name(name), tree(tree) {}
    // Takes the tree over without copying it, for trees made only to be handed out.
    RInstancePrivate(const std::string& name, boost::property_tree::ptree&& made) : name(name) { tree.swap(made); }

    // Bytes that XML cannot carry are protected as "base64encode " + base64 of the UTF-8 text.
    static std::string EncodeText(const std::string& text);
    // Undoes EncodeText wherever its marker stands; a bad base64 byte raises the decoder's failure.
    static std::string DecodeText(const std::string& text);
    // Removes control bytes other than tab, line feed and carriage return.
    static void StripControlChars(std::string& text);
    static bool IsValidDisplayText(const std::string& text);
    static bool IsValidPropertyKey(const std::string& key);

    std::string name;
    boost::property_tree::ptree tree;
};

}  // namespace repository
}  // namespace kestro

#endif
