#include "support/minimalbmc.h"

#include "support/tempdir.h"

namespace {

const std::string kMinimalTree = std::string(KESTRO_TEST_FIXTURES) + "/bmc/minimal";
const std::string kFullTree = std::string(KESTRO_TEST_FIXTURES) + "/bmc/full";
const std::string kStandardTree = std::string(KESTRO_TEST_FIXTURES) + "/bmc/standard";

}  // namespace

LoopbackBmc::Options MinimalBmcOptions()
{
    LoopbackBmc::Options options;
    options.fixtureRoot = kMinimalTree;
    return options;
}

std::string MinimalBmcDocument(const std::string& path) { return ReadFile(kMinimalTree + path + "/index.json"); }

const char* const kFullBmcUser = "USERID";

LoopbackBmc::Options FullBmcOptions(const std::string& password)
{
    LoopbackBmc::Options options;
    options.fixtureRoot = kFullTree;
    options.https = true;
    options.user = kFullBmcUser;
    options.password = password;
    return options;
}

std::string FullBmcDocument(const std::string& path) { return ReadFile(kFullTree + path + "/index.json"); }

std::string FullBmcUrl(const LoopbackBmc& bmc, const std::string& password)
{
    return "https://" + std::string(kFullBmcUser) + ":" + password + "@127.0.0.1:" + std::to_string(bmc.Port());
}

LoopbackBmc::Options StandardBmcOptions(const std::string& password)
{
    LoopbackBmc::Options options = FullBmcOptions(password);
    options.fixtureRoot = kStandardTree;
    return options;
}

XModule::ConnectionInfo StandardBmcConnection(const LoopbackBmc& bmc, const std::string& password)
{
    XModule::ConnectionInfo connection;
    connection.host = "127.0.0.1";
    connection.port = bmc.Port();
    connection.user = kFullBmcUser;
    connection.password = password;
    connection.isBmc = true;
    return connection;
}
