#include "xmodule/linux/osrelease.h"

#include "xmodule/linux/hostfiles.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/algorithm/string/trim.hpp>

#include <sstream>
#include <vector>

namespace XModule {
namespace Linux {

namespace {

const char* const kOsReleasePaths[] = {"/etc/os-release", "/usr/lib/os-release"};

struct FamilyEntry {
    const char* id;
    const char* family;
};

// Distribution identifiers as they appear in ID or ID_LIKE, to the tool's case family.
const FamilyEntry kFamilies[] = {
    {"rhel", "rhel"},     {"centos", "rhel"}, {"fedora", "rhel"}, {"rocky", "rhel"},
    {"almalinux", "rhel"}, {"ol", "rhel"},    {"sles", "sles"},   {"suse", "sles"},
    {"opensuse", "sles"}, {"sled", "sles"},   {"ubuntu", "ubuntu"}, {"debian", "ubuntu"},
};

std::string Unquote(const std::string& raw)
{
    if (raw.size() < 2 || (raw[0] != '"' && raw[0] != '\'') || raw[raw.size() - 1] != raw[0]) return raw;
    const char quote = raw[0];
    std::string value;
    for (std::string::size_type i = 1; i + 1 < raw.size(); ++i) {
        if (quote == '"' && raw[i] == '\\' && i + 2 < raw.size()) ++i;
        value += raw[i];
    }
    return value;
}

std::string FamilyOf(const std::string& id)
{
    for (const FamilyEntry& entry : kFamilies)
        if (id == entry.id) return entry.family;
    return std::string();
}

}  // namespace

OsRelease ParseOsRelease(std::istream& in)
{
    OsRelease release;
    std::string line;
    while (std::getline(in, line)) {
        boost::algorithm::trim(line);
        if (line.empty() || line[0] == '#') continue;
        const std::string::size_type equals = line.find('=');
        if (equals == std::string::npos || equals == 0) continue;
        release[line.substr(0, equals)] = Unquote(line.substr(equals + 1));
    }
    return release;
}

OsRelease ReadOsRelease()
{
    for (const char* path : kOsReleasePaths) {
        std::string text;
        if (!HostFiles::Read(path, text)) continue;
        std::istringstream file(text);
        return ParseOsRelease(file);
    }
    return OsRelease();
}

std::string OsFamily(const OsRelease& release)
{
    std::vector<std::string> ids;
    const OsRelease::const_iterator id = release.find("ID");
    if (id != release.end()) ids.push_back(id->second);
    const OsRelease::const_iterator like = release.find("ID_LIKE");
    if (like != release.end()) {
        std::vector<std::string> likes;
        boost::algorithm::split(likes, like->second, boost::algorithm::is_space(), boost::algorithm::token_compress_on);
        ids.insert(ids.end(), likes.begin(), likes.end());
    }
    for (const std::string& candidate : ids) {
        const std::string family = FamilyOf(candidate);
        if (!family.empty()) return family;
    }
    return std::string();
}

}  // namespace Linux
}  // namespace XModule
