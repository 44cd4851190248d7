#include "kestro/repository/rmodule.h"

#include "xmodule/rlog.h"

namespace kestro {
namespace repository {

RModule::RModule() : inventoryCase(CaseWindows), callbacksReady(false) {}

RModule::~RModule() {}

void RModule::DelDisuseResources() {}

void RModule::SetInventoryCase(RInventoryCase c) { inventoryCase = c; }

void RModule::EnsureCallbacks()
{
    if (callbacksReady) return;
    InitCallbacks();
    callbacksReady = true;
}

void RModule::EnumInstances(const std::string& type, RRepository& repo)
{
    EnsureCallbacks();
    const std::map<std::string, TypeCallbacks>::const_iterator found = typeCallbacks.find(type);
    if (found == typeCallbacks.end()) {
        RLOG(2) << "Failed to find enum callback in " << GetName() << " for type: " << type;
        return;
    }
    RLOG(3) << "Begin to enum instances for type: " << type;
    // An entry without an enum callback raises bad_function_call to the driver's caller.
    found->second.enumCallback(repo);
}

void RModule::EnumTypes(std::vector<std::string>& types)
{
    EnsureCallbacks();
    for (std::map<std::string, TypeCallbacks>::const_iterator entry = typeCallbacks.begin();
         entry != typeCallbacks.end(); ++entry)
        types.push_back(entry->first);
}

RModule::WrapCallback RModule::FindWrapCallback(const std::string& type)
{
    EnsureCallbacks();
    const std::map<std::string, TypeCallbacks>::const_iterator found = typeCallbacks.find(type);
    return found == typeCallbacks.end() ? WrapCallback() : found->second.wrapCallback;
}

}  // namespace repository
}  // namespace kestro
