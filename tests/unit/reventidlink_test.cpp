#include "repository/modules/reventidlink.h"

#include "support/logcapture.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

using kestro::repository::REventIdLink;

namespace {

const char kSupportList[] = R"({"Systems": [
  {"Prime Machine Type": "7D76", "URL": "https://ev.test/%MACHINETYPE%/%EVENTID%.htm", "Machine Type": ["7D77"]},
  {"Prime Machine Type": "7Z70", "URL": "https://ev.test/dense/%EVENTID%", "Machine Type": ["7Z71", 5]},
  {"URL": "https://ev.test/none/%EVENTID%"}
]})";

const int kOlderFamily = 1;
const int kQcc = 3;

}  // namespace

TEST(REventIdLinkTest, LinksAnEventIdByMachineTypeProductAndFamily)
{
    TempDir home;
    home.Write("global.config", "KESTRO_EVENT_DOC_HOST=https://docs.test\n");
    ScopedEnv homeEnv("KESTRO_HOME", home.Path());
    const REventIdLink::SupportTable listed = REventIdLink::ReadSupportList(home.Write("list.json", kSupportList));
    const REventIdLink::SupportTable missing = REventIdLink::ReadSupportList(home.Path() + "/absent.json");
    struct Case {
        const char* name;
        const REventIdLink::SupportTable* table;
        const char* eventId;
        const char* machineType;
        const char* productName;
        int family;
        const char* expected;
    } cases[] = {
        {"80 id: last four masked in the address only", &listed, "806F0107A1B2", "7D76", "", kOlderFamily,
         "<a href=https://ev.test/7D76/806F0107ffff.htm>806F0107A1B2</a>"},
        {"0x80 id of a listed secondary type", &listed, "0x80070204C0DE", "7D77", "", kQcc,
         "<a href=https://ev.test/7D76/0x80070204ffff.htm>0x80070204C0DE</a>"},
        {"other ids unchanged", &listed, "FQXSPPW0031J", "7Z71", "RX650", kQcc,
         "<a href=https://ev.test/dense/FQXSPPW0031J>FQXSPPW0031J</a>"},
        {"80 only inside the id", &listed, "A806F0107", "7Z70", "", kOlderFamily,
         "<a href=https://ev.test/dense/A806F0107>A806F0107</a>"},
        {"QCC with a product name", &listed, "806F0107A1B2", "9Z99", "RX650 V3", kQcc,
         "<a href=https://docs.test/RX650 V3/806F0107A1B2 target=_BLANK>806F0107A1B2</a>"},
        {"QCC RX350 under the general tree", &listed, "FQXSPCA0012I", "9Z99", "RX350", kQcc,
         "<a href=https://docs.test/help/topic/RX350/FQXSPCA0012I.html>FQXSPCA0012I</a>"},
        {"QCC without a product name", &listed, "FQXSPCA0012I", "9Z99", "", kQcc,
         "<a href=https://docs.test/help/topic/9Z99/FQXSPCA0012I.html>FQXSPCA0012I</a>"},
        {"older family, unlisted type: bare id", &listed, "806F0107A1B2", "9Z99", "RX650 V3", kOlderFamily,
         "806F0107A1B2"},
        {"missing list, older family", &missing, "806F0107A1B2", "7D76", "", kOlderFamily, "806F0107A1B2"},
        {"missing list, QCC", &missing, "806F0107A1B2", "7D76", "", kQcc,
         "<a href=https://docs.test/help/topic/7D76/806F0107A1B2.html>806F0107A1B2</a>"},
    };
    for (const Case& c : cases) {
        const std::string productName = c.productName;
        EXPECT_EQ(c.expected, REventIdLink::ChangeEventIdToLink(*c.table, c.eventId, c.machineType, productName,
                                                                c.family, !productName.empty()))
            << c.name;
    }
}

TEST(REventIdLinkTest, ReadsOneRowPerMachineTypeAndSurvivesBadFiles)
{
    TempDir dir;
    struct Case {
        const char* name;
        const char* content;  // null: no file
        std::size_t rows;
        const char* logged;
    } cases[] = {
        {"rows of prime and listed types, bad ones skipped", kSupportList, 4, "has no prime machine type or URL"},
        {"missing file", nullptr, 0, "The json file can not be opened."},
        {"not JSON", "{\"Systems\": [", 0, "is not JSON"},
        {"no Systems list", "{\"Systems\": {}}", 0, "has no Systems list"},
    };
    for (const Case& c : cases) {
        LogCapture log;
        const std::string path = c.content ? dir.Write(std::string(c.name) + ".json", c.content) : dir.Path() + "/none";
        EXPECT_EQ(c.rows, REventIdLink::ReadSupportList(path).size()) << c.name;
        EXPECT_EQ(1, log.Count(c.logged)) << c.name << log.Dump();
    }
}
