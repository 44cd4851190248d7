#include "support/fixturehost.h"

#include "kestro/xmodule/rootprefix.h"

FixtureHost::FixtureHost(const std::string& release) : home("KESTRO_HOME", dir.Path())
{
    if (!release.empty()) dir.Write("etc/os-release", release);
    XModule::SetRootPrefix(dir.Path());
}

FixtureHost::~FixtureHost() { XModule::SetRootPrefix("/"); }
