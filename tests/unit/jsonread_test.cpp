#include "rest/jsonread.h"

#include <functional>
#include <iomanip>
#include <sstream>

#include <boost/json/parse.hpp>
#include <boost/system/system_error.hpp>
#include <gtest/gtest.h>

#include "kestro/xmodule/log.h"
#include "repository/modules/rcfcredfish.h"
#include "rest/restsession.h"
#include "support/logcapture.h"
#include "support/minimalbmc.h"

namespace {

const char* const DOCUMENT = R"({
  "Name": "Chassis",
  "Count": 64,
  "Negative": -3,
  "Watts": 412.5,
  "Big": 18446744073709551615,
  "Enabled": true,
  "Nothing": null,
  "Status": {"Health": "OK"},
  "Members": [{"@odata.id": "/redfish/v1/Systems/1"}, "text"]
})";

struct Visits {
    std::vector<std::string> names;  // of the members
    std::vector<std::string> pages;  // next links
};

// A session to a loopback BMC on the minimal tree, and the members and pages a walk visits.
class JsonOverSessionTest : public ::testing::Test {
protected:
    JsonOverSessionTest() : bmc(MinimalBmcOptions()), session(Start(bmc)) {}

    static Rest::RestSession Start(LoopbackBmc& server)
    {
        server.Start();
        XModule::ConnectionInfo connection;
        connection.host = "127.0.0.1";
        connection.scheme = XModule::XModuleConnection::SchemeHttp;
        connection.port = server.Port();
        return Rest::MakeRestSession(connection);
    }
    std::size_t Walk(const std::string& url, Rest::CollectionWalk walk)
    {
        return Rest::WalkCollection(
            session, url, walk,
            [this](const boost::json::value& member) { visits.names.push_back(Rest::ReadJsonString(member, "/Name")); },
            [this](const std::string& next) { visits.pages.push_back(next); });
    }

    LoopbackBmc bmc;
    Rest::RestSession session;
    Visits visits;
};

}  // namespace

TEST(JsonReadTest, KeysBecomePointerTokens)
{
    const struct {
        const char* key;
        const char* token;
    } cases[] = {
        {"Name", "Name"},   {"@odata.id", "@odata.id"}, {"Slot/Bay", "Slot~1Bay"}, {"a~b", "a~0b"},
        {"~/", "~0~1"},     {"/~", "~1~0"},             {"~1", "~01"},             {"", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.token, Rest::EscapePointerToken(c.key)) << c.key;
    EXPECT_EQ("/Oem/Public/Slot~1Bay", Rest::MakeJsonPointer({"Oem", "Public", "Slot/Bay"}));
    EXPECT_EQ("", Rest::MakeJsonPointer(std::vector<std::string>()));
    EXPECT_EQ("/Members/12", Rest::MakeJsonPointer(Rest::MakeJsonPointer({"Members"}), 12));
}

// What a typed read gives: "-" when it falls back on its default (tried with two), "!" when it
// throws the assign failure that names the pointer and the wanted type.
template <class T>
std::string Cell(const std::function<T(T)>& read, T one, T other, const std::string& pointer, const char* type)
{
    try {
        const T value = read(one);
        if (value == one && read(other) == other) return "-";
        std::ostringstream text;
        text << std::boolalpha << std::setprecision(15) << value;
        return text.str();
    } catch (const boost::system::system_error& error) {
        EXPECT_EQ("[assign failure](" + pointer + " >> " + type + "): not exact", std::string(error.what()));
        return "!";
    }
}

TEST(JsonReadTest, EachTypedReadTakesOnlyTheKindsItCanHoldExactly)
{
    const boost::json::value doc = boost::json::parse(DOCUMENT);
    const struct {
        const char* pointer;
        std::vector<std::string> cells;  // string, int64, uint64, double, bool, text
    } rows[] = {
        {"/Name", {"Chassis", "-", "-", "-", "-", "Chassis"}},
        {"/Count", {"-", "64", "64", "64", "-", "64"}},
        {"/Negative", {"-", "-3", "!", "-3", "-", "-3"}},
        {"/Watts", {"-", "!", "!", "412.5", "-", "412.5"}},
        {"/Big", {"-", "!", "18446744073709551615", "1.84467440737096e+19", "-", "18446744073709551615"}},
        {"/Enabled", {"-", "-", "-", "-", "true", "true"}},
        {"/Nothing", {"-", "-", "-", "-", "-", "-"}},
        {"/Status", {"-", "-", "-", "-", "-", "-"}},
        {"/Status/Health", {"OK", "-", "-", "-", "-", "OK"}},
        {"/Members/0/@odata.id", {"/redfish/v1/Systems/1", "-", "-", "-", "-", "/redfish/v1/Systems/1"}},
        {"/Members/7", {"-", "-", "-", "-", "-", "-"}},
        {"no leading slash", {"-", "-", "-", "-", "-", "-"}},
    };
    for (const auto& row : rows) {
        const std::string p = row.pointer;
        const std::vector<std::string> cells = {
            Cell<std::string>([&](std::string d) { return Rest::ReadJsonString(doc, p, d); }, "-", "=", p, ""),
            Cell<std::int64_t>([&](std::int64_t d) { return Rest::ReadJsonInt(doc, p, d); }, -7, 7, p, "int64"),
            Cell<std::uint64_t>([&](std::uint64_t d) { return Rest::ReadJsonUint(doc, p, d); }, 7, 8, p, "uint64"),
            Cell<double>([&](double d) { return Rest::ReadJsonDouble(doc, p, d); }, -0.5, 0.5, p, "double"),
            Cell<bool>([&](bool d) { return Rest::ReadJsonBool(doc, p, d); }, false, true, p, "bool"),
            Cell<std::string>([&](std::string d) { return Rest::ReadJsonText(doc, p, d); }, "-", "=", p, ""),
        };
        EXPECT_EQ(row.cells, cells) << p;
    }
    // The default of a string read is "N/A".
    EXPECT_EQ("N/A", Rest::ReadJsonString(doc, "/Count"));
    EXPECT_EQ("N/A", Rest::ReadJsonText(doc, "/Status"));
}

TEST_F(JsonOverSessionTest, AnAssignFailureReachesTheModulesJsonHandler)
{
    bmc.SetDocument("/redfish/v1/Systems/1/Memory/1", R"({"Id": "1", "CapacityMiB": -16384})");
    LogCapture log;
    std::string id;
    kestro::repository::RCFCRedfish::RunGuarded([this, &id] {
        const boost::json::value member =
            kestro::repository::RCFCRedfish::FetchJson(session, "/redfish/v1/Systems/1/Memory/1", 0);
        id = Rest::ReadJsonString(member, "/Id");
        Rest::ReadJsonUint(member, "/CapacityMiB", 0);
        id = "read past the failure";
    });
    EXPECT_EQ("1", id);
    EXPECT_TRUE(log.Has(XModule::LOG_ERROR,
                        "[repo] Failed to parse json with error is [assign failure](/CapacityMiB >> uint64): not exact"))
        << log.Dump();
}

TEST(JsonReadTest, ShapeChecksFindOnlyTheWantedKind)
{
    const boost::json::value doc = boost::json::parse(DOCUMENT);
    EXPECT_NE(nullptr, Rest::FindJsonObject(doc, "/Status"));
    EXPECT_NE(nullptr, Rest::FindJsonObject(doc, ""));
    EXPECT_EQ(nullptr, Rest::FindJsonObject(doc, "/Members"));
    EXPECT_EQ(nullptr, Rest::FindJsonObject(doc, "/Missing"));
    ASSERT_NE(nullptr, Rest::FindJsonArray(doc, "/Members"));
    EXPECT_EQ(2u, Rest::FindJsonArray(doc, "/Members")->size());
    EXPECT_EQ(nullptr, Rest::FindJsonArray(doc, "/Status"));
    EXPECT_NE(nullptr, Rest::FindJsonValue(doc, "/Nothing"));
    EXPECT_EQ(nullptr, Rest::FindJsonValue(doc, "/Members/2"));
}

TEST_F(JsonOverSessionTest, ExpandedWalkFollowsNextLinkPagesButNotAPageLinkingToItself)
{
    bmc.SetPageSize(2);
    EXPECT_EQ(3u, Walk("/redfish/v1/Systems", Rest::WalkExpanded));
    EXPECT_EQ((std::vector<std::string>{"Node 1", "Node 2", "Node 3"}), visits.names);
    EXPECT_EQ((std::vector<std::string>{"/redfish/v1/Systems?$skip=2&$expand=.($levels=1)"}), visits.pages);
    EXPECT_EQ(2, bmc.RequestCount());
    EXPECT_EQ(0, bmc.RequestCount("/redfish/v1/Systems/1"));

    // A url that already asks for expansion is taken as it stands.
    visits = Visits();
    bmc.SetPageSize(0);
    EXPECT_EQ(3u, Walk("/redfish/v1/Systems?$expand=.($levels=1)", Rest::WalkExpanded));
    EXPECT_EQ("/redfish/v1/Systems?$expand=.($levels=1)", bmc.LastRequest().target);
    EXPECT_TRUE(visits.pages.empty());

    // A page that links to itself ends the walk.
    LogCapture log;
    bmc.SetDocument("/redfish/v1/Loop", R"({"Members": [{"Name": "only"}],
                                            "Members@odata.nextLink": "/redfish/v1/Loop"})");
    EXPECT_EQ(2u, Walk("/redfish/v1/Loop?$expand=.($levels=1)", Rest::WalkExpanded));
    EXPECT_EQ(2, bmc.RequestCount("/redfish/v1/Loop"));
    EXPECT_EQ(1, log.Count("links again to page /redfish/v1/Loop"));
}

TEST_F(JsonOverSessionTest, LinkWalkFetchesEachMemberAndSkipsMissingLinks)
{
    bmc.SetDocument("/redfish/v1/Mixed",
                    R"({"Members": [{"@odata.id": "/redfish/v1/Systems/3"}, {"Name": "no link"},
                                    {"@odata.id": 5}, {"@odata.id": "/redfish/v1/Systems/1"}]})");
    EXPECT_EQ(2u, Walk("/redfish/v1/Mixed", Rest::WalkLinks));
    EXPECT_EQ((std::vector<std::string>{"Node 3", "Node 1"}), visits.names);
    EXPECT_EQ("/redfish/v1/Mixed", bmc.Requests().front().target);
    EXPECT_EQ(1, bmc.RequestCount("/redfish/v1/Systems/3"));

    visits = Visits();
    bmc.SetPageSize(1);
    EXPECT_EQ(3u, Walk("/redfish/v1/Systems", Rest::WalkLinks));
    EXPECT_EQ((std::vector<std::string>{"Node 1", "Node 2", "Node 3"}), visits.names);
    EXPECT_EQ(2u, visits.pages.size());
}

TEST_F(JsonOverSessionTest, FailuresEndTheWalkAfterTheMembersAlreadyVisited)
{
    // The second member's document is cut short.
    EXPECT_THROW(Walk("/redfish/v1/Managers", Rest::WalkLinks), boost::system::system_error);
    EXPECT_EQ((std::vector<std::string>{"Node 1"}), visits.names);

    visits = Visits();
    bmc.SetDocument("/redfish/v1/Gone", R"({"Members": [{"@odata.id": "/redfish/v1/Systems/2"},
                                                         {"@odata.id": "/redfish/v1/Systems/9"}]})");
    try {
        Walk("/redfish/v1/Gone", Rest::WalkLinks);
        ADD_FAILURE() << "no InventoryError";
    } catch (const Rest::InventoryError& error) {
        EXPECT_EQ("Failed to get url " + session.baseUrl + "/redfish/v1/Systems/9, error code is 404",
                  std::string(error.what()));
    }
    EXPECT_EQ((std::vector<std::string>{"Node 2"}), visits.names);

    EXPECT_THROW(Walk("/redfish/v1/Broken", Rest::WalkExpanded), boost::system::system_error);
    EXPECT_EQ(0u, Walk("/redfish/v1/Chassis/1", Rest::WalkExpanded));  // no Members: nothing to walk
}
