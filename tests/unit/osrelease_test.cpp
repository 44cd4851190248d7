#include "xmodule/linux/osrelease.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace XModule::Linux;

TEST(OsReleaseTest, ParsesQuotedValuesAndTellsTheFamily)
{
    std::istringstream text(
        "# comment\n"
        "NAME=\"Rocky Linux\"\n"
        "ID=\"rocky\"\n"
        "ID_LIKE='rhel centos fedora'\n"
        "PRETTY_NAME=\"Say \\\"hi\\\"\"\n"
        "BROKEN\n"
        "=novalue\n"
        "VERSION_ID=9.3\n");
    const OsRelease release = ParseOsRelease(text);
    EXPECT_EQ("Rocky Linux", release.at("NAME"));
    EXPECT_EQ("rhel centos fedora", release.at("ID_LIKE"));
    EXPECT_EQ("Say \"hi\"", release.at("PRETTY_NAME"));
    EXPECT_EQ("9.3", release.at("VERSION_ID"));
    EXPECT_EQ(5u, release.size());

    struct Case {
        const char* id;
        const char* like;
        const char* family;
    };
    const Case cases[] = {
        {"rhel", "", "rhel"},     {"rocky", "rhel centos fedora", "rhel"}, {"fedora", "", "rhel"},
        {"sles", "", "sles"},     {"opensuse-tumbleweed", "opensuse suse", "sles"},
        {"debian", "", "ubuntu"}, {"linuxmint", "ubuntu debian", "ubuntu"}, {"arch", "", ""},
        {"", "", ""},
    };
    for (const Case& c : cases) {
        OsRelease entry;
        if (*c.id) entry["ID"] = c.id;
        if (*c.like) entry["ID_LIKE"] = c.like;
        EXPECT_EQ(c.family, OsFamily(entry)) << c.id;
    }
}
