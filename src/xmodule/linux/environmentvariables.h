#ifndef KESTRO_XMODULE_LINUX_ENVIRONMENTVARIABLES_H
#define KESTRO_XMODULE_LINUX_ENVIRONMENTVARIABLES_H

#include "xmodule/protocol/osinfo.h"

#include <string>
#include <vector>

namespace XModule {
namespace Linux {

// The KEY=VALUE lines of a file such as /etc/environment, sorted by name, a later line winning:
// comments, an "export " before the name and quotes around the value as shells and pam_env take them.
std::vector<protocol::EnvironmentVariableInfo> ParseEnvironmentFile(const std::string& text);
// True when a variable's value may be a secret: its name speaks of a password, token, key or
// credential, or its value is an address with a password in it ("https://user:pw@proxy").
bool IsSecretVariable(const std::string& name, const std::string& value);
// system: /etc/environment; user: this program's own environment. Both sorted by name, each
// secret's value replaced by "(hidden)": the tool itself is handed a BMC password that way.
void CollectEnvironment(std::vector<protocol::EnvironmentVariableInfo>& system,
                        std::vector<protocol::EnvironmentVariableInfo>& user);

}  // namespace Linux
}  // namespace XModule

#endif
