#ifndef KESTRO_TESTS_EDIDBUILDER_H
#define KESTRO_TESTS_EDIDBUILDER_H

#include "xmodule/linux/edid.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// A detailed timing as a monitor writes it; an interlaced one gives the lines of one field.
struct EdidTiming {
    unsigned pixelClock10KHz;
    unsigned hActive;
    unsigned hBlank;
    unsigned vActive;
    unsigned vBlank;
    bool interlaced;
};

// What goes into a base block. Descriptors are laid out in this order: the timings, the name,
// the range limits, the serial text; up to four, the rest filled with dummy descriptors.
struct EdidContent {
    std::string manufacturerId = "DEL";
    unsigned productCode = 0;
    std::uint32_t serialNumber = 0;
    unsigned week = 0;
    unsigned year = 2019;
    unsigned version = 1;
    unsigned revision = 4;
    unsigned features = 0;           // byte 24: DPMS bits and the rest
    unsigned establishedBits = 0;    // bytes 35, 36 and 37, byte 35 the highest
    std::vector<std::pair<unsigned, unsigned> > standardTimings;  // byte pairs, unused ones filled in
    std::vector<EdidTiming> timings;
    std::string name;                // none when empty
    std::string serialText;          // none when empty
    XModule::Linux::EdidRangeLimits rangeLimits;  // written when present; the clock in 10 MHz steps
    unsigned extensionCount = 0;
};

// 128 bytes with the header and a right checksum.
std::string EdidBaseBlock(const EdidContent& content);
// A CTA-861 revision 3 block: the data block collection as given, then the timings.
std::string CtaExtensionBlock(const std::string& dataBlocks, const std::vector<EdidTiming>& timings);
std::string VideoDataBlock(const std::vector<unsigned>& codes);

#endif
