#ifndef KESTRO_TESTS_SERVERHOST_H
#define KESTRO_TESTS_SERVERHOST_H

#include "support/tempdir.h"

#include <ctime>
#include <string>

// Processors as the kernel shows them: cpuinfo, topology, caches and the current clock.
struct CpuShape {
    int packages;
    int cores;    // per package
    int threads;  // per core
    const char* model;
    const char* modelName;
    const char* megahertz;
    const char* kilohertz;  // scaling_cur_freq; none when empty
};
void WriteCpus(const TempDir& dir, const CpuShape& shape);
// The server's: two Xeon Gold 6338 (family 6 model 106, the Whitley platform), 2 cores of 2 threads each.
extern const CpuShape kServerCpus;
// When dpkg unpacked the server's first package.
const std::time_t kServerInstalled = 1709276400;

// The root of a whole two-socket rack server as its /sys, /proc, /etc and /run read: firmware
// tables, processors of the Whitley platform, a SATA disk with partitions behind a SCSI host, an
// optical drive, a graphics function with a monitor, USB, a board fan and a power supply; and its
// operating system: kernel, memory, a user's session, packages, a service, modules, a process, logs,
// and what tells its installation date, time zone, boot menu and init system.
void WriteServerHost(const TempDir& dir);
// Its firmware table: BIOS, system, board, chassis, two sockets with their caches, two slots, an
// onboard NIC, system-memory DIMMs (an empty slot and a video array's device among them), two
// fans and two power supplies.
std::string ServerSmbiosTable();

#endif
