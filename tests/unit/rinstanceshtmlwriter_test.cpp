#include "kestro/repository/rinstance.h"
#include "kestro/repository/rinstanceshtmlwriter.h"
#include "support/golden.h"
#include "support/logcapture.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <boost/filesystem/operations.hpp>

using kestro::repository::RInstance;
using kestro::repository::RInstancesHTMLWriter;

namespace {

std::string Link(const std::string& target, const std::string& text)
{
    return "<a href='" + target + "' target='_blank'>" + text + "</a>";
}

std::string PreLink(const std::string& target) { return "\n<pre>\n" + Link(target, target) + "\n</pre>\n"; }

bool Exists(const std::string& path)
{
    boost::system::error_code error;
    return boost::filesystem::exists(path, error);
}

}  // namespace

// Every page is top, title and bottom; an event page's title links to its pair, the link to the
// full page offering the configured count, the way back the default one.
TEST(RInstancesHTMLWriterTest, PagesReplaceTheOlderOnlyWhenWholeAndEventPagesLinkToTheirPair)
{
    const struct {
        const char* config;
        const char* page;
        const char* pair;  // null: not an event page, a plain title
        const char* count;
    } cases[] = {
        {"# report settings\nKESTRO_EVENTLOG_MAX=2048\n", "security_event", "security_event_all", "2048"},
        {"KESTRO_EVENTLOG_MAX=2048\n", "system_event_all", "system_event", "512"},
        {"KESTRO_EVENTLOG_MAX=2048\n", "application_event", "application_event_all", "2048"},
        {"OTHER=1\n", "security_event", "security_event_all", ""},
        {"OTHER=1\n", "security_event_all", "security_event", "512"},
        {"KESTRO_EVENTLOG_MAX=2048\n", "security_events", nullptr, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.page) + " " + c.config);
        TempDir home;
        home.Write("global.config", c.config);
        ScopedEnv env("KESTRO_HOME", home.Path());
        TempDir site;
        const std::string name = std::string(c.page) + ".html";
        site.Write(name, "an older page that must go\n");
        {
            RInstancesHTMLWriter writer(site.Path(), c.page, "Events");
            // The page is stored whole when the writer closes; until then the older page stands.
            EXPECT_EQ("an older page that must go\n", site.Read(name));
        }
        const std::string page = site.Read(name);
        EXPECT_TRUE(c.pair ? MatchesGolden("htmlwriter/event_page.html", page, {{"PAIR", c.pair}, {"COUNT", c.count}})
                           : MatchesGolden("htmlwriter/page.html", page, {{"TITLE", "Events"}}));
    }
}

// Row colours alternate and restart per table; a header row with too few widths reads no further.
TEST(RInstancesHTMLWriterTest, TablesRowsAndIndents)
{
    TempDir dir;
    {
        RInstancesHTMLWriter writer(dir.Path(), "disks", "Disks");
        writer.WriteTableTitle("Physical <i>disks</i>");
        writer.WriteToolTip("Physical disks", "not shown", false);
        writer.WriteToolTip("Physical disks", "Drives the adapter <b>sees</b>", true);
        writer.BeginTable(true, true);
        writer.WriteColumnHeaderRow({"Name", "Size"}, {30, 70});
        writer.WriteDataRow({"sda", "1 TB"});
        writer.WriteDataRow({"sdb", "<br/>"});
        writer.WriteDataRow({"sdc", ""});
        writer.EndTable();
        writer.BeginTable(false, false);
        writer.WriteDataRow({"only"});
        writer.WriteDataRow({});
        writer.EndTable();
        writer.WriteColumnHeaderRow({"A", "B"}, {10});
    }
    EXPECT_TRUE(MatchesGolden("htmlwriter/row_tables.html", PageBody(dir.Read("disks.html"), "Disks")));
    {
        RInstancesHTMLWriter writer(dir.Path(), "cpu", "CPU");
        writer.BeginIndent();
        writer.BeginTableWithWidth(false, false, 60);
        writer.WriteHeadedRow("Model", 25, {"Xeon"});
        writer.WriteHeadedRowWithWidths("Cores", 25, {"8", "16"}, 35);
        writer.WriteHeadedRow("Speed", 40, {});
        writer.EndTable();
        writer.BeginTableWithWidth(true, true, 50);
        writer.WriteHeadedRowWithWidths("Socket", 0, {"1"}, 100);
        writer.EndTable();
        writer.EndIndent();
    }
    EXPECT_TRUE(MatchesGolden("htmlwriter/column_rows.html", PageBody(dir.Read("cpu.html"), "CPU")));
}

TEST(RInstancesHTMLWriterTest, CellValuesJoinListsAndFormatValues)
{
    TempDir dir;
    RInstancesHTMLWriter writer(dir.Path(), "cells", "Cells");
    RInstance port("PCIPort", "Port", 1);
    port.AddProperty("Address", "Address", std::vector<std::string>{"10.0.0.1", "fe80::1", "caf\xc3\xa9"});
    port.AddProperty("Speed", "Speed", std::string("10 Gb/s"));
    port.AddProperty("Filename", "File", std::string("port1.txt"));

    EXPECT_EQ("10.0.0.1\nfe80::1\ncaf\xc3\xa9", writer.GetCellValue(port, "Address", true));
    EXPECT_EQ("10.0.0.1<br/>\nfe80::1<br/>\ncaf\xc3\xa9", writer.GetCellValue(port, "Address", false));
    EXPECT_EQ("10 Gb/s", writer.GetCellValue(port, "Speed", false));
    EXPECT_EQ("", writer.GetCellValue(port, "Missing", false));
    EXPECT_EQ("port1.txt", writer.GetRawDataFileName(port));
    LogCapture capture;
    // The encoding marker before text that is no base64 (a file from elsewhere): shown as stored.
    port.AddProperty("Serial", "Serial", std::string("base64encode ab!d"));
    EXPECT_EQ("base64encode ab!d", writer.GetCellValue(port, "Serial", false));
    EXPECT_EQ(1, capture.Count("Value of Serial cannot be decoded"));
    EXPECT_EQ("", writer.GetRawDataFileName(RInstance("PCIPort", "Port", 2)));

    const std::string oldSpan = "<span class=\"old\">old:</span>";
    const std::string newSpan = "<span class=\"new\">new:</span>";
    const std::pair<const char*, std::string> compared[] = {
        {"a|||b", oldSpan + "a<br/>\n" + newSpan + "b<br/>\n"},
        {"|||", oldSpan + "<br/>\n" + newSpan + "<br/>\n"},
        {"x|||y|||z", oldSpan + "x<br/>\n" + newSpan + "y|||z<br/>\n"},
        {"no separator", "no separator"},
        {"a||b", "a||b"},
        {"", ""},
    };
    for (const auto& c : compared) EXPECT_EQ(c.second, writer.FormatComparedValue(c.first)) << c.first;

    EXPECT_EQ("", writer.FormatPreformatted(""));
    EXPECT_EQ("\n<pre>\nline 1\n<b>line 2</b>\n</pre>\n", writer.FormatPreformatted("line 1\n<b>line 2</b>"));
}

TEST(RInstancesHTMLWriterTest, RawDataFilesAreWrittenOrLinkedByName)
{
    TempDir dir;
    dir.Write("b.log", "kept");
    dir.Write("abc", "three");
    boost::filesystem::create_directory(dir.Path() + "/folder");
    RInstancesHTMLWriter writer(dir.Path(), "raw", "Raw");
    LogCapture capture;

    // A .txt name is written, again over an older one; .txt inside a name counts too.
    const char* const written[][2] = {{"a.txt", "first"}, {"a.txt", "second"}, {"a.txt.bak", "bak"}};
    for (const auto& file : written) {
        EXPECT_EQ(PreLink(file[0]), writer.WriteRawDataFile(file[1], file[0]));
        EXPECT_EQ(file[1], dir.Read(file[0]));
    }
    // Other names link files that are there and show the rest as text.
    const std::pair<const char*, std::string> lists[] = {
        {"a.log,b.log", "\n<pre>\na.log<br/>" + Link("b.log", "b.log") + "\n</pre>\n"},
        {",b.log,", "\n<pre>\n<br/>" + Link("b.log", "b.log") + "<br/>\n</pre>\n"},
        {"", "\n<pre>\n\n</pre>\n"},
        {"abc", PreLink("abc")},
        {"txt", "\n<pre>\ntxt\n</pre>\n"},
        {"a.TXT", "\n<pre>\na.TXT\n</pre>\n"},
        {"folder", "\n<pre>\nfolder\n</pre>\n"},
    };
    for (const auto& c : lists) EXPECT_EQ(c.second, writer.WriteRawDataFile("never written", c.first)) << c.first;
    for (const char* absent : {"a.log", "txt", "a.TXT"}) EXPECT_FALSE(Exists(dir.Path() + "/" + absent)) << absent;
    EXPECT_EQ("kept", dir.Read("b.log"));
    EXPECT_EQ("three", dir.Read("abc"));
    EXPECT_TRUE(capture.Records().empty()) << capture.Dump();
}

TEST(RInstancesHTMLWriterTest, NetworkRawDataAppendsAndPMCInfoGoesUnderFirmware)
{
    TempDir dir;
    RInstancesHTMLWriter writer(dir.Path(), "network", "Network");
    LogCapture capture;
    // Network data is appended to one file, linked from the first row only.
    EXPECT_EQ(Link("nic.log", "nic.log"), writer.ParseNetworkRawData("port 1\n", "nic.log"));
    EXPECT_TRUE(capture.Has(3, "[repo] NetworkRawData fullpath is:" + dir.Path() + "/nic.log")) << capture.Dump();
    EXPECT_EQ("", writer.ParseNetworkRawData("port 2\n", "nic.log"));
    EXPECT_EQ("port 1\nport 2\n", dir.Read("nic.log"));
    EXPECT_EQ(2, capture.Count("[repo] Calling RInstancesHTMLWriter::ParseNetworkRawData:"));

    for (const char* content : {"controller 0", "controller 1"}) {
        EXPECT_EQ("\n<pre>\n" + Link("./Firmware/pmc.txt", "pmc.txt") + "\n</pre>\n",
                  writer.ParsePMCInfoRawData(content, "pmc.txt"));
        EXPECT_EQ(content, dir.Read("Firmware/pmc.txt"));
    }
    EXPECT_TRUE(capture.Has(3, "[repo] PMCINFORawData fullpath is:" + dir.Path() + "/Firmware/pmc.txt"))
        << capture.Dump();
    EXPECT_EQ(2, capture.Count("[repo] Calling RInstancesHTMLWriter::ParsePMCInfoRawData:"));
    EXPECT_EQ(0, capture.Count("Failed to create pmcinfo dir")) << capture.Dump();
}

TEST(RInstancesHTMLWriterTest, PageInAFolderThatCannotBeWrittenLosesTextQuietly)
{
    TempDir dir;
    const std::string blocked = dir.Write("not-a-folder", "x") + "/site";
    LogCapture capture;
    {
        RInstancesHTMLWriter writer(blocked, "security_event", "Events");
        writer.BeginTable(true, false);
        writer.WriteDataRow({"a"});
        writer.EndTable();
        EXPECT_EQ(PreLink("a.txt"), writer.WriteRawDataFile("content", "a.txt"));
        EXPECT_EQ(Link("n.log", "n.log"), writer.ParseNetworkRawData("content", "n.log"));
        EXPECT_FALSE(writer.ParsePMCInfoRawData("content", "p.txt").empty());
    }
    EXPECT_FALSE(Exists(blocked));
    EXPECT_EQ("x", dir.Read("not-a-folder"));
    // The one failure line carries the reason.
    const std::string prefix = "[repo] Failed to create pmcinfo dir, error info:  ";
    int failures = 0;
    for (const auto& record : capture.Records())
        failures += record.first == 1 && record.second.compare(0, prefix.size(), prefix) == 0 &&
                    record.second.size() > prefix.size();
    EXPECT_EQ(1, failures) << capture.Dump();
}
