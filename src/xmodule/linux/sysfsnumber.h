#ifndef KESTRO_XMODULE_LINUX_SYSFSNUMBER_H
#define KESTRO_XMODULE_LINUX_SYSFSNUMBER_H

#include <cstdint>
#include <string>

namespace XModule {
namespace Linux {

// A number written by sysfs or procfs in decimal ("976773168\n"): digits only, trailing blanks
// and line breaks allowed. False for a sign, other characters, no digits or a value past 64 bits.
bool ParseSysfsDecimal(const std::string& text, std::uint64_t& value);

}  // namespace Linux
}  // namespace XModule

#endif
