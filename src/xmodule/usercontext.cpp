#include "kestro/xmodule/usercontext.h"

namespace XModule {

std::string UserContext::GetOption(const std::string& name, const std::string& fallback) const
{
    const std::map<std::string, std::string>::const_iterator found = options.find(name);
    return found == options.end() ? fallback : found->second;
}

}  // namespace XModule
