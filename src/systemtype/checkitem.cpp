#include "kestro/systemtype/checkitem.h"

#include "kestro/xmodule/checkmachinetype.h"

namespace kestro {

template <class Checker>
CheckItem<Checker>::~CheckItem()
{
}

template <class Checker>
bool CheckItem<Checker>::CheckKind(const XModule::UserContext& context, int kind)
{
    Checker checker(context);
    const bool answer = checker.Check(kind);
    return negate ? !answer : answer;
}

template class CheckItem<XModule::CheckMachineType>;

}  // namespace kestro
