#include "xmodule/linux/udevdatabase.h"

#include "xmodule/linux/hostfiles.h"

#include <sstream>

namespace XModule {
namespace Linux {

namespace {
const char kUdevData[] = "/run/udev/data/";
}

std::string UdevRecord::Get(const std::string& key) const
{
    const auto it = properties.find(key);
    return it == properties.end() ? std::string() : it->second;
}

UdevRecord ParseUdevRecord(const std::string& text)
{
    UdevRecord record;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line)) {
        if (line.size() < 2 || line[1] != ':') continue;
        const std::string rest = line.substr(2);
        if (line[0] == 'S') {
            record.links.push_back(rest);
        } else if (line[0] == 'E') {
            const std::size_t equals = rest.find('=');
            if (equals != std::string::npos && equals > 0) record.properties[rest.substr(0, equals)] = rest.substr(equals + 1);
        }
    }
    return record;
}

UdevRecord ReadUdevRecord(const std::string& id)
{
    std::string text;
    if (id.empty() || id.find('/') != std::string::npos || !HostFiles::Read(kUdevData + id, text)) return UdevRecord();
    return ParseUdevRecord(text);
}

}  // namespace Linux
}  // namespace XModule
