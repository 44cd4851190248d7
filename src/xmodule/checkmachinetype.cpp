#include "kestro/xmodule/checkmachinetype.h"

#include "kestro/xmodule/kestrodirectory.h"
#include "kestro/xmodule/log.h"
#include "xmodule/linux/smbios.h"

#include <boost/algorithm/string/predicate.hpp>
#include <boost/algorithm/string/trim.hpp>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <vector>

namespace XModule {

namespace {

// Indexed by kind.
const char* const kListFileNames[] = {
    "Corvane_systems_list.txt",
    "AMD_systems_list.txt",
    "CFC_systems_list.txt",
    "Grantly_systems_list.txt",
};
const int kListCount = sizeof kListFileNames / sizeof kListFileNames[0];

// Offsets in the formatted area of the system information structure.
const std::size_t kProductNameOffset = 0x05;
const std::size_t kSkuNumberOffset = 0x19;

const std::size_t kMachineTypeLength = 4;

bool StartsWithMachineType(const std::string& text)
{
    if (text.size() < kMachineTypeLength) return false;
    for (std::size_t i = 0; i < kMachineTypeLength; ++i)
        if (!std::isalnum(static_cast<unsigned char>(text[i]))) return false;
    return true;
}

// A server's machine type is the first four characters of its SKU number ("7X06CTO1WW" is
// machine type 7X06, model CTO1WW). Firmware that leaves the SKU empty, or fills it with a
// placeholder, still brackets machine type and model in the product name
// ("ThinkSystem SR650 -[7X06CTO1WW]-"), so that is read next.
std::string MachineTypeOf(const Linux::SmbiosStructure& system)
{
    const std::string sku = boost::algorithm::trim_copy(Linux::GetSmbiosStringAt(system, kSkuNumberOffset));
    if (StartsWithMachineType(sku)) return sku.substr(0, kMachineTypeLength);

    const std::string product = Linux::GetSmbiosStringAt(system, kProductNameOffset);
    const std::string::size_type bracket = product.find("-[");
    if (bracket == std::string::npos) return std::string();
    const std::string code = product.substr(bracket + 2);
    return StartsWithMachineType(code) ? code.substr(0, kMachineTypeLength) : std::string();
}

std::string ReadLocalMachineType()
{
    std::string bytes;
    if (!Linux::ReadSmbiosTable(bytes)) return std::string();
    const std::vector<Linux::SmbiosStructure> table = Linux::ParseSmbiosTable(bytes);
    const Linux::SmbiosStructure* system = Linux::FindSmbiosStructure(table, Linux::SMBIOS_SYSTEM_INFORMATION);
    if (!system) {
        XLOG(LOG_WARN) << "[repo] The SMBIOS table holds no system information; the machine type is unknown";
        return std::string();
    }
    const std::string machineType = MachineTypeOf(*system);
    if (machineType.empty())
        XLOG(LOG_WARN) << "[repo] Neither the SKU number nor the product name of the system information "
                          "holds a machine type";
    return machineType;
}

// One machine type a line; '#' starts a comment; blanks around a type do not count.
bool ReadMachineTypeList(const std::string& path, std::vector<std::string>& machineTypes)
{
    std::ifstream in(path.c_str());
    if (!in) {
        XLOG(LOG_WARN) << "[repo] Unable to open the machine type list " << path;
        return false;
    }
    std::string line;
    while (std::getline(in, line)) {
        line.erase(std::min(line.find('#'), line.size()));
        boost::algorithm::trim(line);
        if (!line.empty()) machineTypes.push_back(line);
    }
    return true;
}

bool IsListed(const std::vector<std::string>& machineTypes, const std::string& machineType)
{
    for (std::size_t i = 0; i < machineTypes.size(); ++i)
        if (boost::algorithm::iequals(machineTypes[i], machineType)) return true;
    return false;
}

}  // namespace

CheckMachineType::CheckMachineType(const UserContext& context) : GroupCheck(context) {}

CheckMachineType::~CheckMachineType() {}

std::string CheckMachineType::ListFileName(int kind)
{
    return kind >= 0 && kind < kListCount ? kListFileNames[kind] : std::string();
}

bool CheckMachineType::Check(int kind)
{
    const std::string listName = ListFileName(kind);
    if (listName.empty()) {
        XLOG(LOG_ERROR) << "[repo] No machine type list of kind " << kind;
        return false;
    }
    if (TargetIsRemote()) {
        XLOG(LOG_WARN) << "[repo] The machine type of a remote target is read only by the Redfish readers; "
                       << listName << " is not consulted";
        return false;
    }
    const std::string listPath = KestroDirectory::GetExePath("data/") + listName;
    std::vector<std::string> machineTypes;
    if (!ReadMachineTypeList(listPath, machineTypes)) return false;
    const std::string machineType = ReadLocalMachineType();
    if (machineType.empty()) return false;

    const bool listed = IsListed(machineTypes, machineType);
    XLOG(LOG_DEBUG) << "[repo] Machine type " << machineType << (listed ? " is" : " is not") << " in " << listPath;
    return listed;
}

}  // namespace XModule
