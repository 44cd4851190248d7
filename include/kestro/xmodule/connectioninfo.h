#ifndef KESTRO_XMODULE_CONNECTIONINFO_H
#define KESTRO_XMODULE_CONNECTIONINFO_H

#include <cstdint>
#include <string>

namespace XModule {
namespace XModuleConnection {

enum ConnectionScheme { SchemeHttp = 0, SchemeHttps = 1, SchemeSsh = 2 };

// One way to reach a target: a BMC, a chassis manager or a host.
struct ConnectionInfo {
    std::string host;
    std::string user;
    std::string password;
    int port = 0;                  // 0: the scheme's default port
    int scheme = SchemeHttps;      // index into http, https, ssh
    bool isIPv6 = false;           // host is a bare IPv6 address, to be bracketed in URLs
    int mode = 0;                  // first mode word: which service of the target
    int subMode = 0;               // second mode word: how that service is reached
    std::uint16_t nodeIndex = 0;   // node of a multi-node target
    std::string caFile;            // CA bundle that checks the target's certificate; empty: unchecked
    bool isBmc = false;            // a BMC's Redfish service, never the host's own sources, even on loopback
};

}  // namespace XModuleConnection

using XModuleConnection::ConnectionInfo;

}  // namespace XModule

#endif
