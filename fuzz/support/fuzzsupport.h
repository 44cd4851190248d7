#ifndef KESTRO_FUZZ_FUZZSUPPORT_H
#define KESTRO_FUZZ_FUZZSUPPORT_H

#include <cstddef>
#include <cstdint>
#include <string>

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

}  // namespace KestroFuzz

#endif
