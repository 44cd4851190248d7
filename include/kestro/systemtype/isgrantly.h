#ifndef KESTRO_SYSTEMTYPE_ISGRANTLY_H
#define KESTRO_SYSTEMTYPE_ISGRANTLY_H

#include "kestro/systemtype/checkitem.h"

namespace kestro {

// Whether the target's machine type belongs to the Grantley platform (Xeon E5-2600 v3/v4).
class IsGrantly : public CheckItem<XModule::CheckMachineType> {
public:
    bool Check(const XModule::UserContext& context) override;
};

}  // namespace kestro

#endif
