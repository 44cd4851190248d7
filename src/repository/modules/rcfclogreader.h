#ifndef KESTRO_REPOSITORY_MODULES_RCFCLOGREADER_H
#define KESTRO_REPOSITORY_MODULES_RCFCLOGREADER_H

#include "xmodule/bmc/logmgrredfishcfc.h"

#include <boost/function.hpp>

#include <string>
#include <vector>

namespace kestro {
namespace repository {

class RRepository;

// What the two CFC log modules share: one read of a BMC log per type, and the highlights that
// critical records add to the report.
class RCFCLogReader {
public:
    typedef int (XModule::LogmgrRedfishCFC::*Source)(std::vector<XModule::SELREDFISHDATACFC>& records);
    typedef boost::function<void(RRepository& repo, const XModule::SELREDFISHDATACFC& record)> RecordSink;

    // Logs `startLine`, reads the log through `source` on the first REST connection and hands
    // each record to `sink`; a source's error code is logged and its records are used all the same.
    static void Enumerate(RRepository& repo, const std::string& startLine, Source source,
                          const std::string& sourceName, const RecordSink& sink);
    // A ReportHighlights record "<opening>(<first> <second>) <text>" when `severity` is "Critical".
    static void AddHighlight(RRepository& repo, const std::string& severity, const std::string& opening,
                             const std::string& first, const std::string& second, const std::string& text);
    // "Assertion event" gives "Assert", "Deassertion event" "Deassert", anything else "Unknown".
    static std::string DirectionWord(const std::string& direction);
};

}  // namespace repository
}  // namespace kestro

#endif
