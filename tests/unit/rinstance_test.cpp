#include "kestro/repository/rinstance.h"
#include "repository/rinstance_p.h"
#include "support/golden.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

#include <boost/archive/iterators/dataflow_exception.hpp>
#include <boost/property_tree/ptree.hpp>

using kestro::repository::RInstance;
using kestro::repository::RInstancePrivate;
using kestro::repository::RProperty;

namespace {

std::string Value(const RInstance& instance, const std::string& key)
{
    std::string value;
    instance.GetPropertyValue(key, value);
    return value;
}

}  // namespace

TEST(RInstanceTest, ScalarKeysAreCheckedAndListKeysAreNot)
{
    struct Case {
        std::string key;
        bool valid;
    };
    const Case cases[] = {
        {"Speed", true},   {"speed_mhz", true}, {"", false},      {"xmlSpeed", false}, {"XmLSpeed", false},
        {"9Speed", false}, {"_Speed", false},   {"-Speed", false}, {"Sp:eed", false},  {"Sp eed", false},
        {"Sp\teed", false}, {"Sp\xe9" "ed", false}, {"Speedxml", true},
    };
    for (const Case& c : cases) {
        RInstance scalar("T", "T", -1);
        scalar.AddProperty(c.key, "Shown", std::string("v"), false);
        RInstance list("T", "T", -1);
        list.AddProperty(c.key, "Shown", std::vector<std::string>(1, "v"));
        const bool scalarStored = scalar.GetRProperty().size() == 1;
        EXPECT_EQ(c.valid, scalarStored) << "key '" << c.key << "'";
        EXPECT_EQ(1u, list.GetRProperty().size()) << "list key '" << c.key << "'";
    }
}

TEST(RInstanceTest, DisplayTextWithColonOrLeadingDashIsBlankedForScalarsOnly)
{
    RInstance instance("T", "T", -1);
    instance.AddProperty("Scalar", "Speed: MHz", 5, false);
    instance.AddProperty("Dashed", "-dash", 5, false);
    instance.AddProperty("List", "Speed: MHz", std::vector<int>(1, 5));
    instance.AddProperty("Plain", "Speed", 5, false);
    const char* const displays[][2] = {{"Scalar", ""}, {"Dashed", ""}, {"List", "Speed: MHz"}, {"Plain", "Speed"}};
    for (const auto& d : displays) EXPECT_EQ(d[1], instance.GetPropertyDisplay(d[0])) << d[0];
    EXPECT_EQ(4u, instance.GetRProperty().size());
}

// Values are stored as the default stream writes them; bytes XML cannot carry are encoded,
// control characters other than tab, carriage return and new line are dropped.
TEST(RInstanceTest, ValuesAreStoredAsTextXmlCanCarryAndCopiedDeep)
{
    RInstance instance("T", "T", -1);
    instance.AddProperty("Int", "Int", -42, false);
    instance.AddProperty("Unsigned", "Unsigned", 4000000000u, false);
    instance.AddProperty("Double", "Double", 3.14159265, false);
    instance.AddProperty("Big", "Big", 1e20, false);
    instance.AddProperty("Huge", "Huge", 18446744073709551615ULL, false);
    instance.AddProperty("Wide", "Wide", std::wstring(L"caf\u00e9"), false);
    instance.AddProperty("Accent", "Accent", std::string("caf\xe9"), false);
    instance.AddProperty("Bell", "Bell", std::string("a\x01z"), false);
    instance.AddProperty("VerticalTab", "VerticalTab", std::string("a\x0bz\tq\r\n"), false);
    const char* const stored[][3] = {
        // key, stored text, text read back
        {"Int", "-42", "-42"},
        {"Unsigned", "4000000000", "4000000000"},
        {"Double", "3.14159", "3.14159"},
        {"Big", "1e+20", "1e+20"},
        {"Huge", "18446744073709551615", "18446744073709551615"},
        {"Wide", "base64encode Y2Fmw6k=", "caf\xc3\xa9"},
        {"Accent", "base64encode Y2Fm6Q==", "caf\xe9"},
        {"Bell", "base64encode YQF6", "a\x01z"},
        {"VerticalTab", "az\tq\r\n", "az\tq\r\n"},
    };
    for (const auto& s : stored) {
        EXPECT_EQ(s[1], Value(instance, s[0])) << s[0];
        EXPECT_EQ(s[2], instance.GetNormalizedValue(s[0], ",")) << s[0];
    }

    int number = 7;
    instance.GetPropertyValue("Int", number);
    EXPECT_EQ(-42, number);
    double real = 0;
    instance.GetPropertyValue("Double", real);
    EXPECT_DOUBLE_EQ(3.14159, real);
    unsigned int notNumber = 9;
    instance.GetPropertyValue("Accent", notNumber);
    EXPECT_EQ(0u, notNumber);
    std::wstring wide;
    instance.GetPropertyValue("Wide", wide);
    EXPECT_EQ(std::wstring(L"base64encode Y2Fmw6k="), wide);
    instance.AddProperty("WideAscii", "WideAscii", std::wstring(L"plain"), false);
    instance.GetPropertyValue("WideAscii", wide);
    EXPECT_EQ(std::wstring(L"plain"), wide);

    // Copies are deep, by construction and by assignment.
    RInstance copy(instance);
    copy.AddProperty("Int", "Int", 1, false);
    RInstance assigned("C", "C", -1);
    assigned = instance;
    EXPECT_EQ("-42", Value(instance, "Int"));
    EXPECT_EQ("-42", Value(assigned, "Int"));
}

TEST(RInstanceTest, EncodingMarksOnlyWhatItMust)
{
    EXPECT_EQ("plain", RInstancePrivate::EncodeText("plain"));
    EXPECT_EQ("base64encode wqA=", RInstancePrivate::EncodeText("\xc2\xa0"));
    EXPECT_EQ("base64encode EBESEw==", RInstancePrivate::EncodeText("\x10\x11\x12\x13"));
    EXPECT_EQ("short", RInstancePrivate::DecodeText("short"));
    EXPECT_EQ("no marker in this text", RInstancePrivate::DecodeText("no marker in this text"));
    // The marker may stand anywhere: the second word is decoded and the rest is lost.
    EXPECT_EQ("AB", RInstancePrivate::DecodeText("x QUI= trailing base64encod"));
    // Padding with too few characters before it decodes to nothing.
    EXPECT_EQ("", RInstancePrivate::DecodeText("base64encode ="));
    EXPECT_EQ("", RInstancePrivate::DecodeText("base64encode =="));
    EXPECT_EQ("", RInstancePrivate::DecodeText("base64encode Q=="));
    EXPECT_THROW(RInstancePrivate::DecodeText("base64encode not*base64"),
                 boost::archive::iterators::dataflow_exception);

    std::string text("\x01\x08\ta\x0b\x0c\r\x0e\x1f\x7f\n\xc3\xa9");
    RInstancePrivate::StripControlChars(text);
    EXPECT_EQ("\ta\r\n\xc3\xa9", text);
}

TEST(RInstanceTest, ListsKeepOrderAndAppendToOutput)
{
    RInstance instance("T", "T", -1);
    instance.AddProperty("Speeds", "Speeds", std::vector<int>{3, 1, 2});
    instance.AddProperty("Names", "Names", std::vector<std::string>{"a", "caf\xe9", "c"});
    instance.AddProperty("Scalar", "Scalar", 9, false);
    std::vector<int> speeds(1, 99);
    instance.GetPropertyValue("Speeds", speeds);
    EXPECT_EQ((std::vector<int>{99, 3, 1, 2}), speeds);
    std::vector<int> scalar;
    instance.GetPropertyValue("Scalar", scalar);
    EXPECT_EQ(std::vector<int>(1, 9), scalar);
    EXPECT_EQ("a|caf\xe9|c", instance.GetNormalizedValue("Names", "|"));
    std::vector<std::string> raw;
    instance.GetPropertyValue("Names", raw);
    EXPECT_EQ("base64encode Y2Fm6Q==", raw.at(1));
    EXPECT_EQ("", instance.GetNormalizedValue("Missing", "|"));
}

TEST(RInstanceTest, AttributesReferencesAndTips)
{
    RInstance instance("PCIPort", "Port", 1);
    instance.AddProperty("Raw", "Raw", std::string("text"), false);
    instance.AddPropertyAttr("Raw", "raw");
    instance.AddPropertyAttr("Raw", "filename", "nic.txt");
    instance.AddProperty("Hidden", "Hidden", 1, true);
    instance.AddProperty("Bb", "Bb", std::string("[b]x[/b]"), false);
    instance.AddPropertyAttr("Bb", "bb");
    EXPECT_THROW(instance.AddPropertyAttr("Missing", "raw"), boost::property_tree::ptree_bad_path);
    instance.AddProperty("9Bad", "Bad", 1, false);
    EXPECT_THROW(instance.AddPropertyAttr("9Bad", "raw"), boost::property_tree::ptree_bad_path);

    // Adding a key again replaces its value in its place.
    instance.AddProperty("Raw", "Raw", std::string("again"), false);
    instance.AddPropertyAttr("Raw", "raw");
    instance.AddPropertyAttr("Raw", "filename", "nic.txt");
    EXPECT_EQ("again", Value(instance, "Raw"));

    const std::vector<RProperty> properties = instance.GetRProperty();
    ASSERT_EQ(2u, properties.size());
    EXPECT_EQ("Raw", properties[0].name);
    EXPECT_EQ("nic.txt", properties[0].filename);
    EXPECT_TRUE(properties[0].raw);
    EXPECT_FALSE(properties[0].bb);
    EXPECT_TRUE(properties[1].bb);
    // An XML-only property is written, and marked, but never shown.
    EXPECT_NE(std::string::npos, instance.ToXML().find("<Hidden>"));
    EXPECT_NE(std::string::npos, instance.ToXML().find("<xmlonly>true</xmlonly>"));

    EXPECT_FALSE(instance.HasReferenceTag());
    instance.AddReference("PCIAdapter", 3);
    instance.AddReference("PCIAdapter", std::string("4"));
    EXPECT_FALSE(instance.HasReference("PCIAdapter", 3));
    EXPECT_TRUE(instance.HasReference("PCIAdapter", 4));
    EXPECT_TRUE(instance.HasReferenceTag());

    std::string tip = "kept";
    EXPECT_FALSE(instance.HasToolTip(tip));
    EXPECT_EQ("kept", tip);
    instance.AddToolTip("first");
    instance.AddToolTip("second");
    EXPECT_TRUE(instance.HasToolTip(tip));
    EXPECT_EQ("second", tip);
}

TEST(RInstanceTest, MissingKeysAreLoggedAndAnswerDefaults)
{
    LogCapture capture;
    const RInstance instance("T", "T", -1);
    int number = 5;
    instance.GetPropertyValue("Nope", number);
    EXPECT_EQ(0, number);
    std::string text = "x";
    instance.GetPropertyValue("Nope", text);
    EXPECT_EQ("", text);
    std::vector<std::string> list(1, "kept");
    instance.GetPropertyValue("Nope", list);
    EXPECT_EQ(std::vector<std::string>(1, "kept"), list);
    EXPECT_EQ("", instance.GetPropertyDisplay("Nope"));
    EXPECT_TRUE(capture.Has(2, "[repo] Cannot get property value: No such node (Nope)")) << capture.Dump();
    EXPECT_TRUE(capture.Has(2, "[repo] Cannot get property values: No such node (Nope)"));
    EXPECT_TRUE(capture.Has(2, "[repo] Cannot get display: No such node (Nope)"));
}

// A record without an id (-1) writes no <id>; 0 is an id like any other.
TEST(RInstanceTest, XmlAndJsonForms)
{
    const RInstance zero("Processor", "CPU", 0);
    EXPECT_EQ(0, zero.GetID());
    EXPECT_NE(std::string::npos, zero.ToXML().find("<id>0</id>"));
    EXPECT_EQ("Processor", zero.GetName());
    RInstance instance("DataSource", "Data Source", -1);
    EXPECT_EQ(-1, instance.GetID());
    instance.AddProperty("Name", "Name", std::string("kestro"), false);
    EXPECT_TRUE(MatchesGolden("rinstance/datasource.xml", instance.ToXML()));
    EXPECT_TRUE(MatchesGolden("rinstance/datasource.json", instance.ToJSON()));
}
