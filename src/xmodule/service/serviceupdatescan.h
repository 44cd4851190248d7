#ifndef KESTRO_XMODULE_SERVICE_SERVICEUPDATESCAN_H
#define KESTRO_XMODULE_SERVICE_SERVICEUPDATESCAN_H

#include "kestro/results/kestroresult.h"

#include <boost/property_tree/ptree.hpp>

#include <string>

namespace service {

// How a scan for updatable devices is to run, as the user's options ask.
struct UpdateScanOption {
    int iobay = 0;
    bool checkDevice = false;
    bool cfcSystem = false;
    bool neverCheckTrust = false;
    bool skipFirmware = false;
    std::string dir = "./";
    std::string type;
};

// The devices a scan found, each as a tree of its own facts.
struct UpdateScanReport {
    boost::property_tree::ptree devices;
};

// Scan for devices whose firmware could be updated. This platform has no update catalogue,
// so the scan finds none and says so with a success: the inventory file then has an empty SCAN.
class ServiceUpdateScan {
public:
    explicit ServiceUpdateScan(const UpdateScanOption& option);
    kestro::KestroResult Run(UpdateScanReport& report);

private:
    UpdateScanOption option;
};

struct SerializeScanReport {
    // Puts the report under "SCAN" of `tree`.
    static void AddToPtree(const UpdateScanReport& report, boost::property_tree::ptree& tree);
};

}  // namespace service

#endif
