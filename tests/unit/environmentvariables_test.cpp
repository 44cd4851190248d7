#include "xmodule/linux/environmentvariables.h"

#include "support/logcapture.h"

#include <gtest/gtest.h>

using namespace XModule::Linux;

TEST(EnvironmentVariablesTest, ParsesAssignmentsAndTellsSecrets)
{
    LogCapture log;
    const std::vector<XModule::protocol::EnvironmentVariableInfo> variables = ParseEnvironmentFile(
        "# set by pam_env\n"
        "PATH=\"/usr/local/sbin:/usr/local/bin:/usr/sbin\"\n"
        "  export LANG='C.UTF-8'\n"
        "NO_EQUALS_SIGN\n"
        "1BAD=x\n"
        "EMPTY=\n"
        "LANG=en_US.UTF-8\n"
        "HALF=\"open\n");
    std::string rows;
    for (const XModule::protocol::EnvironmentVariableInfo& v : variables) rows += v.Name + "=" + v.Value + ";";
    EXPECT_EQ("EMPTY=;HALF=\"open;LANG=en_US.UTF-8;PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin;",
              rows);
    EXPECT_EQ(2, log.Count("environment line not understood")) << log.Dump();

    struct Case {
        const char* name;
        const char* value;
        bool secret;
    };
    const Case cases[] = {
        {"KESTRO_PASSWORD", "x", true},       {"PGPASSWORD", "x", true},   {"db_passwd", "x", true},
        {"GITHUB_TOKEN", "x", true},          {"API_KEY", "x", true},      {"AWS_ACCESS_KEY_ID", "x", true},
        {"APIKEY", "x", true},                {"SSH_KEYS", "x", true},     {"CLIENT_SECRET", "x", true},
        {"GOOGLE_CREDENTIALS", "x", true},    {"DB_PASS", "x", true},      {"MYSQL_PWD", "x", true},
        {"http_proxy", "http://bob:pw@proxy:3128/", true},
        {"NOTE", "see https://a.example/x and ftp://u:p@b.example", true},
        {"PWD", "/root", false},              {"OLDPWD", "/", false},      {"XKB_DEFAULT_KEYMAP", "de", false},
        {"KEYBOARD", "pc105", false},         {"PASSAGE", "x", false},     {"HOME", "/root", false},
        {"https_proxy", "http://proxy:3128/", false},
        {"MAIL_TO", "mailto:root@host", false},
        {"LINK", "https://host/a:b@c", false},
    };
    for (const Case& c : cases) EXPECT_EQ(c.secret, IsSecretVariable(c.name, c.value)) << c.name << "=" << c.value;
}
