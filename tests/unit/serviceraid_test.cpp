#include "xmodule/service/serviceraid.h"

#include <gtest/gtest.h>

namespace opt = XModule::XMOptions;

TEST(ServiceRaidTest, RaidShowTableAndItsConnection)
{
    EXPECT_EQ("No storage controller found.\n", service::ServiceRaid::FormatRaidShow({}));

    opt::RaidAdapter adapter;
    adapter.Name = "Card";
    adapter.ControllerType = "RAID";
    adapter.Model = "M1";
    adapter.SerialNum = "S1";
    opt::StoragePool pool;
    pool.RAIDLevel = "RAID5";
    pool.volumes.resize(1);
    pool.volumes[0].Name = "data";
    pool.volumes[0].CapacityBytes = "1000";
    pool.volumes[0].VolumeStatus = "OK";
    pool.drives.resize(1);
    pool.drives[0].SlotNum = "3";
    pool.drives[0].Model = "D";
    pool.drives[0].SerialNum = "Z";
    pool.drives[0].MediaType = "HDD";
    pool.drives[0].DiskState = "Online";
    adapter.storagePools.push_back(pool);
    opt::SSD ssd;
    ssd.Location = "Bay 4";
    ssd.ProductName = "P";
    ssd.SerialNumber = "Q";
    ssd.Type = "NVMe";
    ssd.DriveStatus = "OK";
    adapter.ssds.push_back(ssd);
    const std::string expected =
        "Controller 0: Card (RAID)\n"
        "  Model: M1  Serial Number: S1\n"
        "  Volumes:\n"
        "    Name                     RAID       Capacity(bytes)      Status      \n"
        "    data                     RAID5      1000                 OK          \n"
        "  Drives:\n"
        "    Slot             Model                        Serial Number          Media      State             \n"
        "    3                D                            Z                      HDD        Online            \n"
        "    Bay 4            P                            Q                      NVMe       OK                \n";
    EXPECT_EQ(expected, service::ServiceRaid::FormatRaidShow({adapter}));

    // The first connection the caller named, else this host.
    XModule::UserContext context;
    XModule::ConnectOption option;
    EXPECT_EQ(0, XModule::ConvertUserContextToConnectOption(context, option));
    EXPECT_EQ("localhost", option.connection.host);
    EXPECT_FALSE(option.connection.isBmc);
    context.connections.resize(2);
    context.connections[0].host = "bmc-a.example";
    context.connections[0].isBmc = true;
    EXPECT_EQ(0, XModule::ConvertUserContextToConnectOption(context, option));
    EXPECT_EQ("bmc-a.example", option.connection.host);
    EXPECT_TRUE(option.connection.isBmc);
}
