#include "xmodule/linux/edid.h"

#include "xmodule/linux/valueformat.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace XModule {
namespace Linux {

namespace {

const std::size_t kBlockSize = 128;
const unsigned char kHeader[] = {0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00};
const std::size_t kDescriptorSize = 18;
const std::size_t kFirstDescriptor = 54;
const std::size_t kDescriptorCount = 4;
const std::size_t kExtensionCountAt = 126;
const std::size_t kChecksumAt = 127;
const unsigned kCtaExtensionTag = 0x02;
const unsigned kVideoDataBlockTag = 2;
const unsigned kExtendedDataBlockTag = 7;
// An extended data block listing video codes a sink takes only in YCbCr 4:2:0 (4K TVs at 50/60 Hz).
const unsigned kYcbcr420VideoDataBlockCode = 14;
// Below this a detailed timing is filler (bytes 01 01) or damage, not a mode.
const unsigned kMinimumPixelClock10KHz = 1000;

// Display descriptor tags of the base block.
const unsigned kSerialTextTag = 0xFF;
const unsigned kTextTag = 0xFE;
const unsigned kRangeLimitsTag = 0xFD;
const unsigned kNameTag = 0xFC;

// Established timings I and II (bytes 35 and 36, bit 7 first) and the one of byte 37, bit 7; each
// refresh is its real rate rounded, as for detailed timings (640x480 "at 72" runs at 72.809 Hz).
const EdidMode kEstablishedModes[] = {
    {720, 400, 70, false},  {720, 400, 88, false},  {640, 480, 60, false},   {640, 480, 67, false},
    {640, 480, 73, false},  {640, 480, 75, false},  {800, 600, 56, false},   {800, 600, 60, false},
    {800, 600, 72, false},  {800, 600, 75, false},  {832, 624, 75, false},   {1024, 768, 87, true},
    {1024, 768, 60, false}, {1024, 768, 70, false}, {1024, 768, 75, false},  {1280, 1024, 75, false},
    {1152, 870, 75, false}};

struct AspectRatio {
    unsigned horizontal;
    unsigned vertical;
};

// Standard timing aspect codes 0-3; code 0 meant 1:1 before EDID 1.3.
const AspectRatio kStandardAspects[] = {{16, 10}, {4, 3}, {5, 4}, {16, 9}};
const AspectRatio kSquareAspect = {1, 1};

struct VideoCode {
    unsigned code;
    EdidMode mode;
};

// CTA-861 video identification codes; refresh rates of the 1000/1001 variants round to the same
// whole number, and the 64:27 codes repeat the sizes of the 16:9 ones. Other codes are reserved.
const VideoCode kVideoCodes[] = {
    {1, {640, 480, 60, false}},      {2, {720, 480, 60, false}},      {3, {720, 480, 60, false}},
    {4, {1280, 720, 60, false}},     {5, {1920, 1080, 60, true}},     {6, {1440, 480, 60, true}},
    {7, {1440, 480, 60, true}},      {8, {1440, 240, 60, false}},     {9, {1440, 240, 60, false}},
    {10, {2880, 480, 60, true}},     {11, {2880, 480, 60, true}},     {12, {2880, 240, 60, false}},
    {13, {2880, 240, 60, false}},    {14, {1440, 480, 60, false}},    {15, {1440, 480, 60, false}},
    {16, {1920, 1080, 60, false}},   {17, {720, 576, 50, false}},     {18, {720, 576, 50, false}},
    {19, {1280, 720, 50, false}},    {20, {1920, 1080, 50, true}},    {21, {1440, 576, 50, true}},
    {22, {1440, 576, 50, true}},     {23, {1440, 288, 50, false}},    {24, {1440, 288, 50, false}},
    {25, {2880, 576, 50, true}},     {26, {2880, 576, 50, true}},     {27, {2880, 288, 50, false}},
    {28, {2880, 288, 50, false}},    {29, {1440, 576, 50, false}},    {30, {1440, 576, 50, false}},
    {31, {1920, 1080, 50, false}},   {32, {1920, 1080, 24, false}},   {33, {1920, 1080, 25, false}},
    {34, {1920, 1080, 30, false}},   {35, {2880, 480, 60, false}},    {36, {2880, 480, 60, false}},
    {37, {2880, 576, 50, false}},    {38, {2880, 576, 50, false}},    {39, {1920, 1080, 50, true}},
    {40, {1920, 1080, 100, true}},   {41, {1280, 720, 100, false}},   {42, {720, 576, 100, false}},
    {43, {720, 576, 100, false}},    {44, {1440, 576, 100, true}},    {45, {1440, 576, 100, true}},
    {46, {1920, 1080, 120, true}},   {47, {1280, 720, 120, false}},   {48, {720, 480, 120, false}},
    {49, {720, 480, 120, false}},    {50, {1440, 480, 120, true}},    {51, {1440, 480, 120, true}},
    {52, {720, 576, 200, false}},    {53, {720, 576, 200, false}},    {54, {1440, 576, 200, true}},
    {55, {1440, 576, 200, true}},    {56, {720, 480, 240, false}},    {57, {720, 480, 240, false}},
    {58, {1440, 480, 240, true}},    {59, {1440, 480, 240, true}},    {60, {1280, 720, 24, false}},
    {61, {1280, 720, 25, false}},    {62, {1280, 720, 30, false}},    {63, {1920, 1080, 120, false}},
    {64, {1920, 1080, 100, false}},  {65, {1280, 720, 24, false}},    {66, {1280, 720, 25, false}},
    {67, {1280, 720, 30, false}},    {68, {1280, 720, 50, false}},    {69, {1280, 720, 60, false}},
    {70, {1280, 720, 100, false}},   {71, {1280, 720, 120, false}},   {72, {1920, 1080, 24, false}},
    {73, {1920, 1080, 25, false}},   {74, {1920, 1080, 30, false}},   {75, {1920, 1080, 50, false}},
    {76, {1920, 1080, 60, false}},   {77, {1920, 1080, 100, false}},  {78, {1920, 1080, 120, false}},
    {79, {1680, 720, 24, false}},    {80, {1680, 720, 25, false}},    {81, {1680, 720, 30, false}},
    {82, {1680, 720, 50, false}},    {83, {1680, 720, 60, false}},    {84, {1680, 720, 100, false}},
    {85, {1680, 720, 120, false}},   {86, {2560, 1080, 24, false}},   {87, {2560, 1080, 25, false}},
    {88, {2560, 1080, 30, false}},   {89, {2560, 1080, 50, false}},   {90, {2560, 1080, 60, false}},
    {91, {2560, 1080, 100, false}},  {92, {2560, 1080, 120, false}},  {93, {3840, 2160, 24, false}},
    {94, {3840, 2160, 25, false}},   {95, {3840, 2160, 30, false}},   {96, {3840, 2160, 50, false}},
    {97, {3840, 2160, 60, false}},   {98, {4096, 2160, 24, false}},   {99, {4096, 2160, 25, false}},
    {100, {4096, 2160, 30, false}},  {101, {4096, 2160, 50, false}},  {102, {4096, 2160, 60, false}},
    {103, {3840, 2160, 24, false}},  {104, {3840, 2160, 25, false}},  {105, {3840, 2160, 30, false}},
    {106, {3840, 2160, 50, false}},  {107, {3840, 2160, 60, false}},  {108, {1280, 720, 48, false}},
    {109, {1280, 720, 48, false}},   {110, {1680, 720, 48, false}},   {111, {1920, 1080, 48, false}},
    {112, {1920, 1080, 48, false}},  {113, {2560, 1080, 48, false}},  {114, {3840, 2160, 48, false}},
    {115, {4096, 2160, 48, false}},  {116, {3840, 2160, 48, false}},  {117, {3840, 2160, 100, false}},
    {118, {3840, 2160, 120, false}}, {119, {3840, 2160, 100, false}}, {120, {3840, 2160, 120, false}},
    {121, {5120, 2160, 24, false}},  {122, {5120, 2160, 25, false}},  {123, {5120, 2160, 30, false}},
    {124, {5120, 2160, 48, false}},  {125, {5120, 2160, 50, false}},  {126, {5120, 2160, 60, false}},
    {127, {5120, 2160, 100, false}}, {193, {5120, 2160, 120, false}}, {194, {7680, 4320, 24, false}},
    {195, {7680, 4320, 25, false}},  {196, {7680, 4320, 30, false}},  {197, {7680, 4320, 48, false}},
    {198, {7680, 4320, 50, false}},  {199, {7680, 4320, 60, false}},  {200, {7680, 4320, 100, false}},
    {201, {7680, 4320, 120, false}}, {202, {7680, 4320, 24, false}},  {203, {7680, 4320, 25, false}},
    {204, {7680, 4320, 30, false}},  {205, {7680, 4320, 48, false}},  {206, {7680, 4320, 50, false}},
    {207, {7680, 4320, 60, false}},  {208, {7680, 4320, 100, false}}, {209, {7680, 4320, 120, false}},
    {210, {10240, 4320, 24, false}}, {211, {10240, 4320, 25, false}}, {212, {10240, 4320, 30, false}},
    {213, {10240, 4320, 48, false}}, {214, {10240, 4320, 50, false}}, {215, {10240, 4320, 60, false}},
    {216, {10240, 4320, 100, false}}, {217, {10240, 4320, 120, false}}, {218, {4096, 2160, 100, false}},
    {219, {4096, 2160, 120, false}}};

// One block of the EDID, possibly cut short; every read goes through Has() first.
struct Block {
    const unsigned char* data;
    std::size_t size;
    std::size_t index;

    bool Has(std::size_t at, std::size_t count) const { return at <= size && count <= size - at; }
    unsigned Byte(std::size_t at) const { return data[at]; }
};

// The modes of each timing list, kept apart until the end so that the merged list has a fixed order.
struct ModeLists {
    std::vector<EdidMode> detailed;
    std::vector<EdidMode> video;
    std::vector<EdidMode> standard;
    std::vector<EdidMode> established;
};

void NoteProblem(Edid& edid, const Block& block, const std::string& what)
{
    edid.problems.push_back("block " + std::to_string(block.index) + ": " + what);
}

std::string Hex(unsigned value)
{
    char text[8];
    std::snprintf(text, sizeof text, "0x%02x", value & 0xFFu);
    return text;
}

bool IsVersionAtLeast(const Edid& edid, unsigned version, unsigned revision)
{
    return edid.version > version || (edid.version == version && edid.revision >= revision);
}

std::string DecodeManufacturerId(unsigned word)
{
    std::string id;
    for (int shift = 10; shift >= 0; shift -= 5) {
        const unsigned letter = (word >> shift) & 0x1F;
        id += (letter >= 1 && letter <= 26) ? static_cast<char>('A' + letter - 1) : '?';
    }
    return id;
}

// Descriptor text: up to the line feed that ends it, printable ASCII only.
std::string DecodeDescriptorText(const unsigned char* text)
{
    std::string decoded;
    for (std::size_t i = 0; i < 13 && text[i] != 0x0A && text[i] != 0x00; ++i)
        decoded += (text[i] >= 0x20 && text[i] < 0x7F) ? static_cast<char>(text[i]) : '?';
    return TrimText(decoded);
}

// An interlaced timing gives one field's lines; the frame has twice as many plus the half line.
// Returns what makes the bytes no mode, or "" when they are one.
std::string DecodeDetailedTiming(const unsigned char* timing, EdidMode& mode)
{
    const unsigned pixelClock10KHz = timing[0] | timing[1] << 8;
    const unsigned hActive = timing[2] | (timing[4] & 0xF0) << 4;
    const unsigned hBlank = timing[3] | (timing[4] & 0x0F) << 8;
    const unsigned vActive = timing[5] | (timing[7] & 0xF0) << 4;
    const unsigned vBlank = timing[6] | (timing[7] & 0x0F) << 8;
    if (pixelClock10KHz < kMinimumPixelClock10KHz) {
        char clock[16];
        std::snprintf(clock, sizeof clock, "%.2f", pixelClock10KHz / 100.0);
        return std::string("has a pixel clock of ") + clock + " MHz, under 10 MHz";
    }
    if (hActive == 0 || vActive == 0) return "has no active area";
    mode.interlaced = (timing[17] & 0x80) != 0;
    const double frameLines = mode.interlaced ? 2.0 * (vActive + vBlank) + 1 : vActive + vBlank;
    const double frameRate = pixelClock10KHz * 10000.0 / ((hActive + hBlank) * frameLines);
    mode.width = hActive;
    mode.height = mode.interlaced ? 2 * vActive : vActive;
    mode.refresh = static_cast<unsigned>(std::lround(mode.interlaced ? 2 * frameRate : frameRate));
    return std::string();
}

// Each offset flag adds 255 to a rate, for monitors beyond 255 Hz or kHz (EDID 1.4).
void DecodeRangeLimits(const unsigned char* descriptor, bool withOffsets, EdidRangeLimits& limits)
{
    const unsigned flags = withOffsets ? descriptor[4] : 0;
    limits.present = true;
    limits.minVerticalHz = descriptor[5] + ((flags & 0x03) == 0x03 ? 255 : 0);
    limits.maxVerticalHz = descriptor[6] + ((flags & 0x02) ? 255 : 0);
    limits.minHorizontalKHz = descriptor[7] + ((flags & 0x0C) == 0x0C ? 255 : 0);
    limits.maxHorizontalKHz = descriptor[8] + ((flags & 0x08) ? 255 : 0);
    limits.maxPixelClockMHz = descriptor[9] * 10u;
}

void DecodeDisplayDescriptor(const unsigned char* descriptor, Edid& edid)
{
    switch (descriptor[3]) {
    case kNameTag: edid.name = DecodeDescriptorText(descriptor + 5); break;
    case kSerialTextTag: edid.serialText = DecodeDescriptorText(descriptor + 5); break;
    case kTextTag: edid.texts.push_back(DecodeDescriptorText(descriptor + 5)); break;
    case kRangeLimitsTag: DecodeRangeLimits(descriptor, IsVersionAtLeast(edid, 1, 4), edid.rangeLimits); break;
    default: break;
    }
}

void DecodeDescriptor(const Block& block, std::size_t at, Edid& edid, ModeLists& lists)
{
    const unsigned char* descriptor = block.data + at;
    if (descriptor[0] == 0 && descriptor[1] == 0) {
        DecodeDisplayDescriptor(descriptor, edid);
        return;
    }
    EdidMode mode;
    const std::string fault = DecodeDetailedTiming(descriptor, mode);
    if (fault.empty())
        lists.detailed.push_back(mode);
    else
        NoteProblem(edid, block, "detailed timing at byte " + std::to_string(at) + " " + fault);
}

void DecodeEstablishedTimings(const Block& block, ModeLists& lists)
{
    const unsigned bits = block.Byte(35) << 16 | block.Byte(36) << 8 | block.Byte(37);
    for (std::size_t i = 0; i < sizeof kEstablishedModes / sizeof kEstablishedModes[0]; ++i)
        if (bits & (0x800000u >> i)) lists.established.push_back(kEstablishedModes[i]);
}

// Each entry: width / 8 - 31, then the aspect code and the refresh rate - 60; 01 01 is unused.
void DecodeStandardTimings(const Block& block, const Edid& edid, ModeLists& lists)
{
    for (std::size_t at = 38; at < 54; at += 2) {
        const unsigned widthCode = block.Byte(at);
        const unsigned aspectAndRate = block.Byte(at + 1);
        if (widthCode <= 0x01) continue;
        const unsigned aspectCode = aspectAndRate >> 6;
        const AspectRatio aspect =
            (aspectCode == 0 && !IsVersionAtLeast(edid, 1, 3)) ? kSquareAspect : kStandardAspects[aspectCode];
        EdidMode mode;
        mode.width = (widthCode + 31) * 8;
        mode.height = mode.width * aspect.vertical / aspect.horizontal;
        mode.refresh = (aspectAndRate & 0x3F) + 60;
        lists.standard.push_back(mode);
    }
}

void DecodeIdentity(const Block& block, Edid& edid)
{
    if (block.Has(8, 2)) edid.manufacturerId = DecodeManufacturerId(block.Byte(8) << 8 | block.Byte(9));
    if (block.Has(10, 2)) edid.productCode = block.Byte(10) | block.Byte(11) << 8;
    if (block.Has(12, 4))
        edid.serialNumber = static_cast<std::uint32_t>(block.Byte(12) | block.Byte(13) << 8 | block.Byte(14) << 16) |
                            static_cast<std::uint32_t>(block.Byte(15)) << 24;
    if (block.Has(16, 2)) {
        const unsigned week = block.Byte(16);
        edid.modelYear = week == 0xFF;
        edid.week = (week <= 54) ? week : 0;
        edid.year = 1990 + block.Byte(17);
        if (week > 54 && week != 0xFF) NoteProblem(edid, block, "week of manufacture " + std::to_string(week) + " is no week");
    }
    if (block.Has(18, 2)) {
        edid.version = block.Byte(18);
        edid.revision = block.Byte(19);
    }
    if (block.Has(24, 1)) {
        edid.dpmsStandby = (block.Byte(24) & 0x80) != 0;
        edid.dpmsSuspend = (block.Byte(24) & 0x40) != 0;
        edid.dpmsActiveOff = (block.Byte(24) & 0x20) != 0;
    }
}

void CheckChecksum(const Block& block, Edid& edid)
{
    unsigned sum = 0;
    for (std::size_t at = 0; at < kBlockSize; ++at) sum += block.Byte(at);
    if (sum % 256 != 0)
        NoteProblem(edid, block, "checksum is wrong: the block sums to " + Hex(sum) + ", not 0x00");
}

// The base block may be cut short: each part is decoded only when it lies in whole.
void DecodeBaseBlock(const Block& block, Edid& edid, ModeLists& lists)
{
    DecodeIdentity(block, edid);
    if (block.Has(35, 3)) DecodeEstablishedTimings(block, lists);
    if (block.Has(38, 16)) DecodeStandardTimings(block, edid, lists);
    for (std::size_t i = 0; i < kDescriptorCount; ++i) {
        const std::size_t at = kFirstDescriptor + i * kDescriptorSize;
        if (block.Has(at, kDescriptorSize)) DecodeDescriptor(block, at, edid, lists);
    }
    if (block.Has(0, kBlockSize)) CheckChecksum(block, edid);
}

// Codes 129-192 are codes 1-64 flagged native; the other values stand for themselves.
void DecodeVideoDataBlock(const Block& block, std::size_t at, std::size_t length, ModeLists& lists)
{
    for (std::size_t i = 0; i < length; ++i) {
        unsigned code = block.Byte(at + i);
        if (code >= 129 && code <= 192) code &= 0x7F;
        for (const VideoCode& known : kVideoCodes)
            if (known.code == code) lists.video.push_back(known.mode);
    }
}

void DecodeDataBlockCollection(const Block& block, std::size_t end, Edid& edid, ModeLists& lists)
{
    std::size_t at = 4;
    while (at < end) {
        const unsigned tag = block.Byte(at) >> 5;
        const std::size_t length = block.Byte(at) & 0x1F;
        if (length > end - at - 1) {
            NoteProblem(edid, block, "data block at byte " + std::to_string(at) + " claims " + std::to_string(length) +
                                         " bytes, past the end of the collection at byte " + std::to_string(end));
            return;
        }
        if (tag == kVideoDataBlockTag) DecodeVideoDataBlock(block, at + 1, length, lists);
        if (tag == kExtendedDataBlockTag && length > 1 && block.Byte(at + 1) == kYcbcr420VideoDataBlockCode)
            DecodeVideoDataBlock(block, at + 2, length - 1, lists);
        at += 1 + length;
    }
}

// Byte 2 gives where the detailed timings start; data blocks (revision 3 on) lie before it.
void DecodeCtaBlock(const Block& block, Edid& edid, ModeLists& lists)
{
    const std::size_t timingsAt = block.Byte(2);
    if (timingsAt == 0) return;
    if (timingsAt < 4 || timingsAt > kChecksumAt) {
        NoteProblem(edid, block, "detailed timing offset " + std::to_string(timingsAt) + " lies outside the block");
        return;
    }
    if (block.Byte(1) >= 3) DecodeDataBlockCollection(block, timingsAt, edid, lists);
    // Zeros pad the block after its last descriptor; a display descriptor (00 00 00 tag) may still come.
    for (std::size_t at = timingsAt; at + kDescriptorSize <= kChecksumAt; at += kDescriptorSize) {
        const unsigned char* descriptor = block.data + at;
        if (std::all_of(descriptor, descriptor + kDescriptorSize, [](unsigned char b) { return b == 0; })) break;
        DecodeDescriptor(block, at, edid, lists);
    }
}

void DecodeExtensions(const std::string& bytes, Edid& edid, ModeLists& lists)
{
    const Block base = {reinterpret_cast<const unsigned char*>(bytes.data()), kBlockSize, 0};
    const std::size_t announced = base.Byte(kExtensionCountAt);
    const std::size_t present = (bytes.size() - kBlockSize) / kBlockSize;
    if (announced > present)
        NoteProblem(edid, base, "extension count " + std::to_string(announced) + ", but " + std::to_string(present) +
                                    " whole extension block(s) present");
    if (present < announced && bytes.size() % kBlockSize != 0)
        NoteProblem(edid, base, "the EDID ends " + std::to_string(bytes.size() % kBlockSize) +
                                    " bytes into block " + std::to_string(present + 1));
    for (std::size_t index = 1; index <= std::min(announced, present); ++index) {
        const Block block = {reinterpret_cast<const unsigned char*>(bytes.data()) + index * kBlockSize, kBlockSize,
                             index};
        CheckChecksum(block, edid);
        if (block.Byte(0) == kCtaExtensionTag) DecodeCtaBlock(block, edid, lists);
    }
}

void AddNewModes(const std::vector<EdidMode>& from, std::vector<EdidMode>& to)
{
    for (const EdidMode& mode : from)
        if (std::find(to.begin(), to.end(), mode) == to.end()) to.push_back(mode);
}

}  // namespace

bool EdidMode::operator==(const EdidMode& other) const
{
    return width == other.width && height == other.height && refresh == other.refresh &&
           interlaced == other.interlaced;
}

std::string Edid::VersionText() const
{
    return version == 0 ? std::string() : std::to_string(version) + "." + std::to_string(revision);
}

Edid ParseEdid(const std::string& bytes)
{
    Edid edid;
    if (bytes.empty()) {
        edid.problems.push_back("no EDID bytes");
        return edid;
    }
    if (bytes.size() < sizeof kHeader || !std::equal(kHeader, kHeader + sizeof kHeader, bytes.begin(),
                                                     [](unsigned char want, char got) {
                                                         return want == static_cast<unsigned char>(got);
                                                     })) {
        edid.problems.push_back("block 0: header is not 00 ff ff ff ff ff ff 00");
        return edid;
    }
    edid.headerFound = true;
    ModeLists lists;
    const Block base = {reinterpret_cast<const unsigned char*>(bytes.data()), std::min(bytes.size(), kBlockSize), 0};
    DecodeBaseBlock(base, edid, lists);
    if (bytes.size() < kBlockSize)
        NoteProblem(edid, base, "cut short at " + std::to_string(bytes.size()) + " of 128 bytes");
    else
        DecodeExtensions(bytes, edid, lists);
    AddNewModes(lists.detailed, edid.modes);
    AddNewModes(lists.video, edid.modes);
    AddNewModes(lists.standard, edid.modes);
    AddNewModes(lists.established, edid.modes);
    return edid;
}

}  // namespace Linux
}  // namespace XModule
