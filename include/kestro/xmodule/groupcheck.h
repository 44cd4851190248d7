#ifndef KESTRO_XMODULE_GROUPCHECK_H
#define KESTRO_XMODULE_GROUPCHECK_H

#include "kestro/xmodule/usercontext.h"

namespace XModule {

// A question about the target that the caller's context names: does it belong to group `kind`?
class GroupCheck {
public:
    explicit GroupCheck(const UserContext& context);
    virtual ~GroupCheck();

    virtual bool Check(int kind) = 0;

protected:
    const UserContext& Context() const { return context; }
    // The context names connections, so the target is not this host.
    bool TargetIsRemote() const;

private:
    UserContext context;
};

}  // namespace XModule

#endif
