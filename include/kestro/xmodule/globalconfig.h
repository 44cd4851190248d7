#ifndef KESTRO_XMODULE_GLOBALCONFIG_H
#define KESTRO_XMODULE_GLOBALCONFIG_H

#include <istream>
#include <map>
#include <string>

namespace XModule {

// Settings of the tool, read from global.config in the program's home: KEY=VALUE lines,
// '#' starts a comment line. The file is read on every lookup, so an edit takes effect at once.
class GlobalConfig {
public:
    // 0 and the value in `out` when the item is set; non-zero and `out` untouched otherwise.
    static int GetConfigItem(const std::string& name, std::string& out);
    static std::map<std::string, std::string> Parse(std::istream& in);
    static std::string FilePath();
};

// The item as a whole number, or `defaultValue` when it is missing or not a number.
int GetGlobalConfigValue(const std::string& name, int defaultValue);

}  // namespace XModule

#endif
