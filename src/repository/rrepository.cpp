#include "kestro/repository/rrepository.h"

#include "kestro/repository/rinstance.h"
#include "rrepository_p.h"
#include "rest/runcontext.h"

namespace kestro {
namespace repository {

const std::string RRepository::INVENTORY_CASES[INVENTORY_CASE_COUNT] = {
    "windows",         "sles",         "rhel",         "preboot",         "oob",
    "esxi",            "cmm",          "smm",          "vx_windows",      "vx_sles",
    "vx_rhel",         "amd_windows",  "amd_sles",     "amd_rhel",        "tv5x_windows",
    "tv5x_sles",       "tv5x_rhel",    "tv5x_v2_windows", "tv5x_v2_sles", "tv5x_v2_rhel",
    "tv4x_v2_windows", "tv4x_v2_sles", "tv4x_v2_rhel", "ubuntu",          "cfc_windows",
    "cfc_rhel",        "cfc_sles",     "cfc_oob",
};

const std::string RRepository::COMPARE_SEP = "|||";
const std::string RRepository::VOLATILE_ATTR = "volatile";

RRepository::RRepository(const XModule::ConnectionInfo& info, RInventoryCase c) : d(new RRepositoryPrivate(this, info, c))
{
}

RRepository::RRepository(ConnectMode mode) : d(new RRepositoryPrivate(this, mode)) {}

RRepository::~RRepository() = default;

void RRepository::RunInventory(const std::string& group) { d->RunInventory(group); }

void RRepository::RunInventory(void (*progress)(const std::string& name, const std::string& display))
{
    d->RunInventory(progress);
}

bool RRepository::LoadCategories() { return d->LoadCategories(); }

void RRepository::InitDepModules() { d->InitDepModules(); }

void RRepository::ReadDeviceInfo() { d->ReadDeviceInfo(); }

void RRepository::SetDataSource(const std::string& name, const std::string& build, const std::string& version)
{
    d->SetDataSource(name, build, version);
}

std::vector<RInstance*> RRepository::GetInstances(const std::string& type) { return d->Instances(type); }

void RRepository::FreeInstances(std::vector<RInstance*>& list)
{
    for (std::vector<RInstance*>::iterator instance = list.begin(); instance != list.end(); ++instance)
        delete *instance;
    list.clear();
}

std::vector<std::string> RRepository::GetAvailableInstanceTypes() { return d->AvailableTypes(); }

std::vector<std::string> RRepository::GetCollectedInstanceTypes()
{
    boost::shared_lock<boost::shared_mutex> lock(d->storeLock);
    return d->CollectedTypes();
}

RGroupList RRepository::GetInventoryGroups() { return d->category->GetGroups(); }

RGroupList RRepository::GetUnHiddenInventoryGroups() { return d->category->GetUnHiddenGroups(); }

bool RRepository::WriteXML(const std::string& fileName, const std::string& directory)
{
    return d->WriteXML(fileName, directory);
}

bool RRepository::WriteHTML(const std::string& directory) { return d->WriteHTML(directory); }

bool RRepository::ReadXML(const std::string& path, const std::string& comparePath)
{
    return d->ReadXML(path, comparePath);
}

void RRepository::Combine(const RRepository& other) { d->Combine(*other.d); }

const std::vector<XModule::ConnectionInfo>& RRepository::GetCIMConnectionList() { return d->cimConnections; }

void RRepository::SetCIMConnectionList(const std::vector<XModule::ConnectionInfo>& list) { d->cimConnections = list; }

const std::vector<XModule::ConnectionInfo>& RRepository::GetIPMIConnectionList() { return d->ipmiConnections; }

void RRepository::SetIPMIConnectionList(const std::vector<XModule::ConnectionInfo>& list)
{
    d->ipmiConnections = list;
}

const std::vector<XModule::ConnectionInfo>& RRepository::GetRestConnectionList() { return d->restConnections; }

void RRepository::SetRestConnectionList(const std::vector<XModule::ConnectionInfo>& list)
{
    d->restConnections = list;
}

const std::vector<XModule::ConnectionInfo>& RRepository::GetHttpsConnectionList() { return d->httpsConnections; }

void RRepository::SetHttpsConnectionList(const std::vector<XModule::ConnectionInfo>& list)
{
    d->httpsConnections = list;
}

ConnectMode RRepository::GetConnectMode() { return d->connectMode; }

void RRepository::SetConnectMode(ConnectMode mode) { d->connectMode = mode; }

XModule::UserContext RRepository::GetUserContext() { return d->userContext; }

void RRepository::SetUserContext(const XModule::UserContext& context) { d->userContext = context; }

bool RRepository::GetSystemIsWhitley() { return d->isWhitley; }

void RRepository::SetIsWhitleySystem(bool isWhitley) { d->isWhitley = isWhitley; }

void RRepository::SetProductName(const std::string& name) { d->productName = name; }

XModule::ConnectionInfo RRepository::GetRedfishConnection()
{
    return d->restConnections.empty() ? XModule::ConnectionInfo() : d->restConnections.front();
}

RTransferTotals RRepository::GetTransferTotals()
{
    RTransferTotals totals;
    totals.requests = d->transfers->Requests();
    totals.waitSeconds = d->transfers->WaitSeconds();
    return totals;
}

}  // namespace repository
}  // namespace kestro
