#ifndef KESTRO_XMODULE_CHECKMACHINETYPE_H
#define KESTRO_XMODULE_CHECKMACHINETYPE_H

#include "kestro/xmodule/groupcheck.h"

#include <string>

namespace XModule {

// The system lists a machine type is checked against; each is a file in the program's data folder.
enum MachineTypeList {
    CORVANE_SYSTEMS_LIST = 0,
    AMD_SYSTEMS_LIST = 1,
    CFC_SYSTEMS_LIST = 2,
    GRANTLY_SYSTEMS_LIST = 3
};

// Whether the target's machine type stands in the system list of a kind.
class CheckMachineType : public GroupCheck {
public:
    explicit CheckMachineType(const UserContext& context);
    ~CheckMachineType() override;

    // False, with a log line, for an unknown kind, a remote target, a missing list or an
    // unreadable machine type.
    bool Check(int kind) override;

    // The list file's name for `kind`, or "" for an unknown kind.
    static std::string ListFileName(int kind);
};

}  // namespace XModule

#endif
