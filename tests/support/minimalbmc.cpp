#include "support/minimalbmc.h"

#include <fstream>
#include <sstream>

namespace {

const std::string kMinimalTree = std::string(KESTRO_TEST_FIXTURES) + "/bmc/minimal";

}  // namespace

LoopbackBmc::Options MinimalBmcOptions()
{
    LoopbackBmc::Options options;
    options.fixtureRoot = kMinimalTree;
    return options;
}

std::string MinimalBmcDocument(const std::string& path)
{
    std::ifstream in((kMinimalTree + path + "/index.json").c_str(), std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}
