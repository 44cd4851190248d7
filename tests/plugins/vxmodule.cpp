// A stand-in for the optional module plug-in: adds one module whose types show in the run.
// "Plugin" offers PluginThing, Zulu and DataSource (already offered by a built-in module), adds a
// record that names the case it was told, and counts DelDisuseResources for the test to read.
#include "kestro/repository/rinstance.h"
#include "kestro/repository/rmodule.h"

#include <boost/bind/bind.hpp>
#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

using namespace kestro::repository;

namespace {

int releases = 0;

class PluginModule : public RModule {
public:
    std::string GetName() override { return "Plugin"; }
    std::string GetDisplay() override { return "Plug-in Module"; }
    void DelDisuseResources() override { ++releases; }

protected:
    void InitCallbacks() override
    {
        using boost::placeholders::_1;
        typeCallbacks["PluginThing"].enumCallback = boost::bind(&PluginModule::Enum, this, "PluginThing", _1);
        typeCallbacks["Zulu"].enumCallback = boost::bind(&PluginModule::Enum, this, "Zulu", _1);
        typeCallbacks["DataSource"].enumCallback = boost::bind(&PluginModule::Enum, this, "DataSource", _1);
    }

private:
    void Enum(const std::string& type, RRepository& repo)
    {
        RInstance record(type, type, -1);
        record.AddProperty("Case", "Case", static_cast<int>(inventoryCase), false);
        record.AddToRepository(repo);
    }
};

}  // namespace

extern "C" void AddModules(std::vector<boost::shared_ptr<RModule> >& modules)
{
    modules.push_back(boost::make_shared<PluginModule>());
}

extern "C" int PluginReleaseCount() { return releases; }
