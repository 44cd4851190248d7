#include "kestro/repository/rinstance.h"
#include "kestro/repository/rrepository.h"
#include "support/logcapture.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

using namespace kestro::repository;

namespace {

std::string Property(const std::string& key, const std::string& value)
{
    return "<" + key + "><display>" + key + "</display><value>" + value + "</value></" + key + ">";
}

std::string File(const std::string& mode, const std::string& records)
{
    return "<kestro><repository><mode>" + mode + "</mode><buildversion>b</buildversion>" + records +
           "</repository><SCAN/></kestro>";
}

std::string Record(const std::string& type, const std::string& name, const std::string& speed,
                   const std::string& reference = "")
{
    return "<" + type + "><display>" + type + "</display>" +
           (reference.empty() ? "" : "<reference>" + reference + "</reference>") + Property("Name", name) +
           Property("Speed", speed) + "</" + type + ">";
}

// A record whose Free value changes by itself between runs, as a volume's free space does.
std::string VolatileRecord(const std::string& name, const std::string& free)
{
    return "<Volume><display>Volume</display>" + Property("Name", name) + "<Free><display>Free</display><value>" +
           free + "</value><volatile/></Free></Volume>";
}

// The values of `key` in each record of `type`; the key "display" gives the records' display.
std::vector<std::string> Values(RRepository& repo, const std::string& type, const std::string& key)
{
    std::vector<std::string> values;
    std::vector<RInstance*> records = repo.GetInstances(type);
    for (RInstance* record : records) {
        std::string value = record->GetDisplay();
        if (key != "display") record->GetPropertyValue(key, value);
        values.push_back(value);
    }
    repo.FreeInstances(records);
    return values;
}

typedef std::vector<std::string> Texts;

}  // namespace

TEST(RStoreComparerTest, ComparedValuesShowOldAndNew)
{
    const std::string ports = Record("PCIPort", "p0", "10", "PCIAdapter=1");
    const std::string same = File("rhel", Record("Processor", "cpu0", "2000") + ports);
    const struct {
        std::string older;
        std::string newer;
        std::vector<std::pair<std::string, Texts> > values;  // type and key, values in record order
    } cases[] = {
        {File("rhel", Record("Processor", "cpu0", "2000") + Record("Processor", "cpu1", "2000") +
                          Record("Processor", "cpu2", "2100") + Record("Fan", "fan0", "900")),
         File("rhel", Record("Processor", "cpu0", "2000") + Record("Processor", "cpu1", "2400") +
                          Record("Disk", "sda", "0")),
         {{"Processor Name", {"cpu0", "cpu1", "cpu2|||"}},
          {"Processor Speed", {"2000", "2000|||2400", "2100|||"}},
          {"Fan Name", {"fan0|||"}},
          {"Fan display", {"Fan"}},
          {"Disk Name", {"|||sda"}},
          {"Disk Speed", {"|||0"}}}},
        // A volatile value is not compared: the newer one stands.
        {File("rhel", VolatileRecord("/", "10 GiB")), File("rhel", VolatileRecord("/boot", "9 GiB")),
         {{"Volume Free", {"9 GiB"}}, {"Volume Name", {"/|||/boot"}}}},
        {same, same, {{"Processor Speed", {"2000"}}, {"PCIPort Name", {"p0"}}}},
        // Records with a parent are not merged: the newer ones stand.
        {File("rhel", ports + Record("PCIPort", "p9", "10", "PCIAdapter=1")),
         File("rhel", Record("PCIPort", "p1", "25", "PCIAdapter=1")), {{"PCIPort Name", {"p1"}}}},
    };
    for (const auto& c : cases) {
        TempDir dir;
        RRepository repo(ConnectNone);
        ASSERT_TRUE(repo.ReadXML(dir.Write("old.xml", c.older), dir.Write("new.xml", c.newer)));
        for (const auto& v : c.values) {
            const std::string::size_type blank = v.first.find(' ');
            EXPECT_EQ(v.second, Values(repo, v.first.substr(0, blank), v.first.substr(blank + 1))) << v.first;
        }
    }
}

TEST(RStoreComparerTest, FailuresKeepTheFirstFile)
{
    TempDir dir;
    const std::string rhel = dir.Write("rhel.xml", File("rhel", Record("Processor", "cpu0", "1")));
    const std::string sles = dir.Write("sles.xml", File("sles", Record("Processor", "cpu0", "2")));
    RRepository repo(ConnectNone);
    LogCapture capture;
    EXPECT_FALSE(repo.ReadXML(rhel, sles));
    EXPECT_TRUE(capture.Has(1, "[repo] Cannot compare two file from different OS: rhel & sles")) << capture.Dump();
    EXPECT_EQ((Texts{"1"}), Values(repo, "Processor", "Speed"));

    RRepository second(ConnectNone);
    EXPECT_FALSE(second.ReadXML(rhel, dir.Write("bad.xml", "<kestro>")));
    EXPECT_EQ((Texts{"1"}), Values(second, "Processor", "Speed"));
    EXPECT_EQ(1, capture.Count("[repo] Failed to read repository XML: "));
}

TEST(RStoreComparerTest, RecordsMergeByPositionOnTheFirstValueAndKeepTheSecondHeader)
{
    TempDir dir;
    const std::string sizes12 = "<Sizes><display>S</display><value>1</value><value>2</value></Sizes>";
    const std::string sizes53 = "<Sizes><display>S</display><value>5</value><value>3</value></Sizes>";
    const std::string older = dir.Write(
        "old.xml", "<kestro><repository><mode>rhel</mode><buildversion>first</buildversion>"
                   "<Processor><display>P</display>" + Property("Name", "cpu0") + Property("Speed", "1") + sizes12 +
                   "</Processor><Memory><display>M</display>" + sizes12 + "</Memory></repository></kestro>");
    // A property the older record lacks puts the rest out of step: those pairs are not compared.
    const std::string newer = dir.Write(
        "new.xml", "<kestro><repository><mode>rhel</mode><buildversion>second</buildversion>"
                   "<Processor><display>P</display>" + Property("Name", "cpu0x") + Property("Cache", "8") +
                   Property("Speed", "2") + sizes53 + "</Processor><Memory><display>M</display>" + sizes53 +
                   "</Memory></repository></kestro>");
    RRepository repo(ConnectNone);
    ASSERT_TRUE(repo.ReadXML(older, newer));
    EXPECT_EQ((Texts{"cpu0|||cpu0x"}), Values(repo, "Processor", "Name"));
    EXPECT_EQ((Texts{"2"}), Values(repo, "Processor", "Speed"));
    std::vector<RInstance*> memory = repo.GetInstances("Memory");
    ASSERT_EQ(1u, memory.size());
    EXPECT_EQ("1|||5,3", memory[0]->GetNormalizedValue("Sizes", ","));
    repo.FreeInstances(memory);

    ASSERT_TRUE(repo.WriteXML("merged.xml", dir.Path()));
    EXPECT_NE(std::string::npos, dir.Read("merged.xml").find("<buildversion>second</buildversion>"));
}
