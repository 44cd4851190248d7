#include "xmodule/linux/opticaldrives.h"

#include "support/fixturehost.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

using namespace XModule::Linux;

namespace {

// A DVD writer (sr1) and a CD-ROM drive (sr0), as the cdrom driver lays its table out.
const char kTwoDrives[] =
    "CD-ROM information, Id: cdrom.c 3.20 2003/12/17\n\n"
    "drive name:\t\tsr1\tsr0\ndrive speed:\t\t24\t24\ndrive # of slots:\t1\t1\nCan close tray:\t\t1\t1\n"
    "Can open tray:\t\t1\t1\nCan lock tray:\t\t1\t1\nCan change speed:\t1\t1\nCan select disk:\t0\t0\n"
    "Can read multisession:\t1\t1\nCan read MCN:\t\t1\t1\nReports media changed:\t1\t1\nCan play audio:\t\t1\t1\n"
    "Can write CD-R:\t\t1\t0\nCan write CD-RW:\t1\t0\nCan read DVD:\t\t1\t0\nCan write DVD-R:\t1\t0\n"
    "Can write DVD-RAM:\t0\t0\nCan read MRW:\t\t1\t0\nCan write MRW:\t\t1\t0\nCan write RAM:\t\t1\t0\n\n";

// Drive name, then DVD-RAM/DVD-R/DVD-ROM read, DVD-RAM/DVD-R write, CD-RW/CD-R read, CD-RW/CD-R write.
std::string Summary(const std::vector<XModule::protocol::OpticalDevice>& drives)
{
    std::string text;
    for (const auto& d : drives) {
        text += (text.empty() ? "" : " ") + d.DeviceID + ":";
        for (const std::string* f : {&d.DvdRamRead, &d.DvdRRead, &d.DvdRomRead, &d.DvdRamWrite, &d.DvdRWrite,
                                     &d.CdRwRead, &d.CdRRead, &d.CdRwWrite, &d.CdRWrite})
            text += *f == "Yes" ? "Y" : *f == "No" ? "N" : *f == "N/A" ? "?" : "!";
    }
    return text;
}

}  // namespace

TEST(OpticalDrivesTest, ParsesCapabilitiesPerDriveColumn)
{
    const struct {
        const char* name;
        std::string text;
        const char* expected;
        const char* log;  // "" when nothing is logged
    } cases[] = {{"two drives", kTwoDrives, "sr1:?YYNYYYYY sr0:NNNNN?YNN", ""},
                 {"DVD-RAM writer", "drive name:\tsr0\nCan read DVD:\t1\nCan write DVD-RAM:\t1\n", "sr0:YYYY?????", ""},
                 {"row shorter than the drives", "drive name:\tsr1\tsr0\nCan read DVD:\t1\nCan write CD-R:\t0\t1\n",
                  "sr1:?YY?????N sr0:??????Y?Y", "row \"Can read DVD\" has 1 value(s) for 2 drive(s)"},
                 {"values not 0 or 1", "drive name: sr0\nCan read DVD: yes\nCan write CD-R: 2\n", "sr0:?????????", ""},
                 {"no drive loaded", "CD-ROM information, Id: cdrom.c 3.20 2003/12/17\n\ndrive name:\t\n", "", ""},
                 {"no drive name row", "Can read DVD:\t1\nCan write CD-R:\t1\n", "", "has no \"drive name\" row"},
                 {"not a table", std::string("\xff\xfe\0garbage", 10), "", "has no \"drive name\" row"}};
    for (const auto& c : cases) {
        LogCapture log;
        EXPECT_EQ(c.expected, Summary(ParseCdromInfo(c.text))) << c.name;
        EXPECT_EQ(*c.log ? 1 : 0, log.Count("[repo] cdrom info")) << c.name << "\n" << log.Dump();
        if (*c.log) {
            EXPECT_EQ(1, log.Count(c.log)) << c.name << "\n" << log.Dump();
        }
    }
}

TEST(OpticalDrivesTest, NamesDrivesFromSysfs)
{
    FixtureHost host("");
    std::vector<XModule::protocol::OpticalDevice> drives;
    CollectOpticalDevices(drives);
    EXPECT_TRUE(drives.empty());

    host.Dir().Write("proc/sys/dev/cdrom/info", kTwoDrives);
    host.Dir().Write("sys/block/sr0/device/vendor", "HL-DT-ST\n");
    host.Dir().Write("sys/block/sr0/device/model", "DVD+-RW GUD1N   \n");
    CollectOpticalDevices(drives);
    ASSERT_EQ(2u, drives.size());
    EXPECT_EQ("sr1 N/A N/A", drives[0].DeviceID + " " + drives[0].Manufacturer + " " + drives[0].ProductName);
    EXPECT_EQ("sr0 HL-DT-ST DVD+-RW GUD1N",
              drives[1].DeviceID + " " + drives[1].Manufacturer + " " + drives[1].ProductName);
}
