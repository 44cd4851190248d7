#ifndef KESTRO_XMODULE_LINUX_LOGTEXT_H
#define KESTRO_XMODULE_LINUX_LOGTEXT_H

#include <cstddef>
#include <ctime>
#include <string>

// Shaping the text of the host's logs (kernel ring buffer, journal, syslog files) for a record.
namespace XModule {
namespace Linux {

// Valid UTF-8 stays as it is, and so do tab and line break. Any other control byte, DEL and
// every byte outside a valid UTF-8 sequence become "\xNN", the escape the kernel itself uses in
// /dev/kmsg, so nothing is lost and the report stays valid text.
std::string EscapeLogText(const std::string& raw);
// At most `limit` bytes, cut before a UTF-8 sequence rather than inside it.
std::string CutLogText(const std::string& text, std::size_t limit);

}  // namespace Linux
}  // namespace XModule

#endif
