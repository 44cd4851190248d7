#ifndef KESTRO_XMODULE_LINUX_VALUEFORMAT_H
#define KESTRO_XMODULE_LINUX_VALUEFORMAT_H

#include <cstdint>
#include <ctime>
#include <string>

// How every local reader writes its values, so that one fact reads alike in every type and two
// runs of an unchanged host compare equal:
// - sizes in binary units, "512 B", "16 GiB", "476.9 GiB": a whole number when exact, else one decimal;
// - frequencies as a bare number of MHz ("2400"), as the displays name the unit;
// - dates as ISO 8601 ("2024-03-01"), times with a "T" and seconds;
// - identifiers of buses and devices as four lower-case hex digits ("8086"), as lspci and lsusb;
// - yes/no facts as "Yes" and "No"; an unknown fact as "N/A".
namespace XModule {
namespace Linux {

std::string FormatBytes(std::uint64_t bytes);
std::string FormatMegahertz(std::uint64_t megahertz);
std::string FormatDate(int year, int month, int day);
// A moment in the program's local time, "2026-11-25T03:49:00"; "N/A" when the calendar cannot hold it.
std::string FormatDateTime(std::time_t when);
// The same moment in UTC, marked so: "2026-11-25T02:49:00Z".
std::string FormatUtcDateTime(std::time_t when);
std::string FormatHexId(unsigned id);
std::string FormatYesNo(bool yes);
// Blanks at both ends and runs of blanks inside go; firmware pads its strings with them.
std::string TrimText(const std::string& text);
// The text itself, or "N/A" when it is empty after trimming.
std::string TextOrUnknown(const std::string& text);
// A whole decimal number, blanks around it allowed ("2400000\n" from sysfs); false for anything else.
bool ParseDecimal(const std::string& text, std::uint64_t& value);

}  // namespace Linux
}  // namespace XModule

#endif
