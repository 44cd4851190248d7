#ifndef KESTRO_REPOSITORY_MODULES_RCFCBMCLOGSINVENTORYMODULE_H
#define KESTRO_REPOSITORY_MODULES_RCFCBMCLOGSINVENTORYMODULE_H

#include "kestro/repository/rmodule.h"
#include "xmodule/bmc/selredfishdatacfc.h"

namespace kestro {
namespace repository {

// The BMC's own audit and event logs of a CFC target, read through its Redfish log services;
// critical records also become report highlights.
class RCFCBmcLogsInventoryModule : public RModule {
public:
    std::string GetName() override;
    std::string GetDisplay() override;

protected:
    void InitCallbacks() override;

private:
    void EnumBMCAuditLogInstances(RRepository& repo);
    void EnumBMCEventLogInstances(RRepository& repo);
    void AddAuditRecord(RRepository& repo, const XModule::SELREDFISHDATACFC& record);
    void AddEventRecord(RRepository& repo, const XModule::SELREDFISHDATACFC& record);
    void WrapAuditLog(RInstancesWrapper& wrapper);
    void WrapEventLog(RInstancesWrapper& wrapper);
};

}  // namespace repository
}  // namespace kestro

#endif
