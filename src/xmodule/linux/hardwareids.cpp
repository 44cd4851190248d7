#include "xmodule/linux/hardwareids.h"

#include "kestro/xmodule/rootprefix.h"
#include "kestro/xmodule/unreadable.h"
#include "xmodule/linux/hostfiles.h"

#include <boost/algorithm/string/trim.hpp>

#include <mutex>
#include <sstream>

namespace XModule {
namespace Linux {

namespace {

const unsigned kClassOnly = 0xFFFF0000u;

enum Block { BlockNone, BlockVendor, BlockClass };

// The hex number of `digits` digits at the start of `text`, followed by two blanks and a name.
bool SplitEntry(const std::string& text, std::size_t digits, unsigned& id, std::string& name)
{
    if (text.size() < digits + 2 || text.compare(digits, 2, "  ") != 0) return false;
    id = 0;
    for (std::size_t i = 0; i < digits; ++i) {
        const char c = text[i];
        const int value = c >= '0' && c <= '9'   ? c - '0'
                          : c >= 'a' && c <= 'f' ? c - 'a' + 10
                          : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                                 : -1;
        if (value < 0) return false;
        id = id * 16 + static_cast<unsigned>(value);
    }
    // usb.ids has names with trailing blanks; a name is compared and shown without them.
    name = boost::algorithm::trim_right_copy(text.substr(digits + 2));
    return true;
}

std::string Find(const std::unordered_map<unsigned, std::string>& names, unsigned key)
{
    const auto it = names.find(key);
    return it == names.end() ? std::string() : it->second;
}

HardwareIds LoadIds(const char* const* candidates, std::size_t count, const char* what)
{
    HardwareIds ids;
    for (std::size_t i = 0; i < count; ++i) {
        std::string text;
        if (!HostFiles::Read(candidates[i], text)) continue;
        std::istringstream in(text);
        ids.Parse(in);
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
    Block block = BlockNone;
    unsigned current = 0;
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.empty() || line[0] == '#') continue;
        unsigned id = 0;
        std::string name;
        if (line[0] != '\t') {
            block = BlockNone;
            if (SplitEntry(line, 4, id, name)) {
                block = BlockVendor;
                vendors[id] = name;
            } else if (line.compare(0, 2, "C ") == 0 && SplitEntry(line.substr(2), 2, id, name)) {
                block = BlockClass;
                classes[kClassOnly | id] = name;
            }
            current = id;
            continue;
        }
        // Third-level lines (subsystems, programming interfaces) add nothing the readers show.
        if (line.size() > 1 && line[1] == '\t') continue;
        if (block == BlockVendor && SplitEntry(line.substr(1), 4, id, name))
            devices[current << 16 | id] = name;
        else if (block == BlockClass && SplitEntry(line.substr(1), 2, id, name))
            classes[current << 8 | id] = name;
    }
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

std::string HardwareIds::VendorName(unsigned vendor) const { return Find(vendors, vendor); }

std::string HardwareIds::DeviceName(unsigned vendor, unsigned device) const
{
    return Find(devices, vendor << 16 | device);
}

std::string HardwareIds::ClassName(unsigned classId, unsigned subclassId) const
{
    const std::string sub = Find(classes, classId << 8 | subclassId);
    return sub.empty() ? Find(classes, kClassOnly | classId) : sub;
}

}  // namespace Linux
}  // namespace XModule
