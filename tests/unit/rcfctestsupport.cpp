#include "rcfctestsupport.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rmodule.h"
#include "kestro/xmodule/log.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

#include <boost/algorithm/string/join.hpp>
#include <boost/algorithm/string/replace.hpp>

#include <algorithm>
#include <regex>

using kestro::repository::RInstance;
using kestro::repository::RRepository;

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

void RCFCTarget::RunEveryType(kestro::repository::RModule& module)
{
    std::vector<std::string> types;
    module.EnumTypes(types);
    for (const std::string& type : types) module.EnumInstances(type, repo);
}

std::string RCFCTarget::Url(const std::string& path) const { return bmc->BaseUrl() + path; }

std::string RecordsText(RCFCTarget& target, const std::vector<std::string>& types, const LogCapture& log)
{
    std::vector<std::string> all = types;
    for (const std::string& type : target.Repo().GetCollectedInstanceTypes())
        if (std::find(all.begin(), all.end(), type) == all.end()) all.push_back(type);
    std::string text;
    for (const std::string& type : all) {
        text += "== " + type + "\n";
        std::string title, keys;
        std::vector<RInstance*> records = target.Repo().GetInstances(type);
        for (RInstance* record : records) {
            std::vector<std::string> names, values;
            for (const kestro::repository::RProperty& property : record->GetRProperty()) {
                std::string value;
                record->GetPropertyValue(property.name, value);
                names.push_back(property.name);
                values.push_back(property.raw ? "(raw)" : boost::algorithm::replace_all_copy(value, "\n", "\\n"));
            }
            if (record->GetDisplay() != title) text += "title: " + (title = record->GetDisplay()) + "\n";
            if (boost::algorithm::join(names, " | ") != keys) text += "keys: " + (keys = boost::algorithm::join(names, " | ")) + "\n";
            text += boost::algorithm::join(values, " | ") + "\n";
        }
        target.Repo().FreeInstances(records);
    }
    // Without the port, the line breaks and where in Boost a JSON error was raised.
    const std::regex where(" at [^\\]]* in function '[^']*'\\]");
    text += "== log\n";
    for (const auto& line : log.Records()) {
        if (line.first > XModule::LOG_WARN) continue;
        std::string shown = boost::algorithm::replace_all_copy(line.second, target.Url(""), "<bmc>");
        boost::algorithm::replace_all(shown, "\n", "\\n");
        text += std::to_string(line.first) + " " + std::regex_replace(shown, where, "]") + "\n";
    }
    return text;
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
