#include "kestro/xmodule/globalconfig.h"

#include "kestro/xmodule/kestrodirectory.h"

#include <boost/algorithm/string/trim.hpp>

#include <cerrno>
#include <cstdlib>
#include <fstream>

namespace XModule {

namespace {
const int kItemMissing = 1;
}

std::string GlobalConfig::FilePath()
{
    return KestroDirectory::GetExePath("global.config");
}

std::map<std::string, std::string> GlobalConfig::Parse(std::istream& in)
{
    std::map<std::string, std::string> items;
    std::string line;
    while (std::getline(in, line)) {
        boost::algorithm::trim(line);
        if (line.empty() || line[0] == '#') continue;
        const std::string::size_type equals = line.find('=');
        if (equals == std::string::npos) continue;
        std::string key = line.substr(0, equals);
        std::string value = line.substr(equals + 1);
        boost::algorithm::trim(key);
        boost::algorithm::trim(value);
        if (!key.empty()) items[key] = value;
    }
    return items;
}

int GlobalConfig::GetConfigItem(const std::string& name, std::string& out)
{
    std::ifstream file(FilePath().c_str());
    if (!file) return kItemMissing;
    const std::map<std::string, std::string> items = Parse(file);
    const std::map<std::string, std::string>::const_iterator found = items.find(name);
    if (found == items.end()) return kItemMissing;
    out = found->second;
    return 0;
}

int GetGlobalConfigValue(const std::string& name, int defaultValue)
{
    std::string text;
    if (GlobalConfig::GetConfigItem(name, text) != 0 || text.empty()) return defaultValue;
    char* end = nullptr;
    errno = 0;
    const long value = std::strtol(text.c_str(), &end, 10);
    if (errno != 0 || *end != '\0' || value > 2147483647L || value < -2147483647L - 1) return defaultValue;
    return static_cast<int>(value);
}

}  // namespace XModule
