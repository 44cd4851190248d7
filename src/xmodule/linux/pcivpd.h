#ifndef KESTRO_XMODULE_LINUX_PCIVPD_H
#define KESTRO_XMODULE_LINUX_PCIVPD_H

#include <string>

namespace XModule {
namespace Linux {

// What a PCI card's Vital Product Data says of it: the identifier string and the read-only
// keywords, as the card's maker wrote them in its EEPROM.
struct PciVpd {
    std::string name;          // the identifier string (large resource tag 0x82)
    std::string partNumber;    // "PN"
    std::string serialNumber;  // "SN"
};

// Decodes the resources in order and stops at the end tag, at a resource running past the data,
// or at the first tag that is no VPD resource; what decoded before is kept. False when nothing did.
bool ParsePciVpd(const std::string& bytes, PciVpd& vpd);
// The "vpd" attribute of a function ("0000:3b:00.0"), which only root can read; its head only,
// since a card answers each word slowly and the read-only part comes first.
bool ReadPciVpd(const std::string& function, PciVpd& vpd);

}  // namespace Linux
}  // namespace XModule

#endif
