#ifndef KESTRO_TESTS_FIXTUREHOST_H
#define KESTRO_TESTS_FIXTUREHOST_H

#include "support/tempdir.h"

#include <string>

// A host root in a temporary folder whose os-release says `release` (none when empty); the
// program's home is the same folder. Local readers look there while it lives.
class FixtureHost {
public:
    explicit FixtureHost(const std::string& release);
    ~FixtureHost();
    const TempDir& Dir() const { return dir; }

private:
    TempDir dir;
    ScopedEnv home;
};

#endif
