#include "xmodule/linux/kernelringbuffer.h"

#include "kestro/xmodule/unreadable.h"
#include "support/fixturehost.h"

#include <gtest/gtest.h>

#include <cstdio>

using namespace XModule::Linux;

TEST(KernelRingBufferTest, ParsesKmsgRecordsAndKlogText)
{
    struct Case {
        std::string record;
        std::string line;
    };
    const Case cases[] = {
        {"6,339,5140900,-;NET: Registered PF_INET6 protocol family\n",
         "[    5.140900] NET: Registered PF_INET6 protocol family"},
        {"7,160,424069,-,caller=T1;pci_root PNP0A03:00: host bridge window [io  0x0000-0x0cf7]\n"
         " SUBSYSTEM=acpi\n DEVICE=+acpi:PNP0A03:00\n",
         "[    0.424069] pci_root PNP0A03:00: host bridge window [io  0x0000-0x0cf7]"},
        {"4,1021,123456789012,c;usb 1-1: new device\\x0a\n", "[123456.789012] usb 1-1: new device\\x0a"},
        {"bare text; no prefix\n", "bare text; no prefix"},
        {"x,1,2,-;not numbers", "x,1,2,-;not numbers"},
        {"6,1,0,-;caf\xe9 \xc3\xa9 \x01\n", "[    0.000000] caf\\xe9 \xc3\xa9 \\x01"},
        {"", ""},
    };
    for (const Case& c : cases) EXPECT_EQ(c.line, ParseKmsgRecord(c.record)) << c.record;

    const std::vector<std::string> expected = {"[    0.000000] Linux version 6.1.0-18-amd64",
                                               "[    1.500000] ACPI: \\xff warning", "plain line"};
    EXPECT_EQ(expected, ParseKlogText("<5>[    0.000000] Linux version 6.1.0-18-amd64\n<4>[    1.500000] ACPI: "
                                      "\xff warning\n\n<6>\nplain line"));
}

TEST(KernelRingBufferTest, ReadsTheSavedDmesgOfAnotherRoot)
{
    XModule::ClearUnreadableNotes();
    FixtureHost host("");
    XModule::protocol::KernelRingBufferInfo missing;
    CollectKernelRingBuffer(missing);
    EXPECT_EQ("N/A", missing.Source);
    ASSERT_EQ(1u, XModule::GetUnreadableNotes().size());
    EXPECT_EQ("kernel ring buffer: /var/log/dmesg: No such file or directory", XModule::GetUnreadableNotes()[0]);

    // 20000 lines of 62 bytes: only the newest that fit in 1 MiB are kept.
    std::string dmesg;
    for (int i = 0; i < 20000; ++i) {
        char line[80];
        std::snprintf(line, sizeof line, "[%5d.%06d] usb 1-1: line %05d of a long boot log padding\n", i / 100,
                      i % 100, i);
        dmesg += line;
    }
    host.Dir().Write("var/log/dmesg", dmesg);
    XModule::protocol::KernelRingBufferInfo buffer;
    CollectKernelRingBuffer(buffer);
    EXPECT_EQ("/var/log/dmesg", buffer.Source);
    EXPECT_LE(buffer.Contents.size(), 1u << 20);
    EXPECT_GT(buffer.Contents.size(), (1u << 20) - 80);
    EXPECT_EQ(0u, buffer.Contents.find("["));
    EXPECT_EQ(std::string::npos, buffer.Contents.find("line 00000 "));
    const std::string newest = "[  199.000099] usb 1-1: line 19999 of a long boot log padding\n";
    EXPECT_EQ(newest, buffer.Contents.substr(buffer.Contents.size() - newest.size()));
    XModule::ClearUnreadableNotes();
}
