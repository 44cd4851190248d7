#include "rreportsite.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rinstanceshtmlwriter.h"
#include "kestro/xmodule/kestrodirectory.h"
#include "xmodule/atomicfile.h"
#include "xmodule/rlog.h"
#include "rrepository_p.h"

#include <boost/filesystem/operations.hpp>

#include <cerrno>
#include <fstream>
#include <iterator>
#include <sstream>

namespace kestro {
namespace repository {

namespace fs = boost::filesystem;

namespace {

const char* const kDataFiles[] = {"repository.css", "sorttable.js", "tooltip.js", "orvena_logo.png", "banner_bg.png",
                                  "header_bg.png",  "i.gif",        "w.gif",      "e.gif"};

const char kTrue[] = "true";
const char kSkippedGroup[] = "uefi_hidden_log";

const char kPageHead[] =
    "<!DOCTYPE html>\n"
    "<html>\n"
    "<head>\n"
    "<meta http-equiv=\"content-type\" content=\"text/html; charset=utf-8\">\n"
    "<link rel=\"stylesheet\" type=\"text/css\" href=\"data/repository.css\" />\n"
    "</head>\n"
    "<body>\n";

bool AttributeIs(const std::map<std::string, std::string>& attributes, const char* name)
{
    const std::map<std::string, std::string>::const_iterator found = attributes.find(name);
    return found != attributes.end() && found->second == kTrue;
}

// Every line ends the way the rest of the report's pages do: one newline.
void Line(std::ostream& out, const std::string& text) { out << text << std::endl; }

// A page replaces the old one only when whole; `failure` names the page in the log line.
bool StorePage(const std::string& path, const std::string& content, const char* failure)
{
    boost::system::error_code error;
    if (XModule::AtomicFile::Write(path, content, error)) return true;
    RLOG(1) << failure << path << ": " << error.message();
    return false;
}

// Through a temporary file like the pages, so a data file is the old one or the whole new one.
void CopyDataFile(const fs::path& src, const fs::path& dest, boost::system::error_code& error)
{
    std::ifstream in(src.string().c_str(), std::ios::binary);
    if (!in) {
        error.assign(errno, boost::system::system_category());
        return;
    }
    const std::string content((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    XModule::AtomicFile::Write(dest.string(), content, error);
}

}  // namespace

RReportSite::RReportSite(RRepositoryPrivate& repository, const std::string& directory)
    : repository(repository), directory(directory), groupPagesStored(true)
{
}

RReportSite::~RReportSite() { FreeInstances(); }

void RReportSite::FreeInstances()
{
    for (RInstance* instance : toFree) delete instance;
    toFree.clear();
}

std::string RReportSite::PagePath(const std::string& file) const { return (fs::path(directory) / file).string(); }

bool RReportSite::Write()
{
    CopyData();
    if (!WriteIndex()) return false;
    if (!WriteHeader()) return false;
    return WriteNavigator();
}

void RReportSite::CopyData()
{
    const fs::path dest = fs::path(directory) / "data";
    boost::system::error_code error;
    if (fs::is_directory(dest, error)) return;
    fs::create_directory(dest, error);
    RLOG(4) << "create directory, the Error code is " << error.message();
    const fs::path src = fs::path(KestroDirectory::GetExePath("")) / "data";
    boost::system::error_code ignored;
    RLOG(4) << "the current_path is " << fs::current_path(ignored).string();
    RLOG(4) << "the src_path is " << src.string();
    RLOG(4) << "the dest_path is " << dest.string();
    for (const char* file : kDataFiles) CopyDataFile(src / file, dest / file, error);
    RLOG(4) << "boost::filesystem::copy_file, the error code is " << error;
}

std::string RReportSite::ContentPage()
{
    if (repository.inventoryCase == CaseSmm) return "smm_inventory.html";
    if (repository.connectMode == ConnectCmm) return "cmm_inventory.html";
    if (repository.store.Get("mode") == "cmm") return "cmm_inventory.html";
    return "system_overview.html";
}

bool RReportSite::WriteIndex()
{
    std::ostringstream out;
    Line(out, "<!DOCTYPE html>");
    Line(out, "<html>");
    Line(out, "<head>");
    Line(out, "<title>Orvena Quantrel Essentials  " + repository.productName + "</title>");
    Line(out, "</head>");
    Line(out, "<frameset rows=\"50,*\" frameborder=\"0\" framespacing=\"0\">");
    Line(out, "  <frame id=\"header_frame\" src=\"header.html\" marginwidth=\"0\" marginheight=\"0\">");
    Line(out, "  <frameset cols=\"200,*\" frameborder=\"0\" framespacing=\"0\">");
    Line(out, "    <frame name=\"navigator_frame\" src=\"navigator.html\">");
    Line(out, "    <frame name=\"content_frame\" src=\"" + ContentPage() + "\">");
    Line(out, "  </frameset>");
    Line(out, "  <noframes>");
    Line(out, "    <body>");
    Line(out, "    <p>Your browser does not support frames. Frame support is needed on this page.</p>");
    Line(out, "    </body>");
    Line(out, "  </noframes>");
    Line(out, "</frameset>");
    Line(out, "</html>");
    return StorePage(PagePath("index.html"), out.str(), "Failed to write index page: ");
}

bool RReportSite::WriteHeader()
{
    std::ostringstream out;
    out << kPageHead;
    Line(out, "<table id=\"header\"><tr>");
    Line(out, "<td class=\"title\">Orvena Quantrel Essentials  " + repository.productName + "</td>");
    Line(out, "<td class=\"logo\"><img src=\"data/orvena_logo.png\"/></td>");
    Line(out, "</tr></table>");
    Line(out, "</body>");
    Line(out, "</html>");
    return StorePage(PagePath("header.html"), out.str(), "Failed to write header page: ");
}

bool RReportSite::WriteNavigator()
{
    std::ostringstream out;
    out << kPageHead;
    Line(out, "<table id=\"navigator\">");
    for (const ReportCategory& category : repository.category->GetCategories()) {
        Line(out, "<tr><th>" + category.display + "</th></tr>");
        for (const ReportGroup& group : category.groups) {
            if (group.display.empty() || group.name == kSkippedGroup) continue;
            RLOG(3) << "Begin to write HTML for group " << group.name;
            const bool written = WriteGroupPage(group);
            const bool hidden = AttributeIs(group.attributes, "IsHidden");
            if (written && !hidden)
                Line(out, "<tr><td><a href=\"" + group.name + ".html\" target=\"content_frame\">" + group.display +
                              "</a></td></tr>");
            else if (!written && !hidden && !AttributeIs(group.attributes, "legacy"))
                Line(out, "<tr><td>" + group.display + "</td></tr>");
        }
    }
    Line(out, "</table>");
    Line(out, "</body>");
    Line(out, "</html>");
    // Stored after the group pages, so its links never point at a page that is not there yet.
    return StorePage(PagePath("navigator.html"), out.str(), "Failed to write navigator page: ") && groupPagesStored;
}

bool RReportSite::WriteGroupPage(const ReportGroup& group)
{
    RInstancesHTMLWriter writer(directory, group.name, group.display);
    bool written = false;
    for (const ReportType& type : group.types)
        if (WriteType(type, writer)) written = true;
    if (!writer.Close()) groupPagesStored = false;
    return written;
}

RInstancesWrapper::WrapCallback RReportSite::FindWrapCallback(const std::string& type)
{
    for (const boost::shared_ptr<RModule>& module : repository.modules) {
        const RInstancesWrapper::WrapCallback callback = module->FindWrapCallback(type);
        if (!callback.empty()) return callback;
    }
    return RInstancesWrapper::WrapCallback();
}

void RReportSite::AttachReferenceData(RInstancesWrapper& wrapper)
{
    for (const std::string& name : wrapper.GetReferenceTypes()) {
        const RInstancesWrapper::WrapCallback callback = FindWrapCallback(name);
        if (callback.empty()) {
            RLOG(2) << "Cannot find type name to build wrapper: " << name;
            continue;
        }
        const std::vector<RInstance*> instances = repository.Instances(name);
        toFree.insert(toFree.end(), instances.begin(), instances.end());
        RInstancesWrapper reference(name, instances, callback);
        AttachReferenceData(reference);
        wrapper.AddReferenceData(reference);
    }
}

bool RReportSite::WriteType(const ReportType& type, RInstancesWriter& writer)
{
    const RInstancesWrapper::WrapCallback callback = FindWrapCallback(type.name);
    if (callback.empty()) {
        RLOG(2) << "Cannot find type name to build wrapper: " << type.name;
        return false;
    }
    // A type's records, and those of the types under it, live only while the type is written.
    const bool written = WriteWrapper(type, callback, writer);
    FreeInstances();
    return written;
}

bool RReportSite::WriteWrapper(const ReportType& type, const RInstancesWrapper::WrapCallback& callback,
                               RInstancesWriter& writer)
{
    const std::vector<RInstance*> instances = repository.Instances(type.name);
    toFree.insert(toFree.end(), instances.begin(), instances.end());
    RInstancesWrapper wrapper(type.name, instances, callback);
    for (const ReportFilter& filter : type.filters) wrapper.AddFilter(filter.key, filter.value, true);
    AttachReferenceData(wrapper);
    RLOG(4) << "WriteReport: " << type.name;
    // Records with a parent show only under their parents' rows.
    if (!instances.empty() && instances.front()->HasReferenceTag()) return false;
    return wrapper.WriteReport(writer);
}

}  // namespace repository
}  // namespace kestro
