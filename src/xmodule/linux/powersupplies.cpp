#include "xmodule/linux/powersupplies.h"

#include "kestro/xmodule/log.h"
#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/valueformat.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <limits>
#include <set>

namespace XModule {
namespace Linux {

namespace {

const char kPowerSupplyClass[] = "/sys/class/power_supply";
const char kHealthOk[] = "OK";
const char kHealthWarning[] = "Warning";
const char kHealthFailed[] = "Failed";

// Names PMBus supply drivers give their chips: the generic driver and the supply makers' parts.
const char* const kSupplyChipPrefixes[] = {"pmbus", "dps",    "crps",   "ibm_cffps", "ibm-cffps", "ipsps",
                                           "pfe",   "fsg032", "ym2151", "yh5151",    "psu"};

// Sensor kinds whose alarms speak for a supply's health.
const std::vector<std::string> kSupplySensorKinds = {"power", "in", "curr", "temp", "fan"};

struct AlarmRule {
    const char* suffix;
    const char* health;
};

// The first suffix that ends a set attribute's name decides.
const AlarmRule kAlarmRules[] = {
    {"_lcrit_alarm", kHealthFailed},
    {"_crit_alarm", kHealthFailed},
    {"_fault", kHealthFailed},
    {"_alarm", kHealthWarning},
};

const std::pair<const char*, const char*> kHealthTexts[] = {
    {"Good", kHealthOk},
    {"Dead", kHealthFailed},
    {"Unspecified failure", kHealthFailed},
    {"Overheat", kHealthWarning},
    {"Over voltage", kHealthWarning},
    {"Over current", kHealthWarning},
    {"Hot", kHealthWarning},
    {"Cold", kHealthWarning},
    {"Watchdog timer expire", kHealthWarning},
    {"Safety timer expire", kHealthWarning},
    {"Calibration required", kHealthWarning},
};

int Severity(const std::string& health)
{
    const char* const order[] = {kHealthOk, kHealthWarning, kHealthFailed};
    for (std::size_t i = 0; i < std::size(order); ++i)
        if (health == order[i]) return static_cast<int>(i) + 1;
    return 0;
}

std::string Worse(const std::string& a, const std::string& b) { return Severity(b) > Severity(a) ? b : a; }

bool EndsWith(const std::string& text, const char* suffix)
{
    const std::size_t length = std::strlen(suffix);
    return text.size() >= length && text.compare(text.size() - length, length, suffix) == 0;
}

std::string FormatWatts(long long microwatts)
{
    char text[32];
    if (microwatts % 1000000 == 0)
        std::snprintf(text, sizeof text, "%lld", microwatts / 1000000);
    else
        std::snprintf(text, sizeof text, "%.1f", static_cast<double>(microwatts) / 1e6);
    return text;
}

std::string Find(const std::map<std::string, std::string>& attributes, const std::string& name)
{
    const auto it = attributes.find(name);
    return it == attributes.end() ? std::string() : it->second;
}

// "" when the attribute is no alarm or its text says nothing.
std::string AlarmHealth(const std::string& attribute, const std::string& value)
{
    if (value != "0" && value != "1") return std::string();
    for (const AlarmRule& rule : kAlarmRules)
        if (EndsWith(attribute, rule.suffix)) return value == "1" ? rule.health : kHealthOk;
    return std::string();
}

// The "pout" channels' sum in µW; false when the chip names none that reads.
bool SumOutputPower(const HwmonChip& chip, long long& total)
{
    bool any = false;
    total = 0;
    for (const auto& attribute : chip.attributes) {
        const std::string& name = attribute.first;
        if (name.compare(0, 5, "power") != 0 || !EndsWith(name, "_label") ||
            attribute.second.compare(0, 4, "pout") != 0)
            continue;
        const std::string channel = name.substr(0, name.size() - std::strlen("_label"));
        long long microwatts = 0;
        if (!ParseSysfsInteger(Find(chip.attributes, channel + "_input"), microwatts) || microwatts < 0 ||
            microwatts > std::numeric_limits<long long>::max() - total)
            continue;
        total += microwatts;
        any = true;
    }
    return any;
}

std::map<std::string, std::string> ReadPowerSupplyAttributes(const std::string& entry)
{
    const std::string folder = std::string(kPowerSupplyClass) + "/" + entry;
    std::map<std::string, std::string> attributes;
    for (const char* name : {"type", "present", "online", "health", "model_name", "power_now"}) {
        const std::string text = HostFiles::ReadTrimmed(folder + "/" + name);
        if (!text.empty()) attributes[name] = text;
    }
    return attributes;
}

void CollectPowerSupplyClass(std::vector<protocol::PowerInband>& supplies, std::set<std::string>& entries)
{
    for (const std::string& entry : HostFiles::List(kPowerSupplyClass)) {
        entries.insert(entry);
        const std::map<std::string, std::string> attributes = ReadPowerSupplyAttributes(entry);
        if (IsInstalledMainsSupply(attributes)) supplies.push_back(ParsePowerSupplyClass(entry, attributes));
    }
}

void CollectHwmonSupplies(std::vector<protocol::PowerInband>& supplies, const std::set<std::string>& entries)
{
    for (HwmonChip& chip : ListHwmonChips()) {
        // A power_supply entry registers a hwmon chip of its own; that supply is listed already.
        if (!IsPowerSupplyChip(chip.name) || entries.count(chip.device)) continue;
        ReadHwmonAttributes(chip, kSupplySensorKinds);
        supplies.push_back(ParseHwmonPowerSupply(chip));
    }
}

}  // namespace

bool IsPowerSupplyChip(const std::string& chipName)
{
    return std::any_of(std::begin(kSupplyChipPrefixes), std::end(kSupplyChipPrefixes), [&chipName](const char* prefix) {
        return chipName.compare(0, std::strlen(prefix), prefix) == 0;
    });
}

protocol::PowerInband ParseHwmonPowerSupply(const HwmonChip& chip)
{
    protocol::PowerInband supply;
    supply.ElementName = chip.name + " (" + (chip.device.empty() ? chip.id : chip.device) + ")";
    long long microwatts = 0;
    const bool powered = SumOutputPower(chip, microwatts);
    if (powered) supply.TotalOutputPower = FormatWatts(microwatts);
    std::string health = powered ? kHealthOk : "";
    for (const auto& attribute : chip.attributes)
        health = Worse(health, AlarmHealth(attribute.first, attribute.second));
    if (!health.empty()) supply.HealthState = health;
    return supply;
}

bool IsInstalledMainsSupply(const std::map<std::string, std::string>& attributes)
{
    return Find(attributes, "type") == "Mains" && Find(attributes, "present") != "0";
}

protocol::PowerInband ParsePowerSupplyClass(const std::string& entry,
                                            const std::map<std::string, std::string>& attributes)
{
    protocol::PowerInband supply;
    const std::string model = TrimText(Find(attributes, "model_name"));
    supply.ElementName = model.empty() ? entry : model + " (" + entry + ")";

    long long microwatts = 0;
    const std::string power = Find(attributes, "power_now");
    if (ParseSysfsInteger(power, microwatts) && microwatts >= 0)
        supply.TotalOutputPower = FormatWatts(microwatts);
    else if (!power.empty())
        XLOG(XModule::LOG_WARN) << "[repo] Power supply " << entry << " gives no power: \"" << power << "\"";

    std::string health;
    const std::string state = Find(attributes, "health");
    for (const auto& known : kHealthTexts)
        if (state == known.first) health = known.second;
    const std::string online = Find(attributes, "online");
    if (online == "1" || online == "0") health = Worse(health, online == "1" ? kHealthOk : kHealthWarning);
    if (!health.empty()) supply.HealthState = health;
    return supply;
}

void CollectPowerSupplies(std::vector<protocol::PowerInband>& supplies)
{
    std::set<std::string> entries;
    CollectPowerSupplyClass(supplies, entries);
    CollectHwmonSupplies(supplies, entries);
}

}  // namespace Linux
}  // namespace XModule
