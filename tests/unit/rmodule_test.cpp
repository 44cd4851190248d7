#include "kestro/repository/rinstance.h"
#include "kestro/repository/rmodule.h"
#include "kestro/repository/rrepository.h"
#include "repository/modules/rdatasourcemodule.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

#include <boost/bind/bind.hpp>

using namespace kestro::repository;

namespace {

// A module that counts how often it registers and records the case it saw then.
class CountingModule : public RModule {
public:
    int initCalls = 0;
    RInventoryCase seenCase = CaseNone;
    int enumCalls = 0;

    std::string GetName() override { return "Counting"; }
    std::string GetDisplay() override { return "Counting Module"; }

protected:
    void InitCallbacks() override
    {
        ++initCalls;
        seenCase = inventoryCase;
        using boost::placeholders::_1;
        typeCallbacks["Zeta"].enumCallback = boost::bind(&CountingModule::Enum, this, _1);
        typeCallbacks["Alpha"].enumCallback = boost::bind(&CountingModule::Enum, this, _1);
        typeCallbacks["NoEnum"];
    }

private:
    void Enum(RRepository&) { ++enumCalls; }
};

}  // namespace

TEST(RModuleTest, RegistersLazilyOnceListsTypesSortedAndLogsUnknownTypes)
{
    CountingModule module;
    EXPECT_EQ(0, module.initCalls);
    module.SetInventoryCase(CaseRhel);
    std::vector<std::string> types;
    module.EnumTypes(types);
    module.SetInventoryCase(CaseSles);
    module.EnumTypes(types);
    EXPECT_EQ(1, module.initCalls);
    EXPECT_EQ(CaseRhel, module.seenCase);
    EXPECT_EQ((std::vector<std::string>{"Alpha", "NoEnum", "Zeta", "Alpha", "NoEnum", "Zeta"}), types);

    // Unknown types are logged for enumeration and silent for wrapping.
    RRepository repo(ConnectNone);
    LogCapture capture;
    EXPECT_TRUE(module.FindWrapCallback("Alpha").empty());
    EXPECT_TRUE(module.FindWrapCallback("Other").empty());
    EXPECT_TRUE(capture.Records().empty()) << capture.Dump();
    module.EnumInstances("Other", repo);
    EXPECT_TRUE(capture.Has(2, "[repo] Failed to find enum callback in Counting for type: Other")) << capture.Dump();
    module.EnumInstances("Alpha", repo);
    EXPECT_EQ(1, module.enumCalls);
    EXPECT_TRUE(capture.Has(3, "[repo] Begin to enum instances for type: Alpha"));
    EXPECT_THROW(module.EnumInstances("NoEnum", repo), boost::bad_function_call);
}

TEST(RModuleTest, DataSourceModuleAddsOneRecordOnlyWithAName)
{
    RRepository repo(ConnectNone);
    RDataSourceModule empty;
    std::vector<std::string> types;
    empty.EnumTypes(types);
    EXPECT_EQ(std::vector<std::string>(1, "DataSource"), types);
    empty.EnumInstances("DataSource", repo);
    EXPECT_TRUE(repo.GetCollectedInstanceTypes().empty());

    RDataSourceModule named("kestro", "b42", "4.4.1");
    named.EnumInstances("DataSource", repo);
    std::vector<RInstance*> records = repo.GetInstances("DataSource");
    ASSERT_EQ(1u, records.size());
    EXPECT_EQ("Data Source", records[0]->GetDisplay());
    EXPECT_EQ("kestro", records[0]->GetNormalizedValue("Name", ""));
    EXPECT_EQ("b42", records[0]->GetNormalizedValue("Build", ""));
    EXPECT_EQ("4.4.1", records[0]->GetNormalizedValue("Version", ""));
    repo.FreeInstances(records);
    EXPECT_TRUE(records.empty());
}
