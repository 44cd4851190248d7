// The category reader over a reportcategory_<case>.xml file, and the queries the report makes of it.
#include "fuzzsupport.h"
#include "repository/rreportcategory.h"

using kestro::repository::RReportCategory;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text = KestroFuzz::ToText(data, size);
    RReportCategory::ParseTypeSpecification(text);

    const std::string path = KestroFuzz::WriteInputFile("reportcategory.xml", text);
    RReportCategory category(nullptr);
    if (!category.Load(path)) return 0;
    category.Dump();
    category.GetUnHiddenGroups();
    for (const auto& group : category.GetGroups()) category.GetTypes(group.first);
    return 0;
}
