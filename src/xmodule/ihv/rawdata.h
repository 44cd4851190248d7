#ifndef KESTRO_XMODULE_IHV_RAWDATA_H
#define KESTRO_XMODULE_IHV_RAWDATA_H

#include <string>

namespace XModule {
namespace XModuleIHV {

// What one run of a vendor utility gave: its output as it stands and how it was run.
struct RawData_ {
    std::string rawData;      // what the utility wrote
    std::string utility;      // the utility's file name
    std::string deviceId;     // the adapter the command was about; empty for a whole-host command
    std::string command;      // the command line as it ran
    std::string description;  // what the command shows, in a few words
    std::string fileName;     // the name the report gives the output's own file
};

}  // namespace XModuleIHV
}  // namespace XModule

#endif
