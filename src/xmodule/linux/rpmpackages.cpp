#include "xmodule/linux/rpmpackages.h"

#include "kestro/xmodule/log.h"
#include "kestro/xmodule/rootprefix.h"
#include "kestro/xmodule/unreadable.h"
#include "xmodule/linux/commandoutput.h"
#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/hostfilestat.h"
#include "xmodule/linux/valueformat.h"

#include <boost/algorithm/string/split.hpp>

#include <cerrno>
#include <charconv>
#include <cstdint>

namespace XModule {
namespace Linux {

namespace {

const char* const kRpmDatabases[] = {"/var/lib/rpm", "/usr/lib/sysimage/rpm"};
const char kRpmSource[] = "rpm database";
const int kRpmTimeoutSeconds = 60;

std::string TextOf(const std::string& field) { return TextOrUnknown(field == "(none)" ? std::string() : field); }

std::string DateTimeOfSeconds(const std::string& seconds)
{
    std::int64_t value = 0;
    const char* end = seconds.data() + seconds.size();
    const std::from_chars_result parsed = std::from_chars(seconds.data(), end, value);
    if (seconds.empty() || parsed.ec != std::errc() || parsed.ptr != end || value <= 0) return protocol::UNKNOWN_VALUE;
    return FormatDateTime(static_cast<std::time_t>(value));
}

// The fields of a record in the order of the query: the tag asked for, where it goes, how it reads.
struct RecordField {
    const char* tag;
    std::string protocol::InstalledPackageInfo::*member;
    std::string (*convert)(const std::string&);
};

const RecordField kRecordFields[] = {
    {"%{NAME}", &protocol::InstalledPackageInfo::Name, TextOf},
    {"%{VERSION}-%{RELEASE}", &protocol::InstalledPackageInfo::Version, TextOf},
    {"%{INSTALLTIME}", &protocol::InstalledPackageInfo::InstallDate, DateTimeOfSeconds},
    {"%{SUMMARY}", &protocol::InstalledPackageInfo::Summary, TextOf},
    {"%{GROUP}", &protocol::InstalledPackageInfo::Group, TextOf},
    {"%{SIZE}", &protocol::InstalledPackageInfo::Size, TextOf},
    {"%{LICENSE}", &protocol::InstalledPackageInfo::License, TextOf},
};
const std::size_t kFieldCount = sizeof kRecordFields / sizeof kRecordFields[0];

std::string QueryFormat()
{
    std::string format;
    for (const RecordField& field : kRecordFields) format += std::string(field.tag) + RPM_FIELD_SEPARATOR;
    format.back() = RPM_RECORD_SEPARATOR;
    return format;
}

bool HasRpmDatabase()
{
    for (const char* folder : kRpmDatabases)
        if (HostFiles::Exists(folder)) return true;
    return false;
}

std::string FirstLine(const std::string& text) { return TrimText(text.substr(0, text.find('\n'))); }

}  // namespace

std::vector<protocol::InstalledPackageInfo> ParseRpmQuery(const std::string& text)
{
    std::vector<protocol::InstalledPackageInfo> packages;
    std::vector<std::string> records;
    boost::algorithm::split(records, text, [](char c) { return c == RPM_RECORD_SEPARATOR; });
    unsigned shortRecords = 0;
    for (const std::string& record : records) {
        if (TrimText(record).empty()) continue;
        std::vector<std::string> fields;
        boost::algorithm::split(fields, record, [](char c) { return c == RPM_FIELD_SEPARATOR; });
        if (fields.size() != kFieldCount) ++shortRecords;
        protocol::InstalledPackageInfo package;
        for (std::size_t i = 0; i < kFieldCount && i < fields.size(); ++i)
            package.*kRecordFields[i].member = kRecordFields[i].convert(fields[i]);
        if (package.Name != protocol::UNKNOWN_VALUE) packages.push_back(package);
    }
    if (shortRecords > 0) XLOG(LOG_WARN) << "[repo] rpm query: " << shortRecords << " records with a wrong number of fields";
    return packages;
}

bool ReadRpmPackages(std::vector<protocol::InstalledPackageInfo>& packages)
{
    if (!HasRpmDatabase()) return false;
    const CommandOutput run =
        RunCommand({"rpm", "-qa", "--root", GetRootPrefix(), "--queryformat", QueryFormat()}, kRpmTimeoutSeconds);
    if (!run.started) {
        NoteUnreadable(kRpmSource, run.startError == ENOENT ? "the rpm command is not installed" : run.why);
        return true;
    }
    if (!run.finished || run.exitStatus != 0)
        XLOG(LOG_WARN) << "[repo] rpm -qa " << (run.finished ? "returns ret = " + std::to_string(run.exitStatus) : run.why)
                       << ": " << FirstLine(run.err);
    const std::vector<protocol::InstalledPackageInfo> found = ParseRpmQuery(run.out);
    packages.insert(packages.end(), found.begin(), found.end());
    return true;
}

}  // namespace Linux
}  // namespace XModule
