#include "xmodule/service/serviceupdatescan.h"

namespace service {

ServiceUpdateScan::ServiceUpdateScan(const UpdateScanOption& option) : option(option) {}

kestro::KestroResult ServiceUpdateScan::Run(UpdateScanReport& report)
{
    report.devices.clear();
    return kestro::KestroResult(kestro::results::RESULT_SUCCEED);
}

void SerializeScanReport::AddToPtree(const UpdateScanReport& report, boost::property_tree::ptree& tree)
{
    tree.put_child("SCAN", report.devices);
}

}  // namespace service
