#ifndef KESTRO_SYSTEMTYPE_ISCFCSYSTEM_H
#define KESTRO_SYSTEMTYPE_ISCFCSYSTEM_H

#include "kestro/systemtype/checkitem.h"

namespace kestro {

// Whether the target's machine type belongs to the CFC server family.
class IsCFCSystem : public CheckItem<XModule::CheckMachineType> {
public:
    bool Check(const XModule::UserContext& context) override;
};

}  // namespace kestro

#endif
