#ifndef KESTRO_XMODULE_LINUX_ETHTOOLQUERY_H
#define KESTRO_XMODULE_LINUX_ETHTOOLQUERY_H

#include <string>

namespace XModule {
namespace Linux {

// What a network driver tells about its device through the kernel's ethtool interface. Only the
// live host answers these, so callers ask only when the root prefix is "/".
class EthtoolQuery {
public:
    struct DriverInfo {
        std::string driver;
        std::string version;   // the driver's
        std::string firmware;  // the device's firmware, as the driver reads it
        std::string busInfo;   // "0000:19:00.0"
    };

    // False when the interface is gone or its driver does not answer.
    static bool ReadDriverInfo(const std::string& interface, DriverInfo& info);
    // The address burned into the device, "aa:bb:cc:dd:ee:ff"; false when the driver keeps none.
    static bool ReadPermanentAddress(const std::string& interface, std::string& address);
    // Hex bytes with colons, as sysfs writes addresses.
    static std::string FormatAddress(const unsigned char* bytes, std::size_t size);
};

}  // namespace Linux
}  // namespace XModule

#endif
