#include "kestro/xmodule/checkmachinetype.h"

#include "kestro/systemtype/iscfcsystem.h"
#include "kestro/systemtype/isgrantly.h"
#include "kestro/xmodule/rootprefix.h"
#include "kestro/xmodule/unreadable.h"
#include "support/logcapture.h"
#include "support/smbiosbuilder.h"
#include "support/tempdir.h"

#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>
#include <gtest/gtest.h>

namespace {

// A host whose SMBIOS table lies in `root` and whose program home, with its data folder, in `home`.
class CheckMachineTypeTest : public ::testing::Test {
protected:
    CheckMachineTypeTest() : oldRoot(XModule::GetRootPrefix()), homeEnv("KESTRO_HOME", home.Path())
    {
        XModule::SetRootPrefix(root.Path());
    }
    ~CheckMachineTypeTest() override { XModule::SetRootPrefix(oldRoot); }

    void SetSystem(const std::string& productName, const std::string& skuNumber)
    {
        WriteDmiTable(root, SmbiosStructureBytes(0, 0, "\1\2", {"Maker Inc.", "1.0"}) +
                                SystemInformationBytes(productName, skuNumber) + EndOfTableBytes(2));
    }
    void SetList(const std::string& name, const std::string& content) { home.Write("data/" + name, content); }

    TempDir root;
    TempDir home;
    std::string oldRoot;
    ScopedEnv homeEnv;
    XModule::UserContext local;
};

}  // namespace

TEST_F(CheckMachineTypeTest, MatchesTheMachineTypeAgainstTheListOfTheKind)
{
    const std::string list = "# CFC machine types\n\n  7Z71  \r\n7d2v # lower case\n7Z70CTO\n#7X06\n7X05 # 7X06\n";
    struct Case {
        const char* name;
        const char* productName;
        const char* skuNumber;
        bool expected;
    } cases[] = {
        {"SKU listed", "Rack Server", "7Z71CTO1WW", true},
        {"SKU not listed", "Rack Server", "7X08CTO1WW", false},
        {"listed in lower case", "Rack Server", "7D2VCTO1WW", true},
        {"SKU in lower case", "Rack Server", "7z71cto1ww", true},
        {"blanks around the SKU", "Rack Server", "  7Z71CTO1WW ", true},
        {"commented out", "Rack Server", "7X06CTO1WW", false},
        {"a longer line is no prefix match", "Rack Server", "7Z70CTO1WW", false},
        {"SKU of exactly four", "Rack Server", "7Z71", true},
        {"product name when the SKU is missing", "Rack Server RX2 -[7Z71CTO1WW]-", "", true},
        {"product name when the SKU is short", "Rack Server RX2 -[7D2VCTO1WW]-", "7D2", true},
        {"product name when the SKU is a placeholder", "Rack Server RX2 -[7Z71CTO1WW]-", "N/A", true},
        {"SKU wins over the product name", "Rack Server RX2 -[7Z71CTO1WW]-", "7X08CTO1WW", false},
        {"product name not listed", "Rack Server RX2 -[7X08CTO1WW]-", "", false},
    };
    SetList("CFC_systems_list.txt", list);
    for (const Case& c : cases) {
        SetSystem(c.productName, c.skuNumber);
        LogCapture log;
        EXPECT_EQ(c.expected, XModule::CheckMachineType(local).Check(XModule::CFC_SYSTEMS_LIST)) << c.name;
        EXPECT_EQ(1, log.Count(c.expected ? " is in " + home.Path() + "/data/CFC_systems_list.txt"
                                          : " is not in " + home.Path() + "/data/CFC_systems_list.txt"))
            << c.name << "\n" << log.Dump();
    }
}

TEST_F(CheckMachineTypeTest, AnswersFalseWithALogLineWhenAnAnswerIsOutOfReach)
{
    SetList("CFC_systems_list.txt", "7Z71\n");
    SetSystem("Rack Server", "7Z71CTO1WW");
    {
        LogCapture log;
        EXPECT_FALSE(XModule::CheckMachineType(local).Check(XModule::GRANTLY_SYSTEMS_LIST));
        EXPECT_TRUE(log.Has(2, "[repo] Unable to open the machine type list " + home.Path() +
                                   "/data/Grantly_systems_list.txt")) << log.Dump();
    }
    {
        LogCapture log;
        EXPECT_FALSE(XModule::CheckMachineType(local).Check(4));
        EXPECT_FALSE(XModule::CheckMachineType(local).Check(-1));
        EXPECT_EQ(2, log.Count("[repo] No machine type list of kind ")) << log.Dump();
    }
    {
        XModule::UserContext remote;
        remote.connections.resize(1);
        remote.connections[0].host = "192.0.2.10";
        LogCapture log;
        EXPECT_FALSE(XModule::CheckMachineType(remote).Check(XModule::CFC_SYSTEMS_LIST));
        EXPECT_TRUE(log.Has(2, "[repo] The machine type of a remote target is read only by the Redfish readers; "
                               "CFC_systems_list.txt is not consulted")) << log.Dump();
    }
    {
        SetSystem("Rack Server without a code", "");
        LogCapture log;
        EXPECT_FALSE(XModule::CheckMachineType(local).Check(XModule::CFC_SYSTEMS_LIST));
        EXPECT_EQ(1, log.Count("[repo] Neither the SKU number nor the product name")) << log.Dump();
    }
    {
        WriteDmiTable(root, SmbiosStructureBytes(0, 0, "\1\2", {"Maker Inc.", "1.0"}) + EndOfTableBytes(2));
        LogCapture log;
        EXPECT_FALSE(XModule::CheckMachineType(local).Check(XModule::CFC_SYSTEMS_LIST));
        EXPECT_EQ(1, log.Count("[repo] The SMBIOS table holds no system information")) << log.Dump();
    }
    {
        boost::filesystem::remove(root.Path() + "/sys/firmware/dmi/tables/DMI");
        XModule::ClearUnreadableNotes();
        LogCapture log;
        EXPECT_FALSE(XModule::CheckMachineType(local).Check(XModule::CFC_SYSTEMS_LIST));
        EXPECT_EQ(1, log.Count("[repo] Unable to read /sys/firmware/dmi/tables/DMI")) << log.Dump();
    }
}

// One check object of each kind for every row: nothing is cached, each check reads the host again.
TEST_F(CheckMachineTypeTest, ShippedListsNameTheirFamiliesAndEachCheckReadsTheHostAfresh)
{
    ScopedEnv shipped("KESTRO_HOME", boost::filesystem::path(KESTRO_SOURCE_DATA).parent_path().string());
    const struct {
        const char* skuNumber;
        bool cfc;
        bool grantly;
    } cases[] = {
        {"7Z70CTO1WW", true, false}, {"7D2WCTO1WW", true, false},
        {"8871AC1", false, true},    {"5463E2Y", false, true},
        {"ABCDXYZ", false, false},   {"7Z70CTO1WW", true, false},
    };
    kestro::IsCFCSystem isCfc;
    kestro::IsGrantly isGrantly;
    EXPECT_FALSE(isCfc.negate);
    EXPECT_EQ(kestro::results::RESULT_FUNCTION_NOT_SUPPORTED, isCfc.result.code);
    for (const auto& c : cases) {
        SetSystem("Rack Server", c.skuNumber);
        EXPECT_EQ(c.cfc, isCfc.Check(local)) << c.skuNumber;
        EXPECT_EQ(c.grantly, isGrantly.Check(local)) << c.skuNumber;
    }
    // Negated, the answers turn, through the base class too.
    isCfc.negate = true;
    isGrantly.negate = true;
    EXPECT_FALSE(static_cast<kestro::BasicCheck&>(isCfc).Check(local));
    EXPECT_TRUE(isGrantly.Check(local));
}
