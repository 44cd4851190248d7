#ifndef KESTRO_XMODULE_AGENTLESS_REDFISHSTORAGEREADER_H
#define KESTRO_XMODULE_AGENTLESS_REDFISHSTORAGEREADER_H

#include "kestro/xmodule/connectioninfo.h"
#include "xmodule/agentless/bmcreader.h"
#include "xmodule/agentless/raidadapter.h"

#include <boost/json/value.hpp>

#include <set>
#include <string>
#include <vector>

namespace XModule {
namespace Agentless {

// The storage of a BMC's first system, read over Redfish: one adapter per Storage resource, with
// its controller, drives, volumes, batteries and firmware. Coded fields keep Redfish's words.
class RedfishStorageReader {
public:
    explicit RedfishStorageReader(const ConnectionInfo& bmc);

    // True when the first system links a Storage collection.
    bool HasStorage();
    // False when the system or its storage collection cannot be read; a storage resource that
    // cannot be read is left out with a level-2 line.
    bool Read(std::vector<XMOptions::RaidAdapter>& adapters);

    // What kind of adapter a storage is, from its controller's name, the RAID types it supports
    // and its drives' protocols.
    static std::string ControllerTypeOf(const std::string& name, bool supportsRaid,
                                        const std::vector<std::string>& driveProtocols);
    // A drive's state in the words of RAID utilities, from its Redfish status and role.
    static std::string DriveStateOf(const boost::json::value& drive, bool inVolume);
    static XMOptions::DiskDrive DriveOf(const boost::json::value& drive, bool inVolume);
    static XMOptions::SSD SsdOf(const boost::json::value& drive);

private:
    std::string StorageCollection();
    bool ReadStorage(const std::string& path, XMOptions::RaidAdapter& adapter);
    void ReadPools(const boost::json::value& storage, const std::vector<boost::json::value>& volumes,
                   const std::vector<boost::json::value>& drives, XMOptions::RaidAdapter& adapter,
                   std::set<std::string>& pooled);
    boost::json::value ControllerOf(const boost::json::value& storage);
    std::vector<boost::json::value> ReadLinked(const boost::json::value& doc, const std::string& arrayPointer);
    std::vector<boost::json::value> ReadCollection(const boost::json::value& doc, const std::string& linkPointer);
    void ReadFirmware(const boost::json::value& controller, XMOptions::RaidAdapter& adapter);
    void ReadBatteries(const boost::json::value& controller, const boost::json::value& storage,
                       XMOptions::RaidAdapter& adapter);
    XMOptions::Battery BatteryOf(const boost::json::value& battery);

    BmcReader reader;
};

}  // namespace Agentless
}  // namespace XModule

#endif
