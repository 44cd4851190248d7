#ifndef KESTRO_XMODULE_LINUX_SELRECORD_H
#define KESTRO_XMODULE_LINUX_SELRECORD_H

#include <cstdint>
#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// Severities of a host's system event log entry, in the words of the CIM log records.
extern const char* const kSeverityInformational;
extern const char* const kSeverityMinor;
extern const char* const kSeverityMajor;
extern const char* const kSeverityCritical;
extern const char* const kSeverityFatal;

// One entry of the IPMI system event log, from its 16 raw bytes or from a line of ipmitool.
struct SelEvent {
    unsigned recordId = 0;
    std::string timestamp;   // "2026-03-04T10:42:13Z"; empty when the BMC had no clock yet
    std::string sensor;      // "Temperature #0x30"
    std::string event;       // "Upper Critical going high"
    bool asserted = true;
    std::string severity;    // one of the severities above
    std::string raw;         // the bytes in hex, or the line as read
};

const std::size_t kSelRecordSize = 16;

// Decodes a 16-byte SEL record. OEM records keep their bytes and are informational. False when
// `bytes` is not a whole record.
bool DecodeSelRecord(const std::vector<std::uint8_t>& bytes, SelEvent& event);

// The severity of an event given as text: the sensor-specific events this host knows by name,
// then the words of threshold and severity events; a deasserted event is informational.
std::string SeverityOfEventText(const std::string& event, bool asserted);

}  // namespace Linux
}  // namespace XModule

#endif
