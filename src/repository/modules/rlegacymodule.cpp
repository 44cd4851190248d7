#include "repository/modules/rlegacymodule.h"

#include "repository/modules/rtableforms.h"

namespace kestro {
namespace repository {

std::string RLegacyModule::GetName() { return "LegacyModule"; }

std::string RLegacyModule::GetDisplay() { return "Legacy Module"; }

void RLegacyModule::InitCallbacks()
{
    typeCallbacks["QMMMessageLogData"].wrapCallback = &RTableForms::WrapLegacyMessageLog;
    typeCallbacks["ApplicationEvent"].wrapCallback = &RTableForms::WrapApplicationSystemEvent;
    typeCallbacks["SystemEvent"].wrapCallback = &RTableForms::WrapApplicationSystemEvent;
    typeCallbacks["SecurityEvent"].wrapCallback = &RTableForms::WrapSecurityEvent;
}

}  // namespace repository
}  // namespace kestro
