#include "support/edidbuilder.h"

namespace {

const std::size_t kBlockSize = 128;
const std::size_t kDescriptorCount = 4;

char Byte(unsigned value) { return static_cast<char>(value & 0xFF); }

// Sync, image size (531 x 298 mm) and separate digital sync with both polarities positive.
std::string TimingBytes(const EdidTiming& t)
{
    std::string bytes;
    bytes += Byte(t.pixelClock10KHz);
    bytes += Byte(t.pixelClock10KHz >> 8);
    bytes += Byte(t.hActive);
    bytes += Byte(t.hBlank);
    bytes += Byte((t.hActive >> 8) << 4 | t.hBlank >> 8);
    bytes += Byte(t.vActive);
    bytes += Byte(t.vBlank);
    bytes += Byte((t.vActive >> 8) << 4 | t.vBlank >> 8);
    bytes += std::string("\x30\x70\x13\x00\x13\x2a\x21\x00\x00", 9);
    bytes += Byte(t.interlaced ? 0x9E : 0x1E);
    return bytes;
}

std::string TextDescriptor(unsigned tag, const std::string& text)
{
    std::string body = text.substr(0, 13);
    if (body.size() < 13) body += '\n';
    body.resize(13, ' ');
    return std::string("\0\0\0", 3) + Byte(tag) + '\0' + body;
}

std::string RangeLimitsDescriptor(const XModule::Linux::EdidRangeLimits& limits)
{
    std::string bytes("\0\0\0\xfd\0", 5);
    for (unsigned value : {limits.minVerticalHz, limits.maxVerticalHz, limits.minHorizontalKHz,
                           limits.maxHorizontalKHz, limits.maxPixelClockMHz / 10})
        bytes += Byte(value);
    return bytes + std::string("\x00\x0a\x20\x20\x20\x20\x20\x20", 8);
}

std::string ManufacturerBytes(const std::string& id)
{
    unsigned word = 0;
    for (char letter : id.substr(0, 3)) word = word << 5 | static_cast<unsigned>(letter - 'A' + 1);
    return std::string(1, Byte(word >> 8)) + Byte(word);
}

std::string Descriptors(const EdidContent& content)
{
    std::vector<std::string> descriptors;
    for (const EdidTiming& timing : content.timings) descriptors.push_back(TimingBytes(timing));
    if (!content.name.empty()) descriptors.push_back(TextDescriptor(0xFC, content.name));
    if (content.rangeLimits.present) descriptors.push_back(RangeLimitsDescriptor(content.rangeLimits));
    if (!content.serialText.empty()) descriptors.push_back(TextDescriptor(0xFF, content.serialText));
    descriptors.resize(kDescriptorCount, std::string("\0\0\0\x10\0", 5) + std::string(13, '\0'));
    std::string bytes;
    for (std::size_t i = 0; i < kDescriptorCount; ++i) bytes += descriptors[i];
    return bytes;
}

void SetChecksum(std::string& block)
{
    unsigned sum = 0;
    for (std::size_t at = 0; at + 1 < kBlockSize; ++at) sum += static_cast<unsigned char>(block[at]);
    block[kBlockSize - 1] = Byte(256 - sum % 256);
}

}  // namespace

std::string EdidBaseBlock(const EdidContent& c)
{
    std::string block("\x00\xff\xff\xff\xff\xff\xff\x00", 8);
    block += ManufacturerBytes(c.manufacturerId);
    block += std::string(1, Byte(c.productCode)) + Byte(c.productCode >> 8);
    for (int shift = 0; shift < 32; shift += 8) block += Byte(c.serialNumber >> shift);
    block += std::string(1, Byte(c.week)) + Byte(c.year - 1990);
    block += std::string(1, Byte(c.version)) + Byte(c.revision);
    block += std::string("\xa5\x35\x1e\x78", 4);  // digital input, 53 x 30 cm, gamma 2.2
    block += Byte(c.features);
    block += std::string("\xee\x91\xa3\x54\x4c\x99\x26\x0f\x50\x54", 10);  // chromaticity
    block += std::string(1, Byte(c.establishedBits >> 16)) + Byte(c.establishedBits >> 8) + Byte(c.establishedBits);
    for (std::size_t i = 0; i < 8; ++i)
        block += i < c.standardTimings.size()
                     ? std::string(1, Byte(c.standardTimings[i].first)) + Byte(c.standardTimings[i].second)
                     : std::string("\x01\x01", 2);
    block += Descriptors(c);
    block += Byte(c.extensionCount);
    block += '\0';
    SetChecksum(block);
    return block;
}

std::string CtaExtensionBlock(const std::string& dataBlocks, const std::vector<EdidTiming>& timings)
{
    std::string block("\x02\x03", 2);
    block += Byte(4 + dataBlocks.size());
    block += Byte(0xF0 | timings.size());  // underscan, audio, YCbCr 4:4:4 and 4:2:2
    block += dataBlocks;
    for (const EdidTiming& timing : timings) block += TimingBytes(timing);
    block.resize(kBlockSize, '\0');
    SetChecksum(block);
    return block;
}

std::string VideoDataBlock(const std::vector<unsigned>& codes)
{
    std::string bytes(1, Byte(2u << 5 | codes.size()));
    for (unsigned code : codes) bytes += Byte(code);
    return bytes;
}
