#ifndef KESTRO_REPOSITORY_RINVENTORYCASE_H
#define KESTRO_REPOSITORY_RINVENTORYCASE_H

namespace kestro {
namespace repository {

// How the repository reaches its target; the numbers are stored and compared as they stand.
enum ConnectMode {
    ConnectNone = 0,
    ConnectLocal = 1,
    ConnectOob = 2,
    ConnectCmm = 3,
    ConnectEsxi = 4,
    ConnectSmm = 8,
    ConnectLocalAmd = 9,
    ConnectCfc = 13
};

// Index into RRepository::INVENTORY_CASES; CaseNone means no case was chosen.
enum RInventoryCase {
    CaseWindows = 0,
    CaseSles,
    CaseRhel,
    CasePreboot,
    CaseOob,
    CaseEsxi,
    CaseCmm,
    CaseSmm,
    CaseVxWindows,
    CaseVxSles,
    CaseVxRhel,
    CaseAmdWindows,
    CaseAmdSles,
    CaseAmdRhel,
    CaseTv5xWindows,
    CaseTv5xSles,
    CaseTv5xRhel,
    CaseTv5xV2Windows,
    CaseTv5xV2Sles,
    CaseTv5xV2Rhel,
    CaseTv4xV2Windows,
    CaseTv4xV2Sles,
    CaseTv4xV2Rhel,
    CaseUbuntu,
    CaseCfcWindows,
    CaseCfcRhel,
    CaseCfcSles,
    CaseCfcOob,
    CaseNone
};

const int INVENTORY_CASE_COUNT = CaseNone;

}  // namespace repository
}  // namespace kestro

#endif
