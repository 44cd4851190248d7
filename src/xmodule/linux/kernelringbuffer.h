#ifndef KESTRO_XMODULE_LINUX_KERNELRINGBUFFER_H
#define KESTRO_XMODULE_LINUX_KERNELRINGBUFFER_H

#include "xmodule/protocol/osinfo.h"

#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// One record of /dev/kmsg ("prio,seq,usec,flags;message\n" and " KEY=value" lines) as dmesg
// shows it: "[    12.345678] message". The KEY=value lines are dropped; a record without the
// prefix is a bare message; odd bytes are escaped as "\xNN". "" for an empty record.
std::string ParseKmsgRecord(const std::string& text);
// Text in the form of klogctl and of a saved dmesg ("<6>[    1.234567] message" lines): one
// line per record, the "<n>" level marks dropped, empty lines left out, odd bytes escaped.
std::vector<std::string> ParseKlogText(const std::string& text);

// The kernel's messages, oldest first, as far as the newest 1 MiB of them goes. The live host
// is read through /dev/kmsg, else klogctl when dmesg_restrict keeps /dev/kmsg closed; a host
// under another root prefix through the dmesg saved at boot in /var/log/dmesg.
void CollectKernelRingBuffer(protocol::KernelRingBufferInfo& buffer);

}  // namespace Linux
}  // namespace XModule

#endif
