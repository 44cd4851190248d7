#ifndef KESTRO_REPOSITORY_MODULES_RLSIOPTMODULE_H
#define KESTRO_REPOSITORY_MODULES_RLSIOPTMODULE_H

#include "kestro/repository/rmodule.h"
#include "kestro/xmodule/connectioninfo.h"
#include "xmodule/agentless/raidadapter.h"

#include <map>
#include <string>
#include <vector>

namespace XModule {
namespace Agentless {
class RAIDLink;
}
}  // namespace XModule

namespace kestro {
namespace repository {

// Storage controllers and what hangs off them: RAID adapters with their pools, volumes, drives,
// batteries and firmware, non-RAID and direct-attached SSDs, boot adapters, and the raw output of
// the vendors' storage utilities. One enumeration fills every adapter-derived type.
class RLSIOptModule : public RModule {
public:
    typedef std::map<std::string, std::string> CodeTable;

    RLSIOptModule();

    std::string GetName() override;
    std::string GetDisplay() override;

    // True when the adapter's SSDs are shown without RAID records: a VROC adapter that is not a
    // SATA one, or one of directly attached NVMe drives.
    static bool IsNonRaid(const XModule::XMOptions::RaidAdapter& adapter);
    // Location texts compared from their first "Bay" on, as plain text.
    static bool LocationBefore(const XModule::XMOptions::SSD& a, const XModule::XMOptions::SSD& b);
    // "M.2 Adapter", "7MM Adapter" or "Storage Device" after the adapter's name.
    static std::string AdapterDisplay(const std::string& adapterName);
    static std::string BootVolumeDisplay(const std::string& adapterName);
    // One display name for a non-RAID adapter's SSDs; empty when none fits.
    static std::string NonRaidDisplay(const std::string& controllerType, const std::string& firstSsdType);
    static std::string PoolRaidLevel(const XModule::XMOptions::StoragePool& pool);
    // "YES" when the text reads "true" in any case, else "NO".
    static std::string YesNo(const std::string& text);
    // A coded property's value as the report shows it: the word of its code on older systems
    // ("Other" for a code its table lacks), the value itself on Whitley ones.
    std::string ShownValue(const std::string& property, const std::string& value) const;

protected:
    void InitCallbacks() override;

private:
    void EnumAdapterInstances(RRepository& repo);
    void EnumInBand(RRepository& repo);
    void EnumOutOfBand(RRepository& repo);
    void EnumEsxi(RRepository& repo);
    bool IsAgentlessSupportedFunLsi(const std::vector<XModule::ConnectionInfo>& connections);
    void EnumRaidLink(RRepository& repo, XModule::Agentless::RAIDLink& link);
    void FillTables();
    void ShowAdapter(RRepository& repo, const XModule::XMOptions::RaidAdapter& adapter);

    void ShowNonRaidAndDirectAttachedNVMeSSDInfo(RRepository& repo, const std::vector<XModule::XMOptions::SSD>& ssds,
                                                 const std::vector<XModule::XMOptions::SoftwareIdentity>& identities,
                                                 std::string controllerType);
    void ShowAdapterInfoInstances(RRepository& repo, const XModule::XMOptions::RaidAdapter& adapter);
    void ShowStorageVolumeInfoInstances(RRepository& repo, const XModule::XMOptions::RaidAdapter& adapter);
    void ShowBatteryInfoInstances(RRepository& repo, const XModule::XMOptions::RaidAdapter& adapter);
    void ShowStoragePoolInfoInstances(RRepository& repo, const XModule::XMOptions::RaidAdapter& adapter);
    void ShowDiskDriveInfoInstances(RRepository& repo, const XModule::XMOptions::RaidAdapter& adapter);
    void ShowSoftwareIdentityInfoInstances(RRepository& repo, const XModule::XMOptions::RaidAdapter& adapter);
    void ShowSSDInfoInstances(RRepository& repo, const XModule::XMOptions::RaidAdapter& adapter);
    void AddDiskDrive(RRepository& repo, const XModule::XMOptions::DiskDrive& drive, const std::string& parentType,
                      int parentId);
    void AddSoftwareIdentity(RRepository& repo, const XModule::XMOptions::SoftwareIdentity& identity,
                             const std::string& parentType, int parentId, bool valueBeforeSubDevice);

    void EnumRawDataInstances(RRepository& repo);
    void EnumSeaChestRawDataInstances(RRepository& repo);
    void EnumArcconfRawDataInstances(RRepository& repo);
    void EnumMarvellRawDataInstances(RRepository& repo);
    void EnumRaidShowRawData(RRepository& repo);
    static bool IsQccBmc(RRepository& repo);

    bool enumerated;
    bool isWhitley;
    CodeTable batteryTypes;
    CodeTable arrayStates;
    CodeTable linkSpeeds;
    CodeTable mediaTypes;
    CodeTable driveStates;
};

}  // namespace repository
}  // namespace kestro

#endif
