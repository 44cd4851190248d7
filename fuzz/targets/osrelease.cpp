// The os-release reader, and the family and vendor the tool picks by what it read.
#include "fuzzsupport.h"
#include "xmodule/linux/osbasics.h"
#include "xmodule/linux/osrelease.h"

#include <sstream>

using namespace XModule::Linux;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::istringstream in(KestroFuzz::ToText(data, size));
    const OsRelease release = ParseOsRelease(in);
    OsFamily(release);
    FindVendor(release);
    const OsRelease::const_iterator version = release.find("VERSION");
    if (version != release.end()) ParseServicePack(version->second);
    return 0;
}
