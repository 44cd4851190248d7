#include "xmodule/linux/smbios.h"

#include "kestro/xmodule/rootprefix.h"
#include "kestro/xmodule/unreadable.h"
#include "support/logcapture.h"
#include "support/smbiosbuilder.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <sstream>

using XModule::Linux::ParseSmbiosTable;
using XModule::Linux::SmbiosStructure;

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

}  // namespace

TEST(SmbiosTest, ParsesWhatIsWholeAndStopsAtTheFirstDamage)
{
    const std::string normal = NormalTable();
    const std::string whole =
        "0@0:10[Maker Inc.|1.20] 1@1:27[Maker Inc.|Rack Server RX2|7Z70CTO1WW] 4@1234:12[] 127@feff:4[]";
    const std::string bios = "0@0:10[Maker Inc.|1.20]";
    struct Case {
        const char* name;
        std::string bytes;
        std::string expected;
        int damageLogs;
    } cases[] = {
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

TEST(SmbiosTest, StringsAreNumberedFromOneAndZeroMeansNone)
{
    const std::vector<SmbiosStructure> table = ParseSmbiosTable(NormalTable());
    ASSERT_EQ(4u, table.size());
    const SmbiosStructure& system = table[1];
    EXPECT_EQ("", XModule::Linux::GetSmbiosString(system, 0));
    EXPECT_EQ("Maker Inc.", XModule::Linux::GetSmbiosString(system, 1));
    EXPECT_EQ("7Z70CTO1WW", XModule::Linux::GetSmbiosString(system, 3));
    EXPECT_EQ("", XModule::Linux::GetSmbiosString(system, 4));

    EXPECT_EQ("Rack Server RX2", XModule::Linux::GetSmbiosStringAt(system, 0x05));
    EXPECT_EQ("7Z70CTO1WW", XModule::Linux::GetSmbiosStringAt(system, 0x19));
    EXPECT_EQ("", XModule::Linux::GetSmbiosStringAt(system, 0x06));   // byte 0: no version
    EXPECT_EQ("", XModule::Linux::GetSmbiosStringAt(system, 0x18));   // byte 6 names no string
    EXPECT_EQ("", XModule::Linux::GetSmbiosStringAt(system, 0x1b));   // past the formatted area
    EXPECT_EQ("", XModule::Linux::GetSmbiosStringAt(system, 0x1000));

    EXPECT_EQ(&table[2], XModule::Linux::FindSmbiosStructure(table, 4));
    EXPECT_EQ(nullptr, XModule::Linux::FindSmbiosStructure(table, 17));
    EXPECT_EQ(std::string("\x04\x0c\x34\x12", 4) + std::string(8, '\0'), table[2].formatted);
}

TEST(SmbiosTest, ReadsTheTableUnderTheRootPrefix)
{
    TempDir root;
    const std::string oldRoot = XModule::GetRootPrefix();
    XModule::SetRootPrefix(root.Path());

    std::string bytes = "untouched";
    {
        XModule::ClearUnreadableNotes();
        LogCapture log;
        EXPECT_FALSE(XModule::Linux::ReadSmbiosTable(bytes));
        EXPECT_FALSE(XModule::Linux::ReadSmbiosTable(bytes));
        EXPECT_EQ(1, log.Count("[repo] Unable to read /sys/firmware/dmi/tables/DMI: No such file or directory; the firmware gives "
                               "the kernel no SMBIOS table"))
            << log.Dump();
    }
    const std::string table = NormalTable();
    WriteDmiTable(root, table);
    EXPECT_TRUE(XModule::Linux::ReadSmbiosTable(bytes));
    EXPECT_EQ(table, bytes);
    EXPECT_EQ(4u, ParseSmbiosTable(bytes).size());

    XModule::SetRootPrefix(oldRoot);
}

TEST(SmbiosTest, EveryCutOfATableYieldsTheStructuresBeforeTheCut)
{
    const std::string table = NormalTable();
    const std::vector<SmbiosStructure> whole = ParseSmbiosTable(table);
    ASSERT_EQ(4u, whole.size());
    for (size_t cut = 0; cut <= table.size(); ++cut) {
        const std::vector<SmbiosStructure> part = ParseSmbiosTable(table.substr(0, cut));
        ASSERT_LE(part.size(), whole.size()) << cut;
        EXPECT_EQ(cut == table.size(), part.size() == whole.size()) << cut;
        EXPECT_EQ(Summary(std::vector<SmbiosStructure>(whole.begin(), whole.begin() + part.size())), Summary(part))
            << cut;
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
        XModule::Linux::SmbiosVersion version;
        const bool parsed = XModule::Linux::ParseSmbiosEntryPoint(c.bytes, version);
        const std::string got = parsed ? std::to_string(version.major) + "." + std::to_string(version.minor) + "." +
                                             std::to_string(version.docrev)
                                       : (log.Records().empty() ? "" : log.Records()[0].second);
        EXPECT_EQ(c.expected, got) << c.name;
    }
}
