#ifndef KESTRO_REPOSITORY_MODULES_RCFCSTORAGEDEVICEINFOINVENTORYMODULE_H
#define KESTRO_REPOSITORY_MODULES_RCFCSTORAGEDEVICEINFOINVENTORYMODULE_H

#include "kestro/repository/rmodule.h"
#include "kestro/xmodule/connectioninfo.h"

#include <boost/json/value.hpp>
#include <boost/shared_ptr.hpp>

#include <string>

namespace Rest {
class RedfishClient;
}

namespace kestro {
namespace repository {

struct RCFCField;

// Storage controllers, disks and volumes of a CFC target through Redfish. A storage member
// either holds a "StorageUnit" object, or is a RAID adapter with "StorageControllers", drive
// links and a volume collection; each type takes only the members of its own way.
class RCFCStorageDeviceInfoInventoryModule : public RModule {
public:
    struct StorageClient {
        boost::shared_ptr<Rest::RedfishClient> client;  // null when no client could be made
        std::string baseUrl;
    };

    std::string GetName() override;
    std::string GetDisplay() override;

    // Always https: "https://host:port", the host in brackets for IPv6; port 0 means 443.
    static StorageClient MakeStorageClient(const XModule::ConnectionInfo& connection);
    // The answer's text, or "" after logging why there is none.
    static std::string GetStorageJson(Rest::RedfishClient& client, const std::string& url);

protected:
    void InitCallbacks() override;

private:
    enum RaidPart { RaidControllers, RaidDisks, RaidVolumes };
    // The rows that the members of a linked collection give.
    struct LinkedRows {
        const char* type;
        const char* title;
        const RCFCField* fields;
        std::size_t count;
    };
    enum UnitPart { UnitControllers, UnitDisks, UnitVolumes };

    void EnumStorageDeviceInstances(RRepository& repo);
    void EnumDiskDeviceInstances(RRepository& repo);
    void EnumVolumesInstances(RRepository& repo);
    void EnumStorageUnitDiskDeviceInstances(RRepository& repo);
    void EnumStorageUnitVolumeDeviceInstances(RRepository& repo);
    void EnumRaidStorageDeviceInstances(RRepository& repo);
    void EnumRAIDSHOWRawDataInstances(RRepository& repo);

    // Logs the start line and makes the client of the first REST connection; false after logging why not.
    bool OpenStorage(RRepository& repo, const std::string& startLine, StorageClient& storage);
    // The storage collection, expanded, parsed into `storages`; false after logging why not.
    bool ReadStorages(RRepository& repo, const std::string& startLine, const std::string& function,
                      StorageClient& storage, boost::json::value& storages);
    void WalkRaidMembers(RRepository& repo, RaidPart part, const std::string& startLine, const std::string& function);
    void WalkUnitMembers(RRepository& repo, UnitPart part, const std::string& function);

    void GetRaidInfo(RRepository& repo, StorageClient& storage, const boost::json::value& member, RaidPart part);
    void GetStorageUnitInfo(RRepository& repo, const boost::json::value& member);
    void GetStorageUnitDiskInfo(RRepository& repo, StorageClient& storage, const boost::json::value& member);
    void GetStorageUnitVolumeInfo(RRepository& repo, StorageClient& storage, const boost::json::value& member);
    // Fetches the collection that `key` of `member` links to, expanded, and adds a row per member;
    // a failed read logs the failure line of `function` + `suffix`.
    void AddLinkedMembers(RRepository& repo, StorageClient& storage, const boost::json::value& member,
                          const std::string& key, const std::string& function, const std::string& suffix,
                          const LinkedRows& rows);
    // The answers of the storage collection's pages, one after the other; "" when the first failed.
    std::string ReadRawPages(StorageClient& storage);
    // Joins the members of the pages that follow the collection's next links into its "Members";
    // a page that can't be read ends the join with the failure line of `function` + `suffix`.
    void AppendLaterPages(StorageClient& storage, boost::json::value& collection, const std::string& function,
                          const std::string& suffix);
    // Fetches `url` under the base and parses it; logs the failure line of `function` + `suffix`.
    bool FetchMember(StorageClient& storage, const std::string& url, const std::string& function,
                     const std::string& suffix, boost::json::value& out);

    void WrapRawData(RInstancesWrapper& wrapper);
};

}  // namespace repository
}  // namespace kestro

#endif
