#ifndef KESTRO_REPOSITORY_MODULES_REVENTIDLINK_H
#define KESTRO_REPOSITORY_MODULES_REVENTIDLINK_H

#include <map>
#include <string>

namespace kestro {
namespace repository {

// Turns a BMC event id into a link to the maker's page about that event.
class REventIdLink {
public:
    // Machine type to the address template of its documentation ("%EVENTID%" still in it).
    typedef std::map<std::string, std::string> SupportTable;

    // The text of an entry's EventID: a link when the machine type is in the support list or the
    // BMC is of the QCC family, the bare id otherwise. The list is read once per process from
    // "EventID_SupportLists.json" in the program's data folder.
    static std::string ChangeEventIdToLink(const std::string& eventId, const std::string& machineType,
                                           const std::string& productName, int qmmType, bool productNameKnown);
    // The same against a given table.
    static std::string ChangeEventIdToLink(const SupportTable& table, const std::string& eventId,
                                           const std::string& machineType, const std::string& productName,
                                           int qmmType, bool productNameKnown);
    // The table of a support file: one row per listed machine type and one for the prime machine
    // type of each system, "%MACHINETYPE%" in its template already replaced by the prime one.
    // Empty, with a log line, when the file cannot be opened or is not such a list.
    static SupportTable ReadSupportList(const std::string& path);
    // Where the maker's documentation is served: KESTRO_EVENT_DOC_HOST in global.config.
    static std::string DocumentationHost();
};

}  // namespace repository
}  // namespace kestro

#endif
