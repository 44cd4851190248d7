#include "xmodule/linux/hostsources.h"

#include "kestro/xmodule/unreadable.h"
#include "xmodule/linux/hostfiles.h"

namespace XModule {
namespace Linux {

bool ReadExpectedSource(const std::string& absolute, std::string& content)
{
    std::string why;
    if (HostFiles::Read(absolute, content, &why)) return true;
    NoteUnreadable(absolute, why);
    return false;
}

bool ReadOptionalSource(const std::string& absolute, std::string& content)
{
    std::string why;
    if (HostFiles::Read(absolute, content, &why)) return true;
    if (HostFiles::Exists(absolute)) NoteUnreadable(absolute, why);
    return false;
}

bool IsLiveHost() { return HostFiles::Rooted("/") == "/"; }

}  // namespace Linux
}  // namespace XModule
