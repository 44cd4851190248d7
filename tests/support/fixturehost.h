#ifndef KESTRO_TESTS_FIXTUREHOST_H
#define KESTRO_TESTS_FIXTUREHOST_H

#include "support/tempdir.h"

#include <cstddef>
#include <initializer_list>
#include <memory>
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

// Local times read as UTC while it lives; the zone is read again once the variable is restored.
class UtcZone {
public:
    UtcZone();
    ~UtcZone();

private:
    std::unique_ptr<ScopedEnv> zone;
};

// The fields of one record, "|" between them: one row to compare.
std::string Joined(std::initializer_list<std::string> fields);

namespace kestro {
namespace repository {
class RRepository;
}
}

// How many records of `type` the repository holds.
std::size_t CountOf(kestro::repository::RRepository& repo, const std::string& type);

#endif
