#include "xmodule/linux/osbasics.h"

#include "support/fixturehost.h"
#include "xmodule/linux/bootconfiguration.h"
#include "xmodule/linux/environmentvariables.h"
#include "xmodule/linux/initsystem.h"
#include "xmodule/linux/meminfo.h"
#include "xmodule/linux/swaps.h"
#include "xmodule/linux/timezone.h"
#include "xmodule/linux/usersessions.h"
#include "xmodule/linux/valueformat.h"

#include <boost/filesystem/operations.hpp>
#include <gtest/gtest.h>

#include <regex>
#include <unistd.h>

using namespace XModule::Linux;
namespace fs = boost::filesystem;

TEST(OsBasicsTest, ParsesReleaseAndClockFacts)
{
    struct Case {
        const char* id;
        const char* name;
        const char* version;
        const char* vendor;
        const char* servicePack;
    };
    const Case cases[] = {
        {"sles", "SLES", "15-SP5", "SUSE", "SP5"},
        {"sles", "SLES", "12 SP3", "SUSE", "SP3"},
        {"sles", "SLES", "15", "SUSE", ""},
        {"ubuntu", "Ubuntu", "22.04.4 LTS (Jammy Jellyfish)", "Canonical", ""},
        {"arch", "Arch Linux", "", "Arch Linux", ""},
        {"rhel", "Red Hat Enterprise Linux", "9.3 (Plow) SPx", "Red Hat", ""},
        {"", "", "ESP1", "", ""},
    };
    for (const Case& c : cases) {
        const OsRelease release = {{"ID", c.id}, {"NAME", c.name}};
        EXPECT_EQ(c.vendor, FindVendor(release)) << c.id;
        EXPECT_EQ(c.servicePack, ParseServicePack(c.version)) << c.version;
    }

    std::uint64_t seconds = 0;
    EXPECT_TRUE(ParseUptime("274329.51 1036400.12\n", seconds));
    EXPECT_EQ("3 days, 04:12:09", FormatUptime(seconds));
    EXPECT_EQ("1 day, 00:00:05", FormatUptime(86405));
    EXPECT_EQ("0 days, 00:05:00", FormatUptime(300));
    EXPECT_FALSE(ParseUptime("-5.0 1.0", seconds));
    std::time_t boot = 0;
    EXPECT_TRUE(ParseBootTime("cpu  238968 56 28932 114658\nctxt 1622824\nbtime 1795578532\nprocesses 33386\n", boot));
    EXPECT_EQ(1795578532, boot);
    EXPECT_FALSE(ParseBootTime("cpu  1 2 3\nbtime x\n", boot));
}

namespace {

void WriteDebianHost(const TempDir& root)
{
    root.Write("proc/sys/kernel/hostname", "srv-db01\n");
    root.Write("proc/sys/kernel/osrelease", "6.1.0-41-amd64\n");
    root.Write("proc/sys/kernel/version", "#1 SMP PREEMPT_DYNAMIC Debian 6.1.158-1 (2025-11-09)\n");
    root.Write("etc/machine-id", "3d1219c7c4c5404aaa1f6d2a48adfda4\n");
    root.Write("proc/uptime", "274329.51 1036400.12\n");
    root.Write("proc/stat", "cpu  238968 56 28932 114658 643 0 236 90 0 0\nctxt 1622824\nbtime 1795578532\n");
    root.Write("var/log/installer/syslog", "installer log\n");
    fs::last_write_time(root.Path() + "/var/log/installer", 1709280000);
    root.Write("var/lib/dpkg/info/base-files.md5sums", "");
    fs::last_write_time(root.Path() + "/var/lib/dpkg/info/base-files.md5sums", 1600000000);
    root.Write("var/lib/dpkg/info/base-files.list", "/.\n/etc\n");
    fs::last_write_time(root.Path() + "/var/lib/dpkg/info/base-files.list", 1709276400);
    root.Write("etc/timezone", "Etc/UTC\n");
    fs::create_directories(root.Path() + "/usr/share/zoneinfo/Europe");
    fs::create_symlink("../usr/share/zoneinfo/Europe/Berlin", root.Path() + "/etc/localtime");
    root.Write("proc/cmdline", "BOOT_IMAGE=/boot/vmlinuz-6.1.0-41-amd64 root=UUID=0c7b5a1e ro quiet\n");
    root.Write("boot/grub/grub.cfg",
               "### BEGIN /etc/grub.d/10_linux ###\n"
               "set linux_gfx_mode=\n"
               "menuentry 'Debian GNU/Linux' --class debian --class gnu-linux --class gnu --class os "
               "$menuentry_id_option 'gnulinux-simple-0c7b5a1e' {\n"
               "\tload_video\n\tinsmod gzio\n\tsearch --no-floppy --fs-uuid --set=root 0c7b5a1e\n"
               "\techo\t'Loading Linux 6.1.0-41-amd64 ...'\n"
               "\tlinux\t/boot/vmlinuz-6.1.0-41-amd64 root=UUID=0c7b5a1e ro  quiet\n"
               "\tinitrd\t/boot/initrd.img-6.1.0-41-amd64\n}\n"
               "submenu 'Advanced options for Debian GNU/Linux' $menuentry_id_option 'gnulinux-advanced' {\n"
               "\tmenuentry \"Debian GNU/Linux, with Linux 6.1.0-41-amd64 (recovery mode)\" {\n"
               "\t\tlinux\t/boot/vmlinuz-6.1.0-41-amd64 root=UUID=0c7b5a1e ro single\n\t}\n}\n"
               "menuentry 'UEFI Firmware Settings' $menuentry_id_option 'uefi-firmware' {\n\tfwsetup\n}\n");
    root.Write("run/systemd/system/.placeholder", "");
    root.Write("usr/lib/x86_64-linux-gnu/systemd/libsystemd-shared-252.so", "");
    fs::create_directories(root.Path() + "/lib/systemd/system");
    fs::create_symlink("graphical.target", root.Path() + "/lib/systemd/system/default.target");
    root.Write("proc/1/comm", "systemd\n");
    root.Write("proc/873/comm", "sshd\n");
    root.Write("proc/meminfo",
               "MemTotal:       24683656 kB\nMemFree:        21044580 kB\nMemAvailable:   23053804 kB\n"
               "Buffers:          121764 kB\nCached:          2006524 kB\nSwapCached:            0 kB\n"
               "SwapTotal:        999420 kB\nSwapFree:         999420 kB\nSlab:             227904 kB\n"
               "SReclaimable:     195048 kB\nSUnreclaim:        32856 kB\nKernelStack:        2320 kB\n"
               "PageTables:         6952 kB\nCommitLimit:    12341828 kB\nCommitted_AS:    1155780 kB\n"
               "HugePages_Total:       0\nHugepagesize:       2048 kB\n");
    root.Write("proc/loadavg", "7.83 4.44 2.04 9/145 16382\n");
    root.Write("proc/sys/fs/file-nr", "1247\t0\t2466165\n");
    root.Write("proc/swaps", "Filename\t\t\t\tType\t\tSize\t\tUsed\t\tPriority\n"
                             "/dev/sda3                               partition\t999420\t\t0\t\t-2\n");
    root.Write("etc/passwd", "fixture:x:" + std::to_string(geteuid()) + ":0:Fixture:/:/bin/sh\n"
                             "root:x:0:0:root:/root:/bin/bash\n"
                             "alice:x:1000:1000:Alice Example,,,:/home/alice:/bin/bash\n");
    root.Write("run/systemd/sessions/3", "# This is private data. Do not parse.\nUID=1000\nUSER=alice\nACTIVE=1\n"
                                         "STATE=active\nREMOTE=1\nTYPE=tty\nCLASS=user\nTTY=pts/0\n"
                                         "REMOTE_HOST=192.0.2.10\nSERVICE=sshd\nREALTIME=1795578600000000\n");
    root.Write("run/systemd/sessions/3.ref", "");
    root.Write("run/systemd/sessions/c1", "USER=Debian-gdm\nCLASS=greeter\nSEAT=seat0\nREALTIME=1795578540000000\n");
    root.Write("etc/environment", "# pam_env\nLANG=C.UTF-8\nBACKUP_TOKEN=\"abc\"\n");
}

}  // namespace

TEST(OsBasicsTest, FillsEveryRecordFromADebianHost)
{
    FixtureHost host("PRETTY_NAME=\"Debian GNU/Linux 12 (bookworm)\"\nNAME=\"Debian GNU/Linux\"\nVERSION_ID=\"12\"\n"
                     "VERSION=\"12 (bookworm)\"\nVERSION_CODENAME=bookworm\nID=debian\n");
    WriteDebianHost(host.Dir());
    ScopedEnv password("KESTRO_PASSWORD", "s3cret");
    const std::regex utcMoment("\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\dZ");

    XModule::protocol::OperatingSystemInfo os;
    CollectOperatingSystem(os);
    EXPECT_EQ("Debian GNU/Linux 12 (bookworm)|srv-db01|12|6.1.0-41-amd64|N/A|"
              "#1 SMP PREEMPT_DYNAMIC Debian 6.1.158-1 (2025-11-09)|Debian|N/A|3d1219c7c4c5404aaa1f6d2a48adfda4",
              os.ProductName + "|" + os.ComputerName + "|" + os.ReleaseId + "|" + os.Version + "|" + os.ServicePack +
                  "|" + os.BuildNumber + "|" + os.Vendor + "|" + os.RegisteredOwner + "|" + os.ProductID);
    EXPECT_EQ(FormatDateTime(1709276400), os.InstallationDate);
    EXPECT_EQ("3 days, 04:12:09", os.Uptime);
    EXPECT_EQ(FormatDateTime(1795578532), os.TimeofLastBoot);

    XModule::protocol::TimeZoneInfo zone;
    CollectTimeZone(zone);
    EXPECT_EQ("Europe/Berlin", zone.CurrentTimeZone);
    EXPECT_EQ("N/A", zone.LocalDateTime);
    EXPECT_TRUE(std::regex_match(zone.GMTDateandTime, utcMoment)) << zone.GMTDateandTime;

    XModule::protocol::BootConfigurationInfo boot;
    CollectBootConfiguration(boot);
    EXPECT_EQ("/proc/cmdline, /boot/grub/grub.cfg", boot.BootDataSource);
    EXPECT_EQ("BOOT_IMAGE=/boot/vmlinuz-6.1.0-41-amd64 root=UUID=0c7b5a1e ro quiet\n\n"
              "menuentry 'Debian GNU/Linux'\n"
              "    linux /boot/vmlinuz-6.1.0-41-amd64 root=UUID=0c7b5a1e ro quiet\n"
              "submenu 'Advanced options for Debian GNU/Linux'\n"
              "menuentry 'Debian GNU/Linux, with Linux 6.1.0-41-amd64 (recovery mode)'\n"
              "    linux /boot/vmlinuz-6.1.0-41-amd64 root=UUID=0c7b5a1e ro single\n"
              "menuentry 'UEFI Firmware Settings'",
              boot.Contents);

    XModule::protocol::InitConfigurationInfo init;
    CollectInitConfiguration(init);
    EXPECT_EQ("systemd 252|graphical.target|N/A", init.InitSystem + "|" + init.DefaultTarget + "|" + init.SystemState);

    XModule::protocol::MemoryUtilizationInfo memory;
    CollectMemoryUtilization(memory);
    EXPECT_EQ("6.6|23.5 GiB|22.0 GiB|2.0 GiB|24.5 GiB|22.9 GiB|976.0 MiB|976.0 MiB|1.1 GiB|11.8 GiB|N/A|"
              "231.6 MiB|190.5 MiB|32.1 MiB|1247|145|2",
              memory.PercentMemoryUtilization + "|" + memory.TotalVisibleMemorySize + "|" + memory.FreePhysicalMemory +
                  "|" + memory.PhysicalMemorySystemCache + "|" + memory.TotalVirtualMemorySize + "|" +
                  memory.FreeVirtualMemory + "|" + memory.SizeStoredInPagingFiles + "|" +
                  memory.FreeSpaceInPagingFiles + "|" + memory.CommitChargeTotal + "|" + memory.CommitChargeLimit +
                  "|" + memory.CommitChargePeak + "|" + memory.KernelMemoryTotal + "|" + memory.KernelMemoryPaged +
                  "|" + memory.KernelMemoryNonpaged + "|" + memory.Handles + "|" + memory.Threads + "|" +
                  memory.Processes);

    std::vector<XModule::protocol::PageFileInfo> swaps;
    CollectPageFiles(swaps);
    ASSERT_EQ(1u, swaps.size());
    const XModule::protocol::PageFileInfo& swap = swaps[0];
    EXPECT_EQ("/dev/sda3 partition 976.0 MiB 0 B -2",
              swap.Name + " " + swap.Type + " " + swap.Size + " " + swap.Used + " " + swap.Priority);

    XModule::protocol::CurrentUserInfo current;
    CollectCurrentUser(current);
    EXPECT_EQ("fixture", current.UserName);

    std::vector<XModule::protocol::ActiveUserInfo> users;
    CollectActiveUsers(users);
    ASSERT_EQ(1u, users.size());
    EXPECT_EQ("alice|Alice Example|" + FormatDateTime(1795578600) + "|pts/0|192.0.2.10",
              users[0].UserID + "|" + users[0].Description + "|" + users[0].LastLogonDate + "|" + users[0].Domain +
                  "|" + users[0].LogonServer);

    std::vector<XModule::protocol::EnvironmentVariableInfo> system, user;
    CollectEnvironment(system, user);
    ASSERT_EQ(2u, system.size());
    EXPECT_EQ("BACKUP_TOKEN=(hidden) LANG=C.UTF-8",
              system[0].Name + "=" + system[0].Value + " " + system[1].Name + "=" + system[1].Value);
    bool sawPassword = false;
    for (const XModule::protocol::EnvironmentVariableInfo& variable : user)
        if (variable.Name == "KESTRO_PASSWORD") sawPassword = variable.Value == "(hidden)";
    EXPECT_TRUE(sawPassword);
    EXPECT_TRUE(std::is_sorted(user.begin(), user.end(), [](const XModule::protocol::EnvironmentVariableInfo& a,
                                                            const XModule::protocol::EnvironmentVariableInfo& b) {
        return a.Name < b.Name;
    }));
}
