#include "kestro/xmodule/groupcheck.h"

namespace XModule {

GroupCheck::GroupCheck(const UserContext& context) : context(context) {}

GroupCheck::~GroupCheck() {}

bool GroupCheck::TargetIsRemote() const
{
    return !context.connections.empty();
}

}  // namespace XModule
