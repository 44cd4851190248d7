#include "xmodule/linux/selrecord.h"

#include <boost/algorithm/string/predicate.hpp>
#include <boost/format.hpp>

#include <ctime>
#include <iterator>

namespace XModule {
namespace Linux {

const char* const kSeverityInformational = "informational";
const char* const kSeverityMinor = "minor";
const char* const kSeverityMajor = "major";
const char* const kSeverityCritical = "critical";
const char* const kSeverityFatal = "fatal/nonrecoverable";

namespace {

// Byte positions in a SEL record.
enum SelField {
    kRecordIdLow = 0,
    kRecordType = 2,
    kTimestamp = 3,
    kSensorType = 10,
    kSensorNumber = 11,
    kEventDirType = 12,
    kEventData1 = 13
};

const std::uint8_t kSystemEventRecord = 0x02;
const std::uint8_t kFirstOemTimestamped = 0xC0;
const std::uint8_t kFirstOemPlain = 0xE0;
const std::uint8_t kThresholdEventType = 0x01;
const std::uint8_t kSeverityEventType = 0x07;
const std::uint8_t kSensorSpecificEventType = 0x6F;
const std::uint8_t kDeassertionBit = 0x80;
const std::uint8_t kEventTypeMask = 0x7F;
const std::uint8_t kOffsetMask = 0x0F;
// Timestamps up to here count seconds since the BMC started, before it learnt the time.
const std::uint32_t kLastPreInitTimestamp = 0x20000000;
const std::uint32_t kUnspecifiedTimestamp = 0xFFFFFFFF;

struct SensorTypeName {
    std::uint8_t type;
    const char* name;
};

const SensorTypeName kSensorTypes[] = {
    {0x01, "Temperature"},        {0x02, "Voltage"},          {0x03, "Current"},
    {0x04, "Fan"},                {0x05, "Physical Security"}, {0x06, "Platform Security"},
    {0x07, "Processor"},          {0x08, "Power Supply"},     {0x09, "Power Unit"},
    {0x0C, "Memory"},             {0x0D, "Drive Slot"},       {0x0F, "System Firmware Progress"},
    {0x10, "Event Logging Disabled"}, {0x12, "System Event"}, {0x13, "Critical Interrupt"},
    {0x14, "Button"},             {0x1D, "System Boot Initiated"}, {0x1F, "OS Boot"},
    {0x20, "OS Critical Stop"},   {0x23, "Watchdog 2"},       {0x2B, "Version Change"},
};

// Sensor-specific events the severity of which is known. Each is rated by what it means for the
// server's work: a lost part or lost data is critical, a part about to fail or a lost redundancy
// major, a corrected fault minor. Events not listed are informational.
struct SensorEvent {
    std::uint8_t sensorType;
    std::uint8_t offset;
    const char* text;
    const char* severity;
};

const SensorEvent kSensorEvents[] = {
    {0x05, 0x00, "General Chassis intrusion", kSeverityMajor},
    {0x07, 0x00, "IERR", kSeverityCritical},
    {0x07, 0x01, "Thermal Trip", kSeverityFatal},
    {0x07, 0x02, "FRB1/BIST failure", kSeverityCritical},
    {0x07, 0x08, "Presence detected", kSeverityInformational},
    {0x07, 0x0A, "Throttled", kSeverityMinor},
    {0x07, 0x0B, "Uncorrectable machine check exception", kSeverityFatal},
    {0x08, 0x00, "Presence detected", kSeverityInformational},
    {0x08, 0x01, "Failure detected", kSeverityCritical},
    {0x08, 0x02, "Predictive failure", kSeverityMajor},
    {0x08, 0x03, "Power Supply AC lost", kSeverityMajor},
    {0x0C, 0x00, "Correctable ECC", kSeverityMinor},
    {0x0C, 0x01, "Uncorrectable ECC", kSeverityCritical},
    {0x0C, 0x03, "Memory Scrub Failed", kSeverityMajor},
    {0x0C, 0x05, "Correctable ECC logging limit reached", kSeverityMajor},
    {0x0D, 0x01, "Drive Fault", kSeverityCritical},
    {0x0D, 0x02, "Predictive Failure", kSeverityMajor},
    {0x0F, 0x00, "System Firmware Error", kSeverityCritical},
    {0x10, 0x02, "Log area reset/cleared", kSeverityInformational},
    {0x10, 0x04, "SEL full", kSeverityMinor},
    {0x13, 0x04, "PCI PERR", kSeverityCritical},
    {0x13, 0x05, "PCI SERR", kSeverityCritical},
    {0x13, 0x07, "Bus Correctable error", kSeverityMinor},
    {0x13, 0x08, "Bus Uncorrectable error", kSeverityCritical},
    {0x13, 0x0A, "Bus Fatal Error", kSeverityFatal},
    {0x20, 0x01, "Run-time critical stop", kSeverityFatal},
    {0x23, 0x01, "Hard reset", kSeverityMajor},
};

// Threshold events, by offset: three levels, each crossed going low or going high.
const char* const kThresholdEvents[] = {
    "Lower Non-critical going low",     "Lower Non-critical going high",
    "Lower Critical going low",         "Lower Critical going high",
    "Lower Non-recoverable going low",  "Lower Non-recoverable going high",
    "Upper Non-critical going low",     "Upper Non-critical going high",
    "Upper Critical going low",         "Upper Critical going high",
    "Upper Non-recoverable going low",  "Upper Non-recoverable going high",
};
const char* const kThresholdSeverities[] = {kSeverityMinor, kSeverityCritical, kSeverityFatal};

// The generic severity event type, by offset.
const SensorEvent kSeverityEvents[] = {
    {0, 0x00, "Transition to OK", kSeverityInformational},
    {0, 0x01, "Transition to Non-critical from OK", kSeverityMinor},
    {0, 0x02, "Transition to Critical from less severe", kSeverityCritical},
    {0, 0x03, "Transition to Non-recoverable from less severe", kSeverityFatal},
    {0, 0x04, "Transition to Non-critical from more severe", kSeverityMinor},
    {0, 0x05, "Transition to Critical from Non-recoverable", kSeverityCritical},
    {0, 0x06, "Transition to Non-recoverable", kSeverityFatal},
    {0, 0x07, "Monitor", kSeverityInformational},
    {0, 0x08, "Informational", kSeverityInformational},
};

// Words of an event text that is in no table, most severe first.
const SensorEvent kSeverityWords[] = {
    {0, 0, "non-recoverable", kSeverityFatal},
    {0, 0, "non-critical", kSeverityMinor},
    {0, 0, "critical", kSeverityCritical},
};

std::uint32_t LittleEndian(const std::vector<std::uint8_t>& bytes, std::size_t at, std::size_t count)
{
    std::uint32_t value = 0;
    for (std::size_t i = count; i-- > 0;) value = (value << 8) | bytes[at + i];
    return value;
}

std::string HexBytes(const std::vector<std::uint8_t>& bytes)
{
    std::string text;
    for (std::uint8_t byte : bytes) text += (text.empty() ? "" : " ") + (boost::format("%02x") % unsigned(byte)).str();
    return text;
}

std::string TimestampText(std::uint32_t seconds)
{
    if (seconds <= kLastPreInitTimestamp || seconds == kUnspecifiedTimestamp) return std::string();
    const std::time_t time = seconds;
    std::tm parts = {};
    gmtime_r(&time, &parts);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts);
    return text;
}

std::string SensorText(std::uint8_t type, std::uint8_t number)
{
    std::string name = (boost::format("Sensor type 0x%02x") % unsigned(type)).str();
    for (const SensorTypeName& known : kSensorTypes)
        if (known.type == type) name = known.name;
    return name + (boost::format(" #0x%02x") % unsigned(number)).str();
}

const SensorEvent* FindSensorEvent(std::uint8_t sensorType, std::uint8_t offset)
{
    for (const SensorEvent& known : kSensorEvents)
        if (known.sensorType == sensorType && known.offset == offset) return &known;
    return nullptr;
}

// Event text and severity of an asserted system event.
void DescribeEvent(std::uint8_t eventType, std::uint8_t sensorType, std::uint8_t offset, SelEvent& event)
{
    const std::size_t thresholdCount = sizeof kThresholdEvents / sizeof kThresholdEvents[0];
    const std::size_t severityCount = sizeof kSeverityEvents / sizeof kSeverityEvents[0];
    const SensorEvent* known = nullptr;
    if (eventType == kThresholdEventType && offset < thresholdCount) {
        event.event = kThresholdEvents[offset];
        event.severity = kThresholdSeverities[(offset / 2) % 3];
        return;
    }
    if (eventType == kSeverityEventType && offset < severityCount) known = &kSeverityEvents[offset];
    if (eventType == kSensorSpecificEventType) known = FindSensorEvent(sensorType, offset);
    event.event = known ? known->text : (boost::format("Event type 0x%02x offset 0x%02x") % unsigned(eventType) %
                                         unsigned(offset)).str();
    event.severity = known ? known->severity : kSeverityInformational;
}

void DescribeOemRecord(const std::vector<std::uint8_t>& bytes, std::uint8_t type, SelEvent& event)
{
    if (type >= kFirstOemTimestamped && type < kFirstOemPlain) event.timestamp = TimestampText(LittleEndian(bytes, kTimestamp, 4));
    event.sensor = (boost::format("OEM record 0x%02x") % unsigned(type)).str();
    event.event = "OEM data";
    event.severity = kSeverityInformational;
}

const SensorEvent* FindByText(const SensorEvent* begin, const SensorEvent* end, const std::string& text, bool whole)
{
    for (const SensorEvent* known = begin; known != end; ++known) {
        const bool found = whole ? boost::algorithm::iequals(text, known->text)
                                 : boost::algorithm::icontains(text, known->text);
        if (found) return known;
    }
    return nullptr;
}

}  // namespace

bool DecodeSelRecord(const std::vector<std::uint8_t>& bytes, SelEvent& event)
{
    if (bytes.size() != kSelRecordSize) return false;
    event = SelEvent();
    event.recordId = LittleEndian(bytes, kRecordIdLow, 2);
    event.raw = HexBytes(bytes);
    const std::uint8_t type = bytes[kRecordType];
    if (type != kSystemEventRecord) {
        DescribeOemRecord(bytes, type, event);
        return true;
    }
    event.timestamp = TimestampText(LittleEndian(bytes, kTimestamp, 4));
    event.sensor = SensorText(bytes[kSensorType], bytes[kSensorNumber]);
    event.asserted = (bytes[kEventDirType] & kDeassertionBit) == 0;
    DescribeEvent(bytes[kEventDirType] & kEventTypeMask, bytes[kSensorType], bytes[kEventData1] & kOffsetMask, event);
    if (!event.asserted) event.severity = kSeverityInformational;
    return true;
}

std::string SeverityOfEventText(const std::string& event, bool asserted)
{
    if (!asserted) return kSeverityInformational;
    const SensorEvent* known = FindByText(std::begin(kSensorEvents), std::end(kSensorEvents), event, true);
    if (!known) known = FindByText(std::begin(kSeverityEvents), std::end(kSeverityEvents), event, true);
    if (!known) known = FindByText(std::begin(kSeverityWords), std::end(kSeverityWords), event, false);
    return known ? known->severity : kSeverityInformational;
}

}  // namespace Linux
}  // namespace XModule
