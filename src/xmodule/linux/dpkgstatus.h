#ifndef KESTRO_XMODULE_LINUX_DPKGSTATUS_H
#define KESTRO_XMODULE_LINUX_DPKGSTATUS_H

#include "xmodule/protocol/osinfo.h"

#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// The installed packages of a dpkg status file, in file order. A package counts as installed
// when dpkg has its files on disk (state "installed", or its triggers still pending), whatever
// is wanted of it (install, hold, deinstall). Names follow dpkg -l: a Multi-Arch: same package
// carries its architecture ("libc6:amd64"), since two architectures of it can be installed
// side by side; that is also the name of its files under /var/lib/dpkg/info.
// Summary is the first line of Description, Group the Section, Size the Installed-Size in bytes.
// InstallDate and License stay "N/A": the status file keeps neither. A stanza without Package
// or Status is left out with a log line; a last stanza cut short counts as far as it goes.
std::vector<protocol::InstalledPackageInfo> ParseDpkgStatus(const std::string& text);

// The License of the first Files paragraph of a machine-readable copyright file
// (/usr/share/doc/<package>/copyright); "" for a free-form one.
std::string ParseCopyrightLicense(const std::string& text);

// /var/lib/dpkg/status under the root prefix, with the install date taken from the time dpkg
// last wrote the package's file list, and the license from its copyright file where that file
// is machine-readable. False when the host has no status file.
bool ReadDpkgPackages(std::vector<protocol::InstalledPackageInfo>& packages);

}  // namespace Linux
}  // namespace XModule

#endif
