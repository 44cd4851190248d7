#include "repository/modules/rtableforms.h"

#include "kestro/repository/rinstanceswrapper.h"

namespace kestro {
namespace repository {

namespace {
const std::vector<std::string> kNoHeaders;
}

void RTableForms::WrapSingleColumn(RInstancesWrapper& wrapper)
{
    wrapper.SetRowHeaders(kNoHeaders, std::vector<unsigned>{100}, false);
}

void RTableForms::WrapLegacyMessageLog(RInstancesWrapper& wrapper)
{
    wrapper.SetRowHeaders(kNoHeaders, std::vector<unsigned>{5, 5, 20, 10, 10, 20, 10, 10, 10}, true);
}

void RTableForms::WrapApplicationSystemEvent(RInstancesWrapper& wrapper)
{
    wrapper.SetRowHeaders(kNoHeaders, std::vector<unsigned>{2, 8, 12, 13, 7, 34, 5, 9, 10}, true);
}

void RTableForms::WrapSecurityEvent(RInstancesWrapper& wrapper)
{
    wrapper.SetRowHeaders(kNoHeaders, std::vector<unsigned>{10, 12, 13, 7, 34, 5, 9, 10}, true);
}

void RTableForms::Apply(const RTableForm& form, RInstancesWrapper& wrapper)
{
    if (form.columns)
        wrapper.SetColumnHeaders(kNoHeaders, form.percents[0], form.percents[1]);
    else
        wrapper.SetRowHeaders(kNoHeaders, form.percents, form.sortable);
    if (form.referenceType) wrapper.AddReferenceType(form.referenceType);
}

}  // namespace repository
}  // namespace kestro
