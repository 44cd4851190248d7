#include "kestro/results/kestroresult.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <string>

using kestro::KestroResult;
using kestro::PackResult;
using kestro::RegisterResult;
using kestro::ResultMessage;
using kestro::UpdateResultMessage;

namespace {

const char kUnknowError[] = "Unknow error";
const char kUnknownError[] = "Unknown error";

std::string Print(const KestroResult& result)
{
    std::ostringstream out;
    out << result;
    return out.str();
}

std::string Lookup(std::uint32_t packed) { return UpdateResultMessage(static_cast<std::int32_t>(packed)); }

TEST(KestroResultTest, PrintsLowCodeAndWordsWithoutCategory)
{
    const struct {
        std::uint32_t packed;
        const char* printed;
    } cases[] = {
        {0, "0 Succeed."},
        {PackResult(4, 101), "101 Redfish internal error."},
        {PackResult(1, 101), "101 Failed to download some update packages."},
        // No fallback to another category's row with the same code.
        {PackResult(3, 101), "101 Unknow error"},
        {PackResult(2, 101), "101 Unknow error"},
        {PackResult(24, 110), "110 Unknow error"},
        // Category 0 rows are not visible under another category's packed value.
        {PackResult(24, 12), "12 Unknow error"},
        {12, "12 Authentication failed."},
        {1537, "1537 Update query module error: given ID is not found in the query package results."},
        {1630, "1630 Unknown error"},
        // Update codes are keyed without a category, so a category hides them.
        {PackResult(5, 1537), "1537 Unknown error"},
        {3086, "3086 The local package is different from the one on tftp."},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.packed);
        EXPECT_EQ(c.printed, Print(KestroResult(c.packed)));
        EXPECT_EQ(c.printed, Print(KestroResult(c.packed, "")));
    }
}

TEST(KestroResultTest, ConstructionLooksUpWordsAndCustomMessageWins)
{
    const KestroResult looked(PackResult(4, 101));
    EXPECT_EQ(PackResult(4, 101), looked.code);
    EXPECT_EQ("Redfish internal error.", looked.message);

    const KestroResult custom(PackResult(4, 101), "Session lost while reading settings.");
    EXPECT_EQ("101 Session lost while reading settings.", Print(custom));

    KestroResult cleared(1630);
    EXPECT_EQ(kUnknownError, cleared.message);
    cleared.message.clear();
    EXPECT_EQ("1630 Unknown error", Print(cleared));

    EXPECT_EQ("0 Succeed.", Print(KestroResult()));
}

TEST(KestroResultTest, SuccessLooksOnlyAtLowSixteenBits)
{
    const struct {
        std::uint32_t packed;
        bool success;
    } cases[] = {
        {0, true},
        {PackResult(1, 0), true},
        {PackResult(24, 0), true},
        {0xFFFF0000u, true},
        {1, false},
        {PackResult(1, 125), false},
        {0x100, false},
        {0x8000, false},
        {1537, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.packed);
        EXPECT_EQ(c.success, KestroResult(c.packed).IsSuccess());
        EXPECT_EQ(c.success, KestroResult(c.packed, "any words").IsSuccess());
    }
}

// A few rows whose odd blanks, quotes and spelling a tidy-up would lose.
TEST(KestroResultTest, ExactWordsKeepBlanksQuotesAndSpelling)
{
    const struct {
        std::uint32_t packed;
        const char* text;
    } cases[] = {
        {PackResult(18, 119), "Failed to get FFDC log. "},
        {33,
         "No available USBLAN device or host IPv4 ip, Please confirm USBLAN device exists and check the USBLAN "
         "device's ipv4 protocl setting is enabled. "},
        {PackResult(2, 118),
         "You should input the pair of machine type with \"--mt\" and serial number \"--sn\" or just casenumber "
         "with \"--cn\" ."},
        {1569, " Failed to upload update package to online VMWare ESXi."},
        {1724, "Failed to update due to ESXi  service not ready."},
    };
    for (const auto& c : cases) EXPECT_EQ(c.text, Lookup(c.packed)) << c.packed;
}

TEST(KestroResultTest, NamedConstantsArePackedCodesOfTheirRows)
{
    namespace r = kestro::results;
    EXPECT_EQ(0u, r::RESULT_SUCCEED);
    EXPECT_EQ(1u, r::RESULT_GENERIC_FAILURE);
    EXPECT_EQ(12u, r::RESULT_AUTHENTICATION_FAILED);
    EXPECT_EQ(25u, r::RESULT_FUNCTION_NOT_SUPPORTED);
    EXPECT_EQ(54u, r::RESULT_PASSWORD_CHANGE_REQUIRED);
    EXPECT_EQ(0x40065u, r::RESULT_CONFIG_REDFISH_INTERNAL_ERROR);
    EXPECT_EQ("Authentication failed.", Lookup(r::RESULT_AUTHENTICATION_FAILED));
    EXPECT_EQ("The password provided for this account must be changed before access is granted.",
              Lookup(r::RESULT_PASSWORD_CHANGE_REQUIRED));
    EXPECT_EQ(r::RESULT_CONFIG_REDFISH_INTERNAL_ERROR, RegisterResult(4, 101, "Redfish internal error."));
    EXPECT_EQ("Redfish internal error.", Lookup(r::RESULT_CONFIG_REDFISH_INTERNAL_ERROR));
    // The same words under two categories stay two rows with two constants.
    EXPECT_EQ("Add IP address error.", Lookup(PackResult(62, 124)));
    EXPECT_EQ("Add IP address error.", Lookup(PackResult(63, 124)));
    EXPECT_NE(r::RESULT_NETSETUP_ADD_IP_FAILED, r::RESULT_NETSETUP2_ADD_IP_FAILED);
}

// Counts every row through the public lookups, so a dropped, duplicated or misplaced row shows.
TEST(KestroResultTest, TablesHoldEveryRow)
{
    const struct {
        std::int32_t category;
        int rows;
        std::uint32_t lowest;
        std::uint32_t highest;
    } categories[] = {
        {0, 68, 0, 69},    {1, 37, 83, 125},   {2, 10, 116, 125},  {3, 5, 121, 125},   {4, 35, 91, 125},
        {7, 30, 96, 125},  {10, 10, 116, 125}, {18, 11, 114, 125}, {20, 1, 125, 125},  {24, 20, 104, 125},
        {35, 4, 122, 125}, {44, 5, 121, 125},  {58, 3, 123, 125},  {59, 31, 80, 125},  {61, 4, 122, 125},
        {62, 3, 123, 125}, {63, 2, 124, 125},
    };
    int total = 0;
    for (const auto& c : categories) {
        SCOPED_TRACE(c.category);
        int rows = 0;
        std::uint32_t lowest = 0xFFFF, highest = 0;
        for (std::uint32_t code = 0; code <= 0xFFFF; ++code) {
            const std::int32_t packed = static_cast<std::int32_t>(PackResult(c.category, code));
            const std::string text = ResultMessage(packed, c.category);
            if (text == kUnknowError) continue;
            ++rows;
            lowest = std::min(lowest, code);
            highest = std::max(highest, code);
            EXPECT_FALSE(text.empty()) << code;
            EXPECT_EQ(text, UpdateResultMessage(packed)) << code;
        }
        EXPECT_EQ(c.rows, rows);
        EXPECT_EQ(c.lowest, lowest);
        EXPECT_EQ(c.highest, highest);
        total += rows;
    }
    EXPECT_EQ(279, total);

    int known = 0;
    for (std::int32_t category = 0; category < 256; ++category)
        for (std::uint32_t code = 0; code < 256; ++code)
            if (UpdateResultMessage(static_cast<std::int32_t>(PackResult(category, code))) != kUnknowError) ++known;
    EXPECT_EQ(279, known);

    int updates = 0;
    for (std::int32_t code = 0x100; code <= 0xFFFF; ++code)
        if (UpdateResultMessage(code) != kUnknownError) ++updates;
    EXPECT_EQ(207, updates);
    EXPECT_EQ(kUnknownError, UpdateResultMessage(1536));
    EXPECT_EQ(kUnknownError, UpdateResultMessage(3087));
}

// The following tests add rows of their own; categories from 30000 up hold no real row.
TEST(KestroResultTest, RegisteringAgainReplacesTheWords)
{
    const std::uint32_t first = RegisterResult(30001, 7, "First words.");
    EXPECT_EQ(PackResult(30001, 7), first);
    EXPECT_EQ("First words.", Lookup(first));
    EXPECT_EQ(first, RegisterResult(30001, 7, "Second words."));
    EXPECT_EQ("Second words.", Lookup(first));
    EXPECT_EQ("7 Second words.", Print(KestroResult(first)));
    EXPECT_EQ(kUnknowError, Lookup(PackResult(30001, 8)));
}

TEST(KestroResultTest, GenericTableIsAskedFirstAndTheCategoryShiftKeepsTheSign)
{
    // 0xFFFF in the high half is both category 65535 and category -1 (a generic row).
    const std::uint32_t inner = RegisterResult(0xFFFF, 9, "Inner row.");
    EXPECT_EQ(0xFFFF0009u, inner);
    EXPECT_EQ("Inner row.", ResultMessage(static_cast<std::int32_t>(inner), 0xFFFF));
    // The shift is arithmetic: the category read back is -1, which has no inner table.
    EXPECT_EQ(kUnknowError, Lookup(inner));

    const std::uint32_t generic = RegisterResult(-1, 9, "Generic row.");
    EXPECT_EQ(inner, generic);
    EXPECT_EQ("Generic row.", ResultMessage(static_cast<std::int32_t>(inner), 0xFFFF));
    EXPECT_EQ("Generic row.", Lookup(inner));
}

}  // namespace
