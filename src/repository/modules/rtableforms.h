#ifndef KESTRO_REPOSITORY_MODULES_RTABLEFORMS_H
#define KESTRO_REPOSITORY_MODULES_RTABLEFORMS_H

namespace kestro {
namespace repository {

class RInstancesWrapper;

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
};

}  // namespace repository
}  // namespace kestro

#endif
