#ifndef KESTRO_REPOSITORY_MODULES_RCFCIPMILOGSINVENTORYMODULE_H
#define KESTRO_REPOSITORY_MODULES_RCFCIPMILOGSINVENTORYMODULE_H

#include "kestro/repository/rmodule.h"
#include "xmodule/bmc/selredfishdatacfc.h"

namespace kestro {
namespace repository {

// The IPMI-style system logs of a CFC target (BIOS and chassis), read through its BMC's Redfish
// log services; critical records also become report highlights.
class RCFCIPMILogsInventoryModule : public RModule {
public:
    std::string GetName() override;
    std::string GetDisplay() override;

protected:
    void InitCallbacks() override;

private:
    void EnumSystemBIOSLogInstances(RRepository& repo);
    void EnumSystemChassisLogInstances(RRepository& repo);
    void AddBIOSRecord(RRepository& repo, const XModule::SELREDFISHDATACFC& record);
    void AddChassisRecord(RRepository& repo, const XModule::SELREDFISHDATACFC& record);
    void WrapSystemLog(RInstancesWrapper& wrapper);
};

}  // namespace repository
}  // namespace kestro

#endif
