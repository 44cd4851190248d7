#ifndef KESTRO_XMODULE_LINUX_IPMISELELIST_H
#define KESTRO_XMODULE_LINUX_IPMISELELIST_H

#include "xmodule/linux/selrecord.h"

#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// The entries of `ipmitool sel elist` output, one a line:
//   "  1a | 03/04/2026 | 10:42:13 | Temperature CPU1 Temp | Upper Critical going high | Asserted"
// The record id is hex; a clock not yet set shows "Pre-Init" and leaves the timestamp empty.
// A line that is not an entry is skipped with a level-2 line; the others are kept.
std::vector<SelEvent> ParseSelElist(const std::string& text);

}  // namespace Linux
}  // namespace XModule

#endif
