#include "kestro/xmodule/kestrodirectory.h"

#include <boost/filesystem/operations.hpp>
#include <boost/system/error_code.hpp>

#include <dlfcn.h>
#include <link.h>

#include <cstdlib>

namespace {

const char kSelfExe[] = "/proc/self/exe";

std::string WithSlash(std::string folder)
{
    if (folder.empty() || folder[folder.size() - 1] != '/') folder += '/';
    return folder;
}

std::string ExecutableFolder()
{
    boost::system::error_code error;
    const boost::filesystem::path exe = boost::filesystem::read_symlink(kSelfExe, error);
    if (error) return std::string();
    return exe.parent_path().string();
}

std::string HomeFolder()
{
    const char* fromEnvironment = std::getenv("KESTRO_HOME");
    if (fromEnvironment && *fromEnvironment) return fromEnvironment;
    const std::string exeFolder = ExecutableFolder();
    if (exeFolder.empty()) return KESTRO_INSTALL_DATADIR;
    // A build tree keeps the data beside the tool; an installed tree moved to another prefix keeps it
    // under its own share/.
    for (const std::string& candidate : {exeFolder, exeFolder + "/../share/kestro"}) {
        boost::system::error_code error;
        if (boost::filesystem::is_directory(candidate + "/data", error)) return candidate;
    }
    return KESTRO_INSTALL_DATADIR;
}

}  // namespace

std::string KestroDirectory::GetExePath(const std::string& relative)
{
    return WithSlash(HomeFolder()) + relative;
}

std::string KestroDirectory::GetLibraryPath()
{
    Dl_info info;
    link_map* map = nullptr;
    if (!dladdr1(reinterpret_cast<void*>(&KestroDirectory::GetLibraryPath), &info,
                 reinterpret_cast<void**>(&map), RTLD_DL_LINKMAP))
        return std::string();
    // The main program has an empty link-map name: this code was linked into the executable.
    if (!map || !map->l_name || !*map->l_name) return WithSlash(ExecutableFolder());
    const std::string path = map->l_name;
    const std::string::size_type slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}
