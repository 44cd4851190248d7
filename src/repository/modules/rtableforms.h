#ifndef KESTRO_REPOSITORY_MODULES_RTABLEFORMS_H
#define KESTRO_REPOSITORY_MODULES_RTABLEFORMS_H

#include <vector>

namespace kestro {
namespace repository {

class RInstancesWrapper;

// How a type's table looks: rows with one width per property, or one column per record (the
// width of the heading cell and the number of columns).
struct RTableForm {
    const char* type;
    bool columns;
    std::vector<unsigned> percents;
    bool sortable;
    const char* referenceType;  // the child type shown under each record, or null
};

// Table forms that several modules give their types.
class RTableForms {
public:
    // One wide column, for message lists.
    static void WrapSingleColumn(RInstancesWrapper& wrapper);
    // Message logs of older chassis-manager files.
    static void WrapLegacyMessageLog(RInstancesWrapper& wrapper);
    // Application and system events: icon, type, time, source, category, message, id, user, computer.
    static void WrapApplicationSystemEvent(RInstancesWrapper& wrapper);
    static void WrapSecurityEvent(RInstancesWrapper& wrapper);
    static void Apply(const RTableForm& form, RInstancesWrapper& wrapper);
};

}  // namespace repository
}  // namespace kestro

#endif
