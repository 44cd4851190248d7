#include "repository/modules/rcfcfirmwareinventorymodule.h"

#include <gtest/gtest.h>

#include <boost/json/parse.hpp>

using namespace kestro::repository;

TEST(RCFCFirmwareInventoryModuleTest, MachineTypeComesFromTheVendorBranchOrTheModel)
{
    const struct {
        const char* system;
        const char* machineType;
    } cases[] = {
        {R"({"Model": "7D76CTO1WW", "Oem": {"Orvena": {"MachineType": "7D75"}}})", "7D75"},
        {R"({"Model": "7X06A0ABCD"})", "7X06"},
        {R"({"Model": "7X0"})", "N/A"},
        {R"({"Model": "SR-650 V3"})", "N/A"},
        {R"({"Model": 7606})", "N/A"},
        {R"({"Oem": {"Orvena": {"MachineType": 7606}}, "Model": "7D76CTO1WW"})", "7D76"},
        {R"({})", "N/A"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.machineType, RCFCFirmwareInventoryModule::MachineTypeOf(boost::json::parse(c.system))) << c.system;
}
