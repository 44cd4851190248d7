#include "rrepository_p.h"

#include "kestro/repository/rinstance.h"
#include "kestro/systemtype/systemtype.h"
#include "kestro/xmodule/globalconfig.h"
#include "kestro/xmodule/kestrodirectory.h"
#include "repository/modules/rdatasourcemodule.h"
#include "rinstance_p.h"
#include "rest/runcontext.h"
#include "xmodule/rlog.h"
#include "rreportsite.h"
#include "rstorecomparer.h"
#include "updatescanadapter.h"
#include "xmodule/atomicfile.h"
#include "xmodule/linux/osrelease.h"
#include "xmodule/sharedlibrary.h"
#include "xmodule/transferdeadline.h"

#include <boost/filesystem/operations.hpp>
#include <boost/property_tree/xml_parser.hpp>
#include <boost/thread/locks.hpp>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>

namespace kestro {
namespace repository {

namespace pt = boost::property_tree;

namespace {

const char kBuildVersion[] = "oqce_kestro02a-4.4.1";
const char kModulePluginName[] = "repository_vxmodule.so";
const char kFallbackLinuxFamily[] = "rhel";
const char kDefaultFileName[] = "RReport20130707.xml";

typedef void (*AddModulesEntry)(RModuleList& modules);

struct SystemTypePrefix {
    int systemType;
    const char* prefix;
};

// Server families whose local host runs a case of its own, where the table holds one.
const SystemTypePrefix kSystemTypePrefixes[] = {
    {2, "vx_"}, {4, "tv5x_"}, {5, "tv5x_v2_"}, {6, "tv4x_v2_"},
};

const char kAmdPrefix[] = "amd_";
const int kAmdSystemType = 3;

struct ModeCase {
    ConnectMode mode;
    RInventoryCase inventoryCase;
};

const ModeCase kRemoteModeCases[] = {
    {ConnectOob, CaseOob}, {ConnectCmm, CaseCmm}, {ConnectEsxi, CaseEsxi}, {ConnectSmm, CaseSmm},
};

bool FindCase(const std::string& text, RInventoryCase& found)
{
    for (int index = 0; index < INVENTORY_CASE_COUNT; ++index)
        if (RRepository::INVENTORY_CASES[index] == text) {
            found = static_cast<RInventoryCase>(index);
            return true;
        }
    return false;
}

std::string PrefixOf(int systemType)
{
    for (const SystemTypePrefix& entry : kSystemTypePrefixes)
        if (entry.systemType == systemType) return entry.prefix;
    return std::string();
}

// The local host's case: its OS family, with the server family's prefix where such a case exists.
RInventoryCase LocalCase(const std::string& prefix)
{
    std::string family = XModule::Linux::OsFamily(XModule::Linux::ReadOsRelease());
    if (family.empty()) {
        RLOG(2) << "Cannot tell the operating system family from os-release, using " << kFallbackLinuxFamily;
        family = kFallbackLinuxFamily;
    }
    RInventoryCase chosen = CaseNone;
    if (FindCase(prefix + family, chosen)) return chosen;
    FindCase(family, chosen);
    return chosen;
}

typedef XModule::TransferDeadline::Clock Clock;

// A time limit of global.config; 0 or less sets none. The defaults lie far beyond what a healthy
// BMC takes, and bound a service that never ends an answer or a redirect chain.
struct TimeLimit {
    const char* key;
    int defaultSeconds;
    const char* name;
};

const TimeLimit kTypeTimeLimit = {"KESTRO_TYPE_TIME_LIMIT", 600, "per type"};
const TimeLimit kRunTimeLimit = {"KESTRO_RUN_TIME_LIMIT", 3600, "per run"};

// The end of the type's collection: the earlier of the limits that apply.
struct TypeDeadline {
    bool set = false;
    Clock::time_point when;
    int seconds = 0;
    const char* name = "";
};

void TakeEarlier(TypeDeadline& deadline, const TimeLimit& limit, Clock::time_point start)
{
    const int seconds = XModule::GetGlobalConfigValue(limit.key, limit.defaultSeconds);
    if (seconds <= 0) return;
    const Clock::time_point when = start + std::chrono::seconds(seconds);
    if (deadline.set && deadline.when <= when) return;
    deadline.set = true;
    deadline.when = when;
    deadline.seconds = seconds;
    deadline.name = limit.name;
}

// Holds the deadline for the REST client while a module collects, and lifts it even on a throw.
class DeadlineScope {
public:
    explicit DeadlineScope(const TypeDeadline& deadline)
    {
        if (deadline.set) XModule::TransferDeadline::Set(deadline.when);
    }
    ~DeadlineScope() { XModule::TransferDeadline::Clear(); }
    DeadlineScope(const DeadlineScope&) = delete;
    DeadlineScope& operator=(const DeadlineScope&) = delete;
};

// Bounds of a repository file, far beyond any inventory (megabytes, a handful of levels): the XML
// parser holds the whole file in memory and descends one call per element level, so a larger or
// deeper file would exhaust the memory or the stack instead of failing.
const std::uintmax_t kMaxRepositoryFileBytes = 256u * 1024 * 1024;
const int kMaxElementDepth = 256;

struct Markup {
    const char* open;
    const char* close;
};

// Markup that holds no elements, skipped whole by the depth count.
const Markup kOpaqueMarkup[] = {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}, {"<!", ">"}};

std::string ReadBoundedFile(const std::string& path)
{
    boost::system::error_code error;
    const std::uintmax_t size = boost::filesystem::file_size(path, error);
    if (!error && size > kMaxRepositoryFileBytes)
        throw pt::xml_parser_error("file of " + std::to_string(size) + " bytes, more than the " +
                                       std::to_string(kMaxRepositoryFileBytes) + " a repository file may hold",
                                   path, 0);
    std::ifstream in(path.c_str(), std::ios::binary);
    if (!in) throw pt::xml_parser_error("cannot open file", path, 0);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// Where the tag that starts at `start` ends, quoted attribute values skipped.
std::string::size_type TagEnd(const std::string& text, std::string::size_type start)
{
    char quote = 0;
    for (std::string::size_type i = start; i < text.size(); ++i) {
        if (quote != 0) {
            if (text[i] == quote) quote = 0;
        } else if (text[i] == '"' || text[i] == '\'') {
            quote = text[i];
        } else if (text[i] == '>') {
            return i;
        }
    }
    return std::string::npos;
}

// Counts element levels as the parser will meet them, and refuses a file nested too deep.
void CheckElementDepth(const std::string& text, const std::string& path)
{
    int depth = 0;
    std::string::size_type at = text.find('<');
    while (at != std::string::npos) {
        std::string::size_type end = std::string::npos;
        bool opaque = false;
        for (const Markup& markup : kOpaqueMarkup)
            if (!opaque && text.compare(at, std::strlen(markup.open), markup.open) == 0) {
                end = text.find(markup.close, at + std::strlen(markup.open));
                opaque = true;
            }
        if (!opaque) {
            end = TagEnd(text, at + 1);
            if (text.compare(at, 2, "</") == 0)
                depth = std::max(depth - 1, 0);
            else if (end != std::string::npos && text[end - 1] != '/' && ++depth > kMaxElementDepth)
                throw pt::xml_parser_error("elements nested more than " + std::to_string(kMaxElementDepth) +
                                               " levels deep",
                                           path, 0);
        }
        at = end == std::string::npos ? end : text.find('<', end);
    }
}

struct Utf8Lead {
    unsigned char mask;
    unsigned char value;
    int length;
};

const Utf8Lead kUtf8Leads[] = {{0x80, 0x00, 1}, {0xE0, 0xC0, 2}, {0xF0, 0xE0, 3}, {0xF8, 0xF0, 4}};

// The bytes of the sequence a lead byte starts; 0 for a byte that starts none.
int Utf8Length(unsigned char lead)
{
    for (const Utf8Lead& entry : kUtf8Leads)
        if ((lead & entry.mask) == entry.value) return entry.length;
    return 0;
}

// The offset of the first byte that breaks UTF-8, or npos.
std::string::size_type FirstInvalidUtf8(const std::string& text)
{
    std::string::size_type i = 0;
    while (i < text.size()) {
        const int length = Utf8Length(static_cast<unsigned char>(text[i]));
        if (length == 0 || i + length > text.size()) return i;
        for (int k = 1; k < length; ++k)
            if ((static_cast<unsigned char>(text[i + k]) & 0xC0) != 0x80) return i;
        i += length;
    }
    return std::string::npos;
}

// Comments come out of the parser as nodes named "<xmlcomment>"; elements have names without '<'.
bool HoldsElement(const pt::ptree& file)
{
    for (pt::ptree::const_iterator child = file.begin(); child != file.end(); ++child)
        if (child->first.empty() || child->first[0] != '<') return true;
    return false;
}

// The parser's failure names the file, as when it reads the file itself.
void ParseXml(std::istream& in, const std::string& path, pt::ptree& file)
{
    try {
        pt::read_xml(in, file);
    } catch (const pt::xml_parser_error& e) {
        throw pt::xml_parser_error(e.message(), path, e.line());
    }
}

bool SameMode(const pt::ptree& first, const pt::ptree& second)
{
    const std::string firstMode = first.get<std::string>("mode", std::string());
    const std::string secondMode = second.get<std::string>("mode", std::string());
    if (firstMode == secondMode) return true;
    RLOG(1) << "Cannot compare two file from different OS: " << firstMode << " & " << secondMode;
    return false;
}

void ClearMixedContent(pt::ptree& node)
{
    if (node.empty()) return;
    node.data().clear();
    for (pt::ptree::iterator child = node.begin(); child != node.end(); ++child) ClearMixedContent(child->second);
}

}  // namespace

RRepositoryPrivate::RRepositoryPrivate(RRepository* owner, const XModule::ConnectionInfo& info, RInventoryCase c)
    : owner(owner), connectMode(ConnectNone), systemType(0), inventoryCase(c), isWhitley(false), pluginHandle(nullptr),
      transfers(new Rest::RunContext)
{
    RLOG(4) << "Enter RRepositoryPrivate";
    const bool redfishCase = c >= CaseCfcWindows && c <= CaseCfcOob;
    if (redfishCase && c != CaseCfcOob) connectMode = ConnectCfc;
    if (redfishCase) restConnections.insert(restConnections.begin(), info);
    InitInventoryModules();
    SetModulesInventoryCase();
    RLOG(4) << "After InitInventoryModules";
    PutHeader();
}

RRepositoryPrivate::RRepositoryPrivate(RRepository* owner, ConnectMode mode)
    : owner(owner), connectMode(mode), systemType(0), inventoryCase(CaseNone), isWhitley(false), pluginHandle(nullptr),
      transfers(new Rest::RunContext)
{
    if (mode == ConnectLocal || mode == ConnectLocalAmd) {
        systemType = SystemType::GetInstance()->GetSystemType();
        if (mode == ConnectLocalAmd) systemType = kAmdSystemType;
    }
    if (mode == ConnectNone) return;
    SetInventoryCase(mode);
    InitInventoryModules();
    SetModulesInventoryCase();
    PutHeader();
}

RRepositoryPrivate::~RRepositoryPrivate()
{
    // Modules made by the plug-in need its code until the process ends, so it stays loaded.
    modules.clear();
    pluginHandle = nullptr;
}

void RRepositoryPrivate::PutHeader()
{
    store.Put("mode", RRepository::INVENTORY_CASES[inventoryCase]);
    RLOG(4) << "After put inventory case";
    store.Put("buildversion", kBuildVersion);
    RLOG(4) << "After put buildversion";
}

void RRepositoryPrivate::SetInventoryCase(ConnectMode mode)
{
    inventoryCase = CaseWindows;
    if (mode == ConnectLocal) {
        inventoryCase = LocalCase(PrefixOf(systemType));
    } else if (mode == ConnectLocalAmd) {
        inventoryCase = LocalCase(kAmdPrefix);
    } else {
        bool known = false;
        for (const ModeCase& entry : kRemoteModeCases)
            if (entry.mode == mode) {
                inventoryCase = entry.inventoryCase;
                known = true;
            }
        if (!known) RLOG(1) << "Inventory case doesn't exist ";
    }
    RLOG(3) << "Set inventory case to  " << RRepository::INVENTORY_CASES[inventoryCase];
}

void RRepositoryPrivate::SetInventoryCase(const std::string& caseText)
{
    if (!FindCase(caseText, inventoryCase)) {
        RLOG(1) << "There is NO matching case for mode: " << caseText;
        inventoryCase = CaseWindows;
    }
    RLOG(3) << "Set inventory case to  " << RRepository::INVENTORY_CASES[inventoryCase];
}

void RRepositoryPrivate::InitInventoryModules()
{
    RLOG(4) << "Entering kestro::repository::RRepositoryPrivate::InitInventoryModules().";
    modules.clear();
    RModuleTable::AppendLeading(modules);
    const RModuleTable::Row row = RModuleTable::RowOf(inventoryCase);
    if (row == RModuleTable::RowCfcInBand || row == RModuleTable::RowCfcOob)
        RLOG(4) << "The case on CFC is " << static_cast<int>(inventoryCase);
    RModuleTable::AppendRow(row, modules);
    if (row == RModuleTable::RowSmm) RLOG(4) << "InitInventoryModules for SMM Inventory  ";
    if (row == RModuleTable::RowCmm) RLOG(4) << "InitInventoryModules for CMM Inventory  ";
    if (row == RModuleTable::RowOrdinary) LoadModulePlugin();
    RLOG(4) << "Exiting kestro::repository::RRepositoryPrivate::InitInventoryModules().";
}

void RRepositoryPrivate::LoadModulePlugin()
{
    std::string error;
    void* loaded = XModule::SharedLibrary::Load(KestroDirectory::GetLibraryPath() + kModulePluginName, error);
    if (loaded) pluginHandle = loaded;
    if (!pluginHandle) {
        RLOG(2) << "Unable to load shared library " << kModulePluginName << " !!!";
        RLOG(2) << "load vexa server module failed";
        return;
    }
    const AddModulesEntry addModules =
        reinterpret_cast<AddModulesEntry>(XModule::SharedLibrary::FindSymbol(pluginHandle, "AddModules"));
    if (!addModules) {
        RLOG(2) << "Unable to find required interface in !!!";
        return;
    }
    RLOG(3) << "Start to Load Vexa Server modules!";
    addModules(modules);
}

void RRepositoryPrivate::SetModulesInventoryCase()
{
    RLOG(4) << "Entering kestro::repository::RRepositoryPrivate::SetModulesInventoryCase().";
    for (RModuleList::iterator module = modules.begin(); module != modules.end(); ++module)
        (*module)->SetInventoryCase(inventoryCase);
    RLOG(4) << "Exiting kestro::repository::RRepositoryPrivate::SetModulesInventoryCase().";
}

void RRepositoryPrivate::InitDepModules()
{
    SetInventoryCase(store.Get("mode"));
    InitInventoryModules();
    SetModulesInventoryCase();
}

void RRepositoryPrivate::AddToRepository(const std::string& name, const pt::ptree& record)
{
    boost::unique_lock<boost::shared_mutex> lock(storeLock);
    store.Add(name, record);
}

std::vector<std::string> RRepositoryPrivate::CollectedTypes() const { return store.RecordTypes(); }

std::vector<std::string> RRepositoryPrivate::AvailableTypes()
{
    std::vector<std::string> types;
    for (RModuleList::iterator module = modules.begin(); module != modules.end(); ++module)
        (*module)->EnumTypes(types);
    std::sort(types.begin(), types.end());
    return types;
}

std::vector<RInstance*> RRepositoryPrivate::Instances(const std::string& type) const
{
    std::vector<RInstance*> instances;
    const std::size_t count = store.Count(type);
    // Room made first, so that push_back cannot throw and drop a record already made.
    instances.reserve(count);
    // The records read their key names from a copy of their own, which lives as long as they do
    // and not as long as the store, which may grow meanwhile.
    const boost::shared_ptr<const RKeyTable> keys(new RKeyTable(store.Keys()));
    for (std::size_t n = 0; n < count; ++n)
        instances.push_back(new RInstance(std::make_unique<RInstancePrivate>(type, store.CompactEntry(type, n), keys)));
    return instances;
}

boost::shared_ptr<RModule> RRepositoryPrivate::FindModuleOffering(const std::string& type)
{
    for (RModuleList::iterator module = modules.begin(); module != modules.end(); ++module) {
        std::vector<std::string> offered;
        (*module)->EnumTypes(offered);
        if (std::find(offered.begin(), offered.end(), type) != offered.end()) return *module;
    }
    return boost::shared_ptr<RModule>();
}

void RRepositoryPrivate::CollectType(RModule& module, const std::string& type)
{
    const Clock::time_point typeStart = Clock::now();
    if (!runStarted) {
        runStart = typeStart;
        runStarted = true;
    }
    TypeDeadline deadline;
    TakeEarlier(deadline, kTypeTimeLimit, typeStart);
    TakeEarlier(deadline, kRunTimeLimit, runStart);
    {
        const DeadlineScope scope(deadline);
        const Rest::RunContext::Scope shared(transfers.get());
        module.EnumInstances(type, *owner);
    }
    if (deadline.set && Clock::now() >= deadline.when)
        RLOG(2) << "Time limit of " << deadline.seconds << " s " << deadline.name << " reached while collecting "
                << type << "; its records so far are kept";
}

void RRepositoryPrivate::RunInventory(const std::string& group)
{
    if (!category) {
        RLOG(2) << "Category not correctly initialized, skip this function";
        return;
    }
    const std::vector<std::string> types = category->GetTypes(group);
    if (types.empty()) {
        RLOG(2) << "Cannot find group name in category file to run inventory: " << group;
        return;
    }
    std::vector<std::string> done = CollectedTypes();
    RLOG(3) << "Begin to run inventory for group: " << group;
    boost::shared_ptr<RModule> lastModule;
    for (std::vector<std::string>::const_iterator type = types.begin(); type != types.end(); ++type) {
        if (std::find(done.begin(), done.end(), *type) != done.end()) {
            RLOG(2) << "Type already finished running inventory and will be skipped: " << *type;
            continue;
        }
        const boost::shared_ptr<RModule> module = FindModuleOffering(*type);
        if (!module) {
            RLOG(2) << "Cannot find type in all modules to run inventory: " << *type;
            continue;
        }
        lastModule = module;
        RLOG(3) << "Begin to run inventory for type: " << *type;
        CollectType(*module, *type);
        done.push_back(*type);
    }
    if (lastModule) lastModule->DelDisuseResources();
}

void RRepositoryPrivate::RunInventory(ProgressCallback progress)
{
    std::vector<std::string> done = CollectedTypes();
    for (RModuleList::iterator module = modules.begin(); module != modules.end(); ++module) {
        RLOG(3) << "Begin to run inventory for module: " << (*module)->GetName();
        if (progress) progress((*module)->GetName(), (*module)->GetDisplay());
        std::vector<std::string> types;
        (*module)->EnumTypes(types);
        for (std::vector<std::string>::const_iterator type = types.begin(); type != types.end(); ++type) {
            if (std::find(done.begin(), done.end(), *type) != done.end()) {
                RLOG(2) << "Type already finished running inventory and will be skipped: " << *type;
                continue;
            }
            RLOG(3) << "Begin to run inventory for type: " << *type;
            CollectType(**module, *type);
            done.push_back(*type);
        }
    }
}

std::string RRepositoryPrivate::CategoryCaseText()
{
    if (connectMode != ConnectNone && inventoryCase < CaseNone) return RRepository::INVENTORY_CASES[inventoryCase];
    return store.Get("mode");
}

bool RRepositoryPrivate::LoadCategories()
{
    category.reset(new RReportCategory(this));
    const std::string path = KestroDirectory::GetExePath("") + "data/reportcategory_" + CategoryCaseText() + ".xml";
    const bool loaded = category->Load(path);
    if (loaded) category->Dump();
    return loaded;
}

void RRepositoryPrivate::ReadDeviceInfo()
{
    const UpdateScanAdapter adapter(userContext);
    RLOG(3) << adapter.CommandText();
    service::ServiceUpdateScan scan(adapter.Option());
    service::UpdateScanReport report;
    const KestroResult result = scan.Run(report);
    if (!result.IsSuccess()) RLOG(1) << result;
    service::SerializeScanReport::AddToPtree(report, scanTree);
    // A report without SCAN raises "No such node" to the caller, as a broken scan should.
    pt::ptree scanned = scanTree.get_child("SCAN");
    scanTree.swap(scanned);
}

void RRepositoryPrivate::SetDataSource(const std::string& name, const std::string& build, const std::string& version)
{
    if (store.Count("DataSource") != 0) return;
    RDataSourceModule source(name, build, version);
    source.EnumInstances("DataSource", *owner);
}

bool RRepositoryPrivate::WriteXML(const std::string& fileName, const std::string& directory)
{
    boost::shared_lock<boost::shared_mutex> lock(storeLock);
    boost::system::error_code error;
    if (!boost::filesystem::is_directory(directory, error)) {
        RLOG(1) << "Directory not exist: " << directory;
        return false;
    }
    const std::string target =
        (boost::filesystem::path(directory) / (fileName.empty() ? kDefaultFileName : fileName)).string();
    std::string text;
    if (!StoreAsXml(text)) return false;
    // A failed write leaves the previous file whole and the store as it was.
    if (XModule::AtomicFile::Write(target, text, error)) return true;
    RLOG(1) << "Failed to write XML: " << target << ": " << error.message();
    return false;
}

bool RRepositoryPrivate::StoreAsXml(std::string& text)
{
    try {
        // Written record by record: a large store is never a whole tree at once.
        std::ostringstream out;
        store.WriteFile(out, scanTree);
        text = out.str();
    } catch (const std::exception& e) {
        RLOG(1) << "Failed to write XML: " << e.what();
        return false;
    }
    return true;
}

bool RRepositoryPrivate::ReadRepositoryFile(const std::string& path, pt::ptree& target)
{
    try {
        const std::string text = ReadBoundedFile(path);
        CheckElementDepth(text, path);
        const std::string::size_type invalid = FirstInvalidUtf8(text);
        if (invalid != std::string::npos)
            RLOG(2) << "Repository XML " << path << " holds bytes that are not UTF-8, the first at offset " << invalid
                    << "; its values are read as they stand";
        std::istringstream in(text);
        pt::ptree file;
        ParseXml(in, path, file);
        // An empty, text-only or comment-only file parses, but holds no inventory: it must not replace one.
        if (!HoldsElement(file)) throw pt::xml_parser_error("no element in file", path, 0);
        ClearMixedContent(file);
        std::string root;
        const std::string& first = file.begin()->first;
        if (first == "kestro") {
            RLOG(3) << "kestro is the first node. ";
            root = "kestro.repository";
        } else if (first == "repository") {
            RLOG(3) << "repository is the first node. ";
            root = "repository";
        }
        file.get_child(root).swap(target);
    } catch (const pt::ptree_error& e) {
        RLOG(1) << "Failed to read repository XML: " << e.what();
        return false;
    }
    return true;
}

bool RRepositoryPrivate::ReadXML(const std::string& path, const std::string& comparePath)
{
    boost::unique_lock<boost::shared_mutex> lock(storeLock);
    pt::ptree older;
    if (!ReadRepositoryFile(path, older)) return false;
    if (comparePath.empty()) {
        store.Assign(older);
        return true;
    }
    pt::ptree newer;
    const bool compared = ReadRepositoryFile(comparePath, newer) && SameMode(older, newer);
    if (compared) RStoreComparer::MergeInto(older, newer);
    // The first file stays the store unless the comparison is made.
    store.Assign(compared ? newer : older);
    return compared;
}

bool RRepositoryPrivate::WriteHTML(const std::string& directory)
{
    if (!category && !LoadCategories()) return false;
    boost::shared_lock<boost::shared_mutex> lock(storeLock);
    boost::system::error_code error;
    if (!boost::filesystem::is_directory(directory, error)) {
        RLOG(1) << "Directory not exist: " << directory;
        return false;
    }
    return RReportSite(*this, directory).Write();
}

void RRepositoryPrivate::Combine(const RRepositoryPrivate& other)
{
    if (&other == this) {
        RLOG(2) << "Cannot combine a repository with itself";
        return;
    }
    boost::unique_lock<boost::shared_mutex> lock(storeLock);
    store.AddAll(other.store);
}

}  // namespace repository
}  // namespace kestro
