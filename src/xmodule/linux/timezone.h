#ifndef KESTRO_XMODULE_LINUX_TIMEZONE_H
#define KESTRO_XMODULE_LINUX_TIMEZONE_H

#include "xmodule/protocol/osinfo.h"

#include <string>

namespace XModule {
namespace Linux {

// The zone that a /etc/localtime link names: "../usr/share/zoneinfo/Europe/Berlin" gives
// "Europe/Berlin"; "" for a target outside a zoneinfo folder.
std::string ParseZoneLink(const std::string& target);
// The POSIX rule at the end of a TZif (version 2 or later) file, "CET-1CEST,M3.5.0,M10.5.0/3";
// "" for other bytes.
std::string ParseZoneFileRule(const std::string& bytes);
// The host's zone and the time now, in that zone and in UTC.
void CollectTimeZone(protocol::TimeZoneInfo& zone);

}  // namespace Linux
}  // namespace XModule

#endif
