#ifndef KESTRO_XMODULE_LINUX_REDFISHHOSTINTERFACE_H
#define KESTRO_XMODULE_LINUX_REDFISHHOSTINTERFACE_H

#include "xmodule/linux/smbios.h"

#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// Where the firmware says this host reaches its BMC's Redfish service (a "Redfish over IP"
// protocol record of a network host interface).
struct RedfishHostInterface {
    std::string address;  // dotted IPv4 or IPv6 text; empty when the record names a host name only
    bool isIPv6 = false;
    int port = 0;
    std::string hostName;
};

// Every Redfish-over-IP record of the table's management host interface structures, in table
// order. Records cut short or of other protocols are skipped.
std::vector<RedfishHostInterface> FindRedfishHostInterfaces(const std::vector<SmbiosStructure>& table);

}  // namespace Linux
}  // namespace XModule

#endif
