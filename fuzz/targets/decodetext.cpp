// DecodeText undoes the protection of values read back from an inventory XML file.
#include "fuzzsupport.h"
#include "repository/rinstance_p.h"

#include <boost/archive/iterators/dataflow_exception.hpp>

#include <cstdio>
#include <cstdlib>

using kestro::repository::RInstancePrivate;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text = KestroFuzz::ToText(data, size);
    try {
        RInstancePrivate::DecodeText(text);
    } catch (const boost::archive::iterators::dataflow_exception&) {
        // The documented answer to a byte outside the base64 alphabet.
    }

    // What the writer protects must read back as it was.
    const std::string encoded = RInstancePrivate::EncodeText(text);
    if (encoded != text && RInstancePrivate::DecodeText(encoded) != text) {
        std::fprintf(stderr, "DecodeText(EncodeText(x)) != x for %zu bytes\n", size);
        std::abort();
    }
    std::string stripped = text;
    RInstancePrivate::StripControlChars(stripped);
    RInstancePrivate::IsValidDisplayText(text);
    RInstancePrivate::IsValidPropertyKey(text);
    return 0;
}
