#include "repository/rmoduletable.h"

#include <gtest/gtest.h>

using namespace kestro::repository;

namespace {

std::vector<std::string> NamesOf(RModuleTable::Row row)
{
    RModuleList modules;
    RModuleTable::AppendLeading(modules);
    RModuleTable::AppendRow(row, modules);
    std::vector<std::string> names;
    for (const boost::shared_ptr<RModule>& module : modules) names.push_back(module->GetName());
    return names;
}

}  // namespace

TEST(RModuleTableTest, RedfishRowsRunTheCFCModulesInOrderBetweenTwoLegacyModules)
{
    const std::vector<std::string> expected = {
        "LegacyModule",                      "CFCHardwareInventoryModule", "CFCFirmwareInventoryModule",
        "CFCEnvironmentInfoInventoryModule", "CFCIPMILogsInventoryModule", "CFCBmcLogsInventoryModule",
        "CFCStorageDeviceInfoInventoryModule", "DataSource",               "ReportHighlights Module",
        "RExecutionLog Module",              "LegacyModule"};
    EXPECT_EQ(expected, NamesOf(RModuleTable::RowCfcOob));
    // In band the host's storage adapters and operating system join, before the execution log
    // that closes the run.
    std::vector<std::string> inBand = expected;
    inBand.insert(inBand.end() - 2, "LSIOptModule");
    inBand.insert(inBand.end() - 2, "ROSInventoryModule");
    EXPECT_EQ(inBand, NamesOf(RModuleTable::RowCfcInBand));
    EXPECT_EQ(RModuleTable::RowCfcInBand, RModuleTable::RowOf(CaseCfcSles));
    EXPECT_EQ(RModuleTable::RowCfcOob, RModuleTable::RowOf(CaseCfcOob));

    // No other case runs a Redfish module.
    for (const std::string& name : NamesOf(RModuleTable::RowOrdinary)) EXPECT_EQ(std::string::npos, name.find("CFC"));
}
