#ifndef KESTRO_TESTS_SERVERHOST_H
#define KESTRO_TESTS_SERVERHOST_H

#include "support/tempdir.h"

#include <string>

// The root of a whole two-socket rack server as its /sys, /proc, /etc and /run read: firmware
// tables, processors of the Whitley platform, a SATA disk with partitions behind a SCSI host, an
// optical drive, a graphics function with a monitor, USB, a board fan and a power supply; and its
// operating system: kernel, memory, a user's session, packages, a service, modules, a process, logs.
void WriteServerHost(const TempDir& dir);
// Its firmware table: BIOS, system, board, chassis, two sockets with their caches, two slots, an
// onboard NIC, system-memory DIMMs (an empty slot and a video array's device among them), two
// fans and two power supplies.
std::string ServerSmbiosTable();

#endif
