#include "kestro/xmodule/globalconfig.h"
#include "kestro/xmodule/kestrodirectory.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <sstream>

TEST(GlobalConfigTest, ParsesKeyValueLinesAndSkipsCommentsAndJunk)
{
    std::istringstream text(
        "# comment\n"
        "  KESTRO_EVENTLOG_MAX = 250 \n"
        "\n"
        "no equals sign here\n"
        "=value without key\n"
        "EMPTY=\n"
        "URL=https://a/b?x=1\n"
        "KESTRO_EVENTLOG_MAX=300\n");
    const std::map<std::string, std::string> items = XModule::GlobalConfig::Parse(text);
    ASSERT_EQ(3u, items.size());
    EXPECT_EQ("300", items.at("KESTRO_EVENTLOG_MAX"));
    EXPECT_EQ("", items.at("EMPTY"));
    EXPECT_EQ("https://a/b?x=1", items.at("URL"));
}

TEST(GlobalConfigTest, ReadsTheFileInTheProgramHome)
{
    TempDir home;
    ScopedEnv env("KESTRO_HOME", home.Path());
    std::string value = "untouched";
    EXPECT_NE(0, XModule::GlobalConfig::GetConfigItem("REST_ACTION_TIMEOUT", value));
    EXPECT_EQ("untouched", value);
    EXPECT_EQ(7, XModule::GetGlobalConfigValue("REST_ACTION_TIMEOUT", 7));

    home.Write("global.config", "REST_ACTION_TIMEOUT=30\nBAD=12abc\nKESTRO_EVENTLOG_MAX=all\n");
    EXPECT_EQ(0, XModule::GlobalConfig::GetConfigItem("REST_ACTION_TIMEOUT", value));
    EXPECT_EQ("30", value);
    EXPECT_EQ(30, XModule::GetGlobalConfigValue("REST_ACTION_TIMEOUT", 7));
    EXPECT_EQ(7, XModule::GetGlobalConfigValue("BAD", 7));
    EXPECT_EQ(7, XModule::GetGlobalConfigValue("KESTRO_EVENTLOG_MAX", 7));
    EXPECT_EQ(home.Path() + "/data/x.xml", KestroDirectory::GetExePath("data/x.xml"));
}
