#ifndef KESTRO_TESTS_MINIMALBMC_H
#define KESTRO_TESTS_MINIMALBMC_H

#include "fakebmc/loopbackbmc.h"

#include <string>

// Options of a loopback BMC that serves the small mockup tree tests/fixtures/bmc/minimal.
LoopbackBmc::Options MinimalBmcOptions();

// The document that tree holds for `path` ("/redfish/v1/Systems/1"), as its file has it.
std::string MinimalBmcDocument(const std::string& path);

#endif
