#include "repository/modules/rcfclogreader.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rrepository.h"
#include "repository/modules/rcfcredfish.h"
#include "xmodule/rlog.h"
#include "rest/jsonread.h"

namespace kestro {
namespace repository {

namespace {

struct DirectionName {
    const char* text;
    const char* word;
};

const DirectionName kDirections[] = {
    {"Assertion event", "Assert"},
    {"Deassertion event", "Deassert"},
};

// Fields that the BMC left out stay empty inside a highlight's brackets.
std::string BlankIfMissing(const std::string& field)
{
    return field == Rest::JSON_MISSING_TEXT ? std::string() : field;
}

}  // namespace

void RCFCLogReader::Enumerate(RRepository& repo, const std::string& startLine, Source source,
                              const std::string& sourceName, const RecordSink& sink)
{
    XModule::ConnectionInfo connection;
    if (!RCFCRedfish::FirstConnection(repo, startLine, connection)) return;
    RCFCRedfish::RunGuarded([&]() {
        XModule::LogmgrRedfishCFC reader(connection);
        reader.ReadLogsAhead();
        std::vector<XModule::SELREDFISHDATACFC> records;
        const int ret = (reader.*source)(records);
        if (ret != XModule::LogmgrRedfishCFC::Success) RLOG(2) << sourceName << " returns error = " << ret;
        for (const XModule::SELREDFISHDATACFC& record : records) sink(repo, record);
    });
}

void RCFCLogReader::AddHighlight(RRepository& repo, const std::string& severity, const std::string& opening,
                                 const std::string& first, const std::string& second, const std::string& text)
{
    if (severity != "Critical") return;
    RInstance highlight("ReportHighlights", "Report Highlights", -1);
    highlight.AddProperty("Message", "Message",
                          opening + "(" + BlankIfMissing(first) + " " + BlankIfMissing(second) + ") " + text);
    highlight.AddToRepository(repo);
}

std::string RCFCLogReader::DirectionWord(const std::string& direction)
{
    for (const DirectionName& name : kDirections)
        if (direction == name.text) return name.word;
    return "Unknown";
}

}  // namespace repository
}  // namespace kestro
