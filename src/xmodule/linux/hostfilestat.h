#ifndef KESTRO_XMODULE_LINUX_HOSTFILESTAT_H
#define KESTRO_XMODULE_LINUX_HOSTFILESTAT_H

#include <cstdint>
#include <ctime>
#include <string>

namespace XModule {
namespace Linux {

// When a host file was last written and how big it is: the package and service readers take
// these as the install date and the size, since the databases keep neither.
struct HostFileStat {
    bool found = false;
    std::uint64_t size = 0;
    std::time_t modified = 0;

    // "N/A" when the file was not found.
    std::string ModifiedText() const;
    std::string SizeText() const;
};

// The file under the root prefix, links followed; `found` false when it cannot be looked at.
HostFileStat StatHostFile(const std::string& absolute);


// True for a name that stays inside the folder it is joined to: names from outside text
// (a package, a module) become paths only when they pass.
bool IsPlainFileName(const std::string& name);

}  // namespace Linux
}  // namespace XModule

#endif
