#include "xmodule/linux/timezone.h"

#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/hostsources.h"
#include "xmodule/linux/valueformat.h"

#include <boost/algorithm/string/predicate.hpp>
#include <boost/filesystem/operations.hpp>

#include <ctime>

namespace XModule {
namespace Linux {

namespace {

const char kLocalTime[] = "/etc/localtime";
const char kZoneName[] = "/etc/timezone";
const char kZoneFolder[] = "zoneinfo/";
// Variants of the zone tree that hold the same zones (without or with leap seconds).
const char* const kZoneVariants[] = {"posix/", "right/"};
// What the C library takes when /etc/localtime is missing.
const char kDefaultZone[] = "UTC";
const std::size_t kZoneFileVersionAt = 4;

std::string ReadLinkTarget(const std::string& absolute)
{
    boost::system::error_code error;
    const boost::filesystem::path target = boost::filesystem::read_symlink(HostFiles::Rooted(absolute), error);
    return error ? std::string() : target.string();
}

// /etc/localtime is what the C library reads, so it goes first; Debian's /etc/timezone names the
// zone too but may lag behind a change made with timedatectl. A copied zone file tells its rule.
std::string FindZoneName()
{
    const std::string linked = ParseZoneLink(ReadLinkTarget(kLocalTime));
    if (!linked.empty()) return linked;
    const std::string named = HostFiles::ReadTrimmed(kZoneName);
    if (!named.empty()) return named;
    std::string bytes;
    if (ReadOptionalSource(kLocalTime, bytes)) return ParseZoneFileRule(bytes);
    return HostFiles::Exists(kLocalTime) ? std::string() : kDefaultZone;
}

}  // namespace

std::string ParseZoneLink(const std::string& target)
{
    const std::size_t folder = target.rfind(kZoneFolder);
    if (folder == std::string::npos) return std::string();
    std::string zone = target.substr(folder + sizeof kZoneFolder - 1);
    for (const char* variant : kZoneVariants)
        if (boost::algorithm::starts_with(zone, variant)) zone.erase(0, std::char_traits<char>::length(variant));
    return zone;
}

std::string ParseZoneFileRule(const std::string& bytes)
{
    if (!boost::algorithm::starts_with(bytes, "TZif") || bytes.size() <= kZoneFileVersionAt ||
        bytes[kZoneFileVersionAt] < '2' || bytes.back() != '\n')
        return std::string();
    const std::size_t start = bytes.rfind('\n', bytes.size() - 2);
    if (start == std::string::npos) return std::string();
    const std::string rule = bytes.substr(start + 1, bytes.size() - start - 2);
    return rule.find('\0') == std::string::npos ? rule : std::string();
}

// The local time is the program's own, which is the host's only when the root is the live host;
// a zone of another root is named, but its time is left unknown rather than shown in the wrong zone.
void CollectTimeZone(protocol::TimeZoneInfo& zone)
{
    const std::time_t now = std::time(nullptr);
    zone.CurrentTimeZone = TextOrUnknown(FindZoneName());
    if (IsLiveHost()) zone.LocalDateTime = FormatDateTime(now);
    zone.GMTDateandTime = FormatUtcDateTime(now);
}

}  // namespace Linux
}  // namespace XModule
