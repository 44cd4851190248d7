#include "xmodule/agentless/systeminfoscan.h"

#include "xmodule/agentless/xfirmwareinventory.h"
#include "xmodule/linux/dmiid.h"

#include <cctype>

namespace {

const std::size_t kMachineTypeLength = 4;

bool IsMachineType(const std::string& text)
{
    if (text.size() < kMachineTypeLength) return false;
    for (std::size_t i = 0; i < kMachineTypeLength; ++i)
        if (!std::isalnum(static_cast<unsigned char>(text[i]))) return false;
    return true;
}

// Where a machine type may stand in the dmi attributes, and whether it is bracketed there.
struct DmiPlace {
    const char* attribute;
    bool bracketed;
};

const DmiPlace kDmiPlaces[] = {
    {"product_sku", false},
    {"product_name", true},
    {"product_version", true},
};

std::string MachineTypeAt(const std::string& text, bool bracketed)
{
    std::string::size_type start = 0;
    if (bracketed) {
        start = text.find('[');
        if (start == std::string::npos) return std::string();
        ++start;
    }
    const std::string code = text.substr(start);
    return IsMachineType(code) ? code.substr(0, kMachineTypeLength) : std::string();
}

}  // namespace

int SystemInfoScan::GetMachineType(const XModule::ConnectionInfo& connection, std::string& machineType)
{
    std::string found;
    if (connection.isBmc) {
        XModule::XFIRMWARESYSTEMVPD vpd;
        if (XModule::xFirmwareInventory(connection).GetxFirmwareSystemVPD(vpd) == XModule::INVENTORY_SUCCESS)
            found = vpd.machineType;
    } else {
        found = MachineTypeOfDmi(XModule::Linux::ReadDmiId());
    }
    if (found.empty()) return MACHINE_TYPE_UNKNOWN;
    machineType = found;
    return MACHINE_TYPE_OK;
}

std::string SystemInfoScan::MachineTypeOfDmi(const std::map<std::string, std::string>& dmi)
{
    for (const DmiPlace& place : kDmiPlaces) {
        const std::map<std::string, std::string>::const_iterator it = dmi.find(place.attribute);
        const std::string found = it == dmi.end() ? std::string() : MachineTypeAt(it->second, place.bracketed);
        if (!found.empty()) return found;
    }
    return std::string();
}
