#include "xmodule/linux/hardwareids.h"

#include "kestro/xmodule/rootprefix.h"
#include "kestro/xmodule/unreadable.h"
#include "xmodule/linux/hostfiles.h"

#include <boost/algorithm/string/trim.hpp>

#include <mutex>
#include <iterator>

namespace XModule {
namespace Linux {

namespace {

// The hex number of `digits` digits at `at`, followed by two blanks before a name.
bool ReadEntryId(const std::string& text, std::size_t at, std::size_t end, std::size_t digits, unsigned& id)
{
    if (end - at < digits + 2 || text.compare(at + digits, 2, "  ") != 0) return false;
    id = 0;
    for (std::size_t i = 0; i < digits; ++i) {
        const char c = text[at + i];
        const int value = c >= '0' && c <= '9'   ? c - '0'
                          : c >= 'a' && c <= 'f' ? c - 'a' + 10
                          : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                                 : -1;
        if (value < 0) return false;
        id = id * 16 + static_cast<unsigned>(value);
    }
    return true;
}

std::size_t LineEnd(const std::string& text, std::size_t at)
{
    const std::size_t end = text.find('\n', at);
    return end == std::string::npos ? text.size() : end;
}

// The name after the id and its two blanks. usb.ids has names with trailing blanks, and a file
// may come with CRLF ends: a name is compared and shown without them.
std::string NameOf(const std::string& text, std::size_t at, std::size_t end, std::size_t digits)
{
    return boost::algorithm::trim_right_copy(text.substr(at + digits + 2, end - at - digits - 2));
}

HardwareIds LoadIds(const char* const* candidates, std::size_t count, const char* what)
{
    HardwareIds ids;
    for (std::size_t i = 0; i < count; ++i) {
        std::string text;
        if (!HostFiles::Read(candidates[i], text)) continue;
        ids.Parse(text);
        return ids;
    }
    NoteUnreadable(what, "not installed; devices are shown by number");
    return ids;
}

// The file of the current root, read again only when the root changes (tests switch roots).
struct LoadedIds {
    std::mutex mutex;
    std::string root;
    bool loaded = false;
    HardwareIds ids;

    const HardwareIds& For(const char* const* candidates, std::size_t count, const char* what)
    {
        std::lock_guard<std::mutex> guard(mutex);
        const std::string now = GetRootPrefix();
        if (!loaded || now != root) {
            ids = LoadIds(candidates, count, what);
            root = now;
            loaded = true;
        }
        return ids;
    }
};

}  // namespace

void HardwareIds::Parse(std::istream& in)
{
    Parse(std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()));
}

void HardwareIds::Parse(const std::string& content)
{
    text = content;
    vendorLines.clear();
    classLines.clear();
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = LineEnd(text, at);
        unsigned id = 0;
        if (ReadEntryId(text, at, end, 4, id))
            vendorLines.emplace(id, at);
        else if (text.compare(at, 2, "C ") == 0 && ReadEntryId(text, at + 2, end, 2, id))
            classLines.emplace(id, at + 2);
        at = end + 1;
    }
}

std::string HardwareIds::ChildName(std::size_t at, std::size_t digits, unsigned id) const
{
    for (at = LineEnd(text, at) + 1; at < text.size();) {
        const std::size_t end = LineEnd(text, at);
        const char first = text[at];
        // A blank or comment line stays in the block; any other unindented line ends it.
        if (first != '\t' && first != '#' && first != '\r' && at != end) break;
        unsigned found = 0;
        // Lines indented twice (subsystems, programming interfaces) add nothing the readers show.
        if (first == '\t' && text.compare(at, 2, "\t\t") != 0 && ReadEntryId(text, at + 1, end, digits, found) &&
            found == id)
            return NameOf(text, at + 1, end, digits);
        at = end + 1;
    }
    return std::string();
}

const HardwareIds& HardwareIds::Pci()
{
    static const char* const paths[] = {"/usr/share/misc/pci.ids", "/usr/share/hwdata/pci.ids"};
    static LoadedIds loaded;
    return loaded.For(paths, 2, "pci.ids");
}

const HardwareIds& HardwareIds::Usb()
{
    // Debian's /usr/share/misc/usb.ids is an absolute link, which under a root prefix would lead
    // to the live host's file: the places that hold the file itself come first.
    static const char* const paths[] = {"/var/lib/usbutils/usb.ids", "/usr/share/hwdata/usb.ids",
                                        "/usr/share/misc/usb.ids"};
    static LoadedIds loaded;
    return loaded.For(paths, 3, "usb.ids");
}

std::string HardwareIds::VendorName(unsigned vendor) const
{
    const auto line = vendorLines.find(vendor);
    return line == vendorLines.end() ? std::string() : NameOf(text, line->second, LineEnd(text, line->second), 4);
}

std::string HardwareIds::DeviceName(unsigned vendor, unsigned device) const
{
    const auto line = vendorLines.find(vendor);
    return line == vendorLines.end() ? std::string() : ChildName(line->second, 4, device);
}

std::string HardwareIds::ClassName(unsigned classId, unsigned subclassId) const
{
    const auto line = classLines.find(classId);
    if (line == classLines.end()) return std::string();
    const std::string sub = ChildName(line->second, 2, subclassId);
    return sub.empty() ? NameOf(text, line->second, LineEnd(text, line->second), 2) : sub;
}

}  // namespace Linux
}  // namespace XModule
