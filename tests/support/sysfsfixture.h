#ifndef KESTRO_TESTS_SYSFSFIXTURE_H
#define KESTRO_TESTS_SYSFSFIXTURE_H

#include "support/tempdir.h"

#include <string>

// Writes sysfs attribute files into `folder` (relative to the fixture root), each with the
// trailing line break the kernel adds: "name=nct6779;fan1_input=1200".
void WriteSysfsAttributes(const TempDir& dir, const std::string& folder, const std::string& attributes);

// A hwmon chip as a real host links it: sys/devices/<device>/hwmon/<id> holds the attributes,
// sys/class/hwmon/<id> links there and its device link names the device ("7-0058").
void WriteHwmonChip(const TempDir& dir, const std::string& id, const std::string& device,
                    const std::string& attributes);

// A symbolic link at `link` (relative to the root) to `target`, as written.
void WriteSysfsLink(const TempDir& dir, const std::string& link, const std::string& target);

#endif
