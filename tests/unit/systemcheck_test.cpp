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
}

// Each check asks the service root once; an unreadable or non-JSON root says no and logs why.
TEST(SystemCheckTest, AsksTheServiceRootOfTheTarget)
{
    const struct {
        const char* tree;
        const char* password;
        const char* root;  // replaces the service root when set
        bool platformV2;
        bool redfish;
        const char* release;
        int notJson;     // warnings of the three checks
        int unreadable;
    } targets[] = {
        {"full", RCFCTarget::kPassword, nullptr, true, true, "OBMC 2.14 CFC-V2", 0, 0},
        {"sparse", RCFCTarget::kPassword, nullptr, false, true, "", 0, 0},
        {"sparse", RCFCTarget::kPassword, "<html>not Redfish</html>", false, false, "", 3, 0},
        {"full", "wrong", nullptr, false, false, "", 0, 3},
    };
    for (const auto& t : targets) {
        RCFCTarget target(t.tree);
        target.UseCredentials(RCFCTarget::kUser, t.password);
        if (t.root) target.Bmc().SetDocument("/redfish/v1", t.root, "text/html");
        LogCapture capture;
        EXPECT_EQ(t.platformV2, SystemCheck::IsCFCPlatformV2(target.Connection())) << t.tree;
        EXPECT_EQ(t.redfish, SystemCheck::IsRedfishSupported(target.Connection())) << t.tree;
        EXPECT_EQ(t.release, SystemCheck::GetReleaseName(target.Connection())) << t.tree;
        EXPECT_EQ(3, target.Bmc().RequestCount("/redfish/v1")) << t.tree;
        EXPECT_EQ(t.notJson, capture.Count("is not JSON")) << capture.Dump();
        EXPECT_EQ(t.unreadable, capture.Count("can't be read: Failed to get url")) << capture.Dump();
    }
}
