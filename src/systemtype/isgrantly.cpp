#include "kestro/systemtype/isgrantly.h"

#include "kestro/xmodule/checkmachinetype.h"

namespace kestro {

bool IsGrantly::Check(const XModule::UserContext& context)
{
    return CheckKind(context, XModule::GRANTLY_SYSTEMS_LIST);
}

}  // namespace kestro
