// The BBCode renderer turns property values of an inventory file into HTML of the report.
#include "fuzzsupport.h"
#include "repository/rbbcoderenderer.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    kestro::repository::RBBCodeRenderer::Render(KestroFuzz::ToText(data, size));
    return 0;
}
