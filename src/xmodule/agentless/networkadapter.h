#ifndef KESTRO_XMODULE_AGENTLESS_NETWORKADAPTER_H
#define KESTRO_XMODULE_AGENTLESS_NETWORKADAPTER_H

#include <string>
#include <vector>

namespace XModule {
namespace Agentless {

// Every field is text as the report shows it; a fact the source does not give is NETWORK_NOT_GIVEN.
extern const char* const NETWORK_NOT_GIVEN;  // "N/A"

// One port of a network adapter, with the state of its link.
struct NetworkPort {
    std::string Name;
    std::string LinkTechnology;  // "Ethernet", "InfiniBand", "FibreChannel"
    std::string MaxSpeed;        // "25 Gbps"
    std::string EnabledState;    // "Enabled", "Disabled"
    std::string PortAvailability;
    std::string RequestedState;
    std::string Caption;
    std::string PortNumber;
    std::string LinkStatus;        // "Up", "Down", "NoLink"
    std::string PermanentAddress;  // the MAC address the port was made with
    std::string Speed;             // the speed the link runs at now
    std::string TransitioningToState;
    std::string OtherIdentifyingInfo;  // the address the port uses now
    std::string BurnedInMAC;
    std::string ConfiguredLAMA;  // a locally administered address set over the burned-in one
};

// Firmware or a driver of an adapter.
struct NetworkSoftwareIdentity {
    std::string Description;
    std::string ElementName;
    std::string ProductName;
    std::string Manufacturer;
    std::string Name;
    std::string VersionString;
    std::string Classifications;  // "Firmware", "Driver"
    std::string ClassificationDescriptions;
    std::string IdentityInfoValue;
    std::string SoftwareID;
    std::string SubDeviceID;
    std::string ReleaseDate;
    std::string SoftwareStatus;
    std::string SoftwareRole;
    std::string IdentityInfoType;
};

// One PCI network adapter: a card or an onboard controller with its functions taken together.
struct NetworkAdapter {
    std::string ID;  // the BMC's id of the adapter, or the PCI domain:bus:device of its functions
    std::string Name;
    std::string Slot;
    std::string Tag;
    std::string Manufacturer;
    std::string Model;
    std::string SerialNumber;
    std::string PartNumber;
    std::string FRUNumber;
    std::string OperationalStatus;
    std::string DeviceType;
    std::string Thermal;
    std::string Caption;
    std::vector<NetworkPort> ports;
    std::vector<NetworkSoftwareIdentity> softwareIdentities;
};

}  // namespace Agentless
}  // namespace XModule

#endif
