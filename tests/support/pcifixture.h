#ifndef KESTRO_TESTS_PCIFIXTURE_H
#define KESTRO_TESTS_PCIFIXTURE_H

#include "support/tempdir.h"

// A server's PCI bus as sysfs shows it, with a pci.ids that knows part of it:
// 0000:00:00.0 host bridge 8086:2021 (a device pci.ids lacks), no driver;
// 0000:00:17.0 AHCI 8086:a182 rev 09, subsystem 1028:0716, driver ahci;
// 0000:03:00.0 VGA 102b:0536, driver mgag200;
// 0000:19:00.0 Ethernet 14e4:165f, subsystem 1028:04f7, driver tg3;
// 0000:ff:00.0 with a damaged vendor file.
void WritePciFixture(const TempDir& dir);

#endif
