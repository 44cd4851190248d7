#ifndef KESTRO_TOOL_OPTIONS_H
#define KESTRO_TOOL_OPTIONS_H

#include "kestro/xmodule/log.h"

#include <string>
#include <vector>

// What the command line asks for.
struct Options {
    std::string command;
    std::vector<std::string> files;
    std::string output;
    std::string group;
    std::string redfishUrl;
    std::string bmcUrl;  // this host's own BMC, read beside the host in an inventory of this host
    std::string caseName;
    std::string caFile;
    std::string root;  // read the local host under this folder instead of "/"
    int logLevel = XModule::LOG_INFO;
};

// Reads argv into `options`; false with `problem` set on an unknown or incomplete argument.
// The password part of a --redfish or --bmc URL is blanked in argv, so process listings never show it.
bool ParseArguments(int argc, char** argv, Options& options, std::string& problem);

#endif
