#ifndef KESTRO_REPOSITORY_MODULES_RLEGACYMODULE_H
#define KESTRO_REPOSITORY_MODULES_RLEGACYMODULE_H

#include "kestro/repository/rmodule.h"

namespace kestro {
namespace repository {

// Table forms for types that only older inventory files hold; it collects nothing, so running
// one of its types raises bad_function_call.
class RLegacyModule : public RModule {
public:
    std::string GetName() override;
    std::string GetDisplay() override;

protected:
    void InitCallbacks() override;
};

}  // namespace repository
}  // namespace kestro

#endif
