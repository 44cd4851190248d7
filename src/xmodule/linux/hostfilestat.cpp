#include "xmodule/linux/hostfilestat.h"
#include "xmodule/linux/valueformat.h"

#include "xmodule/linux/hostfiles.h"
#include "xmodule/protocol/hardwareinfo.h"

#include <sys/stat.h>

namespace XModule {
namespace Linux {

std::string HostFileStat::ModifiedText() const
{
    return found ? FormatDateTime(modified) : std::string(protocol::UNKNOWN_VALUE);
}

std::string HostFileStat::SizeText() const { return found ? std::to_string(size) : std::string(protocol::UNKNOWN_VALUE); }

HostFileStat StatHostFile(const std::string& absolute)
{
    HostFileStat facts;
    struct stat status;
    if (::stat(HostFiles::Rooted(absolute).c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return facts;
    facts.found = true;
    facts.size = static_cast<std::uint64_t>(status.st_size);
    facts.modified = status.st_mtime;
    return facts;
}

bool IsPlainFileName(const std::string& name)
{
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos &&
           name.find('\0') == std::string::npos;
}

}  // namespace Linux
}  // namespace XModule
