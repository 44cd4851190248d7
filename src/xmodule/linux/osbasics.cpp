#include "xmodule/linux/osbasics.h"

#include "kestro/xmodule/unreadable.h"
#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/hostsources.h"
#include "xmodule/linux/valueformat.h"

#include <boost/algorithm/string/predicate.hpp>

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sstream>
#include <sys/stat.h>

namespace XModule {
namespace Linux {

namespace {

const char kHostName[] = "/proc/sys/kernel/hostname";
const char kHostNameFile[] = "/etc/hostname";
const char kKernelRelease[] = "/proc/sys/kernel/osrelease";
const char kKernelBuild[] = "/proc/sys/kernel/version";
const char kMachineId[] = "/etc/machine-id";
const char kUptime[] = "/proc/uptime";
const char kKernelStat[] = "/proc/stat";
const char kOsRelease[] = "/etc/os-release";
const char kDpkgInfo[] = "/var/lib/dpkg/info";
// Folders the installers write their logs to once, during the installation.
const char* const kInstallerLogs[] = {"/var/log/installer", "/var/log/anaconda"};

struct VendorEntry {
    const char* id;
    const char* vendor;
};

const VendorEntry kVendors[] = {
    {"debian", "Debian"},
    {"ubuntu", "Canonical"},
    {"rhel", "Red Hat"},
    {"centos", "CentOS Project"},
    {"fedora", "Fedora Project"},
    {"rocky", "Rocky Enterprise Software Foundation"},
    {"almalinux", "AlmaLinux OS Foundation"},
    {"ol", "Oracle"},
    {"sles", "SUSE"},
    {"sled", "SUSE"},
    {"sles_sap", "SUSE"},
    {"opensuse-leap", "openSUSE Project"},
    {"opensuse-tumbleweed", "openSUSE Project"},
    {"amzn", "Amazon"},
};

std::string Field(const OsRelease& release, const char* key)
{
    const OsRelease::const_iterator found = release.find(key);
    return found == release.end() ? std::string() : TrimText(found->second);
}

bool ParseLeadingNumber(const std::string& text, std::uint64_t& value)
{
    const std::size_t begin = text.find_first_not_of(" \t");
    if (begin == std::string::npos || !std::isdigit(static_cast<unsigned char>(text[begin]))) return false;
    errno = 0;
    value = std::strtoull(text.c_str() + begin, nullptr, 10);
    return errno != ERANGE;
}

std::string DescribeProduct(const OsRelease& release)
{
    const std::string pretty = Field(release, "PRETTY_NAME");
    return pretty.empty() ? TrimText(Field(release, "NAME") + " " + Field(release, "VERSION")) : pretty;
}

std::string ReadKernelFile(const char* path)
{
    std::string text;
    return ReadExpectedSource(path, text) ? TrimText(text) : std::string();
}

std::string ReadHostName()
{
    const std::string kernelName = HostFiles::ReadTrimmed(kHostName);
    return kernelName.empty() ? HostFiles::ReadTrimmed(kHostNameFile) : kernelName;
}

bool ReadModificationTime(const std::string& absolute, std::time_t& when)
{
    struct stat status;
    if (::stat(HostFiles::Rooted(absolute).c_str(), &status) != 0 || status.st_mtime <= 0) return false;
    when = status.st_mtime;
    return true;
}

// File systems that keep a birth time (ext4, xfs, btrfs) got it when the installer formatted them.
bool ReadRootBirth(std::time_t& when)
{
    struct statx status;
    if (::statx(AT_FDCWD, "/", 0, STATX_BTIME, &status) != 0 || !(status.stx_mask & STATX_BTIME) ||
        status.stx_btime.tv_sec <= 0)
        return false;
    when = static_cast<std::time_t>(status.stx_btime.tv_sec);
    return true;
}

void KeepOldest(std::time_t candidate, std::time_t& oldest)
{
    if (oldest == 0 || candidate < oldest) oldest = candidate;
}

// dpkg writes a package's ".list" when it first unpacks it; its other files there keep the times
// the package was built, which may be long before the host was installed.
void FindOldestDpkgList(std::time_t& oldest)
{
    for (const std::string& name : HostFiles::List(kDpkgInfo)) {
        std::time_t when = 0;
        if (boost::algorithm::ends_with(name, ".list") &&
            ReadModificationTime(std::string(kDpkgInfo) + "/" + name, when))
            KeepOldest(when, oldest);
    }
}

// The installation date: the birth of "/" when the root is the live host and its file system
// records one; else the oldest of the installers' log folders and dpkg's package lists.
// (The rpm database's oldest install time belongs to the package reader.)
std::string FindInstallationDate()
{
    std::time_t oldest = 0;
    if (IsLiveHost() && ReadRootBirth(oldest)) return FormatDateTime(oldest);
    for (const char* folder : kInstallerLogs) {
        std::time_t when = 0;
        if (ReadModificationTime(folder, when)) KeepOldest(when, oldest);
    }
    FindOldestDpkgList(oldest);
    return oldest ? FormatDateTime(oldest) : std::string(protocol::UNKNOWN_VALUE);
}

// The kernel's boot time is exact; now less the uptime stands in when /proc/stat lacks it.
void FillUptime(protocol::OperatingSystemInfo& os)
{
    std::string text;
    std::uint64_t seconds = 0;
    const bool haveUptime = ReadExpectedSource(kUptime, text) && ParseUptime(text, seconds);
    if (haveUptime) os.Uptime = FormatUptime(seconds);
    std::time_t boot = 0;
    if (ReadExpectedSource(kKernelStat, text) && ParseBootTime(text, boot))
        os.TimeofLastBoot = FormatDateTime(boot);
    else if (haveUptime)
        os.TimeofLastBoot = FormatDateTime(std::time(nullptr) - static_cast<std::time_t>(seconds));
}

}  // namespace

std::string ParseServicePack(const std::string& version)
{
    for (std::size_t at = version.find("SP"); at != std::string::npos; at = version.find("SP", at + 2)) {
        const bool wordStart = at == 0 || version[at - 1] == '-' || version[at - 1] == ' ';
        std::size_t end = at + 2;
        while (end < version.size() && std::isdigit(static_cast<unsigned char>(version[end]))) ++end;
        if (wordStart && end > at + 2) return version.substr(at, end - at);
    }
    return std::string();
}

std::string FindVendor(const OsRelease& release)
{
    const std::string id = Field(release, "ID");
    for (const VendorEntry& entry : kVendors)
        if (id == entry.id) return entry.vendor;
    return Field(release, "NAME");
}

bool ParseUptime(const std::string& text, std::uint64_t& seconds) { return ParseLeadingNumber(text, seconds); }

bool ParseBootTime(const std::string& stat, std::time_t& boot)
{
    std::istringstream lines(stat);
    std::string line;
    std::uint64_t seconds = 0;
    while (std::getline(lines, line)) {
        if (!boost::algorithm::starts_with(line, "btime ")) continue;
        if (!ParseLeadingNumber(line.substr(6), seconds) || seconds == 0) return false;
        boot = static_cast<std::time_t>(seconds);
        return true;
    }
    return false;
}

std::string FormatUptime(std::uint64_t seconds)
{
    const std::uint64_t days = seconds / 86400;
    char text[64];
    std::snprintf(text, sizeof text, "%llu %s, %02u:%02u:%02u", static_cast<unsigned long long>(days),
                  days == 1 ? "day" : "days", static_cast<unsigned>(seconds / 3600 % 24),
                  static_cast<unsigned>(seconds / 60 % 60), static_cast<unsigned>(seconds % 60));
    return text;
}

void CollectOperatingSystem(protocol::OperatingSystemInfo& os)
{
    const OsRelease release = ReadOsRelease();
    if (release.empty()) NoteUnreadable(kOsRelease, "neither it nor /usr/lib/os-release can be read");
    os.ProductName = TextOrUnknown(DescribeProduct(release));
    os.ReleaseId = TextOrUnknown(Field(release, "VERSION_ID"));
    os.Vendor = TextOrUnknown(FindVendor(release));
    os.ServicePack = TextOrUnknown(ParseServicePack(Field(release, "VERSION")));
    os.ComputerName = TextOrUnknown(ReadHostName());
    os.Version = TextOrUnknown(ReadKernelFile(kKernelRelease));
    os.BuildNumber = TextOrUnknown(ReadKernelFile(kKernelBuild));
    os.ProductID = TextOrUnknown(HostFiles::ReadTrimmed(kMachineId));
    os.InstallationDate = FindInstallationDate();
    FillUptime(os);
}

}  // namespace Linux
}  // namespace XModule
