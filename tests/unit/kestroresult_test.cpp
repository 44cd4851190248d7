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

// Printing shows the low code and the row's words, or the caller's; success looks only at the low sixteen bits.
TEST(KestroResultTest, PrintsLowCodeAndWordsAndTellsSuccess)
{
    namespace r = kestro::results;
    const struct {
        std::uint32_t packed;
        const char* printed;
        bool success;
    } cases[] = {
        {r::RESULT_SUCCEED, "0 Succeed.", true},
        {PackResult(1, 0), "0 Unknow error", true},
        {0xFFFF0000u, "0 Unknow error", true},
        {r::RESULT_GENERIC_FAILURE, "1 Generic Failure.", false},
        {0x100, "256 Unknown error", false},
        {0x8000, "32768 Unknown error", false},
        {r::RESULT_CONFIG_REDFISH_INTERNAL_ERROR, "101 Redfish internal error.", false},
        {PackResult(1, 101), "101 Failed to download some update packages.", false},
        // No fallback to another category's row with the same code.
        {PackResult(3, 101), "101 Unknow error", false},
        {PackResult(2, 101), "101 Unknow error", false},
        {PackResult(24, 110), "110 Unknow error", false},
        // Category 0 rows are not visible under another category's packed value.
        {PackResult(24, 12), "12 Unknow error", false},
        {r::RESULT_AUTHENTICATION_FAILED, "12 Authentication failed.", false},
        {r::RESULT_FUNCTION_NOT_SUPPORTED, "25 Function is not supported on target system.", false},
        {r::RESULT_PASSWORD_CHANGE_REQUIRED,
         "54 The password provided for this account must be changed before access is granted.", false},
        {1537, "1537 Update query module error: given ID is not found in the query package results.", false},
        {1630, "1630 Unknown error", false},
        // Update codes are keyed without a category, so a category hides them.
        {PackResult(5, 1537), "1537 Unknown error", false},
        {3086, "3086 The local package is different from the one on tftp.", false},
        // The same words under two categories stay two rows with two constants.
        {r::RESULT_NETSETUP_ADD_IP_FAILED, "124 Add IP address error.", false},
        {r::RESULT_NETSETUP2_ADD_IP_FAILED, "124 Add IP address error.", false},
        // Odd blanks, quotes and spelling a tidy-up would lose.
        {PackResult(18, 119), "119 Failed to get FFDC log. ", false},
        {33,
         "33 No available USBLAN device or host IPv4 ip, Please confirm USBLAN device exists and check the USBLAN "
         "device's ipv4 protocl setting is enabled. ",
         false},
        {PackResult(2, 118),
         "118 You should input the pair of machine type with \"--mt\" and serial number \"--sn\" or just casenumber "
         "with \"--cn\" .",
         false},
        {1569, "1569  Failed to upload update package to online VMWare ESXi.", false},
        {1724, "1724 Failed to update due to ESXi  service not ready.", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.packed);
        EXPECT_EQ(c.printed, Print(KestroResult(c.packed)));
        EXPECT_EQ(c.printed, Print(KestroResult(c.packed, "")));
        // Words of the caller's own win over the row's.
        EXPECT_EQ(std::to_string(c.packed & 0xFFFF) + " Session lost.", Print(KestroResult(c.packed, "Session lost.")));
        EXPECT_EQ(c.success, KestroResult(c.packed).IsSuccess());
        EXPECT_EQ(c.success, KestroResult(c.packed, "any words").IsSuccess());
    }
    EXPECT_EQ("0 Succeed.", Print(KestroResult()));
    EXPECT_NE(r::RESULT_NETSETUP_ADD_IP_FAILED, r::RESULT_NETSETUP2_ADD_IP_FAILED);
    EXPECT_EQ(r::RESULT_CONFIG_REDFISH_INTERNAL_ERROR, RegisterResult(4, 101, "Redfish internal error."));
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
TEST(KestroResultTest, RegisteringAgainReplacesTheWordsAndTheGenericTableIsAskedFirst)
{
    const std::uint32_t first = RegisterResult(30001, 7, "First words.");
    EXPECT_EQ(PackResult(30001, 7), first);
    EXPECT_EQ("First words.", Lookup(first));
    EXPECT_EQ(first, RegisterResult(30001, 7, "Second words."));
    EXPECT_EQ("Second words.", Lookup(first));
    EXPECT_EQ("7 Second words.", Print(KestroResult(first)));
    EXPECT_EQ(kUnknowError, Lookup(PackResult(30001, 8)));

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
