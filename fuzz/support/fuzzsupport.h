#ifndef KESTRO_FUZZ_FUZZSUPPORT_H
#define KESTRO_FUZZ_FUZZSUPPORT_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace KestroFuzz {

// A folder of this process under $TMPDIR (or /tmp), made on first use and removed at exit.
// Targets whose parser reads a file write the input there.
const std::string& ProcessFolder();

// Writes `bytes` to `relative` under ProcessFolder() (folders made as needed); the full path.
// Aborts when the file cannot be written: a run that never reaches the parser must not pass.
std::string WriteInputFile(const std::string& relative, const std::string& bytes);

inline std::string ToText(const std::uint8_t* data, std::size_t size)
{
    return std::string(reinterpret_cast<const char*>(data), size);
}

// Splits `input` at the first `separator`: `first` before it, `rest` after it. Without the
// separator, `first` is all of `input` and `rest` is empty; false then.
bool SplitAt(const std::string& input, const std::string& separator, std::string& first, std::string& rest);

// The parts of `input` between NUL bytes, for targets whose reader takes several texts; always
// `count` parts, the missing ones empty and everything after the last separator in the last one.
std::vector<std::string> SplitAtNul(const std::string& input, std::size_t count);

// Ends the run with `what` on stderr when an invariant of a reader's answer does not hold.
void Require(bool holds, const char* what);

}  // namespace KestroFuzz

#endif
