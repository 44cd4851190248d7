#include "xmodule/agentless/qmmtypeacquire.h"

#include "rest/jsonread.h"
#include "xmodule/agentless/bmcreader.h"
#include "xmodule/rlog.h"

#include <boost/algorithm/string/predicate.hpp>

namespace XModule {
namespace Agentless {

namespace {

struct ModelFamily {
    const char* prefix;
    QMMTypeValue family;
};

// Longer prefixes first: "QMM2" must not be taken for "QMM".
const ModelFamily kModelFamilies[] = {
    {"QCC", QMM_TYPE_QCC},
    {"QMM2", QMM_TYPE_QMM2},
    {"QMM", QMM_TYPE_QMM},
};

}  // namespace

QMMTypeAcquire::QMMTypeAcquire(const ConnectionInfo& connection) : connection(connection) {}

QMMTypeValue QMMTypeAcquire::FamilyOfModel(const std::string& model)
{
    for (const ModelFamily& entry : kModelFamilies)
        if (boost::algorithm::istarts_with(model, entry.prefix)) return entry.family;
    return QMM_TYPE_UNKNOWN;
}

int QMMTypeAcquire::GetQMMType(QMMTypeValue& type)
{
    if (!connection.isBmc) return QMM_TYPE_NO_BMC;
    BmcReader reader(connection);
    const std::string manager = reader.FirstMember("/redfish/v1/Managers");
    boost::json::value doc;
    if (manager.empty() || !reader.Get(manager, doc)) return QMM_TYPE_UNREADABLE;
    const std::string model = Rest::ReadJsonString(doc, "/Model", "");
    const QMMTypeValue family = FamilyOfModel(model);
    if (family == QMM_TYPE_UNKNOWN) {
        XLOG(3) << "BMC model '" << model << "' belongs to no known BMC family";
        return QMM_TYPE_UNKNOWN_MODEL;
    }
    type = family;
    return QMM_TYPE_OK;
}

}  // namespace Agentless
}  // namespace XModule
