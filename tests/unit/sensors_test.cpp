#include "xmodule/linux/hwmonsensors.h"
#include "xmodule/linux/powersupplies.h"

#include "support/fixturehost.h"
#include "support/golden.h"
#include "support/logcapture.h"
#include "support/sysfsfixture.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace XModule::Linux;

// One root for both readers: board fan chips, power supplies of the power_supply class and
// PMBus chips whose fans and alarms speak for their supply.
TEST(SensorsTest, ListsFansAndPowerSuppliesWithTheirHealth)
{
    FixtureHost host("");
    const TempDir& dir = host.Dir();
    const std::pair<const char*, const char*> supplies[] = {
        {"ACPI0003:00/power_supply/AC", "type=Mains;online=1"},
        {"ACPI0003:00/power_supply/BAT0", "type=Battery;present=1;status=Discharging;power_now=9120000"},
        {"i2c-7/7-0059/power_supply/psu1",
         "type=Mains;present=1;online=1;health=Good;model_name=DPS-800AB-5 A;power_now=212500000"},
        {"i2c-7/7-005a/power_supply/psu2", "type=Mains;present=1;online=0;health=Unknown;model_name=DPS-800AB-5 A"},
        {"i2c-7/7-005b/power_supply/psu3", "type=Mains;present=1;online=1;health=Overheat;power_now=lots"},
        {"i2c-7/7-005c/power_supply/psu4", "type=Mains;present=0"},
        {"i2c-7/7-005d/power_supply/psu5", "type=Mains;health=Dead;online=1"},
        {"usb/ucsi-source-psy-USBC000:001", "type=USB;online=1"},
    };
    for (const auto& supply : supplies) {
        const std::string folder = std::string("sys/devices/") + supply.first;
        WriteSysfsAttributes(dir, folder, supply.second);
        WriteSysfsLink(dir, "sys/class/power_supply/" + folder.substr(folder.rfind('/') + 1), "../../" + folder.substr(4));
    }
    const std::string i2c = "pci0000:00/0000:00:1f.4/i2c-7/";
    const char* const chips[][3] = {
        {"hwmon0", "platform/coretemp.0", "name=coretemp;temp1_input=45000;temp1_label=Package id 0"},
        {"hwmon1", "7-0058", "name=dps800;power1_input=230000000;power1_label=pin;power2_input=212000000;"
                             "power2_label=pout1;power2_alarm=0;in1_input=229000;in1_label=vin;in1_lcrit_alarm=0;"
                             "fan1_input=5400;fan1_fault=0"},
        {"hwmon2", "platform/nct6775.656", "name=nct6779;fan1_input=1200;fan1_min=0;fan1_alarm=0;fan1_beep=0;"
                                           "fan2_input=0;fan2_min=300;fan2_alarm=1;fan3_input=0;fan3_min=0;fan3_alarm=0;"
                                           "fan4_input=650;fan4_min=700;fan4_alarm=0;fan10_input=900;fan5_input=ERR;fan5_min=0"},
        {"hwmon3", "platform/dell_smm_hwmon", "name=dell_smm;fan1_input=3100;fan1_label=Processor Fan;fan2_input=4000;fan2_alarm=1"},
        {"hwmon5", "7-0060", "name=pmbus;power1_input=0;power1_label=pin;power2_input=0;power2_label=pout1;"
                             "power3_input=5500000;power3_label=pout2;in1_lcrit_alarm=1;temp1_max_alarm=1"},
        {"hwmon6", "7-0061", "name=crps185;temp1_input=41000;temp1_max_alarm=1"},
        {"hwmon7", "pci0000:00/0000:00:1f.4/i2c-8/8-0040", "name=xdpe12284;power1_input=90000000;power1_label=pout1"},
        {"hwmon8", "i2c-7/7-0059/power_supply/psu1", "name=psu1;power1_input=212500000"},
        {"hwmon10", "7-005e", "name=dps800;fan1_input=5400;fan1_fault=0;fan2_input=0;fan2_fault=1;fan3_input=3000;fan3_enable=0"},
    };
    for (const auto& chip : chips) WriteHwmonChip(dir, chip[0], chip[1][0] == '7' ? i2c + chip[1] : chip[1], chip[2]);
    // A driver of old kernels: name and sensors in the device's folder.
    WriteSysfsAttributes(dir, "sys/devices/platform/w83627hf.656", "name=w83627hf;fan1_input=2000;fan1_min=1500");
    WriteSysfsLink(dir, "sys/devices/platform/w83627hf.656/hwmon/hwmon4/device", "../../../w83627hf.656");
    WriteSysfsLink(dir, "sys/class/hwmon/hwmon4", "../../devices/platform/w83627hf.656/hwmon/hwmon4");
    LogCapture log;

    std::vector<XModule::protocol::FanInband> fans;
    CollectFans(fans);
    std::ostringstream seen;
    for (const auto& fan : fans) seen << fan.ElementName << " | " << fan.HealthState << " | " << fan.DesiredSpeed << "\n";
    EXPECT_TRUE(MatchesGolden("devices/fans.txt", seen.str()));
    EXPECT_EQ(1, log.Count("nct6779 fan5_input holds no speed")) << log.Dump();

    std::vector<XModule::protocol::PowerInband> power;
    CollectPowerSupplies(power);
    seen.str("");
    for (const auto& s : power) seen << s.ElementName << " | " << s.HealthState << " | " << s.TotalOutputPower << "\n";
    EXPECT_TRUE(MatchesGolden("devices/power_supplies.txt", seen.str()));
    EXPECT_EQ(1, log.Count("Power supply psu3 gives no power: \"lots\"")) << log.Dump();
}
