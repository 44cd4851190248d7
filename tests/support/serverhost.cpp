#include "support/serverhost.h"

#include "support/edidbuilder.h"
#include "support/pcifixture.h"
#include "support/smbiosbuilder.h"
#include "support/sysfsfixture.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <string>

const CpuShape kServerCpus = {2, 2, 2, "106", "Intel(R) Xeon(R) Gold 6338 CPU @ 2.00GHz", "2000.000", "1999968"};

// Numbered as Linux numbers Intel CPUs: every package's first threads, then their siblings.
void WriteCpus(const TempDir& dir, const CpuShape& shape)
{
    const int perThread = shape.packages * shape.cores;
    std::string cpuinfo;
    for (int cpu = 0; cpu < perThread * shape.threads; ++cpu) {
        const int core = cpu % perThread;
        const std::string package = std::to_string(core / shape.cores);
        std::string siblings;
        for (int t = 0; t < shape.threads; ++t) siblings += (t ? "," : "") + std::to_string(core + t * perThread);
        cpuinfo += "processor\t: " + std::to_string(cpu) + "\nvendor_id\t: GenuineIntel\ncpu family\t: 6\nmodel\t\t: " +
                   shape.model + "\nmodel name\t: " + shape.modelName + "\nstepping\t: 6\ncpu MHz\t\t: " + shape.megahertz +
                   "\nphysical id\t: " + package + "\nsiblings\t: " + std::to_string(shape.cores * shape.threads) +
                   "\ncore id\t\t: " + std::to_string(core % shape.cores) + "\ncpu cores\t: " +
                   std::to_string(shape.cores) + "\nflags\t\t: fpu vme de pse tsc msr pae mce\n\n";
        const std::string folder = "sys/devices/system/cpu/cpu" + std::to_string(cpu) + "/";
        dir.Write(folder + "topology/physical_package_id", package + "\n");
        dir.Write(folder + "topology/core_cpus_list", siblings + "\n");
        dir.Write(folder + "topology/thread_siblings_list", siblings + "\n");
        if (*shape.kilohertz) dir.Write(folder + "cpufreq/scaling_cur_freq", std::string(shape.kilohertz) + "\n");
        const char* const caches[][3] = {{"1", "Data", "48K"}, {"1", "Instruction", "32K"}, {"2", "Unified", "1280K"},
                                         {"3", "Unified", "49152K"}};
        for (int i = 0; i < 4; ++i)
            WriteSysfsAttributes(dir, folder + "cache/index" + std::to_string(i),
                                 std::string("level=") + caches[i][0] + ";type=" + caches[i][1] + ";size=" + caches[i][2]);
    }
    dir.Write("proc/cpuinfo", cpuinfo);
}

namespace {

const char kOsRelease[] = "PRETTY_NAME=\"Debian GNU/Linux 12 (bookworm)\"\nNAME=\"Debian GNU/Linux\"\n"
                          "VERSION_ID=\"12\"\nID=debian\n";

void WriteDisk(const TempDir& dir)
{
    const std::string scsi = "sys/devices/pci0000:00/0000:00:17.0/ata1/host0/target0:0:0/0:0:0:0";
    WriteSysfsAttributes(dir, scsi, "type=0;vendor=ATA     ;model=SAMSUNG MZ7LH480;rev=904Q;state=running");
    WriteSysfsAttributes(dir, scsi + "/block/sda", "dev=8:0;size=937703088;removable=0");
    WriteSysfsAttributes(dir, scsi + "/block/sda/queue", "rotational=0");
    const char* const partitions[][3] = {{"sda1", "2048", "1050624"}, {"sda2", "1052672", "936650416"}};
    for (int i = 0; i < 2; ++i)
        WriteSysfsAttributes(dir, scsi + "/block/sda/" + partitions[i][0],
                             std::string("partition=") + std::to_string(i + 1) + ";start=" + partitions[i][1] +
                                 ";size=" + partitions[i][2] + ";dev=8:" + std::to_string(i + 1));
    WriteSysfsLink(dir, "sys/block/sda", "../" + scsi.substr(4) + "/block/sda");
    WriteSysfsLink(dir, "sys/bus/scsi/devices/0:0:0:0", "../../../" + scsi.substr(4));
    WriteSysfsLink(dir, scsi + "/block/sda/device", "../../../0:0:0:0");
    dir.Write("run/udev/data/b8:0", "E:ID_BUS=ata\nE:ID_MODEL=SAMSUNG_MZ7LH480HAHQ-00005\nE:ID_PART_TABLE_TYPE=gpt\n"
                                    "E:ID_MODEL_ENC=SAMSUNG\\x20MZ7LH480HAHQ-00005\\x20\\x20\\x20\\x20\n"
                                    "E:ID_SERIAL_SHORT=S45PNA0M512345\n");
    dir.Write("run/udev/data/b8:1", "E:ID_FS_TYPE=vfat\nE:ID_PART_ENTRY_TYPE=c12a7328-f81f-11d2-ba4b-00a0c93ec93b\n");
    dir.Write("run/udev/data/b8:2", "E:ID_FS_TYPE=ext4\nE:ID_FS_LABEL=root\n"
                                    "E:ID_PART_ENTRY_TYPE=0fc63daf-8483-4772-8e79-3d69d8477de4\n");
    dir.Write("sys/dev/block/8:2/partition", "2\n");
    dir.Write("proc/self/mountinfo", "22 28 0:21 / /proc rw,relatime - proc proc rw\n"
                                     "28 1 8:2 / / rw,relatime - ext4 /dev/sda2 rw\n");
}

void WriteOpticalDrive(const TempDir& dir)
{
    dir.Write("proc/sys/dev/cdrom/info", "CD-ROM information, Id: cdrom.c 3.20 2003/12/17\n\n"
                                         "drive name:\t\tsr0\ndrive speed:\t\t24\ndrive # of slots:\t1\n"
                                         "Can close tray:\t\t1\nCan read multisession:\t1\nCan read MCN:\t\t1\n"
                                         "Can write CD-R:\t\t1\nCan write CD-RW:\t1\nCan read DVD:\t\t1\n"
                                         "Can write DVD-R:\t\t1\nCan write DVD-RAM:\t1\nCan read MRW:\t\t1\n\n");
    WriteSysfsAttributes(dir, "sys/block/sr0/device", "vendor=HL-DT-ST;model=DVD+-RW GUD1N   ");
}

void WriteGraphics(const TempDir& dir)
{
    EdidContent monitor;
    monitor.productCode = 0xA07B;
    monitor.week = 12;
    monitor.year = 2018;
    monitor.features = 0xEA;
    monitor.establishedBits = 0x210800;
    monitor.timings = {{10800, 1280, 408, 1024, 42, false}};
    monitor.name = "DELL P1917S";
    const std::string card = "sys/devices/pci0000:00/0000:03:00.0/drm/card0";
    WriteSysfsLink(dir, card + "/device", "../../../0000:03:00.0");
    WriteSysfsLink(dir, "sys/class/drm/card0", "../../devices/pci0000:00/0000:03:00.0/drm/card0");
    WriteSysfsAttributes(dir, card + "/card0-VGA-1", "status=connected;enabled=enabled;dpms=On;modes=1280x1024");
    dir.Write(card + "/card0-VGA-1/edid", EdidBaseBlock(monitor));
    WriteSysfsLink(dir, "sys/class/drm/card0-VGA-1", "../../devices/pci0000:00/0000:03:00.0/drm/card0/card0-VGA-1");
}

void WriteUsb(const TempDir& dir)
{
    const std::string controller = "devices/pci0000:00/0000:00:14.0/";
    WriteSysfsAttributes(dir, "sys/" + controller + "usb1",
                         "idVendor=1d6b;idProduct=0002;bDeviceClass=09;maxchild=4;speed=480;"
                         "product=xHCI Host Controller;manufacturer=Linux 6.1.0-27-amd64 xhci-hcd");
    WriteSysfsAttributes(dir, "sys/" + controller + "usb1/1-3",
                         "idVendor=046b;idProduct=ff10;bDeviceClass=00;speed=480;product=Virtual Keyboard and Mouse;"
                         "manufacturer=American Megatrends Inc.");
    WriteSysfsLink(dir, "sys/bus/usb/devices/usb1", "../../../" + controller + "usb1");
    WriteSysfsLink(dir, "sys/bus/usb/devices/1-3", "../../../" + controller + "usb1/1-3");
}

// The operating system's own files: kernel, clocks, memory, users, packages, services, modules,
// one process and the logs, shaped as a Debian 12 host writes them.
void WriteOperatingSystem(const TempDir& dir)
{
    const char* const files[][2] = {
        {"proc/sys/kernel/hostname", "srv-db01\n"},
        {"proc/sys/kernel/osrelease", "6.1.0-41-amd64\n"},
        {"proc/sys/kernel/version", "#1 SMP PREEMPT_DYNAMIC Debian 6.1.158-1 (2025-11-09)\n"},
        {"etc/machine-id", "3d1219c7c4c5404aaa1f6d2a48adfda4\n"},
        {"etc/timezone", "Etc/UTC\n"},
        {"proc/uptime", "274329.51 1036400.12\n"},
        {"proc/stat", "cpu  238968 56 28932 114658 643 0 236 90 0 0\nbtime 1795578532\nprocesses 16382\n"},
        {"proc/cmdline", "BOOT_IMAGE=/boot/vmlinuz-6.1.0-41-amd64 root=UUID=0c7b5a1e ro quiet\n"},
        {"proc/meminfo", "MemTotal:       263842944 kB\nMemFree:        201334820 kB\nMemAvailable:   247715036 kB\n"
                         "Buffers:          1024304 kB\nCached:         40119776 kB\nSwapTotal:       8388604 kB\n"
                         "SwapFree:        8388604 kB\nSlab:             227904 kB\nSReclaimable:     195048 kB\n"
                         "SUnreclaim:        32856 kB\nKernelStack:        2320 kB\nPageTables:         6952 kB\n"
                         "Committed_AS:   12716928 kB\nCommitLimit:   140309876 kB\n"},
        {"proc/sys/fs/file-nr", "1247\t0\t2466165\n"},
        {"proc/loadavg", "0.83 0.44 0.24 2/645 16382\n"},
        {"proc/swaps", "Filename\t\t\t\tType\t\tSize\t\tUsed\t\tPriority\n"
                       "/dev/sda3                               partition\t8388604\t\t0\t\t-2\n"},
        {"etc/passwd", "root:x:0:0:root:/root:/bin/bash\nalice:x:1000:1000:Alice Admin,,,:/home/alice:/bin/bash\n"},
        {"etc/environment", "LANG=C.UTF-8\n"},
        {"run/systemd/sessions/3", "UID=1000\nUSER=alice\nACTIVE=1\nSTATE=active\nTTY=pts/0\nREMOTE_HOST=10.0.0.7\n"
                                   "CLASS=user\nREALTIME=1795578600000000\n"},
        {"run/systemd/sessions/c1", "USER=Debian-gdm\nCLASS=greeter\nSEAT=seat0\nREALTIME=1795578540000000\n"},
        {"var/lib/dpkg/status", "Package: openssh-server\nStatus: install ok installed\nSection: net\n"
                                "Installed-Size: 1767\nVersion: 1:9.2p1-2+deb12u7\n"
                                "Description: secure shell (SSH) server\n for secure access from remote machines\n\n"
                                "Package: vim-tiny\nStatus: deinstall ok config-files\nVersion: 2:9.0.1378-2\n\n"},
        {"var/lib/dpkg/info/openssh-server.list", "/.\n/usr/sbin/sshd\n"},
        {"lib/systemd/system/ssh.service", "[Unit]\nDescription=OpenBSD Secure Shell server\n\n[Service]\n"
                                           "ExecStart=/usr/sbin/sshd -D\n\n[Install]\nWantedBy=multi-user.target\n"},
        {"proc/modules", "ipmi_si 86016 0 - Live 0x0000000000000000\nmgag200 69632 1 - Live 0x0000000000000000\n"},
        {"proc/1/stat", "1 (systemd) S 0 1 1 0 -1 4194560 31660 0 0 0 200 100 0 0 20 0 1 0 5 171081728 3226 "
                        "18446744073709551615 1 1 0 0 0 0 671173123 4096 1260 0 0 0 17 0 0 0 0 0 0\n"},
        {"proc/1/status", "Name:\tsystemd\nState:\tS (sleeping)\nUid:\t0\t0\t0\t0\n"},
        {"proc/1/comm", "systemd\n"},
        {"run/systemd/system/.placeholder", ""},
        {"usr/lib/x86_64-linux-gnu/systemd/libsystemd-shared-252.so", ""},
        {"boot/grub/grub.cfg",
         "### BEGIN /etc/grub.d/10_linux ###\nset linux_gfx_mode=\n"
         "menuentry 'Debian GNU/Linux' --class debian --class gnu-linux $menuentry_id_option 'gnulinux-simple' {\n"
         "\tload_video\n\tinsmod gzio\n\techo\t'Loading Linux 6.1.0-41-amd64 ...'\n"
         "\tlinux\t/boot/vmlinuz-6.1.0-41-amd64 root=UUID=0c7b5a1e ro  quiet\n\tinitrd\t/boot/initrd.img-6.1.0-41-amd64\n}\n"
         "submenu 'Advanced options for Debian GNU/Linux' $menuentry_id_option 'gnulinux-advanced' {\n"
         "\tmenuentry \"Debian GNU/Linux, with Linux 6.1.0-41-amd64 (recovery mode)\" {\n"
         "\t\tlinux\t/boot/vmlinuz-6.1.0-41-amd64 root=UUID=0c7b5a1e ro single\n\t}\n}\n"
         "menuentry 'UEFI Firmware Settings' $menuentry_id_option 'uefi-firmware' {\n\tfwsetup\n}\n"},
        {"var/log/installer/syslog", "installer log\n"},
        {"var/lib/dpkg/info/base-files.md5sums", ""},
        {"var/log/dmesg", "[    0.000000] Linux version 6.1.0-41-amd64\n[    1.234567] mgag200 0000:03:00.0: vgaarb\n"},
        {"var/log/syslog", "Nov 25 03:49:01 srv-db01 sshd[873]: Server listening on 0.0.0.0 port 22.\n"
                           "Nov 25 03:50:11 srv-db01 kernel: [ 1.2] mce: error on CPU 3\n"},
    };
    for (const auto& file : files) dir.Write(file[0], file[1]);
    WriteSysfsLink(dir, "etc/systemd/system/multi-user.target.wants/ssh.service", "/lib/systemd/system/ssh.service");
    WriteSysfsLink(dir, "lib/systemd/system/default.target", "graphical.target");
    WriteSysfsLink(dir, "etc/localtime", "../usr/share/zoneinfo/Europe/Berlin");
    // The installation date is the oldest package list's; the installer's folder and a package's
    // other files in dpkg's info folder are newer or do not count.
    const std::pair<const char*, std::time_t> times[] = {{"var/log/installer", 1709280000},
                                                         {"var/lib/dpkg/info/openssh-server.list", kServerInstalled},
                                                         {"var/lib/dpkg/info/base-files.md5sums", 1600000000}};
    for (const auto& time : times) boost::filesystem::last_write_time(dir.Path() + "/" + time.first, time.second);
}

SmbiosBuilder Socket(std::uint16_t handle, const char* name, std::uint16_t firstCache)
{
    return SmbiosBuilder(4, handle, 0x30).String(0x04, name).Byte(0x05, 3).Byte(0x06, 0xB3)
        .String(0x07, "Intel(R) Corporation").Dword(0x08, 0x000606A6).String(0x10, "Intel(R) Xeon(R) Gold 6338 CPU @ 2.00GHz")
        .Word(0x16, 2000).Byte(0x18, 0x41).Word(0x1A, firstCache).Word(0x1C, firstCache + 1).Word(0x1E, firstCache + 2)
        .String(0x20, "Not Specified").Byte(0x23, 32).Byte(0x24, 32).Byte(0x25, 64).Word(0x26, 0x00FC);
}

// Sizes from 32 GiB on take the extended field.
SmbiosBuilder Dimm(std::uint16_t handle, std::uint16_t array, std::uint32_t mebibytes, const char* locator, const char* maker,
                   const char* serial, const char* part)
{
    return SmbiosBuilder(17, handle, 0x5C).Word(0x04, array).Word(0x0C, std::min<std::uint32_t>(mebibytes, 0x7FFF))
        .Dword(0x1C, mebibytes).String(0x10, locator)
        .String(0x11, "NODE 1").Byte(0x12, 0x1A).Word(0x15, 0xFFFF).Dword(0x54, 3200).String(0x17, maker)
        .String(0x18, serial).String(0x1A, part);
}

}  // namespace

std::string ServerSmbiosTable()
{
    const std::string uuid("\x78\x56\x34\x12\x34\x12\x78\x56\x12\x34\x56\x78\x9a\xbc\xde\xf0", 16);
    std::string table =
        SmbiosBuilder(0, 0x0000, 0x1A).String(0x04, "Lenovo").String(0x05, "U8E122J-1.51").String(0x08, "03/15/2023").Bytes() +
        SmbiosBuilder(1, 0x0001, 0x1B).String(0x04, "Lenovo").String(0x05, "ThinkSystem SR650 V2").String(0x06, "06")
            .String(0x07, "J30ABCDE").Raw(0x08, uuid).String(0x19, "7Z73CTO1WW").String(0x1A, "ThinkSystem").Bytes() +
        SmbiosBuilder(2, 0x0002, 0x0F).String(0x04, "Lenovo").String(0x05, "7X07").String(0x06, "05")
            .String(0x07, "L1HF1AB00XY").Byte(0x0D, 0x0A).Bytes() +
        SmbiosBuilder(3, 0x0003, 0x16).String(0x04, "Lenovo").Byte(0x05, 0x17).String(0x06, "None")
            .String(0x07, "J30ABCDE").Bytes() +
        Socket(0x0400, "CPU1", 0x0700).Bytes() + Socket(0x0401, "CPU2", 0xFFFF).Word(0x1C, 0xFFFF).Word(0x1E, 0xFFFF).Bytes();
    for (std::uint16_t level = 0; level < 3; ++level)
        table += SmbiosBuilder(7, 0x0700 + level, 0x1B).Word(0x05, 0x0180 | level).Bytes();
    table += SmbiosBuilder(9, 0x0900, 0x11).String(0x04, "SLOT 1").Byte(0x05, 0xBD).Byte(0x07, 4).Word(0x0D, 0)
                 .Byte(0x0F, 0x17).Byte(0x10, 0x00).Bytes() +
             SmbiosBuilder(9, 0x0901, 0x11).String(0x04, "SLOT 2").Byte(0x05, 0xB6).Byte(0x07, 3).Word(0x0D, 0)
                 .Byte(0x0F, 0xFF).Byte(0x10, 0xFF).Bytes() +
             SmbiosBuilder(41, 0x4100, 0x0B).String(0x04, "NIC1").Byte(0x05, 0x85).Byte(0x06, 1).Byte(0x09, 0x01).Bytes() +
             SmbiosBuilder(16, 0x1000, 0x17).Byte(0x04, 3).Byte(0x05, 3).Byte(0x06, 6).Bytes() +
             SmbiosBuilder(16, 0x1001, 0x17).Byte(0x04, 3).Byte(0x05, 4).Byte(0x06, 3).Bytes() +
             Dimm(0x1100, 0x1000, 32768, "CPU1_DIMM_A1", "Samsung", "03A1B2C3", "M393A4K40DB3-CWE").Bytes() +
             Dimm(0x1101, 0x1000, 0, "CPU1_DIMM_A2", "NO DIMM", "NO DIMM", "NO DIMM").Bytes() +
             Dimm(0x1102, 0x1001, 512, "VIDEO", "Matrox", "1", "G200").Bytes() +
             Dimm(0x1103, 0x1000, 65536, "CPU2_DIMM_B1", "SK Hynix", "2F5E7A11", "HMAA8GR7AJR4N-XN").Bytes() +
             SmbiosBuilder(27, 0x2700, 0x0F).Word(0x04, 0xFFFF).Byte(0x06, 0x63).Word(0x0C, 12000).String(0x0E, "Fan 1").Bytes() +
             SmbiosBuilder(27, 0x2701, 0x0E).Word(0x04, 0xFFFF).Byte(0x06, 0xA5).Word(0x0C, 0x8000).Bytes() +
             SmbiosBuilder(39, 0x3900, 0x16).String(0x05, "Rear bay 1").String(0x06, "PSU1").String(0x07, "ACBEL")
                 .String(0x08, "D1DG12345").String(0x0A, "FSP1100").Word(0x0C, 1100).Word(0x0E, 0x0183).Bytes() +
             SmbiosBuilder(39, 0x3901, 0x16).String(0x05, "Rear bay 2").String(0x06, "PSU2").Word(0x0C, 0x8000)
                 .Word(0x0E, 0x0101).Bytes() +
             EndOfTableBytes(0xFEFF);
    return table;
}


void WriteServerHost(const TempDir& dir)
{
    dir.Write("etc/os-release", kOsRelease);
    WriteCpus(dir, kServerCpus);
    WriteDmiTable(dir, ServerSmbiosTable());
    WriteSmbiosEntryPoint(dir, SmbiosEntryPoint3Bytes(3, 3, 0));
    WritePciFixture(dir);
    WriteDisk(dir);
    WriteOpticalDrive(dir);
    WriteGraphics(dir);
    WriteUsb(dir);
    WriteOperatingSystem(dir);
    WriteHwmonChip(dir, "hwmon0", "platform/nct6775.656", "name=nct6779;fan1_input=1200;fan1_min=300");
    WriteHwmonChip(dir, "hwmon1", "pci0000:00/0000:00:1f.4/i2c-7/7-0058",
                   "name=dps800;power1_label=pin;power1_input=231000000;power2_label=pout1;power2_input=212500000");
}
