#include "xmodule/linux/powersupplies.h"

#include "support/fixturehost.h"
#include "support/logcapture.h"
#include "support/sysfsfixture.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace XModule::Linux;

TEST(PowerSuppliesTest, ListsMainsSuppliesAndPmbusChips)
{
    FixtureHost host("");
    const TempDir& dir = host.Dir();
    const std::pair<const char*, const char*> entries[] = {
        {"ACPI0003:00/power_supply/AC", "type=Mains;online=1"},
        {"ACPI0003:00/power_supply/BAT0", "type=Battery;present=1;status=Discharging;power_now=9120000"},
        {"i2c-7/7-0059/power_supply/psu1",
         "type=Mains;present=1;online=1;health=Good;model_name=DPS-800AB-5 A;"
         "power_now=212500000"},
        {"i2c-7/7-005a/power_supply/psu2", "type=Mains;present=1;online=0;health=Unknown;model_name=DPS-800AB-5 A"},
        {"i2c-7/7-005b/power_supply/psu3", "type=Mains;present=1;online=1;health=Overheat;power_now=lots"},
        {"i2c-7/7-005c/power_supply/psu4", "type=Mains;present=0"},
        {"i2c-7/7-005d/power_supply/psu5", "type=Mains;health=Dead;online=1"},
        {"usb/ucsi-source-psy-USBC000:001", "type=USB;online=1"},
    };
    for (const auto& entry : entries) {
        const std::string folder = std::string("sys/devices/") + entry.first;
        WriteSysfsAttributes(dir, folder, entry.second);
        WriteSysfsLink(dir, "sys/class/power_supply/" + folder.substr(folder.rfind('/') + 1),
                       "../../" + folder.substr(4));
    }
    WriteHwmonChip(dir, "hwmon0", "platform/nct6775.656", "name=nct6779;fan1_input=1200");
    WriteHwmonChip(dir, "hwmon1", "pci0000:00/0000:00:1f.4/i2c-7/7-0058",
                   "name=dps800;power1_input=230000000;power1_label=pin;power2_input=212000000;power2_label=pout1;"
                   "power2_alarm=0;in1_input=229000;in1_label=vin;in1_lcrit_alarm=0;fan1_input=5400;fan1_fault=0");
    WriteHwmonChip(dir, "hwmon2", "pci0000:00/0000:00:1f.4/i2c-7/7-0060",
                   "name=pmbus;power1_input=0;power1_label=pin;power2_input=0;power2_label=pout1;"
                   "power3_input=5500000;power3_label=pout2;in1_lcrit_alarm=1;temp1_max_alarm=1");
    WriteHwmonChip(dir, "hwmon3", "pci0000:00/0000:00:1f.4/i2c-7/7-0061",
                   "name=crps185;temp1_input=41000;temp1_max_alarm=1");
    WriteHwmonChip(dir, "hwmon4", "pci0000:00/0000:00:1f.4/i2c-8/8-0040",
                   "name=xdpe12284;power1_input=90000000;"
                   "power1_label=pout1");
    WriteHwmonChip(dir, "hwmon5", "i2c-7/7-0059/power_supply/psu1", "name=psu1;power1_input=212500000");
    LogCapture log;

    std::vector<XModule::protocol::PowerInband> supplies;
    CollectPowerSupplies(supplies);
    std::ostringstream seen;
    for (const auto& s : supplies)
        seen << s.ElementName << " | " << s.HealthState << " | " << s.TotalOutputPower << "\n";
    EXPECT_EQ(
        "AC | OK | N/A\n"
        "DPS-800AB-5 A (psu1) | OK | 212.5\n"
        "DPS-800AB-5 A (psu2) | Warning | N/A\n"
        "psu3 | Warning | N/A\n"
        "psu5 | Failed | N/A\n"
        "dps800 (7-0058) | OK | 212\n"
        "pmbus (7-0060) | Failed | 5.5\n"
        "crps185 (7-0061) | Warning | N/A\n",
        seen.str());
    EXPECT_EQ(1, log.Count("Power supply psu3 gives no power: \"lots\"")) << log.Dump();
}
