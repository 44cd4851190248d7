#ifndef KESTRO_TESTS_RCFCTESTSUPPORT_H
#define KESTRO_TESTS_RCFCTESTSUPPORT_H

#include "kestro/repository/rrepository.h"
#include "kestro/xmodule/connectioninfo.h"
#include "fakebmc/loopbackbmc.h"

#include <boost/scoped_ptr.hpp>

#include <string>
#include <vector>

namespace kestro {
namespace repository {
class RModule;
}
}  // namespace kestro

// One column a record must carry: its key, and a pattern the whole value must match.
struct RCFCColumn {
    std::string key;
    std::string pattern;
};

// Value shapes.
extern const char* const kAnyText;     // something, "N/A" included
extern const char* const kNumber;      // a decimal number
extern const char* const kNumberOrNA;
extern const char* const kCapacity;    // "1.74TB"
extern const char* const kHealth;      // OK, Warning, Critical
extern const char* const kFlag;        // true, false

// A loopback BMC serving tests/fixtures/bmc/<tree>, and a repository whose REST connection is it.
class RCFCTarget {
public:
    explicit RCFCTarget(const std::string& tree, bool https = false);

    LoopbackBmc& Bmc() { return *bmc; }
    kestro::repository::RRepository& Repo() { return repo; }
    XModule::ConnectionInfo Connection();
    // Replaces the repository's connection by one with these credentials.
    void UseCredentials(const std::string& user, const std::string& password);
    void Run(kestro::repository::RModule& module, const std::string& type);
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

// Every record of `type` carries exactly `columns`, in order, with matching values; the values
// of each record come back in column order.
std::vector<std::vector<std::string> > ExpectRows(kestro::repository::RRepository& repo, const std::string& type,
                                                  const std::vector<RCFCColumn>& columns);
// The display name of each record of `type`: the title of its table in the report.
std::vector<std::string> DisplaysOf(kestro::repository::RRepository& repo, const std::string& type);
// One column of the records of `type`.
std::vector<std::string> ColumnOf(kestro::repository::RRepository& repo, const std::string& type,
                                  const std::string& key);

#endif
