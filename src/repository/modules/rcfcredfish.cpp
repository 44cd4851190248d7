#include "repository/modules/rcfcredfish.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rinstanceswrapper.h"
#include "kestro/repository/rrepository.h"
#include "xmodule/rlog.h"
#include "rest/inventoryerror.h"
#include "rest/jsonread.h"
#include "rest/restsession.h"

#include <boost/bind/bind.hpp>
#include <boost/json/parse.hpp>
#include <boost/system/system_error.hpp>

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <sstream>
#include <vector>

namespace kestro {
namespace repository {

namespace {

const char* const kCapacityUnits[] = {"Bytes", "KB", "MB", "GB", "TB"};
const std::size_t kCapacityUnitCount = sizeof(kCapacityUnits) / sizeof(kCapacityUnits[0]);
const unsigned kWholeWidth = 100;

std::vector<std::string> BranchKeys(RCFCBranch branch, bool platformV2)
{
    switch (branch) {
    case UnderStatus:
        return {"Status"};
    case UnderMemoryLocation:
        return {"MemoryLocation"};
    case UnderOemPublic:
        return {"Oem", "Public"};
    case UnderLowerOemPublic:
        return {"oem", "Public"};
    case UnderPlatformOem:
        if (platformV2) return {"Oem", "Public"};
        return {};
    case AtTop:
        break;
    }
    return {};
}

std::string PointerOf(const RCFCField& field, bool platformV2)
{
    std::vector<std::string> keys = BranchKeys(field.branch, platformV2);
    keys.push_back(field.key);
    return Rest::MakeJsonPointer(keys);
}

bool ParseUnsigned(const std::string& text, std::uint64_t& out)
{
    if (text.empty() || text[0] < '0' || text[0] > '9') return false;
    errno = 0;
    char* end = nullptr;
    const unsigned long long value = std::strtoull(text.c_str(), &end, 10);
    if (errno != 0 || *end != '\0') return false;
    out = value;
    return true;
}

std::string ReadCapacity(const boost::json::value* value)
{
    std::uint64_t bytes = 0;
    if (value == nullptr) return Rest::JSON_MISSING_TEXT;
    if (value->is_uint64()) return RCFCRedfish::FormatCapacity(value->get_uint64());
    if (value->is_int64() && value->get_int64() >= 0)
        return RCFCRedfish::FormatCapacity(static_cast<std::uint64_t>(value->get_int64()));
    if (value->is_string() && ParseUnsigned(std::string(value->get_string()), bytes))
        return RCFCRedfish::FormatCapacity(bytes);
    return Rest::JSON_MISSING_TEXT;
}

std::string JoinTexts(const boost::json::value* value)
{
    if (value == nullptr || !value->is_array() || value->get_array().empty()) return Rest::JSON_MISSING_TEXT;
    std::string joined;
    for (const boost::json::value& entry : value->get_array()) {
        if (!entry.is_string()) continue;
        if (!joined.empty()) joined += ", ";
        joined += std::string(entry.get_string());
    }
    return joined.empty() ? std::string(Rest::JSON_MISSING_TEXT) : joined;
}

// Numbers in the same plain form as a number field ("12.12", never "1.212E1").
std::string ReadScalar(const boost::json::value* value)
{
    if (value == nullptr) return Rest::JSON_MISSING_TEXT;
    if (value->is_string()) return std::string(value->get_string());
    if (value->is_bool()) return value->get_bool() ? "true" : "false";
    if (value->is_number()) return RCFCRedfish::FormatNumber(*value);
    return Rest::JSON_MISSING_TEXT;
}

}  // namespace

bool RCFCRedfish::FirstConnection(RRepository& repo, const std::string& startLine,
                                  XModule::ConnectionInfo& connection)
{
    RLOG(3) << startLine;
    const std::vector<XModule::ConnectionInfo>& connections = repo.GetRestConnectionList();
    if (connections.empty()) {
        RLOG(1) << "There is no rest connection info in repo.";
        return false;
    }
    connection = connections.front();
    return true;
}

void RCFCRedfish::Enumerate(RRepository& repo, const std::string& startLine, const SessionWalk& walk)
{
    const Rest::AheadPlan none = {nullptr, 0};
    Enumerate(repo, startLine, none, walk);
}

void RCFCRedfish::Enumerate(RRepository& repo, const std::string& startLine, const Rest::AheadPlan& plan,
                            const SessionWalk& walk)
{
    XModule::ConnectionInfo connection;
    if (!FirstConnection(repo, startLine, connection)) return;
    RunGuarded([&walk, &connection, &plan]() {
        Rest::RestSession session = Rest::MakeRestSession(connection);
        if (plan.count != 0) Rest::ReadAhead(session, plan);
        walk(session);
    });
}

void RCFCRedfish::RunGuarded(const boost::function<void()>& body)
{
    try {
        body();
    } catch (const Rest::InventoryError& error) {
        RLOG(1) << "Failed to inventory  with error is " << error.what();
    } catch (const boost::system::system_error& error) {
        RLOG(1) << "Failed to parse json with error is " << error.what();
    } catch (...) {
        RLOG(1) << "Unknown exception";
    }
}

boost::json::value RCFCRedfish::FetchJson(Rest::RestSession& session, const std::string& url, int levels)
{
    Rest::RestResult result;
    Rest::FetchUrl(session, result, url, levels);
    // Throws boost::system::system_error on bad text: the caller's JSON handler reports it.
    return boost::json::parse(result.body);
}

std::string RCFCRedfish::LinkOf(const boost::json::value& doc, const std::string& key)
{
    return Rest::ReadJsonString(doc, Rest::MakeJsonPointer({key, "@odata.id"}));
}

std::string RCFCRedfish::ReadField(const boost::json::value& member, const RCFCField& field, bool platformV2)
{
    const std::string pointer = PointerOf(field, platformV2);
    switch (field.kind) {
    case KindNumber: {
        const boost::json::value* value = Rest::FindJsonValue(member, pointer);
        if (value == nullptr || !value->is_number()) return Rest::JSON_MISSING_TEXT;
        return FormatNumber(*value);
    }
    case KindFlag: {
        const boost::json::value* value = Rest::FindJsonValue(member, pointer);
        if (value == nullptr || !value->is_bool()) return Rest::JSON_MISSING_TEXT;
        return value->get_bool() ? "true" : "false";
    }
    case KindScalar:
        return ReadScalar(Rest::FindJsonValue(member, pointer));
    case KindCapacity:
        return ReadCapacity(Rest::FindJsonValue(member, pointer));
    case KindJoin:
        return JoinTexts(Rest::FindJsonValue(member, pointer));
    case KindText:
        break;
    }
    return Rest::ReadJsonString(member, pointer);
}

void RCFCRedfish::AddFields(RInstance& instance, const boost::json::value& member, const RCFCField* fields,
                            std::size_t count, bool platformV2, const RCFCGivenValue* given)
{
    for (std::size_t i = 0; i < count; ++i) {
        const bool isGiven = given != nullptr && given->key == fields[i].key;
        instance.AddProperty(fields[i].key, fields[i].display,
                             isGiven ? given->text : ReadField(member, fields[i], platformV2));
    }
}

void RCFCRedfish::AddRecord(RRepository& repo, const std::string& type, const std::string& display,
                            const boost::json::value& member, const RCFCField* fields, std::size_t count,
                            bool platformV2, const RCFCGivenValue* given)
{
    if (!member.is_object()) return;
    RInstance instance(type, display, -1);
    AddFields(instance, member, fields, count, platformV2, given);
    instance.AddToRepository(repo);
}

void RCFCRedfish::WrapTable(RInstancesWrapper& wrapper, const RCFCField* fields, std::size_t count)
{
    std::vector<std::string> headers;
    for (std::size_t i = 0; i < count; ++i) headers.push_back(fields[i].display);
    const unsigned columns = static_cast<unsigned>(count);
    std::vector<unsigned> percents(count, kWholeWidth / columns);
    percents.front() += kWholeWidth % columns;
    wrapper.SetRowHeaders(headers, percents, true);
}

RModule::WrapCallback RCFCRedfish::TableForm(const RCFCField* fields, std::size_t count)
{
    using boost::placeholders::_1;
    return boost::bind(&RCFCRedfish::WrapTable, _1, fields, count);
}

std::string RCFCRedfish::FormatCapacity(std::uint64_t bytes)
{
    double value = static_cast<double>(bytes);
    std::size_t unit = 0;
    while (value > 1024 && unit + 1 < kCapacityUnitCount) {
        value *= 0.0009765625;
        ++unit;
    }
    value = std::trunc(value * 100) / 100;
    std::ostringstream text;
    text.precision(15);
    text << value << kCapacityUnits[unit];
    return text.str();
}

std::string RCFCRedfish::FormatNumber(const boost::json::value& number)
{
    std::ostringstream text;
    if (number.is_int64()) {
        text << number.get_int64();
    } else if (number.is_uint64()) {
        text << number.get_uint64();
    } else {
        text.precision(15);
        text << number.get_double();
    }
    return text.str();
}

}  // namespace repository
}  // namespace kestro
