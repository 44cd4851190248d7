#include "rcfctestsupport.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rmodule.h"

#include <gtest/gtest.h>

#include <regex>

using kestro::repository::RInstance;
using kestro::repository::RRepository;

const char* const kAnyText = ".+";
const char* const kNumber = "-?[0-9]+(\\.[0-9]+)?";
const char* const kNumberOrNA = "-?[0-9]+(\\.[0-9]+)?|N/A";
const char* const kCapacity = "[0-9]+(\\.[0-9]{1,2})?(Bytes|KB|MB|GB|TB)";
const char* const kHealth = "OK|Warning|Critical";
const char* const kFlag = "true|false";

const char* const RCFCTarget::kUser = "USERID";
const char* const RCFCTarget::kPassword = "PASSW0RD";

namespace {

LoopbackBmc::Options OptionsFor(const std::string& tree, bool https)
{
    LoopbackBmc::Options options;
    options.fixtureRoot = std::string(KESTRO_TEST_FIXTURES) + "/bmc/" + tree;
    options.https = https;
    options.user = RCFCTarget::kUser;
    options.password = RCFCTarget::kPassword;
    return options;
}

}  // namespace

RCFCTarget::RCFCTarget(const std::string& tree, bool https)
    : bmc(new LoopbackBmc(OptionsFor(tree, https))), repo(kestro::repository::ConnectNone), https(https)
{
    bmc->Start();
    UseCredentials(kUser, kPassword);
}

XModule::ConnectionInfo RCFCTarget::Connection() { return repo.GetRestConnectionList().front(); }

void RCFCTarget::UseCredentials(const std::string& user, const std::string& password)
{
    XModule::ConnectionInfo connection;
    connection.host = "127.0.0.1";
    connection.port = bmc->Port();
    connection.scheme = https ? XModule::XModuleConnection::SchemeHttps : XModule::XModuleConnection::SchemeHttp;
    connection.user = user;
    connection.password = password;
    repo.SetRestConnectionList(std::vector<XModule::ConnectionInfo>(1, connection));
}

void RCFCTarget::Run(kestro::repository::RModule& module, const std::string& type) { module.EnumInstances(type, repo); }

void RCFCTarget::RunEveryType(kestro::repository::RModule& module)
{
    std::vector<std::string> types;
    module.EnumTypes(types);
    for (const std::string& type : types) Run(module, type);
}

std::string RCFCTarget::Url(const std::string& path) const { return bmc->BaseUrl() + path; }

std::vector<std::vector<std::string> > ExpectRows(RRepository& repo, const std::string& type,
                                                  const std::vector<RCFCColumn>& columns)
{
    std::vector<std::string> keys;
    for (const RCFCColumn& column : columns) keys.push_back(column.key);
    std::vector<std::vector<std::string> > rows;
    std::vector<RInstance*> records = repo.GetInstances(type);
    for (std::size_t r = 0; r < records.size(); ++r) {
        std::vector<std::string> shown;
        for (const kestro::repository::RProperty& property : records[r]->GetRProperty())
            shown.push_back(property.name);
        EXPECT_EQ(keys, shown) << type << " record " << r;
        std::vector<std::string> values;
        for (const RCFCColumn& column : columns) {
            std::string value;
            records[r]->GetPropertyValue(column.key, value);
            EXPECT_TRUE(std::regex_match(value, std::regex(column.pattern)))
                << type << " record " << r << " " << column.key << " = \"" << value << "\"";
            values.push_back(value);
        }
        rows.push_back(values);
    }
    repo.FreeInstances(records);
    return rows;
}

std::vector<std::string> ColumnOf(RRepository& repo, const std::string& type, const std::string& key)
{
    std::vector<std::string> column;
    std::vector<RInstance*> records = repo.GetInstances(type);
    for (RInstance* record : records) {
        std::string value;
        record->GetPropertyValue(key, value);
        column.push_back(value);
    }
    repo.FreeInstances(records);
    return column;
}

std::vector<std::string> DisplaysOf(RRepository& repo, const std::string& type)
{
    std::vector<std::string> displays;
    std::vector<RInstance*> records = repo.GetInstances(type);
    for (RInstance* record : records) displays.push_back(record->GetDisplay());
    repo.FreeInstances(records);
    return displays;
}
