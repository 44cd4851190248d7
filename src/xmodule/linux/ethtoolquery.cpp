#include "xmodule/linux/ethtoolquery.h"

#include <linux/ethtool.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace XModule {
namespace Linux {

namespace {

// The longest hardware address a driver hands back (InfiniBand's is 20 bytes).
const std::size_t kMaxAddressBytes = 32;

// Sends one ethtool command for `interface` over a throwaway socket.
bool AskEthtool(const std::string& interface, void* command)
{
    if (interface.empty() || interface.size() >= IFNAMSIZ) return false;
    const int fd = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (fd < 0) return false;
    struct ifreq request;
    std::memset(&request, 0, sizeof(request));
    std::memcpy(request.ifr_name, interface.c_str(), interface.size());
    request.ifr_data = static_cast<char*>(command);
    const bool answered = ::ioctl(fd, SIOCETHTOOL, &request) == 0;
    ::close(fd);
    return answered;
}

std::string TextOf(const char* field, std::size_t size) { return std::string(field, strnlen(field, size)); }

}  // namespace

bool EthtoolQuery::ReadDriverInfo(const std::string& interface, DriverInfo& info)
{
    struct ethtool_drvinfo answer;
    std::memset(&answer, 0, sizeof(answer));
    answer.cmd = ETHTOOL_GDRVINFO;
    if (!AskEthtool(interface, &answer)) return false;
    info.driver = TextOf(answer.driver, sizeof(answer.driver));
    info.version = TextOf(answer.version, sizeof(answer.version));
    info.firmware = TextOf(answer.fw_version, sizeof(answer.fw_version));
    info.busInfo = TextOf(answer.bus_info, sizeof(answer.bus_info));
    return true;
}

bool EthtoolQuery::ReadPermanentAddress(const std::string& interface, std::string& address)
{
    // The kernel writes the address right after the header, into room the caller provides.
    alignas(struct ethtool_perm_addr) unsigned char buffer[sizeof(struct ethtool_perm_addr) + kMaxAddressBytes];
    std::memset(buffer, 0, sizeof(buffer));
    struct ethtool_perm_addr* answer = reinterpret_cast<struct ethtool_perm_addr*>(buffer);
    answer->cmd = ETHTOOL_GPERMADDR;
    answer->size = kMaxAddressBytes;
    if (!AskEthtool(interface, answer) || answer->size == 0 || answer->size > kMaxAddressBytes) return false;
    const unsigned char* begin = buffer + sizeof(struct ethtool_perm_addr);
    const unsigned char* end = begin + answer->size;
    // Virtual and some older drivers answer with zeros rather than refuse.
    if (std::find_if(begin, end, [](unsigned char b) { return b != 0; }) == end) return false;
    address = FormatAddress(begin, answer->size);
    return true;
}

std::string EthtoolQuery::FormatAddress(const unsigned char* bytes, std::size_t size)
{
    std::string text;
    char part[4];
    for (std::size_t i = 0; i < size; ++i) {
        std::snprintf(part, sizeof(part), i == 0 ? "%02x" : ":%02x", bytes[i]);
        text += part;
    }
    return text;
}

}  // namespace Linux
}  // namespace XModule
