#ifndef KESTRO_XMODULE_LINUX_SYSTEMDBUS_H
#define KESTRO_XMODULE_LINUX_SYSTEMDBUS_H

#include "xmodule/protocol/osinfo.h"

#include <map>
#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// What the running systemd tells of one service unit.
struct BusUnit {
    std::string description;
    std::string state;    // "active (running)", "inactive (dead)", "failed"
    std::string startup;  // the unit file's state: "enabled", "static", "generated"...
    std::string path;     // the unit file, "" when systemd knows the unit only by reference
};

// Service units by name from systemd's manager on the system bus (ListUnits for what runs,
// ListUnitFiles for what is enabled), each call bounded to 10 s. False when the bus cannot be
// reached or the program was built without libsystemd.
bool ReadBusUnits(std::map<std::string, BusUnit>& units);

// Lays what the bus knows over the records read from disk: its state and startup win, and units
// only the bus knows (made by generators from init scripts or fstab) are added.
void MergeBusUnits(const std::map<std::string, BusUnit>& units, std::vector<protocol::SystemServiceInfo>& services);

}  // namespace Linux
}  // namespace XModule

#endif
