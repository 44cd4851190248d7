#ifndef KESTRO_REPOSITORY_MODULES_RCFCREDFISH_H
#define KESTRO_REPOSITORY_MODULES_RCFCREDFISH_H

#include "kestro/repository/rmodule.h"
#include "kestro/xmodule/connectioninfo.h"

#include <boost/function.hpp>
#include <boost/json/value.hpp>

#include <cstddef>
#include <cstdint>
#include <string>

namespace Rest {
struct AheadPlan;
struct RestSession;
}

namespace kestro {
namespace repository {

class RRepository;
class RInstance;
class RInstancesWrapper;

// How a JSON value becomes a property's text.
enum RCFCValueKind {
    KindText,      // strings only
    KindNumber,    // integers and decimals
    KindFlag,      // booleans, written "true" or "false"
    KindScalar,    // a string, a number or a boolean, as text
    KindCapacity,  // a byte count, written with its unit: "1.5KB"
    KindJoin       // an array of strings, joined by ", "
};

// Where a key sits in a member.
enum RCFCBranch {
    AtTop,
    UnderStatus,
    UnderMemoryLocation,
    UnderOemPublic,       // "Oem", "Public": the BMC's vendor fields
    UnderLowerOemPublic,  // "oem", "Public": the thermal document spells it so
    UnderPlatformOem      // "Oem", "Public" on a second-generation platform, the top level otherwise
};

// One column of a type's table: the JSON key, the property's display name, and how to read it.
struct RCFCField {
    const char* key;
    const char* display;
    RCFCValueKind kind;
    RCFCBranch branch;
};

// A column whose text is given rather than read from the member: a fixed unit, or a value the
// member's neighbours decide.
struct RCFCGivenValue {
    std::string key;
    std::string text;
};

// The number of fields of a constant table.
template <std::size_t N>
std::size_t RCFCFieldCount(const RCFCField (&)[N])
{
    return N;
}

// What the Redfish modules share: the enumeration with its three failure handlers, the reads of
// a member into a record, and the row table of a type.
class RCFCRedfish {
public:
    typedef boost::function<void(Rest::RestSession&)> SessionWalk;

    // Logs `startLine` and takes the first REST connection; false after logging that there is none.
    static bool FirstConnection(RRepository& repo, const std::string& startLine, XModule::ConnectionInfo& connection);
    // Logs `startLine`, opens a session on the first REST connection and runs `walk` guarded.
    static void Enumerate(RRepository& repo, const std::string& startLine, const SessionWalk& walk);
    // The same, after sending the GETs of the module's `plan` ahead at its first walk of the run.
    static void Enumerate(RRepository& repo, const std::string& startLine, const Rest::AheadPlan& plan,
                          const SessionWalk& walk);
    // Runs `body`; a failed url, bad JSON or anything else is logged and ends only `body`.
    static void RunGuarded(const boost::function<void()>& body);
    // GETs `url` and parses the answer; throws InventoryError or the parser's error.
    static boost::json::value FetchJson(Rest::RestSession& session, const std::string& url, int levels);
    // The "@odata.id" of the link object under `key`, or "N/A".
    static std::string LinkOf(const boost::json::value& doc, const std::string& key);

    static std::string ReadField(const boost::json::value& member, const RCFCField& field, bool platformV2);
    static void AddFields(RInstance& instance, const boost::json::value& member, const RCFCField* fields,
                          std::size_t count, bool platformV2, const RCFCGivenValue* given = nullptr);
    // A record of `type` titled `display`, read from `member` and added to the store; a member
    // that is not an object gives none.
    static void AddRecord(RRepository& repo, const std::string& type, const std::string& display,
                          const boost::json::value& member, const RCFCField* fields, std::size_t count,
                          bool platformV2 = false, const RCFCGivenValue* given = nullptr);
    // Row headers of the table's display names, the width split evenly.
    static void WrapTable(RInstancesWrapper& wrapper, const RCFCField* fields, std::size_t count);
    // A wrap callback that gives a type the row table of `fields`.
    static RModule::WrapCallback TableForm(const RCFCField* fields, std::size_t count);

    static std::string FormatCapacity(std::uint64_t bytes);
    static std::string FormatNumber(const boost::json::value& number);
};

// A record from one member by a constant table.
template <std::size_t N>
void RCFCAddRecord(RRepository& repo, const std::string& type, const std::string& display,
                   const boost::json::value& member, const RCFCField (&fields)[N], bool platformV2 = false,
                   const RCFCGivenValue* given = nullptr)
{
    RCFCRedfish::AddRecord(repo, type, display, member, fields, N, platformV2, given);
}

// The table form of a constant table.
template <std::size_t N>
RModule::WrapCallback RCFCTableForm(const RCFCField (&fields)[N])
{
    return RCFCRedfish::TableForm(fields, N);
}

}  // namespace repository
}  // namespace kestro

#endif
