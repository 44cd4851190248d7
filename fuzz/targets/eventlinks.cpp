// The links of BMC event ids: the machine type read from the kernel's dmi attributes, the event id
// support list and the rules that make an id a link. The first byte gives the BMC family (its
// low two bits) and whether the product name is known (bit 2); then three lines, the event id,
// the machine type and the product name, and the support list after them. The product name line
// also stands as product_name, and the machine type line as product_sku, of the dmi attributes.
#include "fuzzsupport.h"
#include "repository/modules/reventidlink.h"
#include "xmodule/agentless/systeminfoscan.h"

#include <cctype>

using kestro::repository::REventIdLink;
using KestroFuzz::Require;

namespace {

const std::size_t kMachineTypeLength = 4;

bool EndsWith(const std::string& text, const std::string& end)
{
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

void MachineTypeOfDmi(const std::string& sku, const std::string& name)
{
    const std::string type = SystemInfoScan::MachineTypeOfDmi({{"product_sku", sku}, {"product_name", name}});
    bool alphanumeric = true;
    for (char c : type) alphanumeric = alphanumeric && std::isalnum(static_cast<unsigned char>(c));
    Require(type.empty() || (type.size() == kMachineTypeLength && alphanumeric), "a machine type of another form");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) return 0;
    const int family = data[0] & 3;
    const bool productNameKnown = (data[0] & 4) != 0;
    std::string eventId, machineType, productName, rest;
    KestroFuzz::SplitAt(KestroFuzz::ToText(data + 1, size - 1), "\n", eventId, rest);
    KestroFuzz::SplitAt(std::string(rest), "\n", machineType, rest);
    KestroFuzz::SplitAt(std::string(rest), "\n", productName, rest);
    MachineTypeOfDmi(machineType, productName);

    const REventIdLink::SupportTable table =
        REventIdLink::ReadSupportList(KestroFuzz::WriteInputFile("EventID_SupportLists.json", rest));
    const std::string text =
        REventIdLink::ChangeEventIdToLink(table, eventId, machineType, productName, family, productNameKnown);
    Require(text == eventId || (text.compare(0, 8, "<a href=") == 0 && EndsWith(text, ">" + eventId + "</a>")),
            "an event id that is neither itself nor a link to itself");
    return 0;
}
