#include "rmoduletable.h"

#include "repository/modules/rbmceventlog.h"
#include "repository/modules/rcfcbmclogsinventorymodule.h"
#include "repository/modules/rcfcenvironmentinfoinventorymodule.h"
#include "repository/modules/rcfcfirmwareinventorymodule.h"
#include "repository/modules/rcfchardwareinventorymodule.h"
#include "repository/modules/rcfcipmilogsinventorymodule.h"
#include "repository/modules/rcfcstoragedeviceinfoinventorymodule.h"
#include "repository/modules/rdatasourcemodule.h"
#include "repository/modules/rexecutionlogmodule.h"
#include "repository/modules/rhardwareinventorymodule.h"
#include "repository/modules/rosinventorymodule.h"
#include "repository/modules/rlegacymodule.h"
#include "repository/modules/rlsioptmodule.h"
#include "repository/modules/rnetworkmodule.h"
#include "repository/modules/rreporthighlightsmodule.h"

#include <boost/make_shared.hpp>

namespace kestro {
namespace repository {

namespace {

typedef boost::shared_ptr<RModule> (*ModuleMaker)();

template <class Module>
boost::shared_ptr<RModule> Make()
{
    return boost::make_shared<Module>();
}

struct RowModules {
    RModuleTable::Row row;
    std::vector<ModuleMaker> makers;
};

const std::vector<ModuleMaker> kLeading = {Make<RLegacyModule>};

const RowModules kRows[] = {
    {RModuleTable::RowSmm, {Make<RDataSourceModule>}},
    {RModuleTable::RowCmm, {Make<RDataSourceModule>}},
    {RModuleTable::RowCfcInBand,
     {Make<RCFCHardwareInventoryModule>, Make<RCFCFirmwareInventoryModule>, Make<RCFCEnvironmentInfoInventoryModule>,
      Make<RCFCIPMILogsInventoryModule>, Make<RCFCBmcLogsInventoryModule>, Make<RCFCStorageDeviceInfoInventoryModule>,
      Make<RDataSourceModule>, Make<RReportHighlightsModule>, Make<RLSIOptModule>, Make<ROSInventoryModule>,
      Make<RExecutionLogModule>, Make<RLegacyModule>}},
    {RModuleTable::RowCfcOob,
     {Make<RCFCHardwareInventoryModule>, Make<RCFCFirmwareInventoryModule>, Make<RCFCEnvironmentInfoInventoryModule>,
      Make<RCFCIPMILogsInventoryModule>, Make<RCFCBmcLogsInventoryModule>, Make<RCFCStorageDeviceInfoInventoryModule>,
      Make<RDataSourceModule>, Make<RReportHighlightsModule>, Make<RExecutionLogModule>, Make<RLegacyModule>}},
    {RModuleTable::RowOrdinary,
     {Make<RDataSourceModule>, Make<RReportHighlightsModule>, Make<ROSInventoryModule>,
      Make<RHardwareInventoryModule>, Make<RNetworkModule>, Make<RLSIOptModule>,
      Make<RBMCEventLog>, Make<RExecutionLogModule>}},
};

void AppendAll(const std::vector<ModuleMaker>& makers, RModuleList& modules)
{
    for (ModuleMaker make : makers) modules.push_back(make());
}

}  // namespace

RModuleTable::Row RModuleTable::RowOf(RInventoryCase c)
{
    switch (c) {
    case CaseSmm:
        return RowSmm;
    case CaseCmm:
        return RowCmm;
    case CaseCfcWindows:
    case CaseCfcRhel:
    case CaseCfcSles:
        return RowCfcInBand;
    case CaseCfcOob:
        return RowCfcOob;
    default:
        return RowOrdinary;
    }
}

void RModuleTable::AppendLeading(RModuleList& modules) { AppendAll(kLeading, modules); }

void RModuleTable::AppendRow(Row row, RModuleList& modules)
{
    for (const RowModules& entry : kRows)
        if (entry.row == row) AppendAll(entry.makers, modules);
}

}  // namespace repository
}  // namespace kestro
