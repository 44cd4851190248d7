#include "kestro/rest/redfishclient.h"
#include "repository/modules/rcfcstoragedeviceinfoinventorymodule.h"

#include <gtest/gtest.h>

using namespace kestro::repository;

TEST(RCFCStorageDeviceInfoInventoryModuleTest, BaseAddressIsAlwaysHttpsWithAPort)
{
    XModule::ConnectionInfo connection;
    connection.host = "fd00::5";
    connection.isIPv6 = true;
    connection.port = 8443;
    connection.scheme = XModule::XModuleConnection::SchemeHttp;
    EXPECT_EQ("https://[fd00::5]:8443", RCFCStorageDeviceInfoInventoryModule::MakeStorageClient(connection).baseUrl);
    connection.host = "bmc.example";
    connection.isIPv6 = false;
    connection.port = 0;
    RCFCStorageDeviceInfoInventoryModule::StorageClient storage =
        RCFCStorageDeviceInfoInventoryModule::MakeStorageClient(connection);
    EXPECT_EQ("https://bmc.example:443", storage.baseUrl);
    ASSERT_TRUE(storage.client);
    EXPECT_EQ("application/json", storage.client->GetHeaders()["Content-Type"]);
}
