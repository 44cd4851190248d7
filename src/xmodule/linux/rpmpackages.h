#ifndef KESTRO_XMODULE_LINUX_RPMPACKAGES_H
#define KESTRO_XMODULE_LINUX_RPMPACKAGES_H

#include "xmodule/protocol/osinfo.h"

#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// Between the fields and after each record of the query: control characters that no package
// text holds, so a summary with blanks, tabs or line breaks cannot shift the fields.
const char RPM_FIELD_SEPARATOR = '\x1f';
const char RPM_RECORD_SEPARATOR = '\x1e';

// Records of NAME, VERSION-RELEASE, INSTALLTIME (seconds since 1970), SUMMARY, GROUP, SIZE (bytes)
// and LICENSE. rpm's "(none)" and missing fields give "N/A"; a record without a name is left out.
std::vector<protocol::InstalledPackageInfo> ParseRpmQuery(const std::string& text);

// Asks the rpm command for the packages of the database under the root prefix. False when the
// host has no rpm database; with a database but no rpm command, the source is noted as unreadable.
bool ReadRpmPackages(std::vector<protocol::InstalledPackageInfo>& packages);

}  // namespace Linux
}  // namespace XModule

#endif
