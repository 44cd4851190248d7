#ifndef KESTRO_XMODULE_AGENTLESS_QMMTYPEACQUIRE_H
#define KESTRO_XMODULE_AGENTLESS_QMMTYPEACQUIRE_H

#include "kestro/xmodule/connectioninfo.h"

namespace XModule {
namespace Agentless {

// BMC families; the number is what the logs show.
enum QMMTypeValue { QMM_TYPE_UNKNOWN = 0, QMM_TYPE_QMM = 1, QMM_TYPE_QMM2 = 2, QMM_TYPE_QCC = 3 };

// The family of a target's BMC, from the model its Redfish service gives its first manager.
class QMMTypeAcquire {
public:
    enum Result { QMM_TYPE_OK = 0, QMM_TYPE_NO_BMC = 1, QMM_TYPE_UNREADABLE = 2, QMM_TYPE_UNKNOWN_MODEL = 3 };

    explicit QMMTypeAcquire(const ConnectionInfo& connection);
    // QMM_TYPE_OK and the family in `type`; otherwise `type` is untouched. A connection to the
    // host itself has no BMC to ask.
    int GetQMMType(QMMTypeValue& type);
    // The family of a manager model ("QCC-2", "QMM2 ..."), QMM_TYPE_UNKNOWN for another maker's.
    static QMMTypeValue FamilyOfModel(const std::string& model);

private:
    ConnectionInfo connection;
};

}  // namespace Agentless
}  // namespace XModule

#endif
