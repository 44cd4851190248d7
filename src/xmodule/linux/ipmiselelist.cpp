#include "xmodule/linux/ipmiselelist.h"

#include "kestro/xmodule/log.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/algorithm/string/trim.hpp>

#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace XModule {
namespace Linux {

namespace {

enum ElistColumn { kId, kDate, kTime, kSensor, kEvent, kDirection, kColumnCount };

const char kAsserted[] = "Asserted";
const char kDeasserted[] = "Deasserted";

// "03/04/2026" and "10:42:13" as "2026-03-04T10:42:13"; ipmitool prints the host's local time.
std::string TimestampOf(const std::string& date, const std::string& time)
{
    unsigned month = 0, day = 0, year = 0, hour = 0, minute = 0, second = 0;
    if (std::sscanf(date.c_str(), "%2u/%2u/%4u", &month, &day, &year) != 3) return std::string();
    if (std::sscanf(time.c_str(), "%2u:%2u:%2u", &hour, &minute, &second) != 3) return std::string();
    char text[32];
    std::snprintf(text, sizeof text, "%04u-%02u-%02uT%02u:%02u:%02u", year, month, day, hour, minute, second);
    return text;
}

bool ParseRecordId(const std::string& text, unsigned& id)
{
    char* end = nullptr;
    const unsigned long value = std::strtoul(text.c_str(), &end, 16);
    if (text.empty() || *end != '\0' || value > 0xFFFF) return false;
    id = static_cast<unsigned>(value);
    return true;
}

bool ParseLine(const std::string& line, SelEvent& event)
{
    std::vector<std::string> fields;
    boost::algorithm::split(fields, line, boost::algorithm::is_any_of("|"));
    if (fields.size() < kColumnCount) return false;
    for (std::string& field : fields) boost::algorithm::trim(field);
    if (!ParseRecordId(fields[kId], event.recordId)) return false;
    if (fields[kDirection] != kAsserted && fields[kDirection] != kDeasserted) return false;
    event.timestamp = TimestampOf(fields[kDate], fields[kTime]);
    event.sensor = fields[kSensor];
    event.event = fields[kEvent];
    event.asserted = fields[kDirection] == kAsserted;
    event.severity = SeverityOfEventText(event.event, event.asserted);
    event.raw = line;
    return true;
}

}  // namespace

std::vector<SelEvent> ParseSelElist(const std::string& text)
{
    std::vector<SelEvent> events;
    std::istringstream lines(text);
    std::string line;
    while (std::getline(lines, line)) {
        if (boost::algorithm::trim_copy(line).empty()) continue;
        SelEvent event;
        if (ParseLine(line, event))
            events.push_back(event);
        else
            XLOG(LOG_WARN) << "[repo] Skipped a line of ipmitool's event list that is no entry: " << line;
    }
    return events;
}

}  // namespace Linux
}  // namespace XModule
