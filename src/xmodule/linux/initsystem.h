#ifndef KESTRO_XMODULE_LINUX_INITSYSTEM_H
#define KESTRO_XMODULE_LINUX_INITSYSTEM_H

#include "xmodule/protocol/osinfo.h"

#include <string>

namespace XModule {
namespace Linux {

// The version in the name of systemd's shared library: "libsystemd-shared-252.so" gives "252",
// "libsystemd-shared-255.4-1.fc40.so" gives "255.4-1.fc40"; "" for any other name.
std::string ParseSystemdVersion(const std::string& fileName);
// The run level of inittab's initdefault entry ("id:3:initdefault:" gives "3"); "" when it has none.
std::string ParseInittabDefault(const std::string& text);
// The init system that runs as process 1, and what it starts by default.
void CollectInitConfiguration(protocol::InitConfigurationInfo& init);

}  // namespace Linux
}  // namespace XModule

#endif
