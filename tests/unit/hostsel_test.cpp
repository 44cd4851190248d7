#include "xmodule/linux/hostsel.h"
#include "xmodule/linux/ipmiselelist.h"
#include "xmodule/linux/selrecord.h"

#include "kestro/xmodule/rootprefix.h"
#include "kestro/xmodule/unreadable.h"
#include "support/logcapture.h"
#include "support/tempdir.h"

#include <boost/filesystem/operations.hpp>
#include <gtest/gtest.h>

#include <sstream>

using namespace XModule::Linux;

namespace {

// Record id 1, system event, 2026-03-04T10:42:13Z, generator 0x20, then the bytes of each case.
std::vector<std::uint8_t> Record(std::uint8_t type, std::uint8_t sensorType, std::uint8_t number,
                                 std::uint8_t dirType, std::uint8_t data1, std::uint32_t time = 0x69a80c85)
{
    return {0x01, 0x00, type, std::uint8_t(time), std::uint8_t(time >> 8), std::uint8_t(time >> 16),
            std::uint8_t(time >> 24), 0x20, 0x00, 0x04, sensorType, number, dirType, data1, 0x5f, 0x5a};
}

std::string Fields(const SelEvent& e)
{
    std::ostringstream text;
    text << e.recordId << "|" << e.timestamp << "|" << e.sensor << "|" << e.event << "|"
         << (e.asserted ? "asserted" : "deasserted") << "|" << e.severity;
    return text.str();
}

}  // namespace

TEST(HostSelTest, DecodesSelRecordsWithTheirSeverity)
{
    const std::string at = "1|2026-03-04T10:42:13Z|";
    struct Case {
        const char* name;
        std::vector<std::uint8_t> bytes;
        std::string expected;  // empty: not a record
    } cases[] = {
        {"upper critical threshold", Record(0x02, 0x01, 0x30, 0x01, 0x59),
         at + "Temperature #0x30|Upper Critical going high|asserted|critical"},
        {"deasserted threshold", Record(0x02, 0x01, 0x30, 0x81, 0x59),
         at + "Temperature #0x30|Upper Critical going high|deasserted|informational"},
        {"lower non-critical", Record(0x02, 0x04, 0x41, 0x01, 0x50), at + "Fan #0x41|Lower Non-critical going low|asserted|minor"},
        {"upper non-recoverable", Record(0x02, 0x02, 0x12, 0x01, 0x5b),
         at + "Voltage #0x12|Upper Non-recoverable going high|asserted|fatal/nonrecoverable"},
        {"uncorrectable ECC", Record(0x02, 0x0c, 0x44, 0x6f, 0xa1), at + "Memory #0x44|Uncorrectable ECC|asserted|critical"},
        {"correctable ECC", Record(0x02, 0x0c, 0x44, 0x6f, 0xa0), at + "Memory #0x44|Correctable ECC|asserted|minor"},
        {"thermal trip", Record(0x02, 0x07, 0x01, 0x6f, 0x01), at + "Processor #0x01|Thermal Trip|asserted|fatal/nonrecoverable"},
        {"predictive failure", Record(0x02, 0x08, 0x62, 0x6f, 0x02), at + "Power Supply #0x62|Predictive failure|asserted|major"},
        {"generic severity", Record(0x02, 0x12, 0x05, 0x07, 0x02),
         at + "System Event #0x05|Transition to Critical from less severe|asserted|critical"},
        {"unknown sensor type", Record(0x02, 0xc0, 0x10, 0x6f, 0x03),
         at + "Sensor type 0xc0 #0x10|Event type 0x6f offset 0x03|asserted|informational"},
        {"pre-init clock", Record(0x02, 0x10, 0x07, 0x6f, 0x02, 0x12),
         "1||Event Logging Disabled #0x07|Log area reset/cleared|asserted|informational"},
        {"OEM timestamped", Record(0xc1, 0x01, 0x30, 0x01, 0x59), at + "OEM record 0xc1|OEM data|asserted|informational"},
        {"OEM without time", Record(0xe0, 0x01, 0x30, 0x01, 0x59), "1||OEM record 0xe0|OEM data|asserted|informational"},
        {"short record", std::vector<std::uint8_t>(15, 0x02), ""},
    };
    for (const Case& c : cases) {
        SelEvent event;
        const bool decoded = DecodeSelRecord(c.bytes, event);
        EXPECT_EQ(!c.expected.empty(), decoded) << c.name;
        if (decoded) {
            EXPECT_EQ(c.expected, Fields(event)) << c.name;
        }
    }
    SelEvent event;
    DecodeSelRecord(Record(0x02, 0x01, 0x30, 0x01, 0x59), event);
    EXPECT_EQ("01 00 02 85 0c a8 69 20 00 04 01 30 01 59 5f 5a", event.raw);
}

TEST(HostSelTest, ParsesIpmitoolElistAndSkipsWhatIsNoEntry)
{
    const std::string text =
        "   1 | 03/04/2026 | 10:42:13 | Temperature CPU1 Temp | Upper Critical going high | Asserted | Reading 95 > "
        "Threshold 90 degrees C\n"
        "   2 | 03/04/2026 | 10:42:20 | Temperature CPU1 Temp | Upper Critical going high | Deasserted\n"
        "   3 | 03/04/2026 | 11:05:40 | Power Supply PSU2 | Power Supply AC lost | Asserted\n"
        "   4 | 03/04/2026 | 11:06:02 | Memory DIMM4 | Uncorrectable ECC | Asserted\n"
        "   5 | 03/04/2026 | 11:06:09 | Memory DIMM4 | Correctable ECC | Asserted\n"
        "   6 | 03/04/2026 | 11:07:10 | Voltage 12V | Lower Non-recoverable going low | Asserted\n"
        "   7 | 03/04/2026 | 11:09:00 | System Health | Transition to Critical from Non-recoverable | Asserted\n"
        "  1c | Pre-Init  |0000000012| Event Logging Disabled SEL | Log area reset/cleared | Asserted\n"
        "SEL has no entries\n"
        "\n"
        "  zz | 03/04/2026 | 10:00:00 | Fan FAN1 | Lower Critical going low | Asserted\n"
        "   8 | 03/04/2026 | 10:00:00 | Fan FAN1 | Lower Critical going low | Pending\n";
    const std::vector<std::string> expected = {
        "1|2026-03-04T10:42:13|Temperature CPU1 Temp|Upper Critical going high|asserted|critical",
        "2|2026-03-04T10:42:20|Temperature CPU1 Temp|Upper Critical going high|deasserted|informational",
        "3|2026-03-04T11:05:40|Power Supply PSU2|Power Supply AC lost|asserted|major",
        "4|2026-03-04T11:06:02|Memory DIMM4|Uncorrectable ECC|asserted|critical",
        "5|2026-03-04T11:06:09|Memory DIMM4|Correctable ECC|asserted|minor",
        "6|2026-03-04T11:07:10|Voltage 12V|Lower Non-recoverable going low|asserted|fatal/nonrecoverable",
        "7|2026-03-04T11:09:00|System Health|Transition to Critical from Non-recoverable|asserted|critical",
        "28||Event Logging Disabled SEL|Log area reset/cleared|asserted|informational",
    };
    LogCapture log;
    std::vector<std::string> parsed;
    for (const SelEvent& event : ParseSelElist(text)) parsed.push_back(Fields(event));
    EXPECT_EQ(expected, parsed);
    EXPECT_EQ(3, log.Count("no entry")) << log.Dump();
}

TEST(HostSelTest, ReadsThroughIpmitoolWhenTheHostHasNoDevice)
{
    struct Case {
        const char* name;
        const char* ipmitool;  // the script installed on PATH, or null
        int expectedCode;
        std::size_t expectedEvents;
        const char* logged;
    } cases[] = {
        {"ipmitool installed",
         "#!/bin/sh\necho '   1 | 03/04/2026 | 11:05:40 | Power Supply PSU2 | Power Supply AC lost | Asserted'\n",
         HostSel::HOST_SEL_READ, 1, nullptr},
        {"neither device nor tool", nullptr, HostSel::HOST_SEL_NO_SOURCE, 0,
         "neither the IPMI device /dev/ipmi0 nor ipmitool"},
    };
    const std::string oldRoot = XModule::GetRootPrefix();
    for (const Case& c : cases) {
        TempDir root, home, bin;
        XModule::SetRootPrefix(root.Path());
        ScopedEnv homeEnv("KESTRO_HOME", home.Path());
        ScopedEnv path("PATH", bin.Path());
        if (c.ipmitool)
            boost::filesystem::permissions(bin.Write("ipmitool", c.ipmitool), boost::filesystem::owner_all);
        XModule::ClearUnreadableNotes();
        LogCapture log;
        std::vector<SelEvent> events;
        EXPECT_EQ(c.expectedCode, HostSel::Read(events)) << c.name;
        EXPECT_EQ(c.expectedEvents, events.size()) << c.name;
        if (c.logged) {
            EXPECT_EQ(1, log.Count(c.logged)) << c.name << log.Dump();
        }
    }
    XModule::SetRootPrefix(oldRoot);
}
