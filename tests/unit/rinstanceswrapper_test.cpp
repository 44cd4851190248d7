#include "kestro/repository/rinstance.h"
#include "kestro/repository/rinstanceshtmlwriter.h"
#include "kestro/repository/rinstanceswrapper.h"
#include "support/logcapture.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <boost/bind/bind.hpp>
#include <boost/filesystem/operations.hpp>
#include <boost/lexical_cast.hpp>

#include <memory>

using namespace kestro::repository;

namespace {

// Records owned by the test, handed to wrappers as the report side does.
class Records {
public:
    RInstance& Add(const std::string& type, const std::string& display, int id)
    {
        owned.emplace_back(new RInstance(type, display, id));
        pointers.push_back(owned.back().get());
        return *owned.back();
    }
    const std::vector<RInstance*>& All() const { return pointers; }

private:
    std::vector<std::unique_ptr<RInstance> > owned;
    std::vector<RInstance*> pointers;
};

void Rows(RInstancesWrapper& wrapper, std::vector<unsigned> percents, bool sortable)
{
    wrapper.SetRowHeaders(std::vector<std::string>(), percents, sortable);
}

RInstancesWrapper::WrapCallback RowForm(std::vector<unsigned> percents, bool sortable)
{
    return boost::bind(&Rows, boost::placeholders::_1, percents, sortable);
}

void Columns(RInstancesWrapper& wrapper, unsigned percent, unsigned columns)
{
    wrapper.SetColumnHeaders(std::vector<std::string>(), percent, columns);
}

RInstancesWrapper::WrapCallback ColumnForm(unsigned percent, unsigned columns)
{
    return boost::bind(&Columns, boost::placeholders::_1, percent, columns);
}

// What a page holds between its top and its bottom.
std::string WrittenBody(const TempDir& dir, const RInstancesWrapper& wrapper, bool* result = nullptr)
{
    {
        RInstancesHTMLWriter writer(dir.Path(), "page", "Page");
        const bool written = wrapper.WriteReport(writer);
        if (result) *result = written;
    }
    const std::string page = dir.Read("page.html");
    const std::string top = "<div class=\"pagetitle\">Page</div>\n";
    const std::string::size_type begin = page.find(top);
    const std::string::size_type end = page.rfind("<br/><br/>\n");
    if (begin == std::string::npos || end == std::string::npos) return "malformed page: " + page;
    return page.substr(begin + top.size(), end - begin - top.size());
}

void AddDisk(Records& records, const std::string& name, const std::string& size)
{
    RInstance& disk = records.Add("Disk", "Disks", -1);
    disk.AddProperty("Name", "Name", name, false);
    disk.AddProperty("Size", "Size (GB)", size, false);
    disk.AddProperty("Secret", "Secret", std::string("hidden"), true);
}

}  // namespace

TEST(RInstancesWrapperTest, RowFormWritesOneRowPerInstance)
{
    TempDir dir;
    Records records;
    AddDisk(records, "sda", "100");
    AddDisk(records, "sdb", "2000|||4000");
    records.All()[0]->AddToolTip("Disks the host sees");
    const RInstancesWrapper wrapper("Disk", records.All(), RowForm({30, 70}, true));
    bool written = false;
    EXPECT_EQ(
        "<div class=\"tabletitle\">Disks</div>\n"
        "<button class=\"questionmark\" onclick=\"show(this)\" onmouseout=\"hide(this)\">?</button>\n"
        "<div class=\"tooltip\">Disks the host sees</div>\n"
        "<table width=\"100%\" class=\"rowtable sortable\">\n"
        "<tr>\n"
        "<th width=\"30%\">Name</th>\n"
        "<th width=\"70%\">Size (GB)</th>\n"
        "</tr>\n"
        "<tr class=\"bg0\">\n"
        "<td>sda</td>\n"
        "<td>100</td>\n"
        "</tr>\n"
        "<tr class=\"bg1\">\n"
        "<td>sdb</td>\n"
        "<td><span class=\"old\">old:</span>2000<br/>\n<span class=\"new\">new:</span>4000<br/>\n</td>\n"
        "</tr>\n"
        "</table>\n",
        WrittenBody(dir, wrapper, &written));
    EXPECT_TRUE(written);
}

TEST(RInstancesWrapperTest, PercentsOfTheWrongLengthAreMended)
{
    Records records;
    AddDisk(records, "sda", "1");
    records.All()[0]->AddProperty("Model", "Model", std::string("X"), false);
    LogCapture capture;
    TempDir dir;
    const RInstancesWrapper wrapper("Disk", records.All(), RowForm({50}, false));
    EXPECT_TRUE(capture.Has(2, "[repo] Headers and percent have different sizes, need to mend percent."));
    EXPECT_TRUE(capture.Has(4, "[repo] headers: Name Size Model "));
    const std::string body = WrittenBody(dir, wrapper);
    EXPECT_EQ(3u, static_cast<size_t>(std::count(body.begin(), body.end(), '%')) - 1) << body;
    EXPECT_NE(std::string::npos, body.find("<th width=\"33%\">Model</th>"));
}

TEST(RInstancesWrapperTest, FiltersAndNumericSortKeys)
{
    Records records;
    AddDisk(records, "sda", "10");
    AddDisk(records, "nvme0", "9");
    AddDisk(records, "sdc", "+10");
    TempDir dir;
    RInstancesWrapper ascending("Disk", records.All(), RowForm({50, 50}, true));
    ascending.AddSorter("Size", true);
    std::string body = WrittenBody(dir, ascending);
    EXPECT_LT(body.find("nvme0"), body.find("sda"));
    EXPECT_LT(body.find("sda"), body.find("sdc"));

    RInstancesWrapper filtered("Disk", records.All(), RowForm({50, 50}, true));
    filtered.AddFilter("Name", "nvme", true);
    filtered.AddFilter("Name", "sd", false);
    body = WrittenBody(dir, filtered);
    EXPECT_NE(std::string::npos, body.find("nvme0"));
    EXPECT_EQ(std::string::npos, body.find("sda"));

    RInstancesWrapper none("Disk", records.All(), RowForm({50, 50}, true));
    none.AddFilter("Name", "", false);
    bool written = true;
    EXPECT_EQ("", WrittenBody(dir, none, &written));
    EXPECT_FALSE(written);

    AddDisk(records, "text", "abc");
    RInstancesWrapper broken("Disk", records.All(), RowForm({50, 50}, true));
    broken.AddSorter("Size", false);
    RInstancesHTMLWriter writer(dir.Path(), "broken", "Broken");
    EXPECT_THROW(broken.WriteReport(writer), boost::bad_lexical_cast);
}

TEST(RInstancesWrapperTest, ColumnFormFillsShortTables)
{
    Records records;
    for (const char* name : {"a", "b|||B", "c"}) {
        RInstance& record = records.Add("Fan", "Fans", -1);
        record.AddProperty("Name", "Name", std::string(name), false);
    }
    TempDir dir;
    const RInstancesWrapper wrapper("Fan", records.All(), ColumnForm(20, 2));
    EXPECT_EQ(
        "<div class=\"tabletitle\">Fans</div>\n"
        "<table width=\"100%\" class=\"coltable\">\n"
        "<tr class=\"bg0\">\n"
        "<th width=\"20%\">Name</th>\n"
        "<td>a</td>\n"
        "<td><span class=\"old\">old:</span>b<br/>\n<span class=\"new\">new:</span>B<br/>\n</td>\n"
        "</tr>\n"
        "</table>\n"
        "<table width=\"100%\" class=\"coltable\">\n"
        "<tr class=\"bg0\">\n"
        "<th width=\"20%\">Name</th>\n"
        "<td>c</td>\n"
        "<td></td>\n"
        "</tr>\n"
        "</table>\n",
        WrittenBody(dir, wrapper));
}

TEST(RInstancesWrapperTest, ProcessorChunksKeepTheirWidth)
{
    Records records;
    for (const char* name : {"CPU 1", "CPU 2", "CPU 3"}) {
        RInstance& record = records.Add("Processor", "Processors", -1);
        record.AddProperty("Socket", "Socket", std::string(name), false);
    }
    TempDir dir;
    const RInstancesWrapper wrapper("Processor", records.All(), ColumnForm(20, 2));
    EXPECT_EQ(
        "<div class=\"tabletitle\">Processors</div>\n"
        "<table width=\"100%\" class=\"coltable\">\n"
        "<tr class=\"bg0\">\n"
        "<th width=\"20%\">Socket</th>\n"
        "<td width=\"0%\">CPU 1</td>\n"
        "<td width=\"0%\">CPU 2</td>\n"
        "</tr>\n"
        "</table>\n"
        "</table>\n"
        "<table width=\"60%\" class=\"coltable\">\n"
        "<tr class=\"bg0\">\n"
        "<th width=\"20%\">Socket</th>\n"
        "<td width=\"40%\">CPU 3</td>\n"
        "</tr>\n"
        "</table>\n",
        WrittenBody(dir, wrapper));

    Records two;
    for (const char* name : {"CPU 1", "CPU 2"}) two.Add("Processor", "Processors", -1).AddProperty("Socket", "Socket", std::string(name), false);
    const RInstancesWrapper even("Processor", two.All(), ColumnForm(20, 2));
    const std::string body = WrittenBody(dir, even);
    EXPECT_EQ(std::string::npos, body.find("</table>\n</table>"));
    EXPECT_NE(std::string::npos, body.find("<td width=\"0%\">CPU 2</td>"));
}

TEST(RInstancesWrapperTest, EventRowsGetSeverityIcons)
{
    Records records;
    for (const char* type : {"Information", "Critical"}) {
        RInstance& event = records.Add("ApplicationEventDefault", "Application Event", -1);
        event.AddProperty("T", "T", std::string(""), false);
        event.AddProperty("Type", "Type", std::string(type), false);
        event.AddProperty("Message", "Message", std::string("m"), false);
    }
    TempDir dir;
    const RInstancesWrapper wrapper("ApplicationEventDefault", records.All(), RowForm({2, 8, 90}, true));
    const std::string body = WrittenBody(dir, wrapper);
    EXPECT_NE(std::string::npos,
              body.find("<tr class=\"bg0\">\n<td><img src=\"data/i.gif\"></td>\n<td>Information</td>\n<td>m</td>\n</tr>\n"))
        << body;
    EXPECT_NE(std::string::npos, body.find("<tr class=\"bg1\">\n<td>Critical</td>\n<td>m</td>\n</tr>\n")) << body;
}

TEST(RInstancesWrapperTest, NothingToWriteGivesFalse)
{
    TempDir dir;
    LogCapture capture;
    const RInstancesWrapper empty("Disk", std::vector<RInstance*>(), RowForm({100}, false));
    bool written = true;
    EXPECT_EQ("", WrittenBody(dir, empty, &written));
    EXPECT_FALSE(written);
    EXPECT_TRUE(capture.Has(2, "[repo] Data is empty for type: Disk"));

    Records records;
    records.Add("Bare", "Bare", -1);
    const RInstancesWrapper headerless("Bare", records.All(), RowForm({100}, false));
    EXPECT_EQ("", WrittenBody(dir, headerless, &written));
    EXPECT_TRUE(capture.Has(2, "[repo] Data header is empty for type: Bare"));
    EXPECT_THROW(RInstancesWrapper("Disk", records.All(), RInstancesWrapper::WrapCallback()), boost::bad_function_call);
}

namespace {

std::string PreLink(const std::string& target, const std::string& text)
{
    return "\n<pre>\n<a href='" + target + "' target='_blank'>" + text + "</a>\n</pre>\n";
}

// A one-row table of two half-width columns.
std::string OneRowTable(const std::string& display, const std::vector<std::string>& headings,
                        const std::vector<std::string>& cells)
{
    std::string table = "<div class=\"tabletitle\">" + display + "</div>\n<table width=\"100%\" class=\"rowtable\">\n<tr>\n";
    for (const std::string& heading : headings) table += "<th width=\"50%\">" + heading + "</th>\n";
    table += "</tr>\n<tr class=\"bg0\">\n";
    for (const std::string& cell : cells) table += "<td>" + cell + "</td>\n";
    return table + "</tr>\n</table>\n";
}

}  // namespace

TEST(RInstancesWrapperTest, RawCellsFollowTheFirstRuleTheTypeNameMatches)
{
    const std::string longValue(90, 'g');
    const struct {
        const char* type;
        const char* key;
        const char* filenameAttr;  // the raw property's "filename" attribute; empty: none
        const char* fileProperty;  // the record's "Filename" property
        std::string value;
        std::string cell;
        const char* file;  // written beside the page; null: none
        std::string logged;  // level 3 line; empty: none of the rules logged
    } cases[] = {
        {"NetworkRawData", "RawData", "", "nic0", "line one\nline two", PreLink("nic0.txt", "nic0.txt"), "nic0.txt",
         "For RawData, to write the value: line one\nline two..."},
        // A file name with an extension is shown as it is, nothing written.
        {"NetworkRawData", "RawData", "", "nic1.log", "x", "\n<pre>\nnic1.log\n</pre>\n", nullptr,
         "For RawData, to write the value: x..."},
        {"Note", "Text", "", "x", "pre text", "\n<pre>\npre text\n</pre>\n", nullptr, ""},
        {"GraphicsInfo", "RawData", "", "ignored", longValue, PreLink("GraphicsInfo.txt", "GraphicsInfo.txt"),
         "GraphicsInfo.txt", "For Graphics, to write the value: " + std::string(80, 'g') + "..."},
        {"PmemRawdata", "RawData", "", "dimm0.log", "p", PreLink("dimm0.log.txt", "dimm0.log.txt"), "dimm0.log.txt",
         "For PmemRawdata, to write the value: p..."},
        {"StorageLSILINK", "Show", "c0", "x", "l", PreLink("c0.txt", "c0.txt"), "c0.txt",
         "For lsishowall RawData, to write the value: l..."},
        {"StorageLSILINK", "Show", "", "x", "kept as it is", "kept as it is", nullptr,
         "For lsishowall RawData, to write the value: kept as it is..."},
        {"AdapterPMCLINK", "Info", "SmartStats_0", "x", "<a/>",
         PreLink("./Firmware/SmartStats_0.xml", "SmartStats_0.xml"), "Firmware/SmartStats_0.xml",
         "For pmcinfo RawData, to write the value: <a/>..."},
        {"AdapterPMCLINK", "Info", "pmc0", "x", "y", PreLink("./Firmware/pmc0.txt", "pmc0.txt"), "Firmware/pmc0.txt",
         "For pmcinfo RawData, to write the value: y..."},
        // A raw column of another name falls through the RawData line to the next that fits.
        {"NetworkRawData", "Dump", "", "x", "z", "\n<pre>\nz\n</pre>\n", nullptr, ""},
        {"RawDataLSILINK", "Dump", "f", "x", "w", PreLink("f.txt", "f.txt"), "f.txt",
         "For lsishowall RawData, to write the value: w..."},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.type) + " " + c.value);
        Records records;
        RInstance& record = records.Add(c.type, "Raw", -1);
        record.AddProperty(c.key, "Raw Text", c.value, false);
        record.AddPropertyAttr(c.key, "raw");
        if (*c.filenameAttr) record.AddPropertyAttr(c.key, "filename", c.filenameAttr);
        record.AddProperty("Filename", "File", std::string(c.fileProperty), false);
        TempDir dir;
        LogCapture capture;
        const RInstancesWrapper wrapper(c.type, records.All(), RowForm({50, 50}, false));
        EXPECT_EQ(OneRowTable("Raw", {"Raw Text", "File"}, {c.cell, c.fileProperty}), WrittenBody(dir, wrapper));
        if (c.file) {
            EXPECT_EQ(c.value, dir.Read(c.file));
        }
        EXPECT_EQ(c.logged.empty() ? 0 : 1, capture.Count(", to write the value: ")) << capture.Dump();
        if (!c.logged.empty()) {
            EXPECT_TRUE(capture.Has(3, "[repo] " + c.logged)) << capture.Dump();
        }
    }
}

TEST(RInstancesWrapperTest, ColumnFormNeverWritesRawFiles)
{
    Records records;
    RInstance& raw = records.Add("NetworkRawData", "Network Raw Data", -1);
    raw.AddProperty("RawData", "Raw Data", std::vector<std::string>{"a", "b"});
    raw.AddPropertyAttr("RawData", "raw");
    raw.AddProperty("Filename", "File", std::string("nic0"), false);
    TempDir dir;
    const RInstancesWrapper wrapper("NetworkRawData", records.All(), ColumnForm(30, 1));
    EXPECT_EQ(
        "<div class=\"tabletitle\">Network Raw Data</div>\n"
        "<table width=\"100%\" class=\"coltable\">\n"
        "<tr class=\"bg0\">\n<th width=\"30%\">Raw Data</th>\n<td>\n<pre>\na\nb\n</pre>\n</td>\n</tr>\n"
        "<tr class=\"bg1\">\n<th width=\"30%\">File</th>\n<td>nic0</td>\n</tr>\n"
        "</table>\n",
        WrittenBody(dir, wrapper));
    EXPECT_FALSE(boost::filesystem::exists(dir.Path() + "/nic0.txt"));
}

TEST(RInstancesWrapperTest, ReferenceDataNestsOneIndentPerLevel)
{
    Records adapters;
    adapters.Add("PCIAdapter", "Adapters", 1).AddProperty("Name", "Name", std::string("nic1"), false);
    Records ports;
    for (int id : {7, 8}) {
        RInstance& port = ports.Add("PCIPort", "Ports", id);
        port.AddProperty("Port", "Port", "p" + std::to_string(id), false);
        port.AddReference("PCIAdapter", 1);
    }
    Records lanes;
    for (const char* name : {"l0", "l1"}) {
        RInstance& lane = lanes.Add("PCILane", "Lanes", -1);
        lane.AddProperty("Lane", "Lane", std::string(name), false);
        lane.AddReference("PCIPort", 7);
    }

    RInstancesWrapper portWrapper("PCIPort", ports.All(), RowForm({100}, false));
    portWrapper.AddReferenceData(RInstancesWrapper("PCILane", lanes.All(), RowForm({100}, false)));
    RInstancesWrapper wrapper("PCIAdapter", adapters.All(), RowForm({100}, false));
    wrapper.AddReferenceData(portWrapper);
    TempDir dir;
    LogCapture capture;
    EXPECT_EQ(
        "<div class=\"tabletitle\">Adapters</div>\n"
        "<table width=\"100%\" class=\"rowtable\">\n<tr>\n<th width=\"100%\">Name</th>\n</tr>\n"
        "<tr class=\"bg0\">\n<td>nic1</td>\n</tr>\n</table>\n"
        "<div class=\"indentmargin\">\n"
        "<div class=\"tabletitle\">Ports</div>\n"
        "<table width=\"100%\" class=\"rowtable\">\n<tr>\n<th width=\"100%\">Port</th>\n</tr>\n"
        "<tr class=\"bg0\">\n<td>p7</td>\n</tr>\n</table>\n"
        "<div class=\"indentmargin\">\n"
        "<div class=\"tabletitle\">Lanes</div>\n"
        "<table width=\"100%\" class=\"rowtable\">\n<tr>\n<th width=\"100%\">Lane</th>\n</tr>\n"
        "<tr class=\"bg0\">\n<td>l0</td>\n</tr>\n"
        "<tr class=\"bg1\">\n<td>l1</td>\n</tr>\n</table>\n"
        "</div>\n"
        "<div class=\"tabletitle\">Ports</div>\n"
        "<table width=\"100%\" class=\"rowtable\">\n<tr>\n<th width=\"100%\">Port</th>\n</tr>\n"
        "<tr class=\"bg0\">\n<td>p8</td>\n</tr>\n</table>\n"
        "<div class=\"indentmargin\">\n"
        "</div>\n"
        "</div>\n",
        WrittenBody(dir, wrapper));
    EXPECT_TRUE(capture.Has(2, "[repo] Data is empty for type: PCILane"));
}

TEST(RInstancesWrapperTest, BBCodeWinsOverRawInBothForms)
{
    Records records;
    RInstance& raw = records.Add("NetworkRawData", "Network Raw Data", -1);
    raw.AddProperty("RawData", "Raw Data", std::string("[b]nic0[/b]|||[i]nic1[/i]"), false);
    raw.AddPropertyAttr("RawData", "raw");
    raw.AddPropertyAttr("RawData", "bb");
    raw.AddProperty("Filename", "File", std::string("nic0"), false);
    const std::string value =
        "<span class=\"old\">old:</span><b>nic0</b><br/>\n<span class=\"new\">new:</span><i>nic1</i><br/>\n";
    TempDir dir;
    const RInstancesWrapper rows("NetworkRawData", records.All(), RowForm({50, 50}, false));
    EXPECT_EQ(OneRowTable("Network Raw Data", {"Raw Data", "File"}, {value, "nic0"}), WrittenBody(dir, rows));
    const RInstancesWrapper columns("NetworkRawData", records.All(), ColumnForm(30, 1));
    EXPECT_NE(std::string::npos,
              WrittenBody(dir, columns).find("<th width=\"30%\">Raw Data</th>\n<td>" + value + "</td>\n"));
    EXPECT_FALSE(boost::filesystem::exists(dir.Path() + "/nic0.txt"));
}
