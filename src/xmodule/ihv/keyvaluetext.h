#ifndef KESTRO_XMODULE_IHV_KEYVALUETEXT_H
#define KESTRO_XMODULE_IHV_KEYVALUETEXT_H

#include <string>
#include <vector>

namespace XModule {
namespace XModuleIHV {

// "   Key name      : value" as vendor utilities print it: both sides trimmed. False for a line
// with no colon or nothing before it.
bool SplitKeyValue(const std::string& line, std::string& key, std::string& value);

// The text's lines, without their line ends.
std::vector<std::string> TextLines(const std::string& text);

}  // namespace XModuleIHV
}  // namespace XModule

#endif
