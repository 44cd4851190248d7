#include "xmodule/linux/bootconfiguration.h"

#include <gtest/gtest.h>

using namespace XModule::Linux;

TEST(BootConfigurationTest, KeepsEntriesTitlesAndKernelLines)
{
    EXPECT_EQ("title Red Hat Enterprise Linux (5.14.0-362.8.1.el9_3.x86_64) 9.3 (Plow)\n"
              "    linux /vmlinuz-5.14.0-362.8.1.el9_3.x86_64\n"
              "    options root=/dev/mapper/rhel-root ro crashkernel=1G-4G:192M",
              ParseBootEntry("version 5.14.0-362.8.1.el9_3.x86_64\n"
                             "linux /vmlinuz-5.14.0-362.8.1.el9_3.x86_64\n"
                             "initrd /initramfs-5.14.0-362.8.1.el9_3.x86_64.img $tuned_initrd\n"
                             "title Red Hat Enterprise Linux (5.14.0-362.8.1.el9_3.x86_64) 9.3 (Plow)\n"
                             "options root=/dev/mapper/rhel-root ro crashkernel=1G-4G:192M\n"
                             "grub_users $grub_users\n"));
    struct Case {
        const char* text;
        const char* menu;
    };
    const Case cases[] = {
        {"menuentry Bare {\n linux16 /vmlinuz\n}\n", "menuentry 'Bare'\n    linux16 /vmlinuz"},
        {"menuentry 'Never closed\n", "menuentry 'Never closed'"},
        {"# menuentry 'commented'\nset default=0\nlinux_gfx_mode=keep\n", ""},
        {"menuentry\n", "menuentry ''"},
        {"", ""},
    };
    for (const Case& c : cases) EXPECT_EQ(c.menu, ParseGrubMenu(c.text)) << c.text;
    EXPECT_EQ("GRUB_DEFAULT=0\nGRUB_CMDLINE_LINUX_DEFAULT=\"quiet\"",
              ParseGrubDefaults("# If you change this file, run 'update-grub'\nGRUB_DEFAULT=0\n\n"
                                "GRUB_CMDLINE_LINUX_DEFAULT=\"quiet\"\n#GRUB_TERMINAL=console\n"));
}
