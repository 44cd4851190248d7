#include "kestro/results/kestroresult.h"

#include <map>
#include <mutex>
#include <ostream>

namespace kestro {

namespace {

typedef std::map<std::int32_t, std::string> MessageTable;
typedef std::map<std::int32_t, MessageTable> CategoryTables;

const std::uint32_t kCodeMask = 0xFFFF;
const std::uint32_t kUpdateCodeBits = 0xFF00;

MessageTable& GenericTable()
{
    static MessageTable table;
    return table;
}

CategoryTables& CategoryTable()
{
    static CategoryTables tables;
    return tables;
}

std::uint32_t Register(std::int32_t category, std::uint32_t code, const char* text)
{
    const std::uint32_t packed = PackResult(category, code);
    if (category < 1)
        GenericTable()[static_cast<std::int32_t>(packed)] = text;
    else
        CategoryTable()[category][static_cast<std::int32_t>(packed)] = text;
    return packed;
}

// Every row is registered once, before the first lookup, from any thread.
void RegisterRows()
{
    static std::once_flag once;
    std::call_once(once, [] {
#define KESTRO_RESULT_ROW(name, category, code, text) Register(category, code, text);
#include "kestro/results/resultrows.def"
#undef KESTRO_RESULT_ROW
    });
}

struct UpdateRow {
    std::int32_t code;
    const char* text;
};

const UpdateRow kUpdateRows[] = {
#define KESTRO_UPDATE_ROW(code, text) {code, text},
#include "updaterows.def"
#undef KESTRO_UPDATE_ROW
};

// Filled on the first lookup that needs it, once even when that lookup races another.
const MessageTable& UpdateTable()
{
    static MessageTable table;
    static std::once_flag once;
    std::call_once(once, [] {
        for (const UpdateRow& row : kUpdateRows) table[row.code] = row.text;
    });
    return table;
}

}  // namespace

std::uint32_t RegisterResult(std::int32_t category, std::uint32_t code, const char* text)
{
    RegisterRows();
    return Register(category, code, text);
}

std::string ResultMessage(std::int32_t packed, std::int32_t category)
{
    RegisterRows();
    const MessageTable& generic = GenericTable();
    const MessageTable::const_iterator common = generic.find(packed);
    if (common != generic.end()) return common->second;
    const CategoryTables& tables = CategoryTable();
    const CategoryTables::const_iterator inner = tables.find(category);
    if (inner != tables.end()) {
        const MessageTable::const_iterator row = inner->second.find(packed);
        if (row != inner->second.end()) return row->second;
    }
    return "Unknow error";
}

std::string UpdateResultMessage(std::int32_t packed)
{
    // Ordinary rows have codes below 256. The shift is arithmetic, so a negative category stays
    // negative and reaches the generic table.
    if ((static_cast<std::uint32_t>(packed) & kUpdateCodeBits) == 0) return ResultMessage(packed, packed >> 16);
    const MessageTable& table = UpdateTable();
    const MessageTable::const_iterator found = table.find(packed);
    return found == table.end() ? "Unknown error" : found->second;
}

KestroResult::KestroResult() : code(results::RESULT_SUCCEED), message(UpdateResultMessage(0)) {}

KestroResult::KestroResult(std::uint32_t packed)
    : code(packed), message(UpdateResultMessage(static_cast<std::int32_t>(packed)))
{
}

KestroResult::KestroResult(std::uint32_t packed, const std::string& message) : code(packed), message(message) {}

bool KestroResult::IsSuccess() const { return (code & kCodeMask) == results::RESULT_SUCCEED; }

std::ostream& operator<<(std::ostream& out, const KestroResult& result)
{
    out << (result.code & kCodeMask) << ' ';
    if (!result.message.empty()) return out << result.message;
    return out << UpdateResultMessage(static_cast<std::int32_t>(result.code));
}

}  // namespace kestro
