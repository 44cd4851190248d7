#include "repository/modules/reventidlink.h"

#include "kestro/xmodule/globalconfig.h"
#include "kestro/xmodule/kestrodirectory.h"
#include "rest/jsonread.h"
#include "xmodule/agentless/qmmtypeacquire.h"
#include "xmodule/rlog.h"

#include <boost/algorithm/string/predicate.hpp>
#include <boost/algorithm/string/replace.hpp>

#include <fstream>
#include <sstream>

namespace kestro {
namespace repository {

namespace {

const char kSupportFile[] = "data/EventID_SupportLists.json";
const char kHostItem[] = "KESTRO_EVENT_DOC_HOST";
const char kDefaultHost[] = "https://pubs.orvena.example";
const char kProductTemplate[] = "/%PRODUCTNAME%/%EVENTID% target=_BLANK";
const char kGeneralTemplate[] = "/help/topic/%MACHINETYPE%/%EVENTID%.html";
const char* const kIdPrefixes[] = {"80", "0x80"};
// These two models are documented under their own name in the general tree.
const char* const kModelsUnderGeneralTree[] = {"RX350", "RX360"};
const std::size_t kMaskedLength = 4;

std::string Link(const std::string& address, const std::string& eventId)
{
    return "<a href=" + address + ">" + eventId + "</a>";
}

// Ids of the "80" range are documented per group: their last four characters do not count.
std::string DocumentedId(const std::string& eventId)
{
    for (const char* prefix : kIdPrefixes)
        if (boost::algorithm::starts_with(eventId, prefix) && eventId.size() >= kMaskedLength)
            return eventId.substr(0, eventId.size() - kMaskedLength) + "ffff";
    return eventId;
}

bool IsUnderGeneralTree(const std::string& productName)
{
    for (const char* model : kModelsUnderGeneralTree)
        if (productName == model) return true;
    return false;
}

std::string QccLink(const std::string& eventId, const std::string& machineType, const std::string& productName,
                    bool productNameKnown)
{
    RLOG(4) << "Entering QCC == qmm_type";
    std::string address = REventIdLink::DocumentationHost();
    if (productNameKnown && !IsUnderGeneralTree(productName)) {
        address += kProductTemplate;
        boost::algorithm::replace_all(address, "%PRODUCTNAME%", productName);
    } else {
        address += kGeneralTemplate;
        boost::algorithm::replace_all(address, "%MACHINETYPE%", productNameKnown ? productName : machineType);
    }
    boost::algorithm::replace_all(address, "%EVENTID%", eventId);
    return Link(address, eventId);
}

void AddSystemRows(const boost::json::value& system, REventIdLink::SupportTable& table)
{
    const std::string prime = Rest::ReadJsonString(system, "/Prime Machine Type", "");
    std::string url = Rest::ReadJsonString(system, "/URL", "");
    if (prime.empty() || url.empty()) {
        RLOG(2) << "A system of the event id support list has no prime machine type or URL; it is skipped";
        return;
    }
    boost::algorithm::replace_all(url, "%MACHINETYPE%", prime);
    table[prime] = url;
    if (const boost::json::array* types = Rest::FindJsonArray(system, "/Machine Type"))
        for (const boost::json::value& type : *types)
            if (type.is_string()) table[std::string(type.as_string().c_str())] = url;
}

}  // namespace

std::string REventIdLink::ChangeEventIdToLink(const std::string& eventId, const std::string& machineType,
                                              const std::string& productName, int qmmType, bool productNameKnown)
{
    RLOG(4) << "Entering ChangeEventIdToLink...";
    static const SupportTable table = ReadSupportList(KestroDirectory::GetExePath(kSupportFile));
    return ChangeEventIdToLink(table, eventId, machineType, productName, qmmType, productNameKnown);
}

std::string REventIdLink::ChangeEventIdToLink(const SupportTable& table, const std::string& eventId,
                                              const std::string& machineType, const std::string& productName,
                                              int qmmType, bool productNameKnown)
{
    std::string result = eventId;
    const SupportTable::const_iterator row = table.find(machineType);
    if (row != table.end())
        result = Link(boost::algorithm::replace_all_copy(row->second, "%EVENTID%", DocumentedId(eventId)), eventId);
    else if (qmmType == XModule::Agentless::QMM_TYPE_QCC)
        result = QccLink(eventId, machineType, productName, productNameKnown);
    else
        RLOG(3) << "Can't find the machine type " << machineType << " in the support list and isn't purley system";
    RLOG(4) << "URL for specified Event ID is " << result;
    return result;
}

REventIdLink::SupportTable REventIdLink::ReadSupportList(const std::string& path)
{
    SupportTable table;
    std::ifstream in(path.c_str());
    if (!in) {
        RLOG(2) << "The json file can not be opened.";
        return table;
    }
    std::ostringstream text;
    text << in.rdbuf();
    boost::json::value doc;
    std::string error;
    if (!Rest::TryParseJson(text.str(), doc, error)) {
        RLOG(2) << "The event id support list " << path << " is not JSON: " << error;
        return table;
    }
    const boost::json::array* systems = Rest::FindJsonArray(doc, "/Systems");
    if (systems == nullptr) RLOG(2) << "The event id support list " << path << " has no Systems list";
    if (systems != nullptr)
        for (const boost::json::value& system : *systems) AddSystemRows(system, table);
    return table;
}

std::string REventIdLink::DocumentationHost()
{
    std::string host = kDefaultHost;
    XModule::GlobalConfig::GetConfigItem(kHostItem, host);
    return host;
}

}  // namespace repository
}  // namespace kestro
