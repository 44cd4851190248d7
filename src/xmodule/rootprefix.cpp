#include "kestro/xmodule/rootprefix.h"

#include <cstdlib>
#include <mutex>

namespace XModule {

namespace {

std::mutex rootMutex;

std::string& Root()
{
    static std::string root = [] {
        const char* fromEnvironment = std::getenv("KESTRO_ROOT");
        return std::string(fromEnvironment && *fromEnvironment ? fromEnvironment : "/");
    }();
    return root;
}

}  // namespace

std::string GetRootPrefix()
{
    std::lock_guard<std::mutex> guard(rootMutex);
    return Root();
}

void SetRootPrefix(const std::string& root)
{
    std::lock_guard<std::mutex> guard(rootMutex);
    Root() = root.empty() ? "/" : root;
}

std::string RootedPath(const std::string& absolute)
{
    std::string root = GetRootPrefix();
    while (root.size() > 1 && root[root.size() - 1] == '/') root.erase(root.size() - 1);
    if (root == "/") return absolute;
    return root + absolute;
}

}  // namespace XModule
