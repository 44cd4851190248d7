#ifndef KESTRO_XMODULE_LINUX_HOSTSTORAGEREADER_H
#define KESTRO_XMODULE_LINUX_HOSTSTORAGEREADER_H

#include "xmodule/agentless/raidadapter.h"

#include <vector>

namespace XModule {
namespace Linux {

// The SSDs this host's kernel sees directly, as adapters of the storage records: one per NVMe
// controller (/sys/class/nvme) and one for the SATA and SAS SSDs of /sys/block together.
class HostStorageReader {
public:
    static void ReadNvmeControllers(std::vector<XMOptions::RaidAdapter>& adapters);
    static void ReadSolidStateDisks(std::vector<XMOptions::RaidAdapter>& adapters);
};

}  // namespace Linux
}  // namespace XModule

#endif
