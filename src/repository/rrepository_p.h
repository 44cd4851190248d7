#ifndef KESTRO_REPOSITORY_RREPOSITORY_P_H
#define KESTRO_REPOSITORY_RREPOSITORY_P_H

#include "kestro/repository/rrepository.h"
#include "rmoduletable.h"
#include "rrecordstore.h"
#include "rreportcategory.h"

#include <boost/property_tree/ptree.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/thread/shared_mutex.hpp>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace Rest {
class RunContext;
}

namespace kestro {
namespace repository {

typedef void (*ProgressCallback)(const std::string& name, const std::string& display);

class RRepositoryPrivate {
public:
    RRepositoryPrivate(RRepository* owner, const XModule::ConnectionInfo& info, RInventoryCase c);
    RRepositoryPrivate(RRepository* owner, ConnectMode mode);
    ~RRepositoryPrivate();

    void AddToRepository(const std::string& name, const boost::property_tree::ptree& record);
    void RunInventory(const std::string& group);
    void RunInventory(ProgressCallback progress);
    // The types the store holds, sorted, each once; the caller decides about the lock.
    std::vector<std::string> CollectedTypes() const;
    std::vector<std::string> AvailableTypes();
    std::vector<RInstance*> Instances(const std::string& type) const;

    void SetInventoryCase(ConnectMode mode);
    void SetInventoryCase(const std::string& caseText);
    void InitInventoryModules();
    void SetModulesInventoryCase();
    void InitDepModules();
    bool LoadCategories();
    void ReadDeviceInfo();
    void SetDataSource(const std::string& name, const std::string& build, const std::string& version);

    bool WriteXML(const std::string& fileName, const std::string& directory);
    bool ReadXML(const std::string& path, const std::string& comparePath);
    // Reads a repository file into `target`, which keeps its contents when the read fails.
    static bool ReadRepositoryFile(const std::string& path, boost::property_tree::ptree& target);
    void Combine(const RRepositoryPrivate& other);
    bool WriteHTML(const std::string& directory);

    RRepository* owner;
    std::vector<XModule::ConnectionInfo> cimConnections;
    std::vector<XModule::ConnectionInfo> ipmiConnections;
    std::vector<XModule::ConnectionInfo> restConnections;
    std::vector<XModule::ConnectionInfo> httpsConnections;
    ConnectMode connectMode;
    XModule::UserContext userContext;
    boost::shared_ptr<RReportCategory> category;
    RModuleList modules;
    boost::property_tree::ptree scanTree;
    RRecordStore store;
    boost::shared_mutex storeLock;
    int systemType;
    RInventoryCase inventoryCase;
    bool isWhitley;
    std::string productName;
    void* pluginHandle;
    // When the first type of the run began, for the time limit per run.
    std::chrono::steady_clock::time_point runStart;
    bool runStarted = false;
    // The answers, connections and request totals that every module's REST clients share.
    std::unique_ptr<Rest::RunContext> transfers;

private:
    void PutHeader();
    // The XML file's text of the store and the scan; false (logged) when it cannot be made.
    bool StoreAsXml(std::string& text);
    void LoadModulePlugin();
    boost::shared_ptr<RModule> FindModuleOffering(const std::string& type);
    // Runs the module for one type within the time limits of global.config.
    void CollectType(RModule& module, const std::string& type);
    std::string CategoryCaseText();
};

}  // namespace repository
}  // namespace kestro

#endif
