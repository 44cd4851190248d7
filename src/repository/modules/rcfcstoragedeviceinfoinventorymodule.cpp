#include "repository/modules/rcfcstoragedeviceinfoinventorymodule.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rinstanceswrapper.h"
#include "kestro/repository/rrepository.h"
#include "kestro/rest/redfishclient.h"
#include "repository/modules/rcfcredfish.h"
#include "xmodule/rlog.h"
#include "rest/jsonread.h"
#include "rest/restsession.h"

#include <boost/bind/bind.hpp>
#include <boost/make_shared.hpp>

#include <set>
#include <sstream>

namespace kestro {
namespace repository {

namespace {

// As in the hardware tables, only block size and capable speed are read as numbers and the
// capacity with its unit, and the two flags as booleans; any other key is read as text, a number
// written in decimal.
const RCFCField kControllerFields[] = {
    {"Name", "Name", KindText, AtTop},
    {"Model", "Model", KindText, AtTop},
    {"FirmwareVersion", "Firmware Version", KindText, AtTop},
    {"SpeedGbps", "Speed Gbps", KindScalar, AtTop},
    {"Manufacturer", "Manufacturer", KindText, AtTop},
    {"SerialNumber", "Serial Number", KindText, AtTop},
};

const RCFCField kRaidControllerFields[] = {
    {"Name", "Name", KindText, AtTop},
    {"Model", "Model", KindText, AtTop},
    {"FirmwareVersion", "Firmware Version", KindText, AtTop},
    {"SpeedGbps", "Speed Gbps", KindScalar, AtTop},
    {"Manufacturer", "Manufacturer", KindText, AtTop},
    {"SerialNumber", "Serial Number", KindText, AtTop},
    {"Health", "Health", KindText, UnderStatus},
    {"State", "State", KindText, UnderStatus},
    {"BatteryHealth", "Battery Health", KindText, AtTop},
    {"BatteryState", "Battery State", KindText, AtTop},
};

const RCFCField kDiskFields[] = {
    {"Name", "Name", KindText, AtTop},
    {"Model", "Model", KindText, AtTop},
    {"BlockSizeBytes", "Block Size(Byte)", KindNumber, AtTop},
    {"CapableSpeedGbs", "Capable Speed(Gbs)", KindNumber, AtTop},
    {"CapacityBytes", "Capacity", KindCapacity, AtTop},
    {"Manufacturer", "Manufacturer", KindText, AtTop},
    {"Protocol", "Protocol", KindText, AtTop},
    {"MediaType", "MediaType", KindText, AtTop},
    {"SerialNumber", "Serial Number", KindText, AtTop},
    {"FailurePredicted", "Failure Predicted", KindFlag, AtTop},
    {"NegotiatedSpeedGbs", "Negotiated Speed(Gbs)", KindScalar, AtTop},
    {"Slot", "Slot", KindScalar, AtTop},
    {"Temperature", "Temperature", KindScalar, AtTop},
    {"Revision", "Revision", KindText, AtTop},
    {"HotspareType", "Hotspare Type", KindText, AtTop},
    {"Health", "Health", KindText, UnderStatus},
    {"State", "State", KindText, UnderStatus},
    {"FDECapable", "FDECapable", KindFlag, AtTop},
    {"MediaErrorCount", "Media Error Count", KindScalar, AtTop},
    {"OtherErrorCount", "Other Error Count", KindScalar, AtTop},
    {"PreFailCount", "PreFail Count", KindScalar, AtTop},
};

const RCFCField kVolumeFields[] = {
    {"DiskDriveId", "Disk Drive Id", KindScalar, AtTop},
    {"Name", "Name", KindText, AtTop},
    {"CapacityBytes", "Capacity", KindCapacity, AtTop},
    {"VolumeRaidLevel", "Volume Raid Level", KindText, AtTop},
    {"OptimumIOSizeBytes", "OptimumIO Size Bytes", KindScalar, AtTop},
    {"VolumeType", "Volume Type", KindText, AtTop},
    {"Health", "Health", KindText, UnderStatus},
    {"State", "State", KindText, UnderStatus},
};

const std::vector<std::string> kRawDataHeaders = {"Command", "Description", "RawData", "File Name"};
const std::vector<unsigned> kRawDataPercents = {20, 20, 40, 20};

const char* const kExpand = "?$expand=.($levels=1)";
const char* const kStorageUnitKey = "StorageUnit";
const char* const kNextLinkKey = "Members@odata.nextLink";
const char* const kNextLinkPointer = "/Members@odata.nextLink";
const char* const kFailurePrefix = "Failed to read Rest information in RCFCStorageDeviceInfoInventoryModule::";
const char* const kStartLine = "Try to enum storage device instances.";
const char* const kRaidStartLine = "Try to enum raid storage device instances.";
const int kStorageTimeoutSeconds = 180;
const int kHttpsPort = 443;

const std::string& StoragesUrl()
{
    static const std::string url = "/redfish/v1/Systems/1/Storages";
    return url;
}

bool HoldsStorageUnit(const boost::json::value& member)
{
    return Rest::FindJsonValue(member, Rest::MakeJsonPointer({kStorageUnitKey})) != nullptr;
}

void LogReadFailure(const std::string& function, const std::string& suffix)
{
    RLOG(1) << kFailurePrefix << function << suffix;
}

}  // namespace

std::string RCFCStorageDeviceInfoInventoryModule::GetName() { return "CFCStorageDeviceInfoInventoryModule"; }

std::string RCFCStorageDeviceInfoInventoryModule::GetDisplay() { return "CFC Storage Device Info Inventory Module"; }

void RCFCStorageDeviceInfoInventoryModule::InitCallbacks()
{
    using boost::placeholders::_1;
    typedef RCFCStorageDeviceInfoInventoryModule M;
    typeCallbacks["StorageDevice"].enumCallback = boost::bind(&M::EnumStorageDeviceInstances, this, _1);
    typeCallbacks["StorageDevice"].wrapCallback = RCFCTableForm(kControllerFields);
    typeCallbacks["DiskDevice"].enumCallback = boost::bind(&M::EnumDiskDeviceInstances, this, _1);
    typeCallbacks["DiskDevice"].wrapCallback = RCFCTableForm(kDiskFields);
    typeCallbacks["Volumes"].enumCallback = boost::bind(&M::EnumVolumesInstances, this, _1);
    typeCallbacks["Volumes"].wrapCallback = RCFCTableForm(kVolumeFields);
    typeCallbacks["StorageUnitDiskDevice"].enumCallback =
        boost::bind(&M::EnumStorageUnitDiskDeviceInstances, this, _1);
    typeCallbacks["StorageUnitDiskDevice"].wrapCallback = RCFCTableForm(kDiskFields);
    typeCallbacks["StorageUnitVolume"].enumCallback = boost::bind(&M::EnumStorageUnitVolumeDeviceInstances, this, _1);
    typeCallbacks["StorageUnitVolume"].wrapCallback = RCFCTableForm(kVolumeFields);
    typeCallbacks["RaidStorageDevice"].enumCallback = boost::bind(&M::EnumRaidStorageDeviceInstances, this, _1);
    typeCallbacks["RaidStorageDevice"].wrapCallback = RCFCTableForm(kRaidControllerFields);
    typeCallbacks["RAIDSHOWRawData"].enumCallback = boost::bind(&M::EnumRAIDSHOWRawDataInstances, this, _1);
    typeCallbacks["RAIDSHOWRawData"].wrapCallback = boost::bind(&M::WrapRawData, this, _1);
}

RCFCStorageDeviceInfoInventoryModule::StorageClient
RCFCStorageDeviceInfoInventoryModule::MakeStorageClient(const XModule::ConnectionInfo& connection)
{
    StorageClient storage;
    try {
        storage.client = boost::make_shared<Rest::RedfishClient>();
    } catch (const std::exception& error) {
        RLOG(1) << "No Redfish client for " << connection.host << ": " << error.what();
        return storage;
    }
    storage.client->SetCredentials(connection.user, connection.password);
    storage.client->SetInsecure(true);
    // As every Redfish session: a CA bundle the user gave is checked.
    if (!connection.caFile.empty()) storage.client->SetCaFile(connection.caFile);
    storage.client->SetTimeout(kStorageTimeoutSeconds);
    storage.client->SetFollowRedirects(true, -1);
    storage.client->SetHeader("Accept", "application/json");
    storage.client->SetHeader("Content-Type", "application/json");
    std::ostringstream base;
    base << "https://";
    if (connection.isIPv6)
        base << "[" << connection.host << "]";
    else
        base << connection.host;
    base << ":" << (connection.port == 0 ? kHttpsPort : connection.port);
    storage.baseUrl = base.str();
    return storage;
}

std::string RCFCStorageDeviceInfoInventoryModule::GetStorageJson(Rest::RedfishClient& client, const std::string& url)
{
    const Rest::RestResult result = client.Get(url);
    if (result.curlCode == 0 && result.httpCode == 200) return result.body;
    RLOG(1) << "Failed to get info from url " << url << ", curlCode: " << result.curlCode
            << ", httpCode: " << result.httpCode << ", body:\n"
            << result.body;
    return std::string();
}

bool RCFCStorageDeviceInfoInventoryModule::OpenStorage(RRepository& repo, const std::string& startLine,
                                                       StorageClient& storage)
{
    XModule::ConnectionInfo connection;
    if (!RCFCRedfish::FirstConnection(repo, startLine, connection)) return false;
    storage = MakeStorageClient(connection);
    if (!storage.client) {
        RLOG(1) << "Get cfc storage aborting due to null redfish transport resource";
        return false;
    }
    return true;
}

bool RCFCStorageDeviceInfoInventoryModule::ReadStorages(RRepository& repo, const std::string& startLine,
                                                        const std::string& function, StorageClient& storage,
                                                        boost::json::value& storages)
{
    if (!OpenStorage(repo, startLine, storage)) return false;
    const std::string text = GetStorageJson(*storage.client, storage.baseUrl + StoragesUrl() + kExpand);
    const bool traced = function == "EnumStorageDeviceInstances";
    if (traced) RLOG(4) << "before assgin to storage json value";
    std::string error;
    if (!Rest::TryParseJson(text, storages, error)) {
        LogReadFailure(function, "");
        return false;
    }
    if (traced) RLOG(4) << " Enter get storage json value success";
    AppendLaterPages(storage, storages, function, "");
    return true;
}

void RCFCStorageDeviceInfoInventoryModule::AppendLaterPages(StorageClient& storage, boost::json::value& collection,
                                                            const std::string& function, const std::string& suffix)
{
    boost::json::object* first = collection.if_object();
    std::set<std::string> seen;
    while (first != nullptr) {
        const std::string next = Rest::ReadJsonString(collection, kNextLinkPointer);
        first->erase(kNextLinkKey);
        boost::json::array* members = first->contains("Members") ? first->at("Members").if_array() : nullptr;
        // A page that links back to one already read would never end the walk.
        if (next == Rest::JSON_MISSING_TEXT || members == nullptr || !seen.insert(next).second) return;
        RLOG(3) << "odata.nextLink :" << next;
        boost::json::value page;
        if (!FetchMember(storage, next, function, suffix, page)) return;
        const boost::json::array* more = Rest::FindJsonArray(page, "/Members");
        if (more == nullptr) return;
        members->insert(members->end(), more->begin(), more->end());
        const boost::json::value* link = Rest::FindJsonValue(page, kNextLinkPointer);
        if (link != nullptr) (*first)[kNextLinkKey] = *link;
    }
}

bool RCFCStorageDeviceInfoInventoryModule::FetchMember(StorageClient& storage, const std::string& url,
                                                       const std::string& function, const std::string& suffix,
                                                       boost::json::value& out)
{
    std::string error;
    if (Rest::TryParseJson(GetStorageJson(*storage.client, storage.baseUrl + url), out, error)) return true;
    LogReadFailure(function, suffix);
    return false;
}

void RCFCStorageDeviceInfoInventoryModule::WalkRaidMembers(RRepository& repo, RaidPart part,
                                                           const std::string& startLine, const std::string& function)
{
    RCFCRedfish::RunGuarded([&]() {
        StorageClient storage;
        boost::json::value storages;
        if (!ReadStorages(repo, startLine, function, storage, storages)) return;
        const boost::json::array* members = Rest::FindJsonArray(storages, "/Members");
        if (members == nullptr) return;
        for (const boost::json::value& member : *members)
            if (!HoldsStorageUnit(member)) GetRaidInfo(repo, storage, member, part);
    });
}

void RCFCStorageDeviceInfoInventoryModule::WalkUnitMembers(RRepository& repo, UnitPart part,
                                                           const std::string& function)
{
    RCFCRedfish::RunGuarded([&]() {
        StorageClient storage;
        boost::json::value storages;
        if (!ReadStorages(repo, kStartLine, function, storage, storages)) return;
        const boost::json::array* members = Rest::FindJsonArray(storages, "/Members");
        if (members == nullptr) return;
        for (const boost::json::value& member : *members) {
            if (!HoldsStorageUnit(member)) continue;
            if (part == UnitControllers) {
                RLOG(3) << "Try to get storageunit info";
                GetStorageUnitInfo(repo, member);
            } else if (part == UnitDisks) {
                GetStorageUnitDiskInfo(repo, storage, member);
            } else {
                GetStorageUnitVolumeInfo(repo, storage, member);
            }
        }
    });
}

void RCFCStorageDeviceInfoInventoryModule::EnumStorageDeviceInstances(RRepository& repo)
{
    WalkUnitMembers(repo, UnitControllers, "EnumStorageDeviceInstances");
}

void RCFCStorageDeviceInfoInventoryModule::EnumStorageUnitDiskDeviceInstances(RRepository& repo)
{
    WalkUnitMembers(repo, UnitDisks, "EnumStorageUnitDiskDeviceInstances");
}

void RCFCStorageDeviceInfoInventoryModule::EnumStorageUnitVolumeDeviceInstances(RRepository& repo)
{
    WalkUnitMembers(repo, UnitVolumes, "EnumStorageUnitVolumeDeviceInstances");
}

void RCFCStorageDeviceInfoInventoryModule::EnumRaidStorageDeviceInstances(RRepository& repo)
{
    WalkRaidMembers(repo, RaidControllers, kRaidStartLine, "EnumRaidStorageDeviceInstances");
}

void RCFCStorageDeviceInfoInventoryModule::EnumDiskDeviceInstances(RRepository& repo)
{
    WalkRaidMembers(repo, RaidDisks, kStartLine, "EnumDiskDeviceInstances");
}

void RCFCStorageDeviceInfoInventoryModule::EnumVolumesInstances(RRepository& repo)
{
    WalkRaidMembers(repo, RaidVolumes, kStartLine, "EnumVolumesInstances");
}

// The raw data is the BMC's own answer to the expanded storage collection, kept as it came (a
// paged collection gives its pages' answers one after the other): it holds every controller,
// drive link and volume link the BMC reported, including fields the tables leave out, for
// whoever has to look closer.
void RCFCStorageDeviceInfoInventoryModule::EnumRAIDSHOWRawDataInstances(RRepository& repo)
{
    RCFCRedfish::RunGuarded([&]() {
        StorageClient storage;
        if (!OpenStorage(repo, kStartLine, storage)) return;
        const std::string text = ReadRawPages(storage);
        if (text.empty()) return;
        RInstance instance("RAIDSHOWRawData", "Raid Show Raw Data", -1);
        instance.AddProperty("Command", "Command", std::string("raid show"));
        instance.AddProperty("Description", "Description", std::string("Raw Data"));
        instance.AddProperty("RawData", "RawData", text);
        instance.AddPropertyAttr("RawData", "raw");
        instance.AddProperty("Filename", "File Name", std::string("raid_show.txt"));
        instance.AddToRepository(repo);
    });
}

std::string RCFCStorageDeviceInfoInventoryModule::ReadRawPages(StorageClient& storage)
{
    std::string pages = GetStorageJson(*storage.client, storage.baseUrl + StoragesUrl() + kExpand);
    std::string page = pages;
    std::set<std::string> seen;
    boost::json::value answer;
    std::string error;
    while (Rest::TryParseJson(page, answer, error)) {
        const std::string next = Rest::ReadJsonString(answer, kNextLinkPointer);
        if (next == Rest::JSON_MISSING_TEXT || !seen.insert(next).second) break;
        page = GetStorageJson(*storage.client, storage.baseUrl + next);
        if (page.empty()) break;
        pages += "\n" + page;
    }
    return pages;
}

void RCFCStorageDeviceInfoInventoryModule::GetRaidInfo(RRepository& repo, StorageClient& storage,
                                                       const boost::json::value& member, RaidPart part)
{
    RLOG(3) << "Try to get raid info";
    if (part == RaidControllers) {
        const boost::json::array* controllers = Rest::FindJsonArray(member, "/StorageControllers");
        if (controllers == nullptr) {
            LogReadFailure("GetRaidInfo", "");
            return;
        }
        for (const boost::json::value& controller : *controllers)
            RCFCAddRecord(repo, "RaidStorageDevice", "Storage Device", controller, kRaidControllerFields);
        return;
    }
    if (part == RaidDisks) {
        const boost::json::array* drives = Rest::FindJsonArray(member, "/Drives");
        if (drives == nullptr) return;
        Rest::GetLinksAhead(*storage.client, storage.baseUrl, *drives);
        for (const boost::json::value& link : *drives) {
            const std::string url = Rest::ReadJsonString(link, "/@odata.id");
            if (url == Rest::JSON_MISSING_TEXT) continue;
            boost::json::value drive;
            if (!FetchMember(storage, url, "GetRaidInfo", " 1", drive)) return;
            RCFCAddRecord(repo, "DiskDevice", "Disk Device", drive, kDiskFields);
        }
        return;
    }
    AddLinkedMembers(repo, storage, member, "Volumes", "GetRaidInfo", " 2",
                     LinkedRows{"Volumes", "Volume", kVolumeFields, RCFCFieldCount(kVolumeFields)});
}

void RCFCStorageDeviceInfoInventoryModule::GetStorageUnitInfo(RRepository& repo, const boost::json::value& member)
{
    const boost::json::array* controllers = Rest::FindJsonArray(member, "/StorageControllers");
    if (controllers == nullptr) {
        LogReadFailure("EnumStorageDeviceInstances", " 1");
        return;
    }
    for (const boost::json::value& controller : *controllers)
        RCFCAddRecord(repo, "StorageDevice", "Storage Device", controller, kControllerFields);
}

void RCFCStorageDeviceInfoInventoryModule::GetStorageUnitDiskInfo(RRepository& repo, StorageClient& storage,
                                                                  const boost::json::value& member)
{
    AddLinkedMembers(repo, storage, member, "Drives", "GetStorageUnitDiskInfo", "",
                     LinkedRows{"StorageUnitDiskDevice", "Disk Device", kDiskFields, RCFCFieldCount(kDiskFields)});
}

void RCFCStorageDeviceInfoInventoryModule::GetStorageUnitVolumeInfo(RRepository& repo, StorageClient& storage,
                                                                    const boost::json::value& member)
{
    AddLinkedMembers(repo, storage, member, "Volumes", "EnumStorageUnitVolumeDeviceInstances", "",
                     LinkedRows{"StorageUnitVolume", "Volume", kVolumeFields, RCFCFieldCount(kVolumeFields)});
}

void RCFCStorageDeviceInfoInventoryModule::AddLinkedMembers(RRepository& repo, StorageClient& storage,
                                                            const boost::json::value& member, const std::string& key,
                                                            const std::string& function, const std::string& suffix,
                                                            const LinkedRows& rows)
{
    const std::string url = RCFCRedfish::LinkOf(member, key);
    if (url == Rest::JSON_MISSING_TEXT) return;
    boost::json::value collection;
    if (!FetchMember(storage, url + kExpand, function, suffix, collection)) return;
    AppendLaterPages(storage, collection, function, suffix);
    const boost::json::array* entries = Rest::FindJsonArray(collection, "/Members");
    if (entries == nullptr) return;
    for (const boost::json::value& entry : *entries)
        RCFCRedfish::AddRecord(repo, rows.type, rows.title, entry, rows.fields, rows.count);
}

void RCFCStorageDeviceInfoInventoryModule::WrapRawData(RInstancesWrapper& wrapper)
{
    wrapper.SetRowHeaders(kRawDataHeaders, kRawDataPercents, false);
}

}  // namespace repository
}  // namespace kestro
