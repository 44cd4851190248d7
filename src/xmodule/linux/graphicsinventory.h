#ifndef KESTRO_XMODULE_LINUX_GRAPHICSINVENTORY_H
#define KESTRO_XMODULE_LINUX_GRAPHICSINVENTORY_H

#include "xmodule/linux/edid.h"
#include "xmodule/protocol/hardwareinfo.h"

#include <cstdint>
#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// Appends one Graphics record per PCI display function, with a VideoController per DRM card of
// the function (one without a card name when it has none) and a VideoHead per connector of the
// card; and one Monitor per connected connector whose EDID could be read.
//
// Sources and choices:
// - memory: amdgpu's mem_info_vram_total when the driver gives it, else the largest prefetchable
//   memory BAR of the function, which is the frame buffer aperture (it may be smaller than the
//   memory of a large card); the expansion ROM is never read;
// - the BIOS string: amdgpu's vbios_version, else "N/A";
// - a head's mode: the first line of the connector's `modes` file (the kernel lists the preferred
//   mode first; sysfs tells no current mode), its refresh from the first EDID mode of that size;
// - a monitor's state: "Off" when the connector is disabled, else its DPMS state.
// A host without a display function gives nothing and logs nothing.
void CollectGraphics(std::vector<protocol::Graphics>& graphics, std::vector<protocol::Monitor>& monitors);

// The size of the largest prefetchable memory BAR in a PCI function's `resource` text (its
// first six lines, "start end flags" in hex); 0 when there is none.
std::uint64_t ParseLargestPrefetchableBar(const std::string& resource);
// The first mode of a connector's `modes` text ("1920x1080", "1920x1080i"); false when none.
// The refresh is left 0: the file does not tell it.
bool ParseFirstMode(const std::string& modes, EdidMode& mode);
// The Monitor record of a decoded EDID; `state` fills OperationalStatus.
protocol::Monitor DescribeMonitor(const Edid& edid, const std::string& state);

}  // namespace Linux
}  // namespace XModule

#endif
