#ifndef KESTRO_REPOSITORY_UPDATESCANADAPTER_H
#define KESTRO_REPOSITORY_UPDATESCANADAPTER_H

#include "kestro/xmodule/usercontext.h"
#include "xmodule/service/serviceupdatescan.h"

#include <string>

namespace kestro {
namespace repository {

// Turns the user's options into the options of an update scan, and tells them back as a command line.
class UpdateScanAdapter {
public:
    explicit UpdateScanAdapter(const XModule::UserContext& context);

    const service::UpdateScanOption& Option() const { return option; }
    // "update scan" followed by " --name value" for every option that was set.
    const std::string& CommandText() const { return commandText; }

private:
    void Note(const std::string& name, const std::string& value);

    service::UpdateScanOption option;
    std::string commandText;
};

}  // namespace repository
}  // namespace kestro

#endif
