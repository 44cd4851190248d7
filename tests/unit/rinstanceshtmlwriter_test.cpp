#include "kestro/repository/rinstance.h"
#include "kestro/repository/rinstanceshtmlwriter.h"
#include "support/logcapture.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <boost/filesystem/operations.hpp>

#include <memory>

using kestro::repository::RInstance;
using kestro::repository::RInstancesHTMLWriter;
using kestro::repository::RInstancesWriter;

namespace {

typedef std::vector<std::string> Lines;

const char kButton[] = "<button class=\"questionmark\" onclick=\"show(this)\" onmouseout=\"hide(this)\">?</button>";

Lines PageTop(const std::string& title)
{
    return {"<!DOCTYPE html>",
            "<html>",
            "<head>",
            "<meta http-equiv=\"content-type\" content=\"text/html; charset=utf-8\">",
            "<link rel=\"stylesheet\" type=\"text/css\" href=\"data/repository.css\" />",
            "<script type=\"text/javascript\" src=\"data/sorttable.js\"></script>",
            "<script type=\"text/javascript\" src=\"data/tooltip.js\"></script>",
            "<title>" + title + "</title>",
            "</head>",
            "",
            "<body>",
            "<div class=\"pagecontent\">"};
}

const Lines kPageBottom = {"<br/><br/>", "</div>", "</body>", "</html>"};

Lines Join(Lines first, const Lines& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

Lines PlainPage(const std::string& title, const Lines& body)
{
    return Join(Join(Join(PageTop(title), {"<div class=\"pagetitle\">" + title + "</div>"}), body), kPageBottom);
}

// Splits a page into its lines; every line, the last included, must end in a newline.
Lines SplitLines(const std::string& text)
{
    Lines lines;
    std::string::size_type start = 0;
    for (std::string::size_type end; (end = text.find('\n', start)) != std::string::npos; start = end + 1)
        lines.push_back(text.substr(start, end - start));
    EXPECT_EQ(text.size(), start) << "text after the last newline: " << text.substr(start);
    return lines;
}

void ExpectLines(const Lines& expected, const std::string& text)
{
    const Lines actual = SplitLines(text);
    for (size_t i = 0; i < expected.size() && i < actual.size(); ++i)
        EXPECT_EQ(expected[i], actual[i]) << "line " << i + 1;
    EXPECT_EQ(expected.size(), actual.size()) << text;
}

std::string Link(const std::string& target, const std::string& text)
{
    return "<a href='" + target + "' target='_blank'>" + text + "</a>";
}

bool Exists(const std::string& path)
{
    boost::system::error_code error;
    return boost::filesystem::exists(path, error);
}

}  // namespace

TEST(RInstancesHTMLWriterTest, PlainPageIsTopTitleAndBottomWrittenAsItGoes)
{
    TempDir dir;
    dir.Write("system.html", "an older page that must go\n");
    {
        std::unique_ptr<RInstancesWriter> writer(new RInstancesHTMLWriter(dir.Path(), "system", "System <b>Info</b>"));
        // Each line is flushed, so the top is on disk before the page is finished.
        ExpectLines(Join(PageTop("System <b>Info</b>"), {"<div class=\"pagetitle\">System <b>Info</b></div>"}),
                    dir.Read("system.html"));
    }
    ExpectLines(PlainPage("System <b>Info</b>", {}), dir.Read("system.html"));
}

TEST(RInstancesHTMLWriterTest, EventPagesLinkToTheirPairWithTheConfiguredCount)
{
    struct Case {
        const char* page;
        const char* pair;
        const char* count;
    };
    const Case cases[] = {
        {"security_event", "security_event_all", "2048"},
        {"system_event_all", "system_event", "512"},
        {"application_event", "application_event_all", "2048"},
    };
    TempDir home;
    home.Write("global.config", "# report settings\nKESTRO_EVENTLOG_MAX=2048\n");
    ScopedEnv env("KESTRO_HOME", home.Path());
    TempDir site;
    for (const Case& c : cases) {
        { RInstancesHTMLWriter writer(site.Path(), c.page, "Events"); }
        const Lines title = {
            std::string("<div class=\"pagetitle\">Events<span style=\"font-size:18px;\"><a class=\"cyan\" href=") +
                c.pair + ".html target=\"content_frame\"> [Show " + c.count + " Events]</a></span>" + kButton,
            "<div class=\"tooltip\">Default show 512 events,and you can config event number in \"global.config\" "
            "file if you want to see more.</div></div>"};
        SCOPED_TRACE(c.page);
        ExpectLines(Join(Join(PageTop("Events"), title), kPageBottom), site.Read(std::string(c.page) + ".html"));
    }
}

TEST(RInstancesHTMLWriterTest, EventPageWithoutConfiguredCountShowsAnEmptyCount)
{
    TempDir home;
    home.Write("global.config", "OTHER=1\n");
    ScopedEnv env("KESTRO_HOME", home.Path());
    TempDir site;
    {
        RInstancesHTMLWriter all(site.Path(), "security_event_all", "All");
        RInstancesHTMLWriter part(site.Path(), "security_event", "Part");
    }
    EXPECT_NE(std::string::npos,
              site.Read("security_event.html").find("href=security_event_all.html target=\"content_frame\"> "
                                                    "[Show  Events]</a>"));
    EXPECT_NE(std::string::npos, site.Read("security_event_all.html").find("> [Show 512 Events]</a>"));
    // Names outside the pair table get the plain title, also when they look alike.
    { RInstancesHTMLWriter near(site.Path(), "security_events", "Near"); }
    ExpectLines(PlainPage("Near", {}), site.Read("security_events.html"));
}

TEST(RInstancesHTMLWriterTest, RowTablesAlternateRowColoursAndRestartPerTable)
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
    }
    ExpectLines(PlainPage("Disks",
                          {"<div class=\"tabletitle\">Physical <i>disks</i></div>",
                           kButton,
                           "<div class=\"tooltip\">Drives the adapter <b>sees</b></div>",
                           "<table width=\"100%\" class=\"rowtable sortable\">",
                           "<tr>",
                           "<th width=\"30%\">Name</th>",
                           "<th width=\"70%\">Size</th>",
                           "</tr>",
                           "<tr class=\"bg0\">", "<td>sda</td>", "<td>1 TB</td>", "</tr>",
                           "<tr class=\"bg1\">", "<td>sdb</td>", "<td><br/></td>", "</tr>",
                           "<tr class=\"bg0\">", "<td>sdc</td>", "<td></td>", "</tr>",
                           "</table>",
                           "<table width=\"100%\" class=\"coltable\">",
                           "<tr class=\"bg0\">", "<td>only</td>", "</tr>",
                           "<tr class=\"bg1\">", "</tr>",
                           "</table>"}),
                dir.Read("disks.html"));
}

TEST(RInstancesHTMLWriterTest, ColumnFormRowsIndentAndWidths)
{
    TempDir dir;
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
    ExpectLines(PlainPage("CPU",
                          {"<div class=\"indentmargin\">",
                           "<table width=\"60%\" class=\"coltable\">",
                           "<tr class=\"bg0\">", "<th width=\"25%\">Model</th>", "<td>Xeon</td>", "</tr>",
                           "<tr class=\"bg1\">", "<th width=\"25%\">Cores</th>",
                           "<td width=\"35%\">8</td>", "<td width=\"35%\">16</td>", "</tr>",
                           "<tr class=\"bg0\">", "<th width=\"40%\">Speed</th>", "</tr>",
                           "</table>",
                           "<table width=\"50%\" class=\"rowtable sortable\">",
                           "<tr class=\"bg0\">", "<th width=\"0%\">Socket</th>", "<td width=\"100%\">1</td>", "</tr>",
                           "</table>",
                           "</div>"}),
                dir.Read("cpu.html"));
}

TEST(RInstancesHTMLWriterTest, HeaderRowWithTooFewWidthsDoesNotReadPastThem)
{
    TempDir dir;
    {
        RInstancesHTMLWriter writer(dir.Path(), "short", "Short");
        writer.WriteColumnHeaderRow({"A", "B"}, {10});
    }
    ExpectLines(PlainPage("Short", {"<tr>", "<th width=\"10%\">A</th>", "<th width=\"0%\">B</th>", "</tr>"}),
                dir.Read("short.html"));
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

    const RInstance noFile("PCIPort", "Port", 2);
    LogCapture capture;
    EXPECT_EQ("", writer.GetRawDataFileName(noFile));

    const char* const oldSpan = "<span class=\"old\">old:</span>";
    const char* const newSpan = "<span class=\"new\">new:</span>";
    const struct {
        const char* value;
        std::string cell;
    } compared[] = {
        {"a|||b", std::string(oldSpan) + "a<br/>\n" + newSpan + "b<br/>\n"},
        {"|||", std::string(oldSpan) + "<br/>\n" + newSpan + "<br/>\n"},
        {"x|||y|||z", std::string(oldSpan) + "x<br/>\n" + newSpan + "y|||z<br/>\n"},
        {"no separator", "no separator"},
        {"a||b", "a||b"},
        {"", ""},
    };
    for (const auto& c : compared) EXPECT_EQ(c.cell, writer.FormatComparedValue(c.value)) << c.value;

    EXPECT_EQ("", writer.FormatPreformatted(""));
    EXPECT_EQ("\n<pre>\nline 1\n<b>line 2</b>\n</pre>\n", writer.FormatPreformatted("line 1\n<b>line 2</b>"));
    EXPECT_EQ("<b>x</b> [y]", writer.FormatBBCode("[b]x[/b] [y]"));
    EXPECT_EQ("", writer.FormatBBCode(""));
}

TEST(RInstancesHTMLWriterTest, RawDataFilesAreWrittenOrLinkedByName)
{
    TempDir dir;
    dir.Write("b.log", "kept");
    dir.Write("abc", "three");
    boost::filesystem::create_directory(dir.Path() + "/folder");
    RInstancesHTMLWriter writer(dir.Path(), "raw", "Raw");
    LogCapture capture;

    EXPECT_EQ("\n<pre>\n" + Link("a.txt", "a.txt") + "\n</pre>\n", writer.WriteRawDataFile("first", "a.txt"));
    EXPECT_EQ("first", dir.Read("a.txt"));
    EXPECT_EQ("\n<pre>\n" + Link("a.txt", "a.txt") + "\n</pre>\n", writer.WriteRawDataFile("second", "a.txt"));
    EXPECT_EQ("second", dir.Read("a.txt"));

    EXPECT_EQ("\n<pre>\n" + Link("a.txt.bak", "a.txt.bak") + "\n</pre>\n", writer.WriteRawDataFile("bak", "a.txt.bak"));
    EXPECT_EQ("bak", dir.Read("a.txt.bak"));

    const struct {
        const char* names;
        std::string cell;
    } lists[] = {
        {"a.log,b.log", "\n<pre>\na.log<br/>" + Link("b.log", "b.log") + "\n</pre>\n"},
        {",b.log,", "\n<pre>\n<br/>" + Link("b.log", "b.log") + "<br/>\n</pre>\n"},
        {"", "\n<pre>\n\n</pre>\n"},
        {"abc", "\n<pre>\n" + Link("abc", "abc") + "\n</pre>\n"},
        {"txt", "\n<pre>\ntxt\n</pre>\n"},
        {"a.TXT", "\n<pre>\na.TXT\n</pre>\n"},
        {"folder", "\n<pre>\nfolder\n</pre>\n"},
    };
    for (const auto& c : lists) EXPECT_EQ(c.cell, writer.WriteRawDataFile("never written", c.names)) << c.names;
    EXPECT_FALSE(Exists(dir.Path() + "/a.log"));
    EXPECT_FALSE(Exists(dir.Path() + "/txt"));
    EXPECT_FALSE(Exists(dir.Path() + "/a.TXT"));
    EXPECT_EQ("kept", dir.Read("b.log"));
    EXPECT_EQ("three", dir.Read("abc"));
    EXPECT_TRUE(capture.Records().empty()) << capture.Dump();
}

TEST(RInstancesHTMLWriterTest, NetworkRawDataAppendsAndLinksOnlyTheFirstRow)
{
    TempDir dir;
    RInstancesHTMLWriter writer(dir.Path(), "network", "Network");
    LogCapture capture;
    EXPECT_EQ(Link("nic.log", "nic.log"), writer.ParseNetworkRawData("port 1\n", "nic.log"));
    EXPECT_TRUE(capture.Has(3, "[repo] Calling RInstancesHTMLWriter::ParseNetworkRawData:")) << capture.Dump();
    EXPECT_TRUE(capture.Has(3, "[repo] NetworkRawData fullpath is:" + dir.Path() + "/nic.log")) << capture.Dump();
    EXPECT_EQ("", writer.ParseNetworkRawData("port 2\n", "nic.log"));
    EXPECT_EQ("port 1\nport 2\n", dir.Read("nic.log"));
    EXPECT_EQ(2, capture.Count("Calling RInstancesHTMLWriter::ParseNetworkRawData:"));
}

TEST(RInstancesHTMLWriterTest, PMCInfoRawDataGoesUnderFirmware)
{
    TempDir dir;
    RInstancesHTMLWriter writer(dir.Path(), "storage", "Storage");
    const std::string cell = "\n<pre>\n" + Link("./Firmware/pmc.txt", "pmc.txt") + "\n</pre>\n";
    LogCapture capture;
    EXPECT_EQ(cell, writer.ParsePMCInfoRawData("controller 0", "pmc.txt"));
    EXPECT_TRUE(boost::filesystem::is_directory(dir.Path() + "/Firmware"));
    EXPECT_EQ("controller 0", dir.Read("Firmware/pmc.txt"));
    EXPECT_TRUE(capture.Has(3, "[repo] Calling RInstancesHTMLWriter::ParsePMCInfoRawData:")) << capture.Dump();
    EXPECT_TRUE(capture.Has(3, "[repo] PMCINFORawData fullpath is:" + dir.Path() + "/Firmware/pmc.txt"))
        << capture.Dump();

    EXPECT_EQ(cell, writer.ParsePMCInfoRawData("controller 1", "pmc.txt"));
    EXPECT_EQ("controller 1", dir.Read("Firmware/pmc.txt"));
    EXPECT_EQ(0, capture.Count("Failed to create pmcinfo dir")) << capture.Dump();
}

TEST(RInstancesHTMLWriterTest, PMCInfoLogsAFirmwareFolderThatCannotBeMade)
{
    TempDir dir;
    dir.Write("Firmware", "a file in the folder's place");
    RInstancesHTMLWriter writer(dir.Path(), "storage", "Storage");
    LogCapture capture;
    EXPECT_EQ("\n<pre>\n" + Link("./Firmware/pmc.txt", "pmc.txt") + "\n</pre>\n",
              writer.ParsePMCInfoRawData("controller 0", "pmc.txt"));
    const std::string prefix = "[repo] Failed to create pmcinfo dir, error info:  ";
    int failures = 0;
    for (const auto& record : capture.Records())
        if (record.first == 1 && record.second.compare(0, prefix.size(), prefix) == 0 && record.second.size() > prefix.size())
            ++failures;
    EXPECT_EQ(1, failures) << capture.Dump();
    EXPECT_EQ("a file in the folder's place", dir.Read("Firmware"));
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
        EXPECT_EQ("\n<pre>\n" + Link("a.txt", "a.txt") + "\n</pre>\n", writer.WriteRawDataFile("content", "a.txt"));
        EXPECT_EQ(Link("n.log", "n.log"), writer.ParseNetworkRawData("content", "n.log"));
        EXPECT_FALSE(writer.ParsePMCInfoRawData("content", "p.txt").empty());
    }
    EXPECT_FALSE(Exists(blocked));
    EXPECT_EQ("x", dir.Read("not-a-folder"));
    EXPECT_EQ(1, capture.Count("Failed to create pmcinfo dir")) << capture.Dump();
}
