#ifndef KESTRO_TESTS_MINIMALBMC_H
#define KESTRO_TESTS_MINIMALBMC_H

#include "fakebmc/loopbackbmc.h"
#include "kestro/xmodule/connectioninfo.h"

#include <string>

// Options of a loopback BMC that serves the small mockup tree tests/fixtures/bmc/minimal.
LoopbackBmc::Options MinimalBmcOptions();

// The document that tree holds for `path` ("/redfish/v1/Systems/1"), as its file has it.
std::string MinimalBmcDocument(const std::string& path);

// The full CFC tree over HTTPS, guarded by USERID and `password`; its documents likewise.
extern const char* const kFullBmcUser;
LoopbackBmc::Options FullBmcOptions(const std::string& password);
std::string FullBmcDocument(const std::string& path);
// "https://USERID:<password>@127.0.0.1:<port>", the address a run of the tool is given.
std::string FullBmcUrl(const LoopbackBmc& bmc, const std::string& password);

// The plain-Redfish tree tests/fixtures/bmc/standard over HTTPS, guarded by USERID and `password`,
// and a BMC connection to it as the tool would make one.
LoopbackBmc::Options StandardBmcOptions(const std::string& password);
XModule::ConnectionInfo StandardBmcConnection(const LoopbackBmc& bmc, const std::string& password);

#endif
