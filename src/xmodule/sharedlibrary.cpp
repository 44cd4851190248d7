#include "xmodule/sharedlibrary.h"

#include <dlfcn.h>
#include <sys/stat.h>

namespace XModule {

void* SharedLibrary::Load(const std::string& path, std::string& error)
{
    struct stat info;
    if (stat(path.c_str(), &info) != 0) {
        error = "no such file";
        return nullptr;
    }
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) {
        const char* reason = dlerror();
        error = reason ? reason : "unknown load failure";
    }
    return handle;
}

void* SharedLibrary::FindSymbol(void* handle, const std::string& name)
{
    return handle ? dlsym(handle, name.c_str()) : nullptr;
}

void SharedLibrary::Unload(void* handle)
{
    if (handle) dlclose(handle);
}

}  // namespace XModule
