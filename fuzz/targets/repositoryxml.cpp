// The repository XML reader (what `kestro report` and `kestro compare` read), then every record
// read back as the report does. An input holding kCompareMark is two files: the older before it,
// the newer after it, read as a comparison.
#include "fuzzsupport.h"
#include "repository/rinstance_p.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rrepository.h"

#include <boost/archive/iterators/dataflow_exception.hpp>
#include <boost/property_tree/json_parser/error.hpp>

#include <stdexcept>

using namespace kestro::repository;

namespace {

const char kCompareMark[] = "<!--compare-->";

void ReadRecord(const RInstance& record)
{
    record.GetName();
    record.GetDisplay();
    record.GetID();
    record.HasReferenceTag();
    std::string tip;
    record.HasToolTip(tip);
    for (const RProperty& property : record.GetRProperty()) {
        std::string text;
        record.GetPropertyValue(property.name, text);
        int number = 0;
        record.GetPropertyValue(property.name, number);
        double real = 0;
        record.GetPropertyValue(property.name, real);
        std::vector<std::string> texts;
        record.GetPropertyValue(property.name, texts);
        std::vector<unsigned> numbers;
        record.GetPropertyValue(property.name, numbers);
        try {
            record.GetPropertyDisplay(property.name);
            record.GetNormalizedValue(property.name, ", ");
        } catch (const boost::archive::iterators::dataflow_exception&) {
            // DecodeText's documented answer to a byte outside the base64 alphabet.
        }
        try {
            std::wstring wide;
            record.GetPropertyValue(property.name, wide);
        } catch (const std::range_error&) {
            // The documented answer to text that is no UTF-8.
        }
    }
    record.ToXML();
    try {
        record.ToJSON();
    } catch (const boost::property_tree::json_parser::json_parser_error&) {
        // The JSON writer's documented answer to an element that holds both text and children,
        // which a hand-made file may have.
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string older;
    std::string newer;
    const bool compare = KestroFuzz::SplitAt(KestroFuzz::ToText(data, size), kCompareMark, older, newer);
    const std::string olderPath = KestroFuzz::WriteInputFile("older.xml", older);
    const std::string newerPath = compare ? KestroFuzz::WriteInputFile("newer.xml", newer) : std::string();

    RRepository repository(ConnectNone);
    if (!repository.ReadXML(olderPath, newerPath)) return 0;
    for (const std::string& type : repository.GetCollectedInstanceTypes()) {
        std::vector<RInstance*> records = repository.GetInstances(type);
        for (const RInstance* record : records) ReadRecord(*record);
        repository.FreeInstances(records);
    }
    return 0;
}
