#include "xmodule/linux/systemdbus.h"

#include "xmodule/linux/hostfilestat.h"
#include "xmodule/linux/valueformat.h"

#ifdef KESTRO_HAVE_SYSTEMD
#include "kestro/xmodule/log.h"
#include "kestro/xmodule/unreadable.h"

#include <boost/algorithm/string/predicate.hpp>
#include <boost/filesystem/path.hpp>

#include <cstring>
#include <systemd/sd-bus.h>
#endif

namespace XModule {
namespace Linux {

namespace {
protocol::SystemServiceInfo ServiceOf(const std::string& name, const BusUnit& unit)
{
    protocol::SystemServiceInfo service;
    service.Name = name;
    service.Description = TextOrUnknown(unit.description);
    service.State = TextOrUnknown(unit.state);
    service.Startup = TextOrUnknown(unit.startup);
    service.Path = TextOrUnknown(unit.path);
    if (unit.path.empty()) return service;
    const HostFileStat file = StatHostFile(unit.path);
    service.InstallDate = file.ModifiedText();
    service.FileSize = file.SizeText();
    return service;
}
}  // namespace

#ifdef KESTRO_HAVE_SYSTEMD
namespace {

const char kSystemd[] = "org.freedesktop.systemd1";
const char kManagerObject[] = "/org/freedesktop/systemd1";
const char kManager[] = "org.freedesktop.systemd1.Manager";
const std::uint64_t kCallTimeoutMicroseconds = 10u * 1000u * 1000u;
const char kUnloadedState[] = "inactive (dead)";

struct BusReply {
    sd_bus_message* message = nullptr;
    sd_bus_error error = SD_BUS_ERROR_NULL;
    ~BusReply()
    {
        sd_bus_message_unref(message);
        sd_bus_error_free(&error);
    }
};

bool IsService(const std::string& name) { return boost::algorithm::ends_with(name, ".service"); }

// "active (running)"; a sub-state that repeats the state ("failed (failed)") is said once.
std::string StateText(const char* active, const char* sub)
{
    return std::strcmp(active, sub) == 0 ? std::string(active) : std::string(active) + " (" + sub + ")";
}

// Calls a manager method without arguments and enters the array it answers with.
bool CallManager(sd_bus* bus, const char* method, const char* entry, BusReply& reply)
{
    int r = sd_bus_call_method(bus, kSystemd, kManagerObject, kManager, method, &reply.error, &reply.message, "");
    if (r >= 0) r = sd_bus_message_enter_container(reply.message, SD_BUS_TYPE_ARRAY, entry);
    if (r < 0)
        XLOG(LOG_WARN) << "[repo] systemd " << method << " returns error = " << r << " ("
                       << (reply.error.message ? reply.error.message : std::strerror(-r)) << ")";
    return r >= 0;
}

void ReadLoadedUnits(sd_bus* bus, std::map<std::string, BusUnit>& units)
{
    BusReply reply;
    if (!CallManager(bus, "ListUnits", "(ssssssouso)", reply)) return;
    const char *name, *description, *load, *active, *sub, *following, *object, *jobType, *jobObject;
    std::uint32_t job;
    while (sd_bus_message_read(reply.message, "(ssssssouso)", &name, &description, &load, &active, &sub, &following,
                               &object, &job, &jobType, &jobObject) > 0) {
        if (!IsService(name) || std::strcmp(load, "not-found") == 0) continue;
        BusUnit& unit = units[name];
        unit.description = description;
        unit.state = StateText(active, sub);
    }
}

// Units with a file but not loaded are inactive: systemd unloads only those.
void ReadUnitFiles(sd_bus* bus, std::map<std::string, BusUnit>& units)
{
    BusReply reply;
    if (!CallManager(bus, "ListUnitFiles", "(ss)", reply)) return;
    const char *path, *state;
    while (sd_bus_message_read(reply.message, "(ss)", &path, &state) > 0) {
        const std::string name = boost::filesystem::path(path).filename().string();
        if (!IsService(name)) continue;
        BusUnit& unit = units[name];
        unit.path = path;
        unit.startup = state;
        if (unit.state.empty()) unit.state = kUnloadedState;
    }
}

}  // namespace

bool ReadBusUnits(std::map<std::string, BusUnit>& units)
{
    sd_bus* bus = nullptr;
    const int r = sd_bus_open_system(&bus);
    if (r < 0) {
        NoteUnreadable("systemd system bus", std::strerror(-r));
        return false;
    }
    sd_bus_set_method_call_timeout(bus, kCallTimeoutMicroseconds);
    ReadLoadedUnits(bus, units);
    ReadUnitFiles(bus, units);
    sd_bus_flush_close_unref(bus);
    return !units.empty();
}
#else
bool ReadBusUnits(std::map<std::string, BusUnit>&) { return false; }
#endif

void MergeBusUnits(const std::map<std::string, BusUnit>& units, std::vector<protocol::SystemServiceInfo>& services)
{
    std::map<std::string, protocol::SystemServiceInfo*> onDisk;
    for (protocol::SystemServiceInfo& service : services) onDisk[service.Name] = &service;
    std::vector<protocol::SystemServiceInfo> busOnly;
    for (const auto& entry : units) {
        const auto found = onDisk.find(entry.first);
        if (found == onDisk.end()) {
            busOnly.push_back(ServiceOf(entry.first, entry.second));
            continue;
        }
        protocol::SystemServiceInfo& service = *found->second;
        if (!entry.second.state.empty()) service.State = entry.second.state;
        if (!entry.second.startup.empty()) service.Startup = entry.second.startup;
        if (service.Description == protocol::UNKNOWN_VALUE) service.Description = TextOrUnknown(entry.second.description);
    }
    services.insert(services.end(), busOnly.begin(), busOnly.end());
}

}  // namespace Linux
}  // namespace XModule
