#ifndef KESTRO_SYSTEMTYPE_CHECKITEM_H
#define KESTRO_SYSTEMTYPE_CHECKITEM_H

#include "kestro/systemtype/basiccheck.h"

namespace XModule {
class CheckMachineType;
}

namespace kestro {

// A check answered by a checker of the platform layer, built afresh from the context for
// every question. Subclasses choose the kind the checker is asked about.
template <class Checker>
class CheckItem : public BasicCheck {
public:
    ~CheckItem() override;

protected:
    // The checker's answer for `kind`, inverted when `negate` is set.
    bool CheckKind(const XModule::UserContext& context, int kind);
};

// Defined and instantiated once, in checkitem.cpp.
extern template class CheckItem<XModule::CheckMachineType>;

}  // namespace kestro

#endif
