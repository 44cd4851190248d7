#include "xmodule/linux/initsystem.h"

#include <gtest/gtest.h>

using namespace XModule::Linux;

TEST(InitSystemTest, ReadsSystemdVersionsAndRunLevels)
{
    const char* const names[][2] = {
        {"libsystemd-shared-252.so", "252"}, {"libsystemd-shared-255.4-1.fc40.so", "255.4-1.fc40"},
        {"libsystemd-core-252.so", ""},      {"libsystemd-shared-252.so.0", ""},
        {"libsystemd-shared-.so", ""},
    };
    for (const auto& name : names) EXPECT_EQ(name[1], ParseSystemdVersion(name[0])) << name[0];

    const char* const inittabs[][2] = {
        {"# The default runlevel.\nid:2:initdefault:\n\nsi::sysinit:/etc/init.d/rcS\n", "2"},
        {"#id:5:initdefault:\n1:2345:respawn:/sbin/getty 38400 tty1\n", ""},
        {"id:3:initdefault", "3"},
        {"id:initdefault:", ""},
        {"", ""},
    };
    for (const auto& inittab : inittabs) EXPECT_EQ(inittab[1], ParseInittabDefault(inittab[0])) << inittab[0];
}
