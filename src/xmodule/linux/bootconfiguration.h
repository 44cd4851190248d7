#ifndef KESTRO_XMODULE_LINUX_BOOTCONFIGURATION_H
#define KESTRO_XMODULE_LINUX_BOOTCONFIGURATION_H

#include "xmodule/protocol/osinfo.h"

#include <string>

namespace XModule {
namespace Linux {

// The menu of a grub.cfg: each entry's and submenu's title, and under it the kernel line it boots.
// The rest of the file (scripts, modules, themes) says little about how the host boots.
std::string ParseGrubMenu(const std::string& text);
// The title, kernel and options lines of a BLS boot entry (/boot/loader/entries/*.conf).
std::string ParseBootEntry(const std::string& text);
// The settings of /etc/default/grub without its comments.
std::string ParseGrubDefaults(const std::string& text);
// The kernel command line, then the boot loader's entries: the generated grub menu or the BLS
// entries, else grub's settings when neither can be read.
void CollectBootConfiguration(protocol::BootConfigurationInfo& boot);

}  // namespace Linux
}  // namespace XModule

#endif
