// Writes the binary seeds that test strings cannot give: SMBIOS tables and entry points, EDIDs
// and utmp records, made with the builders of the unit tests after the tests' own recipes.
// Usage: kestro_fuzz_binaryseeds OUTPUT_FOLDER; files go to OUTPUT_FOLDER/<target>/<name>.
#include "support/edidbuilder.h"
#include "support/smbiosbuilder.h"

#include <boost/filesystem.hpp>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

namespace {

std::string outputFolder;
int written = 0;

void Seed(const std::string& target, const std::string& name, const std::string& bytes)
{
    const boost::filesystem::path folder = boost::filesystem::path(outputFolder) / target;
    boost::filesystem::create_directories(folder);
    std::ofstream out((folder / name).string(), std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out) {
        std::fprintf(stderr, "cannot write %s\n", (folder / name).string().c_str());
        std::exit(1);
    }
    ++written;
}

std::string Dimm(std::size_t length)
{
    return SmbiosBuilder(17, 0x1100, length).Word(0x04, 0x1000).Word(0x0C, 16384).Byte(0x12, 0x1A).Word(0x15, 3200)
        .String(0x10, "CPU1_DIMM_A1").String(0x11, "NODE 1").String(0x17, "Samsung").String(0x18, "03A1B2C3")
        .String(0x1A, "M393A2K43DB3-CWE").Dword(0x1C, 0x8000).Dword(0x54, 4800).Bytes();
}

std::string Socket(std::size_t length)
{
    return SmbiosBuilder(4, 0x0400, length).String(0x04, "CPU1").Byte(0x05, 3).Byte(0x06, 0xB3)
        .String(0x07, "Intel(R) Corporation").Dword(0x08, 0x000606A6).Dword(0x0C, 0xBFEBFBFF)
        .String(0x10, "Intel(R) Xeon(R) Gold 6338 CPU @ 2.00GHz").Word(0x16, 2000).Byte(0x18, 0x41)
        .Word(0x1A, 0x0700).Word(0x1C, 0x0701).Word(0x1E, 0x0702).String(0x20, "Not Specified").Byte(0x23, 32)
        .Byte(0x24, 32).Byte(0x25, 64).Word(0x26, 0x00FC).Word(0x28, 0xB3).Word(0x2A, 32).Word(0x2C, 32).Word(0x2E, 64)
        .Bytes();
}

void SmbiosSeeds()
{
    std::string uuid;
    for (int i = 0; i < 16; ++i) uuid += static_cast<char>(i * 0x11);
    const std::vector<std::pair<std::string, std::string> > structures = {
        {"bios", SmbiosBuilder(0, 0, 0x18).String(0x04, "American Megatrends").String(0x05, "1.4.2")
                     .String(0x08, "03/15/2023").Bytes()},
        {"system", SmbiosBuilder(1, 1, 0x1B).String(0x04, "Lenovo").String(0x05, "ThinkSystem SR650")
                       .String(0x06, "V2").String(0x07, "J300ABCD").Raw(0x08, uuid).String(0x19, "7Z73CTO1WW")
                       .String(0x1A, "ThinkSystem").Bytes()},
        {"baseboard", SmbiosBuilder(2, 2, 0x0F).String(0x04, "Lenovo").String(0x05, "7X06CTO1WW")
                          .String(0x06, "Not Specified").String(0x07, "L1HF0000000").Byte(0x0D, 0x0A).Bytes()},
        {"chassis", SmbiosBuilder(3, 3, 0x15).String(0x04, "Lenovo").Byte(0x05, 0x97).String(0x06, "None")
                        .String(0x07, "J300ABCD").Bytes()},
        {"processor", Socket(0x30)},
        {"processor-2.0", Socket(0x1A)},
        {"cache-l1", SmbiosBuilder(7, 0x700, 0x13).String(0x04, "L1-Cache").Word(0x05, 0x0180)
                         .Word(0x09, 0x8000 | 0x0C00).Bytes()},
        {"cache-l3-wide", SmbiosBuilder(7, 0x702, 0x1B).Word(0x05, 0x0202).Word(0x09, 0xFFFF)
                              .Dword(0x17, 0x80000000 | 0x8000).Bytes()},
        {"slot", SmbiosBuilder(9, 9, 0x11).String(0x04, "SLOT 1").Byte(0x05, 0xB6).Byte(0x07, 0x04)
                     .Word(0x0D, 0).Byte(0x0F, 0x17).Byte(0x10, 0x00).Bytes()},
        {"memory-array", SmbiosBuilder(16, 0x1000, 0x17).Byte(0x05, 0x03).Byte(0x06, 0x06).Bytes()},
        {"memory-device", Dimm(0x5C)},
        {"memory-device-2.3", Dimm(0x1B)},
        {"memory-device-empty", SmbiosBuilder(17, 0x1101, 0x28).Word(0x0C, 0).String(0x10, "DIMM_B1")
                                    .String(0x11, "  ").String(0x17, "NO DIMM").String(0x18, "00000000")
                                    .String(0x1A, "[Empty]").Byte(0x12, 0x02).Bytes()},
        {"cooling", SmbiosBuilder(27, 27, 0x0F).Byte(0x06, 0x67).Word(0x0C, 9000).String(0x0E, "Fan 1").Bytes()},
        {"power-supply", SmbiosBuilder(39, 39, 0x16).String(0x05, "PSU1").String(0x06, "PSU 1")
                             .String(0x07, "DELTA").String(0x08, "D1U54P").String(0x0A, "SP57A02345")
                             .Word(0x0C, 1100).Word(0x0E, 0x11A2).Bytes()},
        {"onboard", SmbiosBuilder(41, 41, 0x0B).String(0x04, "NIC1").Byte(0x05, 0x85).Byte(0x06, 1)
                        .Word(0x07, 0).Byte(0x09, 0x01).Byte(0x0A, 0x00).Bytes()},
        {"header-only", SmbiosBuilder(17, 0x1102, 4).Bytes()},
    };
    std::string table;
    for (const auto& s : structures) {
        Seed("smbiostable", s.first, s.second + EndOfTableBytes(0xFEFF));
        table += s.second;
    }
    for (const char* target : {"smbiostable", "dmiinventory"}) {
        Seed(target, "whole-table", table + EndOfTableBytes(0xFEFF));
        Seed(target, "cut-table", table.substr(0, table.size() / 2));
    }
    // Two sockets and two DIMMs, so that the readers pair structures.
    Seed("dmiinventory", "two-sockets", table + Socket(0x30) + Dimm(0x28) + EndOfTableBytes(0xFEFF));
    Seed("smbiosentry", "entry-2.8", SmbiosEntryPoint2Bytes(2, 8));
    Seed("smbiosentry", "entry-2.4", SmbiosEntryPoint2Bytes(2, 4));
    Seed("smbiosentry", "entry-3.3", SmbiosEntryPoint3Bytes(3, 3, 0));
    Seed("smbiosentry", "entry-3.0-cut", SmbiosEntryPoint3Bytes(3, 0, 0).substr(0, 20));
}

const EdidTiming k1280x1024at60 = {10800, 1280, 408, 1024, 42, false};
const EdidTiming k1920x1080at60 = {14850, 1920, 280, 1080, 45, false};
const EdidTiming k1280x720at60 = {7425, 1280, 370, 720, 30, false};
const EdidTiming k1920x1080iAt60 = {7425, 1920, 280, 540, 22, true};

void EdidSeeds()
{
    EdidContent office;
    office.productCode = 0xA07B;
    office.serialNumber = 1112748342;
    office.week = 12;
    office.year = 2008;
    office.revision = 3;
    office.features = 0xCA;
    office.establishedBits = 0xA54B00;
    office.standardTimings = {{0x81, 0x80}, {0x71, 0x4F}, {0x81, 0x8F}};
    office.timings = {k1280x1024at60};
    office.name = "DELL 1907FP";
    office.serialText = "CY4046AN1BPL";
    office.rangeLimits = {true, 56, 76, 30, 81, 140};
    Seed("edid", "office-1.3", EdidBaseBlock(office));

    EdidContent hdmi;
    hdmi.manufacturerId = "SAM";
    hdmi.productCode = 0x0F17;
    hdmi.week = 0xFF;
    hdmi.year = 2021;
    hdmi.features = 0x2A;
    hdmi.standardTimings = {{0xD1, 0xC0}, {0xB3, 0x00}};
    hdmi.timings = {k1920x1080at60};
    hdmi.name = "SAMSUNG";
    hdmi.rangeLimits = {true, 24, 75, 15, 135, 600};
    hdmi.extensionCount = 1;
    Seed("edid", "hdmi-1.4-cta",
         EdidBaseBlock(hdmi) + CtaExtensionBlock(VideoDataBlock({4, 16 | 0x80, 31, 97}), {k1280x720at60}));
    Seed("edid", "hdmi-cut-extension",
         EdidBaseBlock(hdmi) + CtaExtensionBlock(VideoDataBlock({16}) + "\x45\x01", {}).substr(0, 60));

    EdidContent old;
    old.manufacturerId = "VSC";
    old.productCode = 0x1234;
    old.week = 40;
    old.year = 1999;
    old.revision = 2;
    old.standardTimings = {{0x61, 0x00}};
    old.timings = {k1920x1080iAt60};
    Seed("edid", "interlaced-1.2", EdidBaseBlock(old));
    Seed("edid", "cut-base-block", EdidBaseBlock(old).substr(0, 40));
}

// One utmp record in glibc's x86-64 layout, behind the selector byte of the line-reader target.
std::string UtmpRecord(short type, const char* line, const char* user, const char* host, std::int32_t seconds)
{
    std::string record(384, '\0');
    std::memcpy(&record[0], &type, sizeof type);
    std::memcpy(&record[8], line, std::strlen(line));
    std::memcpy(&record[44], user, std::strlen(user));
    std::memcpy(&record[76], host, std::strlen(host));
    std::memcpy(&record[340], &seconds, sizeof seconds);
    return record;
}

void UtmpSeeds()
{
    const char utmpReader = 3;
    Seed("lineparsers", "utmp",
         std::string(1, utmpReader) + UtmpRecord(7, "pts/1", "alice", "198.51.100.7", 1795578532) +
             UtmpRecord(8, "pts/2", "bob", "", 1795578000) +
             UtmpRecord(7, "tty1", "a-name-of-all-thirty-two-letters", "", 1700000000) +
             UtmpRecord(7, "tty3", "cut", "", 1).substr(0, 200));
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s OUTPUT_FOLDER\n", argv[0]);
        return 2;
    }
    outputFolder = argv[1];
    SmbiosSeeds();
    EdidSeeds();
    UtmpSeeds();
    std::printf("%d binary seeds written under %s\n", written, outputFolder.c_str());
    return 0;
}
