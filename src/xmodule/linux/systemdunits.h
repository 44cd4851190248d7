#ifndef KESTRO_XMODULE_LINUX_SYSTEMDUNITS_H
#define KESTRO_XMODULE_LINUX_SYSTEMDUNITS_H

#include "xmodule/protocol/osinfo.h"

#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// What a unit file tells of itself that the inventory shows.
struct UnitFile {
    std::string description;    // [Unit] Description=
    bool installRules = false;  // [Install] names a WantedBy=, RequiredBy=, UpheldBy= or Alias=
    bool installAlso = false;   // [Install] names an Also=
    unsigned badLines = 0;      // lines that are neither a section, a setting nor a comment
};

// systemd's unit syntax: "#" and ";" comments, a trailing backslash joining the next line
// (comment lines inside such a run are dropped), blanks around "=". Drop-in folders are not read.
UnitFile ParseUnitFile(const std::string& text);

// The service units in the unit folders under the root prefix, read from disk without the bus.
// A name in /etc/systemd/system hides the same name in /run, /lib and /usr/lib. Startup is
// "masked" for a link to /dev/null, "enabled" for a unit linked from a .wants, .requires or
// .upholds folder of /etc/systemd/system (a template when one of its instances is), "alias" for
// a link to another name, else "disabled", "indirect" or "static" by its [Install] section.
// State stays "N/A": whether a unit runs is known only to the running systemd. Only one level
// of links is followed, since an absolute target is rooted again under the prefix by hand.
std::vector<protocol::SystemServiceInfo> ReadUnitFileServices();

}  // namespace Linux
}  // namespace XModule

#endif
