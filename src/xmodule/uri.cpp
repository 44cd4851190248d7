#include "kestro/xmodule/uri.h"

#include <cstring>

namespace XModule {

namespace {

// Characters that keep their meaning in an address and are left as they are.
const char* const KEPT_MARKS = "-_.!~*'();,/?:@&=+$#";
const char* const HEX_DIGITS = "0123456789ABCDEF";

bool IsKept(unsigned char c)
{
    const bool alphanumeric = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    return alphanumeric || (c != '\0' && std::strchr(KEPT_MARKS, c) != nullptr);
}

}  // namespace

std::string Uri::encodeURI(const std::string& text)
{
    std::string encoded;
    encoded.reserve(text.size());
    for (std::string::const_iterator it = text.begin(); it != text.end(); ++it) {
        const unsigned char c = static_cast<unsigned char>(*it);
        if (IsKept(c)) {
            encoded += static_cast<char>(c);
        } else {
            encoded += '%';
            encoded += HEX_DIGITS[c >> 4];
            encoded += HEX_DIGITS[c & 0x0F];
        }
    }
    return encoded;
}

}  // namespace XModule
