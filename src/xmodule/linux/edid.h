#ifndef KESTRO_XMODULE_LINUX_EDID_H
#define KESTRO_XMODULE_LINUX_EDID_H

#include <cstdint>
#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// One video mode a monitor says it takes. The height is the frame's, so an interlaced mode
// reads as its broadcast name does (1920x1080i); the refresh of an interlaced mode is its field rate.
struct EdidMode {
    unsigned width = 0;
    unsigned height = 0;
    unsigned refresh = 0;  // Hz, rounded to the nearest whole number (59.94 gives 60)
    bool interlaced = false;

    bool operator==(const EdidMode& other) const;
};

// The display range limits descriptor; all zero when the EDID holds none.
struct EdidRangeLimits {
    bool present = false;
    unsigned minVerticalHz = 0;
    unsigned maxVerticalHz = 0;
    unsigned minHorizontalKHz = 0;
    unsigned maxHorizontalKHz = 0;
    unsigned maxPixelClockMHz = 0;  // 0 when not given
};

// What an EDID (base block and CTA-861 extensions) tells of a monitor.
struct Edid {
    bool headerFound = false;  // false: the bytes are no EDID and nothing below is filled
    std::string manufacturerId;  // PNP id, "DEL"
    unsigned productCode = 0;
    std::uint32_t serialNumber = 0;
    std::string name;          // monitor name descriptor
    std::string serialText;    // serial number descriptor
    std::vector<std::string> texts;  // unspecified text descriptors
    unsigned week = 0;         // 0 when not given
    unsigned year = 0;         // 0 when the base block is cut before it
    bool modelYear = false;    // the year is the model's, not the manufacture's
    unsigned version = 0;
    unsigned revision = 0;
    bool dpmsStandby = false;
    bool dpmsSuspend = false;
    bool dpmsActiveOff = false;
    EdidRangeLimits rangeLimits;
    // Without duplicates: detailed timings first (the preferred mode leads), then the CTA
    // short video descriptors, the standard timings and the established timings.
    std::vector<EdidMode> modes;
    // What is wrong, one sentence each; empty for a sound EDID.
    std::vector<std::string> problems;

    std::string VersionText() const;  // "1.4"
};

// Decodes what the bytes hold; damage is listed in `problems`, never thrown, and what lies
// in whole before it is kept. Extension blocks other than CTA-861 are skipped.
Edid ParseEdid(const std::string& bytes);

}  // namespace Linux
}  // namespace XModule

#endif
