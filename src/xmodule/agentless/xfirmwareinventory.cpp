#include "xmodule/agentless/xfirmwareinventory.h"

#include "rest/jsonread.h"
#include "xmodule/agentless/bmcreader.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/join.hpp>
#include <boost/function.hpp>

#include <cctype>
#include <set>

namespace XModule {

namespace {

const char kSystems[] = "/redfish/v1/Systems";
const char kManagers[] = "/redfish/v1/Managers";
const std::size_t kMachineTypeLength = 4;
// A log whose next-page links never end stops here.
const std::size_t kMaxPages = 1000;

// How a log service of one kind is told from the others: its LogEntryType, or a word in its Id.
struct LogServiceKind {
    const char* owner;       // kSystems or kManagers
    const char* entryType;   // "" when the entry type says nothing about the kind
    std::vector<std::string> idWords;
    // The owner's only log service, when it names no entry type (LogService 1.0 had none), is this kind.
    bool soleUntypedService;
};

const LogServiceKind kPlatformLog = {kSystems, "SEL", {"sel", "eventlog", "platform"}, true};
const LogServiceKind kAuditLog = {kManagers, "", {"audit"}, false};
const LogServiceKind kMaintenanceLog = {kManagers, "", {"maint"}, false};

const char* const kOemEventIdKeys[] = {"/EventID", "/EventId"};

std::string Text(const boost::json::value& doc, const std::string& pointer)
{
    return Rest::ReadJsonText(doc, pointer, "");
}

// The first text that a vendor puts under Oem at `pointer`.
std::string OemText(const boost::json::value& doc, const std::string& pointer)
{
    const boost::json::object* oem = Rest::FindJsonObject(doc, "/Oem");
    if (oem == nullptr) return std::string();
    for (const auto& vendor : *oem) {
        const std::string value = Text(vendor.value(), pointer);
        if (!value.empty()) return value;
    }
    return std::string();
}

std::string JoinedArguments(const boost::json::value& entry, const std::string& pointer)
{
    std::vector<std::string> arguments;
    if (const boost::json::array* list = Rest::FindJsonArray(entry, pointer))
        for (const boost::json::value& argument : *list) arguments.push_back(Rest::ReadJsonText(argument, "", ""));
    return boost::algorithm::join(arguments, ", ");
}

bool IsMachineType(const std::string& text)
{
    if (text.size() < kMachineTypeLength) return false;
    for (std::size_t i = 0; i < kMachineTypeLength; ++i)
        if (!std::isalnum(static_cast<unsigned char>(text[i]))) return false;
    return true;
}

bool IsLinkOnly(const boost::json::value& member)
{
    const boost::json::object* object = member.if_object();
    return object != nullptr && object->size() == 1 && object->contains("@odata.id");
}

bool Matches(const LogServiceKind& kind, const boost::json::value& service)
{
    if (*kind.entryType && Text(service, "/LogEntryType") == kind.entryType) return true;
    const std::string id = boost::algorithm::to_lower_copy(Text(service, "/Id"));
    for (const std::string& word : kind.idWords)
        if (id.find(word) != std::string::npos) return true;
    return false;
}

// Where the entries of one log come from, for the fields every entry shares.
struct LogOrigin {
    std::string nodeId;
    std::string logName;
};

QMMMESSAGELOGDATA RecordOfEntry(const boost::json::value& entry, const LogOrigin& origin)
{
    QMMMESSAGELOGDATA record;
    record.nodeId = origin.nodeId;
    record.source = Text(entry, "/EntryType");
    record.creationTimeStamp = Text(entry, "/Created");
    record.eventId = xFirmwareInventory::EventIdOf(entry);
    record.messageId = Text(entry, "/MessageId");
    record.message = Text(entry, "/Message");
    record.messageArguments = JoinedArguments(entry, "/MessageArgs");
    record.perceivedSeverity = Text(entry, "/Severity");
    if (record.perceivedSeverity.empty()) record.perceivedSeverity = Text(entry, "/MessageSeverity");
    record.auxiliaryData = Text(entry, "/AdditionalDataURI");
    // Services number their entries in the order they logged them; the event's own time stands in
    // where an entry has no id.
    record.eventSequenceNumber = Text(entry, "/Id");
    if (record.eventSequenceNumber.empty()) record.eventSequenceNumber = Text(entry, "/EventTimestamp");
    record.logName = origin.logName;
    record.eventGroupId = Text(entry, "/EventGroupId");
    if (record.eventGroupId.empty()) record.eventGroupId = OemText(entry, "/EventGroup");
    record.logInstanceId = Text(entry, "/@odata.id");
    record.elementName = origin.logName;
    return record;
}

QMMMESSAGELOGDATA RecordOfCondition(const boost::json::value& condition, const LogOrigin& origin)
{
    QMMMESSAGELOGDATA record;
    record.nodeId = origin.nodeId;
    record.source = Text(condition, "/OriginOfCondition/@odata.id");
    record.creationTimeStamp = Text(condition, "/Timestamp");
    record.eventId = xFirmwareInventory::EventIdOf(condition);
    record.messageId = Text(condition, "/MessageId");
    record.message = Text(condition, "/Message");
    record.messageArguments = JoinedArguments(condition, "/MessageArgs");
    record.perceivedSeverity = Text(condition, "/Severity");
    record.eventSequenceNumber = Text(condition, "/LogEntry/@odata.id");
    record.logName = origin.logName;
    return record;
}

}  // namespace

struct xFirmwareInventory::Private {
    explicit Private(const ConnectionInfo& c) : connection(c), reader(c) {}

    typedef boost::function<void(const boost::json::value& entry)> EntryVisitor;

    // The path of the member at the node index (systems) or the first member (managers).
    bool OwnerPath(const char* collection, std::string& path)
    {
        path = reader.MemberAt(collection, collection == kSystems ? connection.nodeIndex : 0);
        return !path.empty();
    }

    int ReadOwner(const char* collection, boost::json::value& owner)
    {
        if (!connection.isBmc) return INVENTORY_NOT_BMC;
        std::string path;
        if (!OwnerPath(collection, path)) return INVENTORY_NO_SYSTEM;
        return reader.Get(path, owner) ? INVENTORY_SUCCESS : INVENTORY_UNREADABLE;
    }

    int FindLogService(const boost::json::value& owner, const LogServiceKind& kind, boost::json::value& service)
    {
        const std::string collection = Text(owner, "/LogServices/@odata.id");
        std::vector<std::string> services;
        if (collection.empty() || !reader.Members(collection, services)) return INVENTORY_NO_LOG_SERVICE;
        for (const std::string& path : services)
            if (reader.Get(path, service) && Matches(kind, service)) return INVENTORY_SUCCESS;
        const bool soleUntyped = kind.soleUntypedService && services.size() == 1 &&
                                 reader.Get(services.front(), service) && Text(service, "/LogEntryType").empty();
        return soleUntyped ? INVENTORY_SUCCESS : INVENTORY_NO_LOG_SERVICE;
    }

    // Every entry of the collection at `path`, page by page; an entry given only as a link is
    // fetched. Entries visited before a failure stay visited.
    bool WalkEntries(const std::string& path, const EntryVisitor& visit)
    {
        std::set<std::string> seen;
        std::string page = path;
        for (std::size_t count = 0; !page.empty() && count < kMaxPages && seen.insert(page).second; ++count) {
            boost::json::value doc;
            if (!reader.Get(page, doc)) return false;
            if (const boost::json::array* members = Rest::FindJsonArray(doc, "/Members"))
                for (const boost::json::value& member : *members)
                    if (!VisitMember(member, visit)) return false;
            page = Text(doc, "/Members@odata.nextLink");
        }
        return true;
    }

    bool VisitMember(const boost::json::value& member, const EntryVisitor& visit)
    {
        if (!IsLinkOnly(member)) {
            visit(member);
            return true;
        }
        boost::json::value entry;
        if (!reader.Get(Text(member, "/@odata.id"), entry)) return false;
        visit(entry);
        return true;
    }

    int ReadLog(const LogServiceKind& kind, std::vector<QMMMESSAGELOGDATA>& entries)
    {
        boost::json::value owner, service;
        int ret = ReadOwner(kind.owner, owner);
        if (ret == INVENTORY_SUCCESS) ret = FindLogService(owner, kind, service);
        if (ret != INVENTORY_SUCCESS) return ret;
        const std::string name = Text(service, "/Name");
        const LogOrigin origin = {Text(owner, "/Id"), name.empty() ? Text(service, "/Id") : name};
        const std::string entriesPath = Text(service, "/Entries/@odata.id");
        if (entriesPath.empty()) return INVENTORY_UNREADABLE;
        const bool whole = WalkEntries(entriesPath, [&](const boost::json::value& entry) {
            entries.push_back(RecordOfEntry(entry, origin));
        });
        return whole ? INVENTORY_SUCCESS : INVENTORY_UNREADABLE;
    }

    ConnectionInfo connection;
    Agentless::BmcReader reader;
};

xFirmwareInventory::xFirmwareInventory(const ConnectionInfo& connection) : d(new Private(connection)) {}

xFirmwareInventory::~xFirmwareInventory() = default;

int xFirmwareInventory::GetxFirmwareSystemVPD(XFIRMWARESYSTEMVPD& vpd)
{
    boost::json::value system;
    const int ret = d->ReadOwner(kSystems, system);
    if (ret != INVENTORY_SUCCESS) return ret;
    vpd.productName = Text(system, "/Model");
    vpd.machineType = MachineTypeOf(system);
    return INVENTORY_SUCCESS;
}

int xFirmwareInventory::GetQMMPlatformLogDataViaREST(std::vector<QMMMESSAGELOGDATA>& entries)
{
    return d->ReadLog(kPlatformLog, entries);
}

int xFirmwareInventory::GetQMMAuditLogDataViaREST(std::vector<QMMMESSAGELOGDATA>& entries)
{
    return d->ReadLog(kAuditLog, entries);
}

int xFirmwareInventory::GetQMMMaintLogDataViaREST(std::vector<QMMMESSAGELOGDATA>& entries)
{
    return d->ReadLog(kMaintenanceLog, entries);
}

int xFirmwareInventory::GetQMMActiveEventsDataViaREST(std::vector<QMMMESSAGELOGDATA>& entries)
{
    boost::json::value system;
    const int ret = d->ReadOwner(kSystems, system);
    if (ret != INVENTORY_SUCCESS) return ret;
    const LogOrigin origin = {Text(system, "/Id"), "Active System Events"};
    // A system with nothing active leaves the list out.
    if (const boost::json::array* conditions = Rest::FindJsonArray(system, "/Status/Conditions"))
        for (const boost::json::value& condition : *conditions) entries.push_back(RecordOfCondition(condition, origin));
    return INVENTORY_SUCCESS;
}

int xFirmwareInventory::GetQMMMessageLogDataCIM(std::vector<QMMMESSAGELOGDATA>& entries)
{
    return d->ReadLog(kPlatformLog, entries);
}

std::string xFirmwareInventory::MachineTypeOf(const boost::json::value& system)
{
    const std::string sku = Text(system, "/SKU");
    if (IsMachineType(sku)) return sku.substr(0, kMachineTypeLength);
    return OemText(system, "/MachineType");
}

std::string xFirmwareInventory::EventIdOf(const boost::json::value& entry)
{
    std::string id = Text(entry, "/EventId");
    for (const char* key : kOemEventIdKeys)
        if (id.empty()) id = OemText(entry, key);
    if (!id.empty()) return id;
    const std::string messageId = Text(entry, "/MessageId");
    return messageId.substr(messageId.rfind('.') + 1);
}

}  // namespace XModule
