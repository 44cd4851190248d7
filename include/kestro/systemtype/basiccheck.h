#ifndef KESTRO_SYSTEMTYPE_BASICCHECK_H
#define KESTRO_SYSTEMTYPE_BASICCHECK_H

#include "kestro/results/kestroresult.h"
#include "kestro/xmodule/usercontext.h"

namespace kestro {

// A yes-or-no question about the target of a user context.
class BasicCheck {
public:
    BasicCheck();
    virtual ~BasicCheck();

    virtual bool Check(const XModule::UserContext& context) = 0;

    KestroResult result;   // "not supported" until a check says more
    bool negate;           // invert the answer
};

}  // namespace kestro

#endif
