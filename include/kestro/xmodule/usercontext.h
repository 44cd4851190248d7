#ifndef KESTRO_XMODULE_USERCONTEXT_H
#define KESTRO_XMODULE_USERCONTEXT_H

#include "kestro/xmodule/connectioninfo.h"

#include <map>
#include <string>
#include <vector>

namespace XModule {

// What the caller asked for: command-line options by name (a switch maps to an empty text)
// and the connections it named, handed on to the readers unchanged.
struct UserContext {
    std::map<std::string, std::string> options;
    std::vector<ConnectionInfo> connections;

    bool HasOption(const std::string& name) const { return options.count(name) != 0; }
    std::string GetOption(const std::string& name, const std::string& fallback) const;
};

}  // namespace XModule

#endif
