#ifndef KESTRO_REPOSITORY_RREPOSITORY_H
#define KESTRO_REPOSITORY_RREPOSITORY_H

#include "kestro/repository/rinventorycase.h"
#include "kestro/xmodule/connectioninfo.h"
#include "kestro/xmodule/usercontext.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kestro {
namespace repository {

class RInstance;
class RRepositoryPrivate;

typedef std::vector<std::pair<std::string, std::string> > RGroupList;

// What the runs of one repository asked of the target's services: requests sent (a cached answer
// sends none) and the seconds spent waiting for answers.
struct RTransferTotals {
    std::uint64_t requests = 0;
    double waitSeconds = 0;
};

// The library's facade: one target, its modules, its categories and the store of its records.
class RRepository {
public:
    static const std::string INVENTORY_CASES[INVENTORY_CASE_COUNT];
    // Stands between the old and the new value of a compared property.
    static const std::string COMPARE_SEP;
    // The property attribute of a value that changes between any two runs of an unchanged host
    // (free space, uptime, process times, log entries): a comparison shows it without a change.
    static const std::string VOLATILE_ATTR;

    RRepository(const XModule::ConnectionInfo& info, RInventoryCase c);
    explicit RRepository(ConnectMode mode);
    ~RRepository();

    // Runs the category's types of one group, each by the first module that offers it.
    void RunInventory(const std::string& group);
    // Runs every module's types, telling `progress` (may be null) of each module.
    void RunInventory(void (*progress)(const std::string& name, const std::string& display));
    bool LoadCategories();
    // Builds the modules that fit the `mode` of a store read from a file.
    void InitDepModules();
    void ReadDeviceInfo();
    void SetDataSource(const std::string& name, const std::string& build, const std::string& version);

    // Fresh heap copies of the records of `type`, in store order; give them back to FreeInstances.
    std::vector<RInstance*> GetInstances(const std::string& type);
    void FreeInstances(std::vector<RInstance*>& list);
    std::vector<std::string> GetAvailableInstanceTypes();
    std::vector<std::string> GetCollectedInstanceTypes();
    // Need LoadCategories first.
    RGroupList GetInventoryGroups();
    RGroupList GetUnHiddenInventoryGroups();

    bool WriteXML(const std::string& fileName, const std::string& directory);
    // Writes the report site into an existing folder; loads the categories first if need be.
    bool WriteHTML(const std::string& directory);
    // With a second path, the store becomes the comparison of the two files (older first).
    bool ReadXML(const std::string& path, const std::string& comparePath);
    // Adds copies of all of `other`'s entries; `other` must be another repository.
    void Combine(const RRepository& other);

    const std::vector<XModule::ConnectionInfo>& GetCIMConnectionList();
    void SetCIMConnectionList(const std::vector<XModule::ConnectionInfo>& list);
    const std::vector<XModule::ConnectionInfo>& GetIPMIConnectionList();
    void SetIPMIConnectionList(const std::vector<XModule::ConnectionInfo>& list);
    const std::vector<XModule::ConnectionInfo>& GetRestConnectionList();
    void SetRestConnectionList(const std::vector<XModule::ConnectionInfo>& list);
    const std::vector<XModule::ConnectionInfo>& GetHttpsConnectionList();
    void SetHttpsConnectionList(const std::vector<XModule::ConnectionInfo>& list);
    ConnectMode GetConnectMode();
    void SetConnectMode(ConnectMode mode);
    XModule::UserContext GetUserContext();
    void SetUserContext(const XModule::UserContext& context);
    bool GetSystemIsWhitley();
    void SetIsWhitleySystem(bool isWhitley);
    void SetProductName(const std::string& name);
    XModule::ConnectionInfo GetRedfishConnection();
    RTransferTotals GetTransferTotals();

private:
    friend class RInstance;
    RRepository(const RRepository&) = delete;
    RRepository& operator=(const RRepository&) = delete;

    // Owned from the first line of construction, so a throwing constructor leaks nothing.
    std::unique_ptr<RRepositoryPrivate> d;
};

}  // namespace repository
}  // namespace kestro

#endif
