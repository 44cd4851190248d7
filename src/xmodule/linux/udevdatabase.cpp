#include "xmodule/linux/udevdatabase.h"

#include "xmodule/linux/hostfiles.h"

#include <sstream>

namespace XModule {
namespace Linux {

namespace {

const char kUdevData[] = "/run/udev/data/";

int HexDigitValue(char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

}  // namespace

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

std::string DecodeUdevText(const std::string& encoded)
{
    std::string text;
    for (std::size_t i = 0; i < encoded.size(); ++i) {
        const bool escape = encoded[i] == '\\' && i + 3 < encoded.size() && encoded[i + 1] == 'x';
        const int high = escape ? HexDigitValue(encoded[i + 2]) : -1;
        const int low = escape ? HexDigitValue(encoded[i + 3]) : -1;
        if (high < 0 || low < 0) {
            text += encoded[i];
            continue;
        }
        text += static_cast<char>(high * 16 + low);
        i += 3;
    }
    return text;
}

UdevRecord ReadUdevRecord(const std::string& id)
{
    std::string text;
    if (id.empty() || id.find('/') != std::string::npos || !HostFiles::Read(kUdevData + id, text)) return UdevRecord();
    return ParseUdevRecord(text);
}

}  // namespace Linux
}  // namespace XModule
