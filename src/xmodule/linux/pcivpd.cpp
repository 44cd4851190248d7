#include "xmodule/linux/pcivpd.h"

#include "xmodule/linux/hostfiles.h"

#include <boost/algorithm/string/trim.hpp>

namespace XModule {
namespace Linux {

namespace {

const unsigned char kIdentifierTag = 0x82;
const unsigned char kReadOnlyTag = 0x90;
const unsigned char kWritableTag = 0x91;
const unsigned char kEndTag = 0x78;  // small resource 0x0F, no data
const std::size_t kVpdHead = 1024;

struct Keyword {
    const char* name;
    std::string PciVpd::*field;
};

const Keyword kKeywords[] = {
    {"PN", &PciVpd::partNumber},
    {"SN", &PciVpd::serialNumber},
};

// Makers pad fields with blanks or NULs.
std::string Cleaned(const std::string& text)
{
    return boost::algorithm::trim_copy_if(text, [](char c) { return c == ' ' || c == '\0'; });
}

void ParseKeywords(const std::string& data, PciVpd& vpd)
{
    for (std::size_t at = 0; at + 3 <= data.size();) {
        const std::string name = data.substr(at, 2);
        const std::size_t length = static_cast<unsigned char>(data[at + 2]);
        if (at + 3 + length > data.size()) return;
        for (const Keyword& keyword : kKeywords)
            if (name == keyword.name) vpd.*keyword.field = Cleaned(data.substr(at + 3, length));
        at += 3 + length;
    }
}

}  // namespace

bool ParsePciVpd(const std::string& bytes, PciVpd& vpd)
{
    bool decoded = false;
    for (std::size_t at = 0; at + 3 <= bytes.size();) {
        const unsigned char tag = static_cast<unsigned char>(bytes[at]);
        if (tag == kEndTag) break;
        if (tag != kIdentifierTag && tag != kReadOnlyTag && tag != kWritableTag) break;
        const std::size_t length = static_cast<unsigned char>(bytes[at + 1]) |
                                   static_cast<std::size_t>(static_cast<unsigned char>(bytes[at + 2])) << 8;
        if (at + 3 + length > bytes.size()) break;
        const std::string data = bytes.substr(at + 3, length);
        if (tag == kIdentifierTag) vpd.name = Cleaned(data);
        if (tag == kReadOnlyTag) ParseKeywords(data, vpd);
        decoded = true;
        at += 3 + length;
    }
    return decoded;
}

bool ReadPciVpd(const std::string& function, PciVpd& vpd)
{
    std::string bytes;
    return HostFiles::ReadHead("/sys/bus/pci/devices/" + function + "/vpd", kVpdHead, bytes) &&
           ParsePciVpd(bytes, vpd);
}

}  // namespace Linux
}  // namespace XModule
