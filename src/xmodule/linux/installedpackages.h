#ifndef KESTRO_XMODULE_LINUX_INSTALLEDPACKAGES_H
#define KESTRO_XMODULE_LINUX_INSTALLEDPACKAGES_H

#include "xmodule/protocol/osinfo.h"

#include <vector>

namespace XModule {
namespace Linux {

// The packages of the host's dpkg and rpm databases, whichever it has (a Debian host with rpm
// installed may have both), sorted by name and version. Neither gives an empty list and a note.
void CollectInstalledPackages(std::vector<protocol::InstalledPackageInfo>& packages);

}  // namespace Linux
}  // namespace XModule

#endif
