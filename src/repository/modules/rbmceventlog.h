#ifndef KESTRO_REPOSITORY_MODULES_RBMCEVENTLOG_H
#define KESTRO_REPOSITORY_MODULES_RBMCEVENTLOG_H

#include "kestro/repository/rmodule.h"
#include "kestro/xmodule/connectioninfo.h"
#include "xmodule/agentless/qmmmessagelogdata.h"

#include <string>
#include <vector>

namespace XModule {
class xFirmwareInventory;
}

namespace kestro {
namespace repository {

struct RBMCLogType;

// The logs a BMC keeps: over Redfish when the target has a REST connection, and through the CIM
// connections for what Redfish did not give. Every entry is a record; serious ones also become
// report highlights.
class RBMCEventLog : public RModule {
public:
    RBMCEventLog();
    std::string GetName() override;
    std::string GetDisplay() override;

protected:
    void InitCallbacks() override;

private:
    // All logs are read in one pass, whichever of their types is asked for first.
    void EnumXFirmwareQMMMessageLogInstances(RRepository& repo);
    void ReadViaRest(RRepository& repo, const XModule::ConnectionInfo& connection);
    void ReadTargetIdentity(const XModule::ConnectionInfo& connection, XModule::xFirmwareInventory& inventory);
    void ReadViaCim(RRepository& repo);
    void ReadEachConnection(RRepository& repo);
    void ReadFirstConnection(RRepository& repo);
    void ReadThroughQmmapp(RRepository& repo, const XModule::ConnectionInfo& connection);
    void ReadEsxiNodes(RRepository& repo);
    void AddEntries(RRepository& repo, const RBMCLogType& log, const std::vector<XModule::QMMMESSAGELOGDATA>& entries);
    void AddEntry(RRepository& repo, const RBMCLogType& log, int index, const XModule::QMMMESSAGELOGDATA& entry);
    std::string EventIdText(const std::string& eventId);

    bool enumerated;
    bool QMMPlatformLogRestFlag;
    bool QMMAuditLogRestFlag;
    bool platformLogRead;
    bool auditLogRead;
    int qmmType;
    std::string productName;
    std::string machineType;
};

}  // namespace repository
}  // namespace kestro

#endif
