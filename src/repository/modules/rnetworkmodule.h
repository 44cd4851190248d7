#ifndef KESTRO_REPOSITORY_MODULES_RNETWORKMODULE_H
#define KESTRO_REPOSITORY_MODULES_RNETWORKMODULE_H

#include "kestro/repository/rmodule.h"
#include "kestro/xmodule/connectioninfo.h"
#include "xmodule/agentless/networkadapter.h"
#include "xmodule/ihv/rawdata.h"

#include <map>
#include <string>
#include <vector>

namespace kestro {
namespace repository {

// PCI network adapters with their ports and firmware, read over the BMC's Redfish service when
// it has one, else through the agentless reader of each connection; in band also the raw
// answers of the QLogic, Emulex and Mellanox utilities for the adapters of those makers.
class RNetworkModule : public RModule {
public:
    RNetworkModule();

    std::string GetName() override;
    std::string GetDisplay() override;

protected:
    void InitCallbacks() override;

private:
    typedef XModule::Agentless::NetworkAdapter NetworkAdapter;

    void EnumAdapterInstances(RRepository& repo);
    void EnumInBand(RRepository& repo);
    void EnumOutOfBand(RRepository& repo);
    void EnumEsxi(RRepository& repo);
    void EnumOverRedfish(RRepository& repo);
    void EnumOneConnection(RRepository& repo, const XModule::ConnectionInfo& connection);
    void GetMultipleNode(RRepository& repo, const std::vector<XModule::ConnectionInfo>& connections);
    void AddAdapterInstances(RRepository& repo, const std::vector<NetworkAdapter>& adapters);
    void AddAdapterInstance(RRepository& repo, const NetworkAdapter& adapter, int id);
    void AddRawDataAdapterID(const NetworkAdapter& adapter, int id);

    void GetRawDatanstances(RRepository& repo, const NetworkAdapter& adapter);
    void GetQlogicInstances(RRepository& repo);
    void GetEmulexInstances(RRepository& repo, std::string partNumber);
    void GetMellanoxInstances(RRepository& repo);
    void AddRawDataInstances(RRepository& repo, const std::string& type, const std::string& display,
                             const std::vector<XModule::XModuleIHV::RawData_>& records);

    void EnumRawDataInstances(RRepository& repo);
    void EnumEmulexInstances(RRepository& repo);
    void EnumMellanoxInstances(RRepository& repo);

    void WrapAdapterInstances(RInstancesWrapper& wrapper);

    bool adaptersDone;
    bool redfish_supported;
    bool rawDataDone;
    bool qlogicDone;
    bool emulexDone;
    bool mellanoxDone;
    // Raw-data type -> the numbers of the adapters its instances belong to.
    std::map<std::string, std::vector<int> > rawDataAdapterIds;
    // Adapters are numbered over all connections and nodes, so that each reference names one.
    int nextAdapterId;
};

}  // namespace repository
}  // namespace kestro

#endif
