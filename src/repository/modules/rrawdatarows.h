#ifndef KESTRO_REPOSITORY_MODULES_RRAWDATAROWS_H
#define KESTRO_REPOSITORY_MODULES_RRAWDATAROWS_H

#include "kestro/repository/rinstance.h"
#include "xmodule/ihv/rawdata.h"

#include <string>

namespace kestro {
namespace repository {

// The rows of one vendor utility's answer: the command as the report shows it, what it shows, the
// answer itself (marked to go to a file of its own), and, in the XML alone, the utility and device
// rows where the type has them and the file's name.
inline void AddRawDataRows(RInstance& instance, const XModule::XModuleIHV::RawData_& record,
                           const std::string& command, bool utilityRows)
{
    instance.AddProperty("Command", "Command", command, false);
    instance.AddProperty("Description", "Description", record.description, false);
    instance.AddProperty("RawData", "Raw Data", record.rawData, false);
    if (utilityRows) {
        instance.AddProperty("Utility", "Utility", record.utility, true);
        instance.AddProperty("DeviceID", "Device ID", record.deviceId, true);
    }
    instance.AddProperty("Filename", "File Name", record.fileName, true);
    instance.AddPropertyAttr("RawData", "raw");
}

}  // namespace repository
}  // namespace kestro

#endif
