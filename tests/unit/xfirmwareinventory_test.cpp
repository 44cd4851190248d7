#include "xmodule/agentless/xfirmwareinventory.h"

#include "fakebmc/loopbackbmc.h"
#include "support/logcapture.h"

#include <boost/json/parse.hpp>
#include <gtest/gtest.h>

using namespace XModule;

namespace {

const std::string kSel = "/redfish/v1/Systems/Node-A1/LogServices";
const std::string kSecondPage = kSel + "/SEL/Entries/Page2";

typedef int (xFirmwareInventory::*LogRead)(std::vector<QMMMESSAGELOGDATA>& entries);

}  // namespace

// The logs of a BMC that answers badly: what was read before the fault stays, the code tells
// what went wrong, and the log says where.
TEST(xFirmwareInventoryTest, KeepsWhatWasReadAndTellsWhyTheRestIsMissing)
{
    struct Case {
        const char* name;
        std::string path;      // the resource answered with `body`; empty: the tree as it is
        std::string body;
        bool isBmc;
        std::uint16_t node;
        LogRead read;
        int expectedCode;
        std::vector<std::string> expectedSequence;
        const char* logged;
    } cases[] = {
        {"both pages", "", "", true, 0, &xFirmwareInventory::GetQMMPlatformLogDataViaREST, INVENTORY_SUCCESS,
         {"1", "2", "3", "4"}, nullptr},
        {"second page not JSON", kSecondPage, "{\"Members\": [", true, 0,
         &xFirmwareInventory::GetQMMPlatformLogDataViaREST, INVENTORY_UNREADABLE, {"1", "2"}, "Redfish read of"},
        {"linked entry missing", kSel + "/SEL/Entries/4", "", true, 0, &xFirmwareInventory::GetQMMMessageLogDataCIM,
         INVENTORY_UNREADABLE, {"1", "2", "3"}, "Entries/4 failed"},
        {"no event log service", kSel,
         R"({"Members": [{"@odata.id": "/redfish/v1/Systems/Node-A1/LogServices/DiagLog"}]})", true, 0,
         &xFirmwareInventory::GetQMMPlatformLogDataViaREST, INVENTORY_NO_LOG_SERVICE, {}, nullptr},
        {"the only service, of no named entry type", kSel,
         R"({"Members": [{"@odata.id": "/redfish/v1/Systems/Node-A1/LogServices/SEL/Untyped"}]})", true, 0,
         &xFirmwareInventory::GetQMMPlatformLogDataViaREST, INVENTORY_SUCCESS, {"1", "2", "3", "4"}, nullptr},
        {"no second node", "", "", true, 1, &xFirmwareInventory::GetQMMActiveEventsDataViaREST, INVENTORY_NO_SYSTEM,
         {}, "lists no member 1"},
        {"this host", "", "", false, 0, &xFirmwareInventory::GetQMMAuditLogDataViaREST, INVENTORY_NOT_BMC, {}, nullptr},
    };
    for (const Case& c : cases) {
        LoopbackBmc::Options options;
        options.fixtureRoot = std::string(KESTRO_TEST_FIXTURES) + "/bmc/standard";
        LoopbackBmc bmc(options);
        bmc.Start();
        if (!c.path.empty() && c.body.empty()) bmc.ForceStatus(c.path, 404);
        if (!c.body.empty()) bmc.SetDocument(c.path, c.body);
        bmc.SetDocument(kSel + "/SEL/Untyped", R"({"Id": "Log1", "Entries": {"@odata.id": ")" + kSel + R"(/SEL/Entries"}})");
        ConnectionInfo connection;
        connection.host = "127.0.0.1";
        connection.port = bmc.Port();
        connection.scheme = XModuleConnection::SchemeHttp;
        connection.isBmc = c.isBmc;
        connection.nodeIndex = c.node;
        LogCapture log;
        std::vector<QMMMESSAGELOGDATA> entries;
        xFirmwareInventory inventory(connection);
        EXPECT_EQ(c.expectedCode, (inventory.*c.read)(entries)) << c.name;
        std::vector<std::string> sequence;
        for (const QMMMESSAGELOGDATA& entry : entries) sequence.push_back(entry.eventSequenceNumber);
        EXPECT_EQ(c.expectedSequence, sequence) << c.name;
        if (c.logged) {
            EXPECT_LE(1, log.Count(c.logged)) << c.name << log.Dump();
        }
    }
}

TEST(xFirmwareInventoryTest, IdentifiesTheSystemBySkuOrVendorMachineType)
{
    struct Case {
        const char* name;
        const char* system;
        const char* machineType;
    } cases[] = {
        {"SKU", R"({"Model": "RX650 V3", "SKU": "7D76CTO1WW"})", "7D76"},
        {"vendor field when the SKU is no machine type", R"({"SKU": "N/A", "Oem": {"Orvena": {"MachineType": "7X05"}}})",
         "7X05"},
        {"neither", R"({"Model": "Generic"})", ""},
    };
    for (const Case& c : cases)
        EXPECT_EQ(c.machineType, xFirmwareInventory::MachineTypeOf(boost::json::parse(c.system))) << c.name;
}
