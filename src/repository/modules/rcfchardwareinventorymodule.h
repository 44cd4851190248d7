#ifndef KESTRO_REPOSITORY_MODULES_RCFCHARDWAREINVENTORYMODULE_H
#define KESTRO_REPOSITORY_MODULES_RCFCHARDWAREINVENTORYMODULE_H

#include "kestro/repository/rmodule.h"

#include <boost/json/value.hpp>

namespace Rest {
struct RestSession;
}

namespace kestro {
namespace repository {

// Processors, memory, fans, power supplies, the system board and drives of a CFC target, read
// from its BMC's Redfish service.
class RCFCHardwareInventoryModule : public RModule {
public:
    std::string GetName() override;
    std::string GetDisplay() override;

protected:
    void InitCallbacks() override;

private:
    void EnumProcessorInstances(RRepository& repo);
    void EnumMemoryInstances(RRepository& repo);
    void EnumFanInstances(RRepository& repo);
    void EnumPowerInstances(RRepository& repo);
    void EnumSystemBoardInstances(RRepository& repo);
    void EnumDriveInstances(RRepository& repo);

    void WalkProcessors(Rest::RestSession& session, RRepository& repo);
    void WalkMemory(Rest::RestSession& session, RRepository& repo);
    void WalkFans(Rest::RestSession& session, RRepository& repo);
    void WalkPowerSupplies(Rest::RestSession& session, RRepository& repo);
    void WalkSystemBoard(Rest::RestSession& session, RRepository& repo);
    void WalkDrives(Rest::RestSession& session, RRepository& repo);

};

}  // namespace repository
}  // namespace kestro

#endif
