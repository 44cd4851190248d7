// The pci.ids / usb.ids reader, and the look-ups the PCI and USB readers make. The first six
// bytes are the ids asked for (vendor, device, class and subclass); the rest is the file.
#include "fuzzsupport.h"
#include "xmodule/linux/hardwareids.h"

#include <sstream>

using namespace XModule::Linux;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 6) return 0;
    const unsigned vendor = data[0] << 8 | data[1];
    const unsigned device = data[2] << 8 | data[3];
    const unsigned classId = data[4];
    const unsigned subclassId = data[5];
    const std::string text = KestroFuzz::ToText(data + 6, size - 6);

    HardwareIds ids;
    ids.Parse(text);
    ids.Empty();
    ids.VendorName(vendor);
    ids.DeviceName(vendor, device);
    ids.ClassName(classId, subclassId);
    // Ids that stand in the file itself, so the found branches are reached too.
    std::istringstream lines(text);
    std::string line;
    int asked = 0;
    unsigned lastTop = 0;
    while (std::getline(lines, line) && asked < 16) {
        unsigned id = 0;
        if (line.size() >= 4 && line[0] == 'C' && std::istringstream(line.substr(2, 2)) >> std::hex >> id) {
            ids.ClassName(id, subclassId);
            lastTop = id;
            ++asked;
        } else if (line.size() >= 4 && line[0] != '\t' && std::istringstream(line.substr(0, 4)) >> std::hex >> id) {
            ids.VendorName(id);
            lastTop = id;
            ++asked;
        } else if (line.size() >= 3 && line[0] == '\t' && line[1] != '\t' &&
                   std::istringstream(line.substr(1, 4)) >> std::hex >> id) {
            ids.DeviceName(lastTop, id);
            ids.ClassName(lastTop, id);
            ++asked;
        }
    }

    // The stream form reads the same file.
    std::istringstream in(text);
    HardwareIds streamed;
    streamed.Parse(in);
    return 0;
}
