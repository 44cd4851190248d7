#include "support/fixturehost.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rrepository.h"

#include "kestro/xmodule/rootprefix.h"

#include <ctime>

FixtureHost::FixtureHost(const std::string& release) : home("KESTRO_HOME", dir.Path())
{
    if (!release.empty()) dir.Write("etc/os-release", release);
    XModule::SetRootPrefix(dir.Path());
}

FixtureHost::~FixtureHost() { XModule::SetRootPrefix("/"); }

UtcZone::UtcZone() : zone(new ScopedEnv("TZ", "UTC0")) { tzset(); }

UtcZone::~UtcZone()
{
    zone.reset();
    tzset();
}

std::string Joined(std::initializer_list<std::string> fields)
{
    std::string row;
    bool first = true;
    for (const std::string& field : fields) {
        row += (first ? "" : "|") + field;
        first = false;
    }
    return row;
}

std::size_t CountOf(kestro::repository::RRepository& repo, const std::string& type)
{
    std::vector<kestro::repository::RInstance*> records = repo.GetInstances(type);
    const std::size_t count = records.size();
    repo.FreeInstances(records);
    return count;
}
