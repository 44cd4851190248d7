#include "kestro/repository/rinstance.h"
#include "kestro/repository/rrepository.h"
#include "support/golden.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

using namespace kestro::repository;

namespace {

const char* const kTypes[] = {"Processor", "Memory", "Disk", "PCIAdapter", "Firmware"};
const int kTypeCount = 5;
// Records whose content differs; a larger store repeats them in the same order.
const int kDistinctRecords = 200;

// A record with what the writer must escape or encode, attributes, lists, a hidden value,
// and now and then a reference and a tool tip.
RInstance MixedRecord(int index)
{
    const int k = index % kDistinctRecords;
    const std::string n = std::to_string(k);
    RInstance record(kTypes[k % kTypeCount], "Record <" + n + "> & \"co\"", k);
    record.AddProperty("Name", "Name", "dev'" + n + "'<&>", false);
    record.AddProperty("Serial", "Serial Number", "SN" + n, false);
    record.AddProperty("Bytes", "Bytes", std::string("caf\xe9\x01") + n, false);
    record.AddProperty("Padded", "Padded", std::string(k % 2 ? "  " : "  lead " + n), false);
    record.AddProperty("Speed", "Speed", 2400 + k % 7, false);
    record.AddProperty("Temp", "Temperature", 41.5 + k % 3, false);
    record.AddProperty("Lanes", "Lanes", std::vector<int>{k % 4, 8});
    record.AddProperty("Hidden", "Hidden", std::string("x"), true);
    record.AddPropertyAttr("Serial", RRepository::VOLATILE_ATTR);
    record.AddPropertyAttr("Name", "filename", "n" + n + ".txt");
    if (k % 3 == 0) record.AddReference("Processor", k / 3);
    if (k % 4 == 0) record.AddToolTip("tip <" + n + ">");
    return record;
}

std::unique_ptr<RRepository> MixedStore(int records)
{
    std::unique_ptr<RRepository> repo(new RRepository(XModule::ConnectionInfo(), CaseCfcOob));
    for (int i = 0; i < records; ++i) MixedRecord(i).AddToRepository(*repo);
    return repo;
}

std::string Written(RRepository& repo, const TempDir& dir)
{
    EXPECT_TRUE(repo.WriteXML("store.xml", dir.Path()));
    return dir.Read("store.xml");
}

// The golden text with its records written `times` over, as a store that repeats them holds them.
std::string Repeated(const std::string& text, int times)
{
    const std::string headerEnd = "</buildversion>\n";
    const std::string::size_type begin = text.find(headerEnd) + headerEnd.size();
    const std::string::size_type end = text.find("  </repository>");
    std::string repeated = text.substr(0, begin);
    for (int i = 0; i < times; ++i) repeated += text.substr(begin, end - begin);
    return repeated + text.substr(end);
}

struct OddFile {
    const char* name;
    const char* text;
};

// Files whose repository element or records hold what records added by modules never do.
const OddFile kOddFiles[] = {
    {"comments", "<kestro><repository><!-- c1 --><mode>oob</mode><Disk><display>D</display><!--c2--></Disk>"
                 "<!-- c3 --></repository></kestro>"},
    {"attributes", "<kestro><repository kind=\"a&amp;b\"><Disk id=\"1\"/><Disk><value> </value></Disk>"
                   "</repository></kestro>"},
    {"text only", "<kestro><repository>just &lt;text&gt;</repository></kestro>"},
    {"attributes and children",
     "<kestro><repository><Disk id=\"1\" k=\"&lt;\"><x a=\"b\">t</x>mixed<!--c--></Disk></repository></kestro>"},
    {"dotted keys", "<repository><A.B><c.d>1</c.d></A.B><A.B/><Disk/></repository>"},
};

}  // namespace

TEST(RRecordStoreTest, AMixedStoreIsWrittenAsTheGoldenFile)
{
    TempDir dir;
    std::unique_ptr<RRepository> repo = MixedStore(kDistinctRecords);
    EXPECT_TRUE(MatchesGolden("repository/mixed_store.xml", Written(*repo, dir)));
}

TEST(RRecordStoreTest, ALargeStoreIsWrittenByteForByteAsItsRecordsRepeated)
{
    const int times = 100;
    TempDir dir;
    std::unique_ptr<RRepository> repo = MixedStore(kDistinctRecords * times);
    const std::string written = Written(*repo, dir);
    const std::string expected = Repeated(Golden("repository/mixed_store.xml"), times);
    ASSERT_EQ(expected.size(), written.size());
    EXPECT_TRUE(expected == written);
}

TEST(RRecordStoreTest, ALargeStoreHandsOutEachTypeInTheOrderItsRecordsWereAdded)
{
    const int records = 20000;
    std::unique_ptr<RRepository> repo = MixedStore(records);
    EXPECT_EQ((std::vector<std::string>{"Disk", "Firmware", "Memory", "PCIAdapter", "Processor"}),
              repo->GetCollectedInstanceTypes());
    for (int type = 0; type < kTypeCount; ++type) {
        std::vector<RInstance*> found = repo->GetInstances(kTypes[type]);
        ASSERT_EQ(static_cast<size_t>(records / kTypeCount), found.size()) << kTypes[type];
        for (size_t i = 0; i < found.size(); i += 997)
            EXPECT_EQ(MixedRecord(type + kTypeCount * static_cast<int>(i)).ToXML(), found[i]->ToXML()) << i;
        repo->FreeInstances(found);
    }
}

// Records are handed out in their stored form and made trees when first read: each stays the
// record it was, whatever happens to the store or to the other copies after.
TEST(RRecordStoreTest, RecordsHandedOutOutliveTheirStoreAndKeepTheirOwnChanges)
{
    std::unique_ptr<RRepository> repo = MixedStore(kTypeCount * 2);
    std::vector<RInstance*> first = repo->GetInstances("Processor");
    std::vector<RInstance*> second = repo->GetInstances("Processor");
    ASSERT_EQ(2u, first.size());
    const RInstance copy(*first[1]);
    first[0]->AddProperty("Added", "Added", std::string("later"), false);
    MixedRecord(kTypeCount * 2).AddToRepository(*repo);
    repo.reset();

    EXPECT_EQ(MixedRecord(kTypeCount).ToXML(), copy.ToXML());
    EXPECT_EQ(MixedRecord(kTypeCount).ToXML(), first[1]->ToXML());
    EXPECT_EQ(MixedRecord(0).ToXML(), second[0]->ToXML());
    EXPECT_NE(std::string::npos, first[0]->ToXML().find("later"));
    for (RInstance* record : first) delete record;
    for (RInstance* record : second) delete record;
}

TEST(RRecordStoreTest, OddFilesReadAreWrittenBackAsTheGoldenFiles)
{
    TempDir dir;
    for (const OddFile& file : kOddFiles) {
        RRepository repo(ConnectNone);
        ASSERT_TRUE(repo.ReadXML(dir.Write("odd.xml", file.text), "")) << file.name;
        Written(repo, dir);
        const std::string name = std::string("repository/odd_") + file.name + ".xml";
        std::string golden = name;
        for (char& c : golden)
            if (c == ' ') c = '_';
        EXPECT_TRUE(MatchesGolden(golden, dir.Read("store.xml"))) << file.name;
    }
}

TEST(RRecordStoreTest, DottedTypesAndCombinedStoresNestAsTheyAreAdded)
{
    TempDir dir;
    RRepository repo(ConnectNone);
    MixedRecord(1).AddToRepository(repo);
    RInstance card("Slot.Card", "Card", 1);
    card.AddProperty("Name", "Name", std::string("c1"), false);
    card.AddToRepository(repo);
    card.AddToRepository(repo);
    RInstance slot("Slot", "Slot", 2);
    slot.AddToRepository(repo);
    RRepository combined(ConnectNone);
    combined.Combine(repo);
    combined.Combine(repo);
    EXPECT_TRUE(MatchesGolden("repository/odd_combined.xml", Written(combined, dir)));
    EXPECT_EQ((std::vector<std::string>{"Memory", "Slot"}), combined.GetCollectedInstanceTypes());
}

namespace {

struct MarkupAttr {
    const char* key;
    const char* attr;
    const char* value;
};

// Writer mark-up reached through property attributes: attributes beside text or beside
// children, text beside children, and a comment.
const MarkupAttr kMarkupAttrs[] = {
    {"Name", "value.<xmlattr>.unit", "MB & more"},
    {"Name", "<xmlattr>.kind", "a\"b"},
    {"Name", "<xmltext>", "loose <text>"},
    {"Name", "<xmlcomment>", " note "},
    {"Size", "<xmlattr>.only", "1"},
};

// The record as its own XML text shows it, moved to the depth of a record in the file.
std::string AtRecordDepth(const RInstance& record)
{
    const std::string text = record.ToXML();
    std::string moved;
    std::string::size_type line = text.find('\n') + 1;
    while (line < text.size()) {
        const std::string::size_type end = text.find('\n', line) + 1;
        moved += "    " + text.substr(line, end - line);
        line = end;
    }
    return moved;
}

}  // namespace

TEST(RRecordStoreTest, MarkupInRecordsIsWrittenAsTheRecordsOwnXmlShowsIt)
{
    TempDir dir;
    RRepository repo(ConnectNone);
    std::string expected = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<kestro>\n  <repository>\n";
    for (const MarkupAttr& markup : kMarkupAttrs) {
        RInstance record("Disk", markup.attr, 1);
        record.AddProperty("Name", "Name", std::string("n"), false);
        record.AddProperty("Size", "Size", std::string(), false);
        record.AddPropertyAttr(markup.key, markup.attr, markup.value);
        record.AddToRepository(repo);
        expected += AtRecordDepth(record);
    }
    expected += "  </repository>\n  <SCAN/>\n</kestro>\n";
    EXPECT_EQ(expected, Written(repo, dir));
}
