#include "kestro/repository/rinstance.h"
#include "kestro/repository/rinstanceshtmlwriter.h"
#include "kestro/repository/rinstanceswrapper.h"
#include "support/golden.h"
#include "support/logcapture.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <boost/algorithm/string/split.hpp>
#include <boost/filesystem/operations.hpp>
#include <boost/lexical_cast.hpp>

#include <memory>

using namespace kestro::repository;

namespace {

// One property of a record; attrs holds words: hidden (XML only), list (value split at ','), raw, bb.
struct Prop {
    std::string key;
    std::string display;
    std::string value;
    std::string attrs;
};
typedef std::vector<Prop> Fields;

bool HasWord(const std::string& words, const std::string& word) { return words.find(word) != std::string::npos; }

// Records owned by the test, handed to wrappers as the report side does.
class Records {
public:
    RInstance& Add(const std::string& type, const std::string& display, const Fields& fields, int id = -1)
    {
        owned.emplace_back(new RInstance(type, display, id));
        pointers.push_back(owned.back().get());
        for (const Prop& p : fields) {
            std::vector<std::string> list;
            if (HasWord(p.attrs, "list"))
                owned.back()->AddProperty(p.key, p.display, boost::split(list, p.value, [](char c) { return c == ','; }));
            else
                owned.back()->AddProperty(p.key, p.display, p.value, HasWord(p.attrs, "hidden"));
            for (const char* attr : {"raw", "bb"})
                if (HasWord(p.attrs, attr)) owned.back()->AddPropertyAttr(p.key, attr);
        }
        return *owned.back();
    }
    const std::vector<RInstance*>& All() const { return pointers; }

private:
    std::vector<std::unique_ptr<RInstance> > owned;
    std::vector<RInstance*> pointers;
};

RInstancesWrapper::WrapCallback RowForm(std::vector<unsigned> percents, bool sortable)
{
    return [percents, sortable](RInstancesWrapper& w) { w.SetRowHeaders(std::vector<std::string>(), percents, sortable); };
}

RInstancesWrapper::WrapCallback ColumnForm(unsigned percent, unsigned columns)
{
    return [percent, columns](RInstancesWrapper& w) { w.SetColumnHeaders(std::vector<std::string>(), percent, columns); };
}

// What a page holds between its title and its bottom.
std::string WrittenBody(const TempDir& dir, const RInstancesWrapper& wrapper, bool* result = nullptr)
{
    {
        RInstancesHTMLWriter writer(dir.Path(), "page", "Page");
        const bool written = wrapper.WriteReport(writer);
        if (result) *result = written;
    }
    return PageBody(dir.Read("page.html"), "Page");
}

int FilesIn(const std::string& path)
{
    int files = 0;
    for (boost::filesystem::recursive_directory_iterator it(path), end; it != end; ++it)
        files += boost::filesystem::is_regular_file(it->path());
    return files;
}

Fields Disk(const std::string& name, const std::string& size)
{
    return {{"Name", "Name", name, ""}, {"Size", "Size (GB)", size, ""}, {"Secret", "Secret", "hidden", "hidden"}};
}

}  // namespace

// Each form's whole mark-up; no form but the raw rows writes a file beside the page.
TEST(RInstancesWrapperTest, FormsWriteTheirTables)
{
    const Fields event = {{"T", "T", "", ""}, {"Type", "Type", "Information", ""}, {"Message", "Message", "m", ""}};
    Fields critical = event;
    critical[1].value = "Critical";
    const Fields rawAndBb = {{"RawData", "Raw Data", "[b]nic0[/b]|||[i]nic1[/i]", "raw bb"},
                             {"Filename", "File", "nic0", ""}};
    Fields mended = Disk("sda", "1");
    mended.push_back({"Model", "Model", "X", ""});
    const struct {
        const char* golden;
        const char* type;
        const char* display;
        std::vector<Fields> records;
        RInstancesWrapper::WrapCallback form;
        const char* tip;      // on the first record; empty: none
        const char* warning;  // the level 2 line logged; empty: none
    } cases[] = {
        {"row_form.html", "Disk", "Disks", {Disk("sda", "100"), Disk("sdb", "2000|||4000")}, RowForm({30, 70}, true),
         "Disks the host sees", ""},
        // Percents of the wrong length are mended to equal shares.
        {"row_form_mended.html", "Disk", "Disks", {mended}, RowForm({50}, false), "",
         "[repo] Headers and percent have different sizes, need to mend percent."},
        {"column_form.html", "Fan", "Fans",
         {{{"Name", "Name", "a", ""}}, {{"Name", "Name", "b|||B", ""}}, {{"Name", "Name", "c", ""}}}, ColumnForm(20, 2),
         "", ""},
        // The last, short table of processors keeps the width of the cells above it.
        {"processor_chunks.html", "Processor", "Processors",
         {{{"Socket", "Socket", "CPU 1", ""}}, {{"Socket", "Socket", "CPU 2", ""}}, {{"Socket", "Socket", "CPU 3", ""}}},
         ColumnForm(20, 2), "", ""},
        {"processor_even.html", "Processor", "Processors",
         {{{"Socket", "Socket", "CPU 1", ""}}, {{"Socket", "Socket", "CPU 2", ""}}}, ColumnForm(20, 2), "", ""},
        // Event rows get an icon for the known severities in place of the "T" column.
        {"event_icons.html", "ApplicationEventDefault", "Application Event", {event, critical},
         RowForm({2, 8, 90}, true), "", ""},
        {"column_form_raw.html", "NetworkRawData", "Network Raw Data",
         {{{"RawData", "Raw Data", "a,b", "list raw"}, {"Filename", "File", "nic0", ""}}}, ColumnForm(30, 1), "", ""},
        // BBCode wins over raw in both forms.
        {"bbcode_over_raw_rows.html", "NetworkRawData", "Network Raw Data", {rawAndBb}, RowForm({50, 50}, false), "",
         ""},
        {"bbcode_over_raw_columns.html", "NetworkRawData", "Network Raw Data", {rawAndBb}, ColumnForm(30, 1), "", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.golden);
        Records records;
        for (const Fields& fields : c.records) records.Add(c.type, c.display, fields);
        if (*c.tip) records.All()[0]->AddToolTip(c.tip);
        TempDir dir;
        LogCapture capture;
        const RInstancesWrapper wrapper(c.type, records.All(), c.form);
        bool written = false;
        EXPECT_TRUE(MatchesGolden(std::string("wrapper/") + c.golden, WrittenBody(dir, wrapper, &written)));
        EXPECT_TRUE(written);
        EXPECT_EQ(1, FilesIn(dir.Path()));
        EXPECT_TRUE(!*c.warning || capture.Has(2, c.warning)) << capture.Dump();
    }
}

TEST(RInstancesWrapperTest, FiltersNumericSortKeysAndNothingToWrite)
{
    Records records;
    const char* const disks[][2] = {{"sda", "10"}, {"nvme0", "9"}, {"sdc", "+10"}};
    for (const auto& disk : disks) records.Add("Disk", "Disks", Disk(disk[0], disk[1]));
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

    // Nothing to write gives false: all filtered out, no records, no headers.
    RInstancesWrapper none("Disk", records.All(), RowForm({50, 50}, true));
    none.AddFilter("Name", "", false);
    bool written = true;
    EXPECT_EQ("", WrittenBody(dir, none, &written));
    EXPECT_FALSE(written);
    LogCapture capture;
    const RInstancesWrapper empty("Disk", std::vector<RInstance*>(), RowForm({100}, false));
    written = true;
    EXPECT_EQ("", WrittenBody(dir, empty, &written));
    EXPECT_FALSE(written);
    EXPECT_TRUE(capture.Has(2, "[repo] Data is empty for type: Disk"));
    Records bare;
    bare.Add("Bare", "Bare", {});
    const RInstancesWrapper headerless("Bare", bare.All(), RowForm({100}, false));
    EXPECT_EQ("", WrittenBody(dir, headerless, &written));
    EXPECT_TRUE(capture.Has(2, "[repo] Data header is empty for type: Bare"));
    EXPECT_THROW(RInstancesWrapper("Disk", bare.All(), RInstancesWrapper::WrapCallback()), boost::bad_function_call);

    records.Add("Disk", "Disks", Disk("text", "abc"));
    RInstancesWrapper broken("Disk", records.All(), RowForm({50, 50}, true));
    broken.AddSorter("Size", false);
    RInstancesHTMLWriter writer(dir.Path(), "broken", "Broken");
    EXPECT_THROW(broken.WriteReport(writer), boost::bad_lexical_cast);
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
        RInstance& record = records.Add(c.type, "Raw", {{c.key, "Raw Text", c.value, "raw"}});
        if (*c.filenameAttr) record.AddPropertyAttr(c.key, "filename", c.filenameAttr);
        record.AddProperty("Filename", "File", std::string(c.fileProperty), false);
        TempDir dir;
        LogCapture capture;
        const RInstancesWrapper wrapper(c.type, records.All(), RowForm({50, 50}, false));
        EXPECT_EQ(OneRowTable("Raw", {"Raw Text", "File"}, {c.cell, c.fileProperty}), WrittenBody(dir, wrapper));
        if (c.file) { EXPECT_EQ(c.value, dir.Read(c.file)); }
        EXPECT_EQ(c.file ? 2 : 1, FilesIn(dir.Path()));
        EXPECT_EQ(c.logged.empty() ? 0 : 1, capture.Count(", to write the value: ")) << capture.Dump();
        EXPECT_TRUE(c.logged.empty() || capture.Has(3, "[repo] " + c.logged)) << capture.Dump();
    }
}

TEST(RInstancesWrapperTest, ReferenceDataNestsOneIndentPerLevel)
{
    Records adapters;
    adapters.Add("PCIAdapter", "Adapters", {{"Name", "Name", "nic1", ""}}, 1);
    Records ports;
    for (int id : {7, 8})
        ports.Add("PCIPort", "Ports", {{"Port", "Port", "p" + std::to_string(id), ""}}, id).AddReference("PCIAdapter", 1);
    Records lanes;
    for (const char* name : {"l0", "l1"})
        lanes.Add("PCILane", "Lanes", {{"Lane", "Lane", name, ""}}).AddReference("PCIPort", 7);

    RInstancesWrapper portWrapper("PCIPort", ports.All(), RowForm({100}, false));
    portWrapper.AddReferenceData(RInstancesWrapper("PCILane", lanes.All(), RowForm({100}, false)));
    RInstancesWrapper wrapper("PCIAdapter", adapters.All(), RowForm({100}, false));
    wrapper.AddReferenceData(portWrapper);
    TempDir dir;
    LogCapture capture;
    EXPECT_TRUE(MatchesGolden("wrapper/reference_nesting.html", WrittenBody(dir, wrapper)));
    EXPECT_TRUE(capture.Has(2, "[repo] Data is empty for type: PCILane"));
}
