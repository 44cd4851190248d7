#ifndef KESTRO_REPOSITORY_MODULES_RDATASOURCEMODULE_H
#define KESTRO_REPOSITORY_MODULES_RDATASOURCEMODULE_H

#include "kestro/repository/rmodule.h"

namespace kestro {
namespace repository {

// Records which tool gathered the inventory: one DataSource record, only when a name is known.
class RDataSourceModule : public RModule {
public:
    RDataSourceModule();
    RDataSourceModule(const std::string& name, const std::string& build, const std::string& version);

    std::string GetName() override;
    std::string GetDisplay() override;

protected:
    void InitCallbacks() override;

private:
    void EnumDataSource(RRepository& repo);
    void WrapDataSource(RInstancesWrapper& wrapper);

    std::string name;
    std::string build;
    std::string version;
};

}  // namespace repository
}  // namespace kestro

#endif
