#include "xmodule/linux/smbios.h"
#include "xmodule/linux/smbiosdecode.h"

#include "support/fixturehost.h"
#include "support/logcapture.h"
#include "support/smbiosbuilder.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace XModule::Linux;

namespace {

// "type@handle:length[string|string]" for each structure, blank-separated.
std::string Summary(const std::vector<SmbiosStructure>& table)
{
    std::ostringstream out;
    for (size_t i = 0; i < table.size(); ++i) {
        const SmbiosStructure& s = table[i];
        out << (i ? " " : "") << int(s.type) << '@' << std::hex << s.handle << std::dec << ':' << int(s.length) << '[';
        for (size_t j = 0; j < s.strings.size(); ++j) out << (j ? "|" : "") << s.strings[j];
        out << ']';
        if (s.formatted.size() != s.length) out << "!formatted";
    }
    return out.str();
}

std::string Bios()
{
    return SmbiosStructureBytes(0, 0x0000, std::string("\1\2\0\xe0\3\x7f", 6), {"Maker Inc.", "1.20"});
}

std::string Processor()
{
    // Formatted area with NUL bytes of its own, and no strings: closed by two NULs at once.
    return SmbiosStructureBytes(4, 0x1234, std::string(8, '\0'), {});
}

std::string NormalTable()
{
    return Bios() + SystemInformationBytes("Rack Server RX2", "7Z70CTO1WW") + Processor() + EndOfTableBytes(0xfeff);
}

SmbiosStructure Parsed(const SmbiosBuilder& builder) { return ParseSmbiosTable(builder.Bytes()).at(0); }

SmbiosBuilder Dimm(std::size_t length)
{
    return SmbiosBuilder(17, 0x1100, length).Word(0x04, 0x1000).Word(0x0C, 16384).Byte(0x12, 0x1A).Word(0x15, 3200)
        .String(0x10, "CPU1_DIMM_A1").String(0x11, "NODE 1").String(0x17, "Samsung").String(0x18, "03A1B2C3")
        .String(0x1A, "M393A2K43DB3-CWE");
}

SmbiosBuilder Socket(std::size_t length)
{
    return SmbiosBuilder(4, 0x0400, length).String(0x04, "CPU1").Byte(0x05, 3).Byte(0x06, 0xB3)
        .String(0x07, "Intel(R) Corporation").Dword(0x08, 0x000606A6).Dword(0x0C, 0xBFEBFBFF)
        .String(0x10, "Intel(R) Xeon(R) Gold 6338 CPU @ 2.00GHz").Word(0x16, 2000).Byte(0x18, 0x41)
        .Word(0x1A, 0x0700).Word(0x1C, 0x0701).Word(0x1E, 0x0702).String(0x20, "Not Specified").Byte(0x23, 32)
        .Byte(0x24, 32).Byte(0x25, 64).Word(0x26, 0x00FC).Word(0x28, 0xB3).Word(0x2A, 32).Word(0x2C, 32).Word(0x2E, 64);
}

}  // namespace

TEST(SmbiosTest, ParsesWhatIsWholeAndStopsAtTheFirstDamage)
{
    const std::string normal = NormalTable();
    const std::string whole =
        "0@0:10[Maker Inc.|1.20] 1@1:27[Maker Inc.|Rack Server RX2|7Z70CTO1WW] 4@1234:12[] 127@feff:4[]";
    const std::string bios = "0@0:10[Maker Inc.|1.20]";
    struct Case { const char* name; std::string bytes; std::string expected; int damageLogs; } cases[] = {
        {"normal table", normal, whole, 0},
        {"bytes after the end structure are not read", normal + "\x01\x40garbage", whole, 0},
        {"table without end structure", Bios() + Processor(), bios + " 4@1234:12[]", 0},
        {"empty input", std::string(), "", 0},
        {"length runs past the end", Bios() + std::string("\x01\x40\x02\x00\x01\x02", 6), bios, 1},
        {"length past the end by one byte", Bios() + Processor().substr(0, 11), bios, 1},
        {"string set without double NUL", Bios() + std::string("\x0b\x05\x03\x00\x01", 5) + "abc" + '\0', bios, 1},
        {"strings cut off", Bios() + std::string("\x0b\x05\x03\x00\x01", 5) + "abc", bios, 1},
        {"zero-length structure", Bios() + std::string("\x05\x00\x03\x00\x00\x00", 6) + Processor(), bios, 1},
        {"length shorter than the header", std::string("\x05\x03\x03\x00\x00\x00", 6), "", 1},
        {"header cut off", Bios() + std::string("\x04\x0c", 2), bios, 1},
        {"garbage", std::string("\xff\xff\xff\xff\xde\xad\xbe\xef\x01\x02", 10), "", 1},
        {"single byte", std::string("\x7f", 1), "", 1},
    };
    for (const Case& c : cases) {
        LogCapture log;
        EXPECT_EQ(c.expected, Summary(ParseSmbiosTable(c.bytes))) << c.name;
        EXPECT_EQ(c.damageLogs, log.Count("[repo] SMBIOS table is cut short or damaged")) << c.name << "\n" << log.Dump();
    }
}

TEST(SmbiosTest, EntryPointsGiveTheirVersionWhenWhole)
{
    const std::string v2 = SmbiosEntryPoint2Bytes(2, 8);
    const std::string v3 = SmbiosEntryPoint3Bytes(3, 3, 1);
    std::string badSum = v3;
    badSum[0x10] ^= 1;
    std::string longer = v2;
    longer[0x05] = 0x40;
    struct Case {
        const char* name;
        std::string bytes;
        const char* expected;  // "major.minor.docrev", or the log line of a refusal
    } cases[] = {
        {"2.x", v2, "2.8.0"},
        {"3.x", v3, "3.3.1"},
        {"3.x with bytes after it", v3 + "junk", "3.3.1"},
        {"checksum off by one bit", badSum, "[repo] SMBIOS entry point _SM3_ has a wrong checksum"},
        {"length past the bytes", longer, "[repo] SMBIOS entry point _SM_ claims 64 bytes of 31"},
        {"cut after the anchor", v3.substr(0, 6), "[repo] SMBIOS entry point _SM3_ is cut short at 6 bytes"},
        {"unknown anchor", "_DMI_" + v2.substr(5), "[repo] SMBIOS entry point of 31 bytes has no known anchor"},
        {"empty", "", "[repo] SMBIOS entry point of 0 bytes has no known anchor"},
    };
    for (const Case& c : cases) {
        LogCapture log;
        SmbiosVersion version;
        const bool parsed = ParseSmbiosEntryPoint(c.bytes, version);
        const std::string got = parsed ? std::to_string(version.major) + "." + std::to_string(version.minor) + "." +
                                             std::to_string(version.docrev)
                                       : (log.Records().empty() ? "" : log.Records()[0].second);
        EXPECT_EQ(c.expected, got) << c.name;
    }
}

TEST(SmbiosDecodeTest, MemoryDevicesAcrossVersionsEscapesAndEmptySlots)
{
    struct Case {
        const char* name;
        SmbiosBuilder structure;
        const char* expected;  // installed|bytes|type|MT/s|locator|bank|maker|serial|part
        int missingStrings = 0;
    } cases[] = {
        {"2.3 structure", Dimm(0x1B), "1|17179869184|DDR4|3200|CPU1_DIMM_A1|NODE 1|Samsung|03A1B2C3|M393A2K43DB3-CWE"},
        {"3.3 extended size and speed",
         Dimm(0x5C).Word(0x0C, 0x7FFF).Dword(0x1C, 65536).Byte(0x12, 0x22).Word(0x15, 0xFFFF).Dword(0x54, 4800),
         "1|68719476736|DDR5|4800|CPU1_DIMM_A1|NODE 1|Samsung|03A1B2C3|M393A2K43DB3-CWE"},
        {"0x7FFF before the extended size is 32767 MiB", Dimm(0x1B).Word(0x0C, 0x7FFF),
         "1|34358689792|DDR4|3200|CPU1_DIMM_A1|NODE 1|Samsung|03A1B2C3|M393A2K43DB3-CWE"},
        {"extended speed escape in a 2.8 structure", Dimm(0x28).Word(0x15, 0xFFFF),
         "1|17179869184|DDR4|0|CPU1_DIMM_A1|NODE 1|Samsung|03A1B2C3|M393A2K43DB3-CWE"},
        {"unknown size", Dimm(0x28).Word(0x0C, 0xFFFF), "1|0|DDR4|3200|CPU1_DIMM_A1|NODE 1|Samsung|03A1B2C3|M393A2K43DB3-CWE"},
        {"size in KiB, LPDDR4", Dimm(0x28).Word(0x0C, 0x8000 | 512).Byte(0x12, 0x1E),
         "1|524288|LPDDR4|3200|CPU1_DIMM_A1|NODE 1|Samsung|03A1B2C3|M393A2K43DB3-CWE"},
        {"empty slot", SmbiosBuilder(17, 0x1101, 0x28).Word(0x0C, 0).String(0x10, "DIMM_B1").String(0x11, "  ")
             .String(0x17, "NO DIMM").String(0x18, "00000000").String(0x1A, "[Empty]").Byte(0x12, 0x02),
         "0|0||0|DIMM_B1||||"},
        {"numbered placeholders", Dimm(0x28).String(0x17, "Manufacturer0").String(0x18, "SerNum0").String(0x1A, "PartNum0"),
         "1|17179869184|DDR4|3200|CPU1_DIMM_A1|NODE 1|||"},
        {"string numbers past the set, type out of table", Dimm(0x28).Byte(0x17, 9).Byte(0x18, 200).Byte(0x12, 0x7F),
         "1|17179869184||3200|CPU1_DIMM_A1|NODE 1|||M393A2K43DB3-CWE", 2},
        {"header only", SmbiosBuilder(17, 0x1102, 4), "0|0||0|||||"},
    };
    for (const Case& c : cases) {
        LogCapture log;
        const SmbiosMemoryDevice d = DecodeMemoryDevice(Parsed(c.structure));
        EXPECT_EQ(c.missingStrings, log.Count("[repo] SMBIOS structure of type 17, handle 4352, names string")) << c.name;
        EXPECT_EQ(c.expected, Joined({std::to_string(d.installed), std::to_string(d.sizeBytes), d.memoryType,
                                    std::to_string(d.speedMts), d.locator, d.bankLocator, d.manufacturer,
                                    d.serialNumber, d.partNumber}))
            << c.name;
    }
}

TEST(SmbiosDecodeTest, ProcessorsWithTheirCountEscapesAndCacheLinks)
{
    struct Case {
        const char* name;
        SmbiosBuilder structure;
        const char* expected;  // socket|stepping|MHz|populated status|cores/enabled/threads|threads bit|caches|serial
    } cases[] = {
        {"3.0", Socket(0x30), "CPU1|6|2000|1 CPU Enabled|32/32/64|1|700 701 702|"},
        {"0xFF escape to the 2-byte counts", Socket(0x30).Byte(0x23, 0xFF).Byte(0x25, 0xFF).Word(0x2A, 300).Word(0x2E, 600),
         "CPU1|6|2000|1 CPU Enabled|300/32/600|1|700 701 702|"},
        {"0xFF before the 2-byte counts is 255", Socket(0x2A).Byte(0x23, 0xFF), "CPU1|6|2000|1 CPU Enabled|255/32/64|1|700 701 702|"},
        {"2.3 structure", Socket(0x23).String(0x20, "PPIN-0A1B"), "CPU1|6|2000|1 CPU Enabled|0/0/0|0|700 701 702|PPIN-0A1B"},
        {"2.0 structure", Socket(0x1A), "CPU1|6|2000|1 CPU Enabled|0/0/0|0|ffff ffff ffff|"},
        {"empty socket", Socket(0x30).Byte(0x18, 0x00), "CPU1|6|2000|0 |32/32/64|1|700 701 702|"},
        {"disabled by the BIOS", Socket(0x30).Byte(0x18, 0x43), "CPU1|6|2000|1 CPU Disabled By BIOS (POST Error)|32/32/64|1|700 701 702|"},
        {"no CPUID signature off x86", Socket(0x30).String(0x07, "Ampere(R)"), "CPU1||2000|1 CPU Enabled|32/32/64|1|700 701 702|"},
    };
    for (const Case& c : cases) {
        const SmbiosProcessor p = DecodeProcessor(Parsed(c.structure));
        char caches[32];
        std::snprintf(caches, sizeof caches, "%x %x %x", p.cacheHandles[0], p.cacheHandles[1], p.cacheHandles[2]);
        EXPECT_EQ(c.expected,
                  Joined({p.socket, p.stepping, std::to_string(p.currentMegahertz), std::to_string(p.populated) + " " + p.status,
                        std::to_string(p.cores) + "/" + std::to_string(p.coresEnabled) + "/" + std::to_string(p.threads),
                        std::to_string(p.hardwareThreads), caches, p.serialNumber}))
            << c.name;
        EXPECT_EQ("Intel(R) Xeon(R) Gold 6338 CPU @ 2.00GHz", p.version) << c.name;
    }
}

TEST(SmbiosDecodeTest, SystemUuidOrderAndCachesAndDates)
{
    const std::string uuid("\x33\x22\x11\x00\x55\x44\x77\x66\x88\x99\xaa\xbb\xcc\xdd\xee\xff", 16);
    const SmbiosBuilder system = SmbiosBuilder(1, 1, 0x1B).String(0x04, "Lenovo").Raw(0x08, uuid).String(0x19, "7Z73CTO1WW");
    struct UuidCase {
        SmbiosBuilder structure;
        SmbiosVersion version;
        const char* expected;
    } uuids[] = {
        {system, {2, 6, 0}, "00112233-4455-6677-8899-aabbccddeeff|7Z73CTO1WW"},
        {system, {2, 5, 0}, "33221100-5544-7766-8899-aabbccddeeff|7Z73CTO1WW"},
        {SmbiosBuilder(system).Raw(0x08, std::string(16, '\xff')), {3, 0, 0}, "|7Z73CTO1WW"},
        {SmbiosBuilder(system).Raw(0x08, std::string(16, '\0')), {3, 0, 0}, "|7Z73CTO1WW"},
        {SmbiosBuilder(1, 1, 0x08).String(0x04, "Lenovo"), {2, 0, 0}, "|"},
    };
    for (const UuidCase& c : uuids) {
        const SmbiosSystem decoded = DecodeSystem(Parsed(c.structure), c.version);
        EXPECT_EQ(c.expected, decoded.uuid + "|" + decoded.skuNumber);
        EXPECT_EQ("Lenovo", decoded.manufacturer);
    }

    struct CacheCase {
        SmbiosBuilder structure;
        const char* expected;  // level enabled mode bytes
    } caches[] = {
        {SmbiosBuilder(7, 0x700, 0x13).Word(0x05, 0x0180).Word(0x09, 0x8000 | 0x0C00), "1 1 Write Back 201326592"},
        {SmbiosBuilder(7, 0x701, 0x1B).Word(0x05, 0x0202).Word(0x09, 0xFFFF).Dword(0x17, 0x80000000 | 0x8000),
         "3 0 Varies with Memory Address 2147483648"},
        // Before the 3.1 dword, 0xFFFF is 32767 units of 64 KiB.
        {SmbiosBuilder(7, 0x702, 0x13).Word(0x05, 0x0301).Word(0x09, 0xFFFF), "2 0 Unknown 2147418112"},
        {SmbiosBuilder(7, 0x703, 0x13).Word(0x05, 0x0080).Word(0x09, 48), "1 1 Write Through 49152"},
    };
    for (const CacheCase& c : caches) {
        const SmbiosCache cache = DecodeCache(Parsed(c.structure));
        EXPECT_EQ(c.expected, std::to_string(cache.level) + " " + std::to_string(cache.enabled) + " " +
                                  cache.operationalMode + " " + std::to_string(cache.installedBytes));
    }

    const std::pair<const char*, const char*> dates[] = {
        {"03/15/2023", "2023-03-15"}, {"1/2/2003", "2003-01-02"}, {"12/01/98", "1998-12-01"},
        {"13/01/2020", ""},           {"2023-03-15", ""},         {"03/15/20233", ""},
    };
    for (const auto& date : dates) EXPECT_EQ(date.second, ParseBiosDate(date.first)) << date.first;
}
