#ifndef KESTRO_REPOSITORY_MODULES_RHOSTCONNECTION_H
#define KESTRO_REPOSITORY_MODULES_RHOSTCONNECTION_H

#include "kestro/xmodule/connectioninfo.h"

namespace kestro {
namespace repository {

class RRepository;

// The connection a module of the host's own facts hands its platform reader.
class RHostConnection {
public:
    // The repository's first CIM connection; without one, this host when the repository runs in
    // band (in-band Redfish included), else a connection to no host, which the readers refuse.
    static XModule::ConnectionInfo Of(RRepository& repo);
};

}  // namespace repository
}  // namespace kestro

#endif
