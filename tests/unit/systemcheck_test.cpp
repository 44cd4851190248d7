#include "rcfctestsupport.h"
#include "support/logcapture.h"
#include "kestro/systemtype/systemcheck.h"

#include <gtest/gtest.h>

#include <boost/json/parse.hpp>

using XModule::SystemCheck;

TEST(SystemCheckTest, ServiceRootRules)
{
    const struct {
        const char* root;
        bool platformV2;
        bool redfish;
    } cases[] = {
        {R"({"RedfishVersion": "1.15.0", "Vendor": "Orvena", "Oem": {"Orvena": {"PlatformGeneration": 2}}})", true,
         true},
        {R"({"RedfishVersion": "1.15.0", "Vendor": "Orvena", "Oem": {"Orvena": {"PlatformGeneration": 3}}})", true,
         true},
        {R"({"RedfishVersion": "1.6.0", "Vendor": "Orvena", "Oem": {"Orvena": {"PlatformGeneration": 1}}})", false,
         true},
        {R"({"RedfishVersion": "1.6.0", "Vendor": "Orvena"})", false, true},
        {R"({"RedfishVersion": "1.6.0", "Vendor": "Other", "Oem": {"Orvena": {"PlatformGeneration": 2}}})", false,
         true},
        {R"({"Vendor": "Orvena", "Oem": {"Orvena": {"PlatformGeneration": "2"}}})", false, false},
        {R"({"RedfishVersion": 1})", false, false},
        {R"([1, 2])", false, false},
    };
    for (const auto& c : cases) {
        const boost::json::value root = boost::json::parse(c.root);
        EXPECT_EQ(c.platformV2, SystemCheck::ServiceRootIsCFCPlatformV2(root)) << c.root;
        EXPECT_EQ(c.redfish, SystemCheck::ServiceRootIsRedfish(root)) << c.root;
    }
}

TEST(SystemCheckTest, ReleaseNameIsTheTextTheServiceRootStates)
{
    const struct {
        const char* root;
        const char* name;
    } cases[] = {
        {R"({"Oem": {"Orvena": {"ReleaseName": "OBMC 2.14"}}})", "OBMC 2.14"},
        {R"({"Oem": {"Orvena": {"ReleaseName": 214}}})", ""},
        {R"({"Oem": {"Orvena": {}}})", ""},
        {R"({"ReleaseName": "top level"})", ""},
        {R"("OBMC")", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.name, SystemCheck::ServiceRootReleaseName(boost::json::parse(c.root))) << c.root;

    RCFCTarget full("full");
    EXPECT_EQ("OBMC 2.14 CFC-V2", SystemCheck::GetReleaseName(full.Connection()));
    RCFCTarget sparse("sparse");
    EXPECT_EQ("", SystemCheck::GetReleaseName(sparse.Connection()));
    LogCapture capture;
    full.UseCredentials(RCFCTarget::kUser, "wrong");
    EXPECT_EQ("", SystemCheck::GetReleaseName(full.Connection()));
    EXPECT_EQ(1, capture.Count("can't be read: Failed to get url"));
}

TEST(SystemCheckTest, AsksTheServiceRootOfTheTarget)
{
    RCFCTarget full("full");
    EXPECT_TRUE(SystemCheck::IsCFCPlatformV2(full.Connection()));
    EXPECT_TRUE(SystemCheck::IsRedfishSupported(full.Connection()));
    EXPECT_EQ(2, full.Bmc().RequestCount("/redfish/v1"));

    RCFCTarget sparse("sparse");
    EXPECT_FALSE(SystemCheck::IsCFCPlatformV2(sparse.Connection()));
    EXPECT_TRUE(SystemCheck::IsRedfishSupported(sparse.Connection()));

    LogCapture capture;
    sparse.Bmc().SetDocument("/redfish/v1", "<html>not Redfish</html>", "text/html");
    EXPECT_FALSE(SystemCheck::IsRedfishSupported(sparse.Connection()));
    EXPECT_EQ(1, capture.Count("is not JSON"));

    full.UseCredentials(RCFCTarget::kUser, "wrong");
    EXPECT_FALSE(SystemCheck::IsCFCPlatformV2(full.Connection()));
    EXPECT_FALSE(SystemCheck::IsRedfishSupported(full.Connection()));
    EXPECT_EQ(2, capture.Count("can't be read: Failed to get url"));
}
