#include "xmodule/linux/kernelmodules.h"

#include "kestro/xmodule/log.h"
#include "kestro/xmodule/unreadable.h"
#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/hostfilestat.h"
#include "xmodule/linux/valueformat.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <sstream>

namespace XModule {
namespace Linux {

namespace {

const char kProcModules[] = "/proc/modules";
const char kSysModule[] = "/sys/module/";
// A module may have dozens of parameters; the first few tell enough in a table cell.
const std::size_t kShownParameters = 8;
const std::size_t kLongestValue = 64;
const std::size_t kLeastFields = 5;

bool IsNumber(const std::string& text)
{
    std::uint64_t value = 0;
    const char* end = text.data() + text.size();
    const std::from_chars_result parsed = std::from_chars(text.data(), end, value);
    return !text.empty() && parsed.ec == std::errc() && parsed.ptr == end;
}

std::string HoldersOf(std::string usedBy)
{
    if (!usedBy.empty() && usedBy.back() == ',') usedBy.pop_back();
    return usedBy.empty() ? std::string("-") : usedBy;
}

std::string ReadParameters(const std::string& module)
{
    const std::string folder = kSysModule + module + "/parameters/";
    const std::vector<std::string> names = HostFiles::List(folder);
    std::string joined;
    for (std::size_t i = 0; i < names.size() && i < kShownParameters; ++i) {
        std::string value;
        if (!HostFiles::Read(folder + names[i], value)) continue;  // root-only or write-only
        value = TrimText(value);
        if (value.size() > kLongestValue) value = value.substr(0, kLongestValue) + "...";
        joined += (joined.empty() ? "" : " ") + names[i] + "=" + value;
    }
    if (names.size() > kShownParameters) joined += " ...";
    return TextOrUnknown(joined);
}

void AddSysfsFacts(protocol::KernelModuleInfo& module)
{
    if (!IsPlainFileName(module.Name)) return;
    module.Version = TextOrUnknown(HostFiles::ReadTrimmed(kSysModule + module.Name + "/version"));
    module.Parameters = ReadParameters(module.Name);
}

bool ComesBefore(const protocol::KernelModuleInfo& a, const protocol::KernelModuleInfo& b) { return a.Name < b.Name; }

}  // namespace

std::vector<protocol::KernelModuleInfo> ParseProcModules(const std::string& text)
{
    std::vector<protocol::KernelModuleInfo> modules;
    std::istringstream in(text);
    std::string line;
    unsigned badLines = 0;
    while (std::getline(in, line)) {
        std::vector<std::string> fields;
        boost::algorithm::split(fields, line, boost::algorithm::is_space(), boost::algorithm::token_compress_on);
        fields.erase(std::remove(fields.begin(), fields.end(), std::string()), fields.end());
        if (fields.empty()) continue;
        if (fields.size() < kLeastFields || !IsNumber(fields[1])) {
            ++badLines;
            continue;
        }
        protocol::KernelModuleInfo module;
        module.Name = fields[0];
        module.Size = fields[1];
        module.UsedBy = HoldersOf(fields[3]);
        module.State = fields[4];
        modules.push_back(module);
    }
    if (badLines > 0) XLOG(LOG_WARN) << "[repo] " << kProcModules << ": " << badLines << " malformed lines passed over";
    return modules;
}

void CollectKernelModules(std::vector<protocol::KernelModuleInfo>& modules)
{
    std::string text;
    std::string why;
    if (!HostFiles::Read(kProcModules, text, &why)) {
        NoteUnreadable(kProcModules, why);
        return;
    }
    std::vector<protocol::KernelModuleInfo> found = ParseProcModules(text);
    for (protocol::KernelModuleInfo& module : found) AddSysfsFacts(module);
    std::sort(found.begin(), found.end(), ComesBefore);
    modules.insert(modules.end(), found.begin(), found.end());
}

}  // namespace Linux
}  // namespace XModule
