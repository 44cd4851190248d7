#include "xmodule/linux/dmiid.h"

#include "kestro/xmodule/unreadable.h"
#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/smbiosdecode.h"
#include "xmodule/linux/valueformat.h"

namespace XModule {
namespace Linux {

namespace {

const char kDmiIdFolder[] = "/sys/class/dmi/id";

const char* const kAttributes[] = {
    "sys_vendor",    "product_name",   "product_version", "product_serial", "product_uuid", "product_sku",
    "product_family", "board_vendor",  "board_name",      "board_version",  "board_serial", "chassis_vendor",
    "chassis_type",  "chassis_version", "chassis_serial", "bios_vendor",    "bios_version", "bios_date",
};

}  // namespace

std::map<std::string, std::string> ReadDmiId()
{
    std::map<std::string, std::string> attributes;
    if (!HostFiles::Exists(kDmiIdFolder)) {
        NoteUnreadable(kDmiIdFolder, "missing; the firmware gives the kernel no DMI data");
        return attributes;
    }
    for (const char* name : kAttributes) {
        const std::string path = std::string(kDmiIdFolder) + "/" + name;
        std::string content;
        std::string why;
        if (!HostFiles::Read(path, content, &why)) {
            if (HostFiles::Exists(path))
                NoteUnreadable(std::string(kDmiIdFolder) + " (serial numbers, UUID)", why + "; run as root to read them");
            continue;
        }
        const std::string text = TrimText(content);
        if (!IsPlaceholderText(text)) attributes[name] = text;
    }
    return attributes;
}

}  // namespace Linux
}  // namespace XModule
