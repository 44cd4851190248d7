#ifndef KESTRO_REPOSITORY_MODULES_RCFCFIRMWAREINVENTORYMODULE_H
#define KESTRO_REPOSITORY_MODULES_RCFCFIRMWAREINVENTORYMODULE_H

#include "kestro/repository/rmodule.h"

#include <boost/json/value.hpp>

#include <string>

namespace Rest {
struct RestSession;
}

namespace kestro {
namespace repository {

// The firmware of a CFC target from its BMC's firmware inventory, and the system's vital
// product data (machine type, model, serial number, UUID) from its computer system.
class RCFCFirmwareInventoryModule : public RModule {
public:
    std::string GetName() override;
    std::string GetDisplay() override;

    // The machine type: the BMC's own "Oem"/"Orvena"/"MachineType" when it gives one, else the
    // first four characters of the model, which lead every model number of the family
    // ("7D76CTO1WW" is machine type 7D76); "N/A" when neither is there.
    static std::string MachineTypeOf(const boost::json::value& system);

protected:
    void InitCallbacks() override;

private:
    void EnumFirmwareInstances(RRepository& repo);
    void EnumVPDInstances(RRepository& repo);
    void WalkFirmware(Rest::RestSession& session, RRepository& repo);
    void ReadSystemVPD(Rest::RestSession& session, RRepository& repo);
};

}  // namespace repository
}  // namespace kestro

#endif
