#include "kestro/systemtype/iscfcsystem.h"

#include "kestro/xmodule/checkmachinetype.h"

namespace kestro {

bool IsCFCSystem::Check(const XModule::UserContext& context)
{
    return CheckKind(context, XModule::CFC_SYSTEMS_LIST);
}

}  // namespace kestro
