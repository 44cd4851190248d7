#include "xmodule/service/serviceraid.h"

#include "xmodule/agentless/raidlink.h"
#include "xmodule/rlog.h"

#include <boost/format.hpp>

namespace XModule {

int ConvertUserContextToConnectOption(const UserContext& context, ConnectOption& option)
{
    if (!context.connections.empty()) {
        option.connection = context.connections.front();
    } else {
        option.connection = ConnectionInfo();
        option.connection.host = "localhost";
    }
    return 0;
}

}  // namespace XModule

namespace service {

namespace {

namespace opt = XModule::XMOptions;

const char* const kVolumeRow = "    %-24s %-10s %-20s %-12s\n";
const char* const kDriveRow = "    %-16s %-28s %-22s %-10s %-18s\n";

void AppendVolume(std::string& text, const opt::StorageVolume& volume, const std::string& raidLevel)
{
    text += (boost::format(kVolumeRow) % volume.Name % raidLevel % volume.CapacityBytes % volume.VolumeStatus).str();
}

void AppendDrive(std::string& text, const opt::DiskDrive& drive)
{
    text += (boost::format(kDriveRow) % drive.SlotNum % drive.Model % drive.SerialNum % drive.MediaType %
             drive.DiskState).str();
}

void AppendSsd(std::string& text, const opt::SSD& ssd)
{
    text += (boost::format(kDriveRow) % ssd.Location % ssd.ProductName % ssd.SerialNumber % ssd.Type %
             ssd.DriveStatus).str();
}

void AppendVolumes(std::string& text, const opt::RaidAdapter& adapter)
{
    text += "  Volumes:\n";
    text += (boost::format(kVolumeRow) % "Name" % "RAID" % "Capacity(bytes)" % "Status").str();
    for (const opt::StoragePool& pool : adapter.storagePools)
        for (const opt::StorageVolume& volume : pool.volumes) AppendVolume(text, volume, pool.RAIDLevel);
    for (const opt::StorageVolume& volume : adapter.storageVolumes) AppendVolume(text, volume, volume.RAIDLevel);
}

void AppendDrives(std::string& text, const opt::RaidAdapter& adapter)
{
    text += "  Drives:\n";
    text += (boost::format(kDriveRow) % "Slot" % "Model" % "Serial Number" % "Media" % "State").str();
    for (const opt::StoragePool& pool : adapter.storagePools)
        for (const opt::DiskDrive& drive : pool.drives) AppendDrive(text, drive);
    for (const opt::DiskDrive& drive : adapter.diskDrives) AppendDrive(text, drive);
    for (const opt::SSD& ssd : adapter.ssds) AppendSsd(text, ssd);
}

}  // namespace

ServiceRaid::ServiceRaid(const RaidConfig::RaidConfigOption& option) : option(option) {}

std::string ServiceRaid::GetRaidShowResult()
{
    std::vector<opt::RaidAdapter> adapters;
    XModule::Agentless::RAIDLink link(option.connectOption.connection);
    if (link.GetAllRaidAdapterInfo(adapters) != 0) {
        RLOG(2) << "raid show: the storage of " << option.connectOption.connection.host << " could not be read";
        return "No storage controller could be read.\n";
    }
    return FormatRaidShow(adapters);
}

std::string ServiceRaid::FormatRaidShow(const std::vector<opt::RaidAdapter>& adapters)
{
    if (adapters.empty()) return "No storage controller found.\n";
    std::string text;
    for (std::size_t i = 0; i < adapters.size(); ++i) {
        const opt::RaidAdapter& adapter = adapters[i];
        text += (boost::format("Controller %1%: %2% (%3%)\n") % i % adapter.Name % adapter.ControllerType).str();
        text += (boost::format("  Model: %1%  Serial Number: %2%\n") % adapter.Model % adapter.SerialNum).str();
        AppendVolumes(text, adapter);
        AppendDrives(text, adapter);
    }
    return text;
}

}  // namespace service
