#ifndef KESTRO_TESTS_RCFCTESTSUPPORT_H
#define KESTRO_TESTS_RCFCTESTSUPPORT_H

#include "kestro/repository/rrepository.h"
#include "kestro/xmodule/connectioninfo.h"
#include "fakebmc/loopbackbmc.h"

#include <boost/scoped_ptr.hpp>

#include <string>
#include <vector>

class LogCapture;

namespace kestro {
namespace repository {
class RModule;
}
}  // namespace kestro

// A loopback BMC serving tests/fixtures/bmc/<tree>, and a repository whose REST connection is it.
class RCFCTarget {
public:
    explicit RCFCTarget(const std::string& tree, bool https = false);

    LoopbackBmc& Bmc() { return *bmc; }
    kestro::repository::RRepository& Repo() { return repo; }
    XModule::ConnectionInfo Connection();
    // Replaces the repository's connection by one with these credentials.
    void UseCredentials(const std::string& user, const std::string& password);
    // Runs every type the module lists, in the order it lists them.
    void RunEveryType(kestro::repository::RModule& module);
    // "http://127.0.0.1:<port>" + path.
    std::string Url(const std::string& path) const;

    static const char* const kUser;
    static const char* const kPassword;

private:
    boost::scoped_ptr<LoopbackBmc> bmc;
    kestro::repository::RRepository repo;
    bool https;
};

// The records of each type, then of any other type the repository holds, as text: per type a
// "== type" line; per record its values in shown order, preceded by its title and keys whenever
// they differ from the record before. Raw values stand as "(raw)". Then the error and warning
// lines of `log`, the target's address written "<bmc>".
std::string RecordsText(RCFCTarget& target, const std::vector<std::string>& types, const LogCapture& log);
// One column of the records of `type`.
std::vector<std::string> ColumnOf(kestro::repository::RRepository& repo, const std::string& type,
                                  const std::string& key);

#endif
