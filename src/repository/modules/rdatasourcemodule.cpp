#include "repository/modules/rdatasourcemodule.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rinstanceswrapper.h"

#include <boost/bind/bind.hpp>

namespace kestro {
namespace repository {

RDataSourceModule::RDataSourceModule() {}

RDataSourceModule::RDataSourceModule(const std::string& name, const std::string& build, const std::string& version)
    : name(name), build(build), version(version)
{
}

std::string RDataSourceModule::GetName() { return "DataSource"; }

std::string RDataSourceModule::GetDisplay() { return "Data Source"; }

void RDataSourceModule::InitCallbacks()
{
    using boost::placeholders::_1;
    TypeCallbacks& dataSource = typeCallbacks["DataSource"];
    dataSource.enumCallback = boost::bind(&RDataSourceModule::EnumDataSource, this, _1);
    dataSource.wrapCallback = boost::bind(&RDataSourceModule::WrapDataSource, this, _1);
}

void RDataSourceModule::EnumDataSource(RRepository& repo)
{
    if (name.empty()) return;
    RInstance instance("DataSource", "Data Source", -1);
    instance.AddProperty("Name", "Name", name, false);
    instance.AddProperty("Build", "Build", build, false);
    instance.AddProperty("Version", "Version", version, false);
    instance.AddToRepository(repo);
}

void RDataSourceModule::WrapDataSource(RInstancesWrapper& wrapper)
{
    wrapper.SetColumnHeaders(std::vector<std::string>(), 30, 1);
}

}  // namespace repository
}  // namespace kestro
