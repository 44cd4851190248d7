#include "kestro/repository/rinstanceshtmlwriter.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rrepository.h"
#include "kestro/xmodule/globalconfig.h"
#include "rbbcoderenderer.h"
#include "xmodule/atomicfile.h"
#include "xmodule/rlog.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/archive/iterators/dataflow_exception.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/filesystem/operations.hpp>
#include <boost/system/error_code.hpp>

#include <fstream>
#include <iterator>
#include <ostream>

namespace kestro {
namespace repository {

namespace {

const char kSeparator = '/';
const char kEventLogMaxItem[] = "KESTRO_EVENTLOG_MAX";
const char kDefaultEventCount[] = "512";
const char kFirmwareFolder[] = "Firmware";
const char kQuestionMarkButton[] =
    "<button class=\"questionmark\" onclick=\"show(this)\" onmouseout=\"hide(this)\">?</button>";
const char kPreOpen[] = "\n<pre>\n";
const char kPreClose[] = "\n</pre>\n";

// Event pages show a part of the log; each links to its pair with the other count.
struct EventPagePair {
    const char* page;
    const char* pair;
};

const EventPagePair kEventPages[] = {
    {"application_event", "application_event_all"},
    {"application_event_all", "application_event"},
    {"system_event", "system_event_all"},
    {"system_event_all", "system_event"},
    {"security_event", "security_event_all"},
    {"security_event_all", "security_event"},
};

const char* FindEventPair(const std::string& page)
{
    for (size_t i = 0; i < sizeof kEventPages / sizeof kEventPages[0]; ++i)
        if (page == kEventPages[i].page) return kEventPages[i].pair;
    return nullptr;
}

// The link to the full page offers the configured count, the way back offers the default.
std::string EventCountShownBy(const std::string& pair)
{
    if (pair.find("all") == std::string::npos) return kDefaultEventCount;
    std::string configured;
    XModule::GlobalConfig::GetConfigItem(kEventLogMaxItem, configured);
    return configured;
}

void WritePageTitle(std::ostream& out, const std::string& page, const std::string& title)
{
    const char* pair = FindEventPair(page);
    if (!pair) {
        out << "<div class=\"pagetitle\">" << title << "</div>" << std::endl;
        return;
    }
    // The href stands unquoted and the link text starts with a blank: the site's pages look so.
    out << "<div class=\"pagetitle\">" << title << "<span style=\"font-size:18px;\"><a class=\"cyan\" href=" << pair
        << ".html target=\"content_frame\"> [Show " << EventCountShownBy(pair) << " Events]</a></span>"
        << kQuestionMarkButton << std::endl
        << "<div class=\"tooltip\">Default show 512 events,and you can config event number in "
           "\"global.config\" file if you want to see more.</div></div>"
        << std::endl;
}

std::string Link(const std::string& target, const std::string& text)
{
    return "<a href='" + target + "' target='_blank'>" + text + "</a>";
}

std::string Preformatted(const std::string& text)
{
    return kPreOpen + text + kPreClose;
}

bool IsRegularFile(const std::string& path)
{
    boost::system::error_code error;
    return boost::filesystem::is_regular_file(path, error);
}

// The file's bytes; `found` tells whether it could be opened.
std::string ReadWhole(const std::string& path, bool& found)
{
    std::ifstream file(path.c_str(), std::ios::binary);
    found = file.is_open();
    return std::string((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
}

void WriteCells(std::ostream& out, const std::vector<std::string>& cells, const std::string& cellStart)
{
    for (size_t i = 0; i < cells.size(); ++i) out << cellStart << cells[i] << "</td>" << std::endl;
}

void WriteTableStart(std::ostream& out, const std::string& width, bool rowTable, bool sortable)
{
    out << "<table width=\"" << width << "\" class=\"" << (rowTable ? "rowtable" : "coltable")
        << (sortable ? " sortable" : "") << "\">" << std::endl;
}

}  // namespace

RInstancesHTMLWriter::RInstancesHTMLWriter(const std::string& directory, const std::string& name,
                                           const std::string& title)
    : rowIndex(0), directory(directory), pagePath(directory + kSeparator + name + ".html"), closed(false), stored(true)
{
    stream << "<!DOCTYPE html>" << std::endl
           << "<html>" << std::endl
           << "<head>" << std::endl
           << "<meta http-equiv=\"content-type\" content=\"text/html; charset=utf-8\">" << std::endl
           << "<link rel=\"stylesheet\" type=\"text/css\" href=\"data/repository.css\" />" << std::endl
           << "<script type=\"text/javascript\" src=\"data/sorttable.js\"></script>" << std::endl
           << "<script type=\"text/javascript\" src=\"data/tooltip.js\"></script>" << std::endl
           << "<title>" << title << "</title>" << std::endl
           << "</head>" << std::endl
           << std::endl
           << "<body>" << std::endl
           << "<div class=\"pagecontent\">" << std::endl;

    WritePageTitle(stream, name, title);
}

RInstancesHTMLWriter::~RInstancesHTMLWriter() { Close(); }

bool RInstancesHTMLWriter::Close()
{
    if (closed) return stored;
    closed = true;
    stream << "<br/><br/>" << std::endl << "</div>" << std::endl << "</body>" << std::endl << "</html>" << std::endl;
    Store(pagePath, stream.str());
    return stored;
}

void RInstancesHTMLWriter::Store(const std::string& path, const std::string& content)
{
    boost::system::error_code error;
    if (XModule::AtomicFile::Write(path, content, error)) return;
    RLOG(1) << "Failed to write report file: " << path << ": " << error.message();
    stored = false;
}

void RInstancesHTMLWriter::WriteTableTitle(const std::string& title)
{
    stream << "<div class=\"tabletitle\">" << title << "</div>" << std::endl;
}

void RInstancesHTMLWriter::WriteToolTip(const std::string& title, const std::string& tip, bool hasTip)
{
    if (!hasTip) return;
    stream << kQuestionMarkButton << std::endl << "<div class=\"tooltip\">" << tip << "</div>" << std::endl;
}

void RInstancesHTMLWriter::BeginTable(bool rowTable, bool sortable)
{
    rowIndex = 0;
    WriteTableStart(stream, "100%", rowTable, sortable);
}

void RInstancesHTMLWriter::BeginTableWithWidth(bool rowTable, bool sortable, unsigned widthPercent)
{
    rowIndex = 0;
    WriteTableStart(stream, std::to_string(widthPercent) + "%", rowTable, sortable);
}

void RInstancesHTMLWriter::WriteColumnHeaderRow(const std::vector<std::string>& headings,
                                                std::vector<unsigned> percents)
{
    // The wrapper passes one width per heading; a short list gets zero widths, not a crash.
    percents.resize(headings.size(), 0);
    stream << "<tr>" << std::endl;
    for (size_t i = 0; i < headings.size(); ++i)
        stream << "<th width=\"" << percents[i] << "%\">" << headings[i] << "</th>" << std::endl;
    stream << "</tr>" << std::endl;
}

void RInstancesHTMLWriter::WriteDataRow(const std::vector<std::string>& cells)
{
    stream << "<tr class=\"bg" << (rowIndex & 1) << "\">" << std::endl;
    WriteCells(stream, cells, "<td>");
    stream << "</tr>" << std::endl;
    ++rowIndex;
}

void RInstancesHTMLWriter::WriteHeadedRow(const std::string& heading, unsigned headingPercent,
                                          const std::vector<std::string>& cells)
{
    stream << "<tr class=\"bg" << (rowIndex & 1) << "\">" << std::endl
           << "<th width=\"" << headingPercent << "%\">" << heading << "</th>" << std::endl;
    WriteCells(stream, cells, "<td>");
    stream << "</tr>" << std::endl;
    ++rowIndex;
}

void RInstancesHTMLWriter::WriteHeadedRowWithWidths(const std::string& heading, unsigned headingPercent,
                                                    const std::vector<std::string>& cells, unsigned cellPercent)
{
    stream << "<tr class=\"bg" << (rowIndex & 1) << "\">" << std::endl
           << "<th width=\"" << headingPercent << "%\">" << heading << "</th>" << std::endl;
    WriteCells(stream, cells, "<td width=\"" + std::to_string(cellPercent) + "%\">");
    stream << "</tr>" << std::endl;
    ++rowIndex;
}

void RInstancesHTMLWriter::EndTable()
{
    stream << "</table>" << std::endl;
}

void RInstancesHTMLWriter::BeginIndent()
{
    stream << "<div class=\"indentmargin\">" << std::endl;
}

void RInstancesHTMLWriter::EndIndent()
{
    stream << "</div>" << std::endl;
}

std::string RInstancesHTMLWriter::GetCellValue(const RInstance& instance, const std::string& key, bool raw)
{
    try {
        return instance.GetNormalizedValue(key, raw ? "\n" : "<br/>\n");
    } catch (const boost::archive::iterators::dataflow_exception& error) {
        // A file from elsewhere may carry the encoding marker before text that is no base64: the
        // cell shows what is stored, and the rest of the site is still written.
        std::string stored;
        instance.GetPropertyValue(key, stored);
        RLOG(2) << "Value of " << key << " cannot be decoded (" << error.what() << "); shown as stored";
        return stored;
    }
}

std::string RInstancesHTMLWriter::GetRawDataFileName(const RInstance& instance)
{
    std::string fileName;
    instance.GetPropertyValue("Filename", fileName);
    return fileName;
}

std::string RInstancesHTMLWriter::FormatComparedValue(const std::string& value)
{
    const std::string::size_type sep = value.find(RRepository::COMPARE_SEP);
    if (sep == std::string::npos) return value;
    return "<span class=\"old\">old:</span>" + value.substr(0, sep) + "<br/>\n" + "<span class=\"new\">new:</span>" +
           value.substr(sep + RRepository::COMPARE_SEP.size()) + "<br/>\n";
}

std::string RInstancesHTMLWriter::FormatBBCode(const std::string& value)
{
    return RBBCodeRenderer::Render(value);
}

std::string RInstancesHTMLWriter::FormatPreformatted(const std::string& value)
{
    return value.empty() ? std::string() : Preformatted(value);
}

std::string RInstancesHTMLWriter::WriteRawDataFile(const std::string& content, const std::string& fileName)
{
    if (fileName.find(".txt") != std::string::npos) {
        Store(directory + kSeparator + fileName, content);
        return Preformatted(Link(fileName, fileName));
    }
    // Anything else names files that are already there, separated by commas.
    std::vector<std::string> pieces;
    boost::algorithm::split(pieces, fileName, boost::algorithm::is_any_of(","));
    std::string links;
    for (size_t i = 0; i < pieces.size(); ++i) {
        if (i > 0) links += "<br/>";
        links += IsRegularFile(directory + kSeparator + pieces[i]) ? Link(pieces[i], pieces[i]) : pieces[i];
    }
    return Preformatted(links);
}

std::string RInstancesHTMLWriter::ParseNetworkRawData(const std::string& content, const std::string& fileName)
{
    const std::string path = directory + kSeparator + fileName;
    RLOG(3) << "Calling RInstancesHTMLWriter::ParseNetworkRawData:";
    RLOG(3) << "NetworkRawData fullpath is:" << path;
    // Rows share one file: only the row that starts it shows the link.
    bool found = false;
    const std::string earlier = ReadWhole(path, found);
    Store(path, earlier + content);
    return found ? std::string() : Link(fileName, fileName);
}

std::string RInstancesHTMLWriter::ParsePMCInfoRawData(const std::string& content, const std::string& fileName)
{
    RLOG(3) << "Calling RInstancesHTMLWriter::ParsePMCInfoRawData:";
    const std::string folder = directory + kSeparator + kFirmwareFolder;
    boost::system::error_code error;
    if (!boost::filesystem::is_directory(folder, error)) {
        boost::filesystem::create_directory(folder, error);
        if (error) RLOG(1) << "Failed to create pmcinfo dir, error info:  " << error.message();
    }
    const std::string path = folder + kSeparator + fileName;
    RLOG(3) << "PMCINFORawData fullpath is:" << path;
    Store(path, content);
    return Preformatted(Link(std::string("./") + kFirmwareFolder + kSeparator + fileName, fileName));
}

}  // namespace repository
}  // namespace kestro
