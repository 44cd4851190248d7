#ifndef KESTRO_RESULTS_KESTRORESULT_H
#define KESTRO_RESULTS_KESTRORESULT_H

#include <cstdint>
#include <iosfwd>
#include <string>

namespace kestro {

// A packed result code: category in the high 16 bits, code in the low 16 bits.
inline constexpr std::uint32_t PackResult(int category, std::uint32_t code)
{
    return code | (static_cast<std::uint32_t>(category) << 16);
}

// Stores `text` for the packed code (generic table below category 1, else the category's own
// table) and returns the packed code. Registering a key again replaces its text.
std::uint32_t RegisterResult(std::int32_t category, std::uint32_t code, const char* text);
// Generic table first, then the category's table, then "Unknow error".
std::string ResultMessage(std::int32_t packed, std::int32_t category);
// The lookup callers use: ordinary rows by category, firmware-update codes (bits 8..15 set)
// through their own table, "Unknown error" for an unknown update code.
std::string UpdateResultMessage(std::int32_t packed);

class KestroResult {
public:
    KestroResult();
    explicit KestroResult(std::uint32_t packed);
    KestroResult(std::uint32_t packed, const std::string& message);

    // Only the low 16 bits decide: code 0 is success in any category.
    bool IsSuccess() const;

    std::uint32_t code;
    std::string message;
};

// The code's low 16 bits, a blank, and the message (looked up when empty).
std::ostream& operator<<(std::ostream& out, const KestroResult& result);

// Named packed codes of every row, from the row table.
namespace results {
#define KESTRO_RESULT_ROW(name, category, code, text) constexpr std::uint32_t name = PackResult(category, code);
#include "kestro/results/resultrows.def"
#undef KESTRO_RESULT_ROW
}  // namespace results

}  // namespace kestro

#endif
