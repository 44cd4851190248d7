#include "xmodule/linux/hwmonsensors.h"

#include "support/fixturehost.h"
#include "support/logcapture.h"
#include "support/sysfsfixture.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace XModule::Linux;

TEST(HwmonSensorsTest, ListsFansWithTheirHealth)
{
    FixtureHost host("");
    const TempDir& dir = host.Dir();
    WriteHwmonChip(dir, "hwmon0", "platform/coretemp.0", "name=coretemp;temp1_input=45000;temp1_label=Package id 0");
    WriteHwmonChip(dir, "hwmon2", "platform/nct6775.656",
                   "name=nct6779;fan1_input=1200;fan1_min=0;fan1_alarm=0;fan1_beep=0;"
                   "fan2_input=0;fan2_min=300;fan2_alarm=1;fan3_input=0;fan3_min=0;fan3_alarm=0;"
                   "fan4_input=650;fan4_min=700;fan4_alarm=0;fan10_input=900;fan5_input=ERR;fan5_min=0");
    WriteHwmonChip(dir, "hwmon10", "pci0000:00/0000:00:1f.4/i2c-7/7-0058",
                   "name=dps800;fan1_input=5400;fan1_fault=0;fan2_input=0;fan2_fault=1;"
                   "fan3_input=3000;fan3_enable=0");
    WriteHwmonChip(dir, "hwmon3", "platform/dell_smm_hwmon", "name=dell_smm;fan1_input=3100;fan1_label=Processor Fan;"
                                                           "fan2_input=4000;fan2_alarm=1");
    // A driver of old kernels: name and sensors in the device's folder.
    WriteSysfsAttributes(dir, "sys/devices/platform/w83627hf.656", "name=w83627hf;fan1_input=2000;fan1_min=1500");
    WriteSysfsLink(dir, "sys/devices/platform/w83627hf.656/hwmon/hwmon4/device", "../../../w83627hf.656");
    WriteSysfsLink(dir, "sys/class/hwmon/hwmon4", "../../devices/platform/w83627hf.656/hwmon/hwmon4");
    LogCapture log;

    std::vector<XModule::protocol::FanInband> fans;
    CollectFans(fans);
    std::ostringstream seen;
    for (const auto& fan : fans)
        seen << fan.ElementName << " | " << fan.HealthState << " | " << fan.DesiredSpeed << "\n";
    EXPECT_EQ("nct6779 fan1 | OK | 1200\n"
              "nct6779 fan2 | Failed | 0\n"
              "nct6779 fan4 | Warning | 650\n"
              "nct6779 fan5 | N/A | N/A\n"
              "nct6779 fan10 | OK | 900\n"
              "Processor Fan | OK | 3100\n"
              "dell_smm fan2 | Warning | 4000\n"
              "w83627hf fan1 | OK | 2000\n"
              "dps800 fan1 | OK | 5400\n"
              "dps800 fan2 | Failed | 0\n",
              seen.str());
    EXPECT_EQ(1, log.Count("nct6779 fan5_input holds no speed")) << log.Dump();
}
