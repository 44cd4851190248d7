#ifndef KESTRO_XMODULE_SHAREDLIBRARY_H
#define KESTRO_XMODULE_SHAREDLIBRARY_H

#include <string>

namespace XModule {

// Loading of optional plug-in libraries. Handles are never closed by these calls.
class SharedLibrary {
public:
    // The handle, or null when the file is missing or does not load (the loader's words in `error`).
    static void* Load(const std::string& path, std::string& error);
    static void* FindSymbol(void* handle, const std::string& name);
    static void Unload(void* handle);
};

}  // namespace XModule

#endif
