#include "xmodule/agentless/raidcodes.h"

#include "repository/modules/rlsioptmodule.h"

#include <gtest/gtest.h>

using XModule::Agentless::RaidCodes;

// A word turned into its code and back by the module's tables comes out as the same word, or as
// "Other" where the older firmware has none for it.
TEST(RaidCodesTest, WordsSurviveTheRoundTripThroughCodes)
{
    struct Case {
        const char* property;
        std::string (*code)(const std::string&);
        const char* word;
        const char* shown;
    };
    const Case cases[] = {
        {"MediaType", &RaidCodes::MediaTypeCode, "HDD", "Rotational"},
        {"MediaType", &RaidCodes::MediaTypeCode, "SSD", "SSD"},
        {"MediaType", &RaidCodes::MediaTypeCode, "SMR", "Rotational"},
        {"MediaType", &RaidCodes::MediaTypeCode, "Tape", "Other"},
        {"MediaType", &RaidCodes::MediaTypeCode, "N/A", "Unknown"},
        {"DiskFormat", &RaidCodes::LinkSpeedCode, "1.5", "1.5Gb/s"},
        {"DiskFormat", &RaidCodes::LinkSpeedCode, "12", "12.0Gb/s"},
        {"DiskFormat", &RaidCodes::LinkSpeedCode, "6.0Gb/s", "6.0Gb/s"},
        {"DiskFormat", &RaidCodes::LinkSpeedCode, "24", "Other"},
        {"DiskState", &RaidCodes::DriveStateCode, "Online", "Online"},
        {"DiskState", &RaidCodes::DriveStateCode, "Hot spare", "Hot spare"},
        {"DiskState", &RaidCodes::DriveStateCode, "Unconfigured good", "Unconfigured good"},
        {"DiskState", &RaidCodes::DriveStateCode, "Shield configured", "Shield configured"},
        {"DiskState", &RaidCodes::DriveStateCode, "Enabled", "Other"},
        {"ArrayStatus", &RaidCodes::ArrayStateCode, "Degraded", "Degraded"},
        {"ArrayStatus", &RaidCodes::ArrayStateCode, "Partially Degraded", "Partially Degraded"},
        {"ArrayStatus", &RaidCodes::ArrayStateCode, "Optimal", "Online"},
        {"ArrayStatus", &RaidCodes::ArrayStateCode, "Rebuilding", "Other"},
        {"BatteryType", &RaidCodes::BatteryTypeCode, "iBBU08", "iBBU08"},
        {"BatteryType", &RaidCodes::BatteryTypeCode, "TMMC", "TMMC"},
        {"BatteryType", &RaidCodes::BatteryTypeCode, "CVPM05", "Other"},
    };
    const kestro::repository::RLSIOptModule module;
    for (const Case& c : cases) EXPECT_EQ(c.shown, module.ShownValue(c.property, c.code(c.word))) << c.word;
}
