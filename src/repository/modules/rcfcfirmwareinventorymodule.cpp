#include "repository/modules/rcfcfirmwareinventorymodule.h"

#include "repository/modules/rcfcredfish.h"
#include "rest/jsonread.h"
#include "rest/restsession.h"

#include <boost/bind/bind.hpp>

#include <cctype>
#include <iterator>

namespace kestro {
namespace repository {

namespace {

const RCFCField kFirmwareFields[] = {
    {"Name", "Name", KindText, AtTop},
    {"Version", "Build ID", KindText, AtTop},
    {"Date", "Build Date", KindText, AtTop},
};

// "MachineType" is derived, see MachineTypeOf; the others are read from Systems/1 as they stand.
const RCFCField kVPDFields[] = {
    {"MachineType", "Machine Type", KindText, AtTop},
    {"Model", "Model", KindText, AtTop},
    {"SerialNumber", "Serial Number", KindText, AtTop},
    {"UUID", "UUID", KindText, AtTop},
};
const std::size_t kMachineTypeLength = 4;

const char* const kFirmwareUrl = "/redfish/v1/UpdateService/FirmwareInventory";
const char* const kSystemUrl = "/redfish/v1/Systems/1";

// What the walks below read, so that the module's first walk of a run fetches both at once.
const Rest::AheadRead kReadPlan[] = {
    {kFirmwareUrl, 1, nullptr, 0},
    {kSystemUrl, 0, nullptr, 0},
};
const Rest::AheadPlan kPlan = {kReadPlan, std::size(kReadPlan)};

bool IsAlphanumeric(const std::string& text)
{
    for (char c : text)
        if (!std::isalnum(static_cast<unsigned char>(c))) return false;
    return true;
}

}  // namespace

std::string RCFCFirmwareInventoryModule::GetName() { return "CFCFirmwareInventoryModule"; }

std::string RCFCFirmwareInventoryModule::GetDisplay() { return "CFC Firmware Inventory Module"; }

std::string RCFCFirmwareInventoryModule::MachineTypeOf(const boost::json::value& system)
{
    const std::string stated = Rest::ReadJsonString(system, "/Oem/Orvena/MachineType");
    if (stated != Rest::JSON_MISSING_TEXT) return stated;
    const std::string model = Rest::ReadJsonString(system, "/Model");
    const std::string lead = model.substr(0, kMachineTypeLength);
    if (model == Rest::JSON_MISSING_TEXT || lead.size() < kMachineTypeLength || !IsAlphanumeric(lead))
        return Rest::JSON_MISSING_TEXT;
    return lead;
}

void RCFCFirmwareInventoryModule::InitCallbacks()
{
    using boost::placeholders::_1;
    typedef RCFCFirmwareInventoryModule M;
    typeCallbacks["FirmwareInventory"].enumCallback = boost::bind(&M::EnumFirmwareInstances, this, _1);
    typeCallbacks["FirmwareInventory"].wrapCallback = RCFCTableForm(kFirmwareFields);
    typeCallbacks["SystemVPD"].enumCallback = boost::bind(&M::EnumVPDInstances, this, _1);
    typeCallbacks["SystemVPD"].wrapCallback = RCFCTableForm(kVPDFields);
}

void RCFCFirmwareInventoryModule::EnumFirmwareInstances(RRepository& repo)
{
    RCFCRedfish::Enumerate(repo, "Try to enum Firmware instance.", kPlan,
                           [this, &repo](Rest::RestSession& session) { WalkFirmware(session, repo); });
}

void RCFCFirmwareInventoryModule::EnumVPDInstances(RRepository& repo)
{
    RCFCRedfish::Enumerate(repo, "Try to enum VPD instance.", kPlan,
                           [this, &repo](Rest::RestSession& session) { ReadSystemVPD(session, repo); });
}

void RCFCFirmwareInventoryModule::WalkFirmware(Rest::RestSession& session, RRepository& repo)
{
    Rest::WalkCollection(session, kFirmwareUrl, Rest::WalkExpanded, [&repo](const boost::json::value& member) {
        RCFCAddRecord(repo, "FirmwareInventory", "Firmware Inventory", member, kFirmwareFields);
    });
}

void RCFCFirmwareInventoryModule::ReadSystemVPD(Rest::RestSession& session, RRepository& repo)
{
    const boost::json::value system = RCFCRedfish::FetchJson(session, kSystemUrl, 0);
    const RCFCGivenValue machineType = {"MachineType", MachineTypeOf(system)};
    RCFCAddRecord(repo, "SystemVPD", "System VPD", system, kVPDFields, false, &machineType);
}

}  // namespace repository
}  // namespace kestro
