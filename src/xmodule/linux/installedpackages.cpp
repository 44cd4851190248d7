#include "xmodule/linux/installedpackages.h"

#include "kestro/xmodule/unreadable.h"
#include "xmodule/linux/dpkgstatus.h"
#include "xmodule/linux/rpmpackages.h"

#include <algorithm>

namespace XModule {
namespace Linux {

namespace {
bool ComesBefore(const protocol::InstalledPackageInfo& a, const protocol::InstalledPackageInfo& b)
{
    return a.Name != b.Name ? a.Name < b.Name : a.Version < b.Version;
}
}  // namespace

void CollectInstalledPackages(std::vector<protocol::InstalledPackageInfo>& packages)
{
    const bool dpkg = ReadDpkgPackages(packages);
    const bool rpm = ReadRpmPackages(packages);
    if (!dpkg && !rpm) NoteUnreadable("package database", "the host has neither a dpkg status file nor an rpm database");
    std::sort(packages.begin(), packages.end(), ComesBefore);
}

}  // namespace Linux
}  // namespace XModule
