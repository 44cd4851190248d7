#include "xmodule/linux/edid.h"

#include "support/edidbuilder.h"

#include <gtest/gtest.h>

#include <boost/algorithm/string/join.hpp>

#include <sstream>

using XModule::Linux::Edid;
using XModule::Linux::EdidMode;
using XModule::Linux::ParseEdid;

namespace {

const EdidTiming k1280x1024at60 = {10800, 1280, 408, 1024, 42, false};
const EdidTiming k1920x1080at60 = {14850, 1920, 280, 1080, 45, false};
const EdidTiming k1280x720at60 = {7425, 1280, 370, 720, 30, false};
const EdidTiming k1920x1080iAt60 = {7425, 1920, 280, 540, 22, true};

std::string Summary(const Edid& e)
{
    if (!e.headerFound) return "no EDID";
    std::ostringstream out;
    const XModule::Linux::EdidRangeLimits& r = e.rangeLimits;
    out << e.manufacturerId << ' ' << std::hex << e.productCode << std::dec << ' ' << e.serialNumber << " '" << e.name
        << "' #" << e.serialText << ' ' << e.year << (e.modelYear ? "model" : "") << "-W" << e.week << ' '
        << e.VersionText() << " dpms:" << (e.dpmsStandby ? 'S' : '-') << (e.dpmsSuspend ? 'U' : '-')
        << (e.dpmsActiveOff ? 'A' : '-');
    if (r.present)
        out << " range:" << r.minVerticalHz << '-' << r.maxVerticalHz << '/' << r.minHorizontalKHz << '-'
            << r.maxHorizontalKHz << '/' << r.maxPixelClockMHz;
    for (const EdidMode& m : e.modes) out << ' ' << m.width << 'x' << m.height << (m.interlaced ? "i" : "") << '@' << m.refresh;
    return out.str();
}

// A 1.3 office monitor: one preferred timing, a standard timing repeating an established one.
EdidContent OfficeMonitor()
{
    EdidContent c;
    c.productCode = 0xA07B;
    c.serialNumber = 1112748342;
    c.week = 12;
    c.year = 2008;
    c.revision = 3;
    c.features = 0xCA;
    c.establishedBits = 0xA54B00;
    c.standardTimings = {{0x81, 0x80}, {0x71, 0x4F}, {0x81, 0x8F}};
    c.timings = {k1280x1024at60};
    c.name = "DELL 1907FP";
    c.serialText = "CY4046AN1BPL";
    c.rangeLimits = {true, 56, 76, 30, 81, 140};
    return c;
}

// A 1.4 television-like monitor with a CTA-861 extension.
EdidContent HdmiMonitor(unsigned extensionCount)
{
    EdidContent c;
    c.manufacturerId = "SAM";
    c.productCode = 0x0F17;
    c.week = 0xFF;
    c.year = 2021;
    c.features = 0x2A;
    c.standardTimings = {{0xD1, 0xC0}, {0xB3, 0x00}};
    c.timings = {k1920x1080at60};
    c.name = "SAMSUNG";
    c.rangeLimits = {true, 24, 75, 15, 135, 600};
    c.extensionCount = extensionCount;
    return c;
}

std::string HdmiEdid(unsigned extensionCount)
{
    return EdidBaseBlock(HdmiMonitor(extensionCount)) +
           CtaExtensionBlock(VideoDataBlock({4, 16 | 0x80, 31, 97}), {k1280x720at60});
}

EdidContent OldInterlacedMonitor()
{
    EdidContent c;
    c.manufacturerId = "VSC";
    c.productCode = 0x1234;
    c.week = 40;
    c.year = 1999;
    c.revision = 2;
    c.standardTimings = {{0x61, 0x00}};
    c.timings = {k1920x1080iAt60};
    return c;
}

std::string WithByte(std::string bytes, std::size_t at, char value)
{
    bytes[at] = value;
    return bytes;
}

}  // namespace

TEST(EdidTest, DecodesEveryTimingListAndListsWhatIsWrong)
{
    const std::string office = EdidBaseBlock(OfficeMonitor());
    const std::string officeDecoded =
        "DEL a07b 1112748342 'DELL 1907FP' #CY4046AN1BPL 2008-W12 1.3 dpms:SU- range:56-76/30-81/140 1280x1024@60 "
        "1152x864@75 1280x1024@75 720x400@70 640x480@60 640x480@75 800x600@60 800x600@75 1024x768@60 1024x768@75";
    const std::string officeCut =
        "DEL a07b 1112748342 'DELL 1907FP' # 2008-W12 1.3 dpms:SU- 1280x1024@60 "
        "1152x864@75 1280x1024@75 720x400@70 640x480@60 640x480@75 800x600@60 800x600@75 1024x768@60 1024x768@75";
    const std::string hdmiDecoded = "SAM f17 0 'SAMSUNG' # 2021model-W0 1.4 dpms:--A range:24-75/15-135/600 "
                                    "1920x1080@60 1280x720@60 1920x1080@50 3840x2160@60 1680x1050@60";
    struct Case {
        const char* name;
        std::string bytes;
        std::string decoded;
        std::string problems;
    } cases[] = {
        {"1.3 monitor with established and standard timings", office, officeDecoded, ""},
        {"1.4 monitor with a CTA-861 extension", HdmiEdid(1), hdmiDecoded, ""},
        {"interlaced timing, 1:1 standard timing before 1.3", EdidBaseBlock(OldInterlacedMonitor()),
         "VSC 1234 0 '' # 1999-W40 1.2 dpms:--- 1920x1080i@60 1024x1024@60", ""},
        {"wrong header", WithByte(office, 0, '\x01'), "no EDID", "block 0: header is not 00 ff ff ff ff ff ff 00"},
        {"bad checksum is noted, the block still decoded", WithByte(office, 127, static_cast<char>(office[127] + 1)),
         officeDecoded, "block 0: checksum is wrong: the block sums to 0x01, not 0x00"},
        {"cut at 100 bytes keeps the descriptors in whole", office.substr(0, 100), officeCut,
         "block 0: cut short at 100 of 128 bytes"},
        {"extension count beyond the blocks given", HdmiEdid(3), hdmiDecoded,
         "block 0: extension count 3, but 1 whole extension block(s) present"},
        {"extension block cut short", HdmiEdid(1).substr(0, 150), "SAM f17 0 'SAMSUNG' # 2021model-W0 1.4 dpms:--A "
                                                                  "range:24-75/15-135/600 1920x1080@60 1680x1050@60",
         "block 0: extension count 1, but 0 whole extension block(s) present | block 0: the EDID ends 22 bytes into block 1"},
        {"data block running past the collection",
         EdidBaseBlock(HdmiMonitor(1)) + CtaExtensionBlock(VideoDataBlock({16}) + "\x45\x01", {}),
         "SAM f17 0 'SAMSUNG' # 2021model-W0 1.4 dpms:--A range:24-75/15-135/600 1920x1080@60 1680x1050@60",
         "block 1: data block at byte 6 claims 5 bytes, past the end of the collection at byte 8"},
        {"no bytes", std::string(), "no EDID", "no EDID bytes"},
    };
    for (const Case& c : cases) {
        const Edid edid = ParseEdid(c.bytes);
        EXPECT_EQ(c.decoded, Summary(edid)) << c.name;
        EXPECT_EQ(c.problems, boost::algorithm::join(edid.problems, " | ")) << c.name;
    }
}
