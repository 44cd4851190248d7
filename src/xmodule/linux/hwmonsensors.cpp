#include "xmodule/linux/hwmonsensors.h"

#include "kestro/xmodule/log.h"
#include "kestro/xmodule/unreadable.h"
#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/valueformat.h"

#include <boost/algorithm/string/trim.hpp>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstring>

namespace XModule {
namespace Linux {

namespace {

const char kHwmonClass[] = "/sys/class/hwmon";
const char kHwmonPrefix[] = "hwmon";
const char kFanKind[] = "fan";

struct FanReading {
    bool readable = false;
    long long rpm = 0;
    long long minimum = 0;
    bool fault = false;
    bool alarm = false;
    bool disabled = false;
};

struct FanRule {
    bool (*holds)(const FanReading&);
    const char* health;
};

const FanRule kFanRules[] = {
    {[](const FanReading& f) { return f.fault; }, "Failed"},
    {[](const FanReading& f) { return f.readable && f.rpm == 0 && (f.alarm || f.minimum > 0); }, "Failed"},
    {[](const FanReading& f) { return f.alarm; }, "Warning"},
    {[](const FanReading& f) { return f.readable && f.rpm < f.minimum; }, "Warning"},
    {[](const FanReading& f) { return f.readable; }, "OK"},
};

// The K of "<kind>K_<item>", when `attribute` has that shape.
bool ParseChannel(const std::string& attribute, const std::string& kind, const std::string& item, unsigned& channel)
{
    const std::string suffix = "_" + item;
    if (attribute.size() <= kind.size() + suffix.size() || attribute.compare(0, kind.size(), kind) != 0 ||
        attribute.compare(attribute.size() - suffix.size(), suffix.size(), suffix) != 0)
        return false;
    const char* first = attribute.data() + kind.size();
    const char* last = attribute.data() + attribute.size() - suffix.size();
    const auto result = std::from_chars(first, last, channel);
    return result.ec == std::errc() && result.ptr == last;
}

// "<kind><digits>_..." for any of `kinds`.
bool IsSensorAttribute(const std::string& attribute, const std::vector<std::string>& kinds)
{
    for (const std::string& kind : kinds) {
        if (attribute.compare(0, kind.size(), kind) != 0) continue;
        std::size_t end = kind.size();
        while (end < attribute.size() && std::isdigit(static_cast<unsigned char>(attribute[end]))) ++end;
        if (end > kind.size() && end < attribute.size() && attribute[end] == '_') return true;
    }
    return false;
}

std::string Attribute(const HwmonChip& chip, const std::string& name)
{
    const auto it = chip.attributes.find(name);
    return it == chip.attributes.end() ? std::string() : it->second;
}

bool IsSet(const HwmonChip& chip, const std::string& name) { return Attribute(chip, name) == "1"; }

FanReading ReadFanChannel(const HwmonChip& chip, const std::string& fan)
{
    FanReading reading;
    const std::string input = Attribute(chip, fan + "_input");
    reading.readable = ParseSysfsInteger(input, reading.rpm) && reading.rpm >= 0;
    if (!reading.readable && !input.empty())
        XLOG(XModule::LOG_WARN) << "[repo] " << chip.name << " " << fan << "_input holds no speed: \"" << input << "\"";
    ParseSysfsInteger(Attribute(chip, fan + "_min"), reading.minimum);
    reading.fault = IsSet(chip, fan + "_fault");
    reading.alarm = IsSet(chip, fan + "_alarm");
    reading.disabled = Attribute(chip, fan + "_enable") == "0";
    return reading;
}

bool IsEmptyHeader(const FanReading& f) { return f.readable && f.rpm == 0 && f.minimum <= 0 && !f.alarm && !f.fault; }

std::string FanHealth(const FanReading& reading)
{
    for (const FanRule& rule : kFanRules)
        if (rule.holds(reading)) return rule.health;
    return protocol::UNKNOWN_VALUE;
}

unsigned HwmonNumber(const std::string& id)
{
    unsigned number = 0;
    const char* last = id.data() + id.size();
    std::from_chars(id.data() + std::strlen(kHwmonPrefix), last, number);
    return number;
}

}  // namespace

bool ParseSysfsInteger(const std::string& text, long long& value)
{
    const char* last = text.data() + text.size();
    long long parsed = 0;
    const auto result = std::from_chars(text.data(), last, parsed);
    if (text.empty() || result.ec != std::errc() || result.ptr != last) return false;
    value = parsed;
    return true;
}

std::vector<protocol::FanInband> ParseHwmonFans(const HwmonChip& chip)
{
    std::vector<unsigned> channels;
    for (const auto& attribute : chip.attributes) {
        unsigned channel = 0;
        if (ParseChannel(attribute.first, kFanKind, "input", channel)) channels.push_back(channel);
    }
    std::sort(channels.begin(), channels.end());

    std::vector<protocol::FanInband> fans;
    for (unsigned channel : channels) {
        const std::string fan = kFanKind + std::to_string(channel);
        const FanReading reading = ReadFanChannel(chip, fan);
        if (reading.disabled || IsEmptyHeader(reading)) continue;
        protocol::FanInband record;
        const std::string label = TrimText(Attribute(chip, fan + "_label"));
        record.ElementName = label.empty() ? chip.name + " " + fan : label;
        record.HealthState = FanHealth(reading);
        if (reading.readable) record.DesiredSpeed = std::to_string(reading.rpm);
        fans.push_back(record);
    }
    return fans;
}

std::vector<HwmonChip> ListHwmonChips()
{
    std::vector<std::string> ids = HostFiles::List(kHwmonClass);
    if (ids.empty() && !HostFiles::Exists(kHwmonClass)) NoteUnreadable(kHwmonClass, "no hardware monitoring chips");
    const auto isNoChip = [](const std::string& id) {
        return id.compare(0, std::strlen(kHwmonPrefix), kHwmonPrefix) != 0;
    };
    ids.erase(std::remove_if(ids.begin(), ids.end(), isNoChip), ids.end());
    std::stable_sort(ids.begin(), ids.end(),
                     [](const std::string& a, const std::string& b) { return HwmonNumber(a) < HwmonNumber(b); });

    std::vector<HwmonChip> chips;
    for (const std::string& id : ids) {
        HwmonChip chip;
        chip.id = id;
        const std::string folder = std::string(kHwmonClass) + "/" + id;
        // Drivers before Linux 3.x kept name and sensors in the device's folder.
        chip.folder = HostFiles::Exists(folder + "/name") ? folder : folder + "/device";
        chip.name = TrimText(HostFiles::ReadTrimmed(chip.folder + "/name"));
        if (chip.name.empty()) chip.name = id;
        chip.device = HostFiles::ReadLinkName(folder + "/device");
        chips.push_back(chip);
    }
    return chips;
}

void ReadHwmonAttributes(HwmonChip& chip, const std::vector<std::string>& kinds)
{
    for (const std::string& attribute : HostFiles::List(chip.folder)) {
        if (!IsSensorAttribute(attribute, kinds)) continue;
        std::string why;
        std::string text;
        // A chip answers EIO or ENODATA for a channel it cannot measure; the channel stays, unknown.
        if (!HostFiles::Read(chip.folder + "/" + attribute, text, &why))
            XLOG(XModule::LOG_WARN) << "[repo] " << chip.folder << "/" << attribute << " cannot be read: " << why;
        chip.attributes[attribute] = boost::algorithm::trim_copy(text);
    }
}

void CollectFans(std::vector<protocol::FanInband>& fans)
{
    for (HwmonChip& chip : ListHwmonChips()) {
        ReadHwmonAttributes(chip, {kFanKind});
        const std::vector<protocol::FanInband> found = ParseHwmonFans(chip);
        fans.insert(fans.end(), found.begin(), found.end());
    }
}

}  // namespace Linux
}  // namespace XModule
