// The parsers of BMC event logs, one input each. The first byte picks the reader (see kReaders):
// a 16-byte SEL record, ipmitool's elist text, a Redfish log entry or system as JSON, or the
// event id support list.
#include "fuzzsupport.h"
#include "repository/modules/reventidlink.h"
#include "rest/jsonread.h"
#include "xmodule/agentless/xfirmwareinventory.h"
#include "xmodule/linux/ipmiselelist.h"
#include "xmodule/linux/selrecord.h"

using namespace XModule::Linux;

namespace {

void SelRecord(const std::string& t)
{
    SelEvent event;
    DecodeSelRecord(std::vector<std::uint8_t>(t.begin(), t.end()), event);
    SeverityOfEventText(t, true);
}
void Elist(const std::string& t) { ParseSelElist(t); }
void Entry(const std::string& t)
{
    boost::json::value doc;
    std::string error;
    if (!Rest::TryParseJson(t, doc, error)) return;
    XModule::xFirmwareInventory::EventIdOf(doc);
    XModule::xFirmwareInventory::MachineTypeOf(doc);
}
void SupportList(const std::string& t)
{
    kestro::repository::REventIdLink::ReadSupportList(KestroFuzz::WriteInputFile("EventID_SupportLists.json", t));
}

void (*const kReaders[])(const std::string&) = {SelRecord, Elist, Entry, SupportList};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) return 0;
    kReaders[data[0] % (sizeof kReaders / sizeof kReaders[0])](KestroFuzz::ToText(data + 1, size - 1));
    return 0;
}
