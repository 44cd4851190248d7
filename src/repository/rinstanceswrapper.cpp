#include "kestro/repository/rinstanceswrapper.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rinstanceswriter.h"
#include "xmodule/rlog.h"

#include <boost/lexical_cast.hpp>

#include <algorithm>
#include <cstdint>

namespace kestro {
namespace repository {

class RInstancesWrapperPrivate {
public:
    std::string type;
    std::vector<RInstance*> instances;
    RInstancesWrapper::WrapCallback wrapCallback;
    std::vector<std::string> referenceTypes;
    std::vector<RInstancesWrapper> referenceData;
    std::vector<RInstancesHeader> headers;
    bool rowForm = true;
    bool sortable = false;
    unsigned columns = 1;
    std::vector<RInstancesSorter> sorters;
    std::vector<RInstancesFilter> filters;
    bool filterInclude = true;
};

namespace {

typedef std::vector<RInstance*> InstanceList;

const std::string::size_type kLoggedValueLength = 80;
const unsigned kWholeWidth = 100;

bool Contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

std::string StringValue(const RInstance& instance, const std::string& key)
{
    std::string value;
    instance.GetPropertyValue(key, value);
    return value;
}

std::string Shortened(const std::string& value) { return value.substr(0, kLoggedValueLength) + "..."; }

void LogHeaderNames(const std::vector<RProperty>& properties)
{
    std::string names;
    for (const RProperty& property : properties) names += property.name + " ";
    RLOG(4) << "headers: " << names;
}

// One header per shown property; `percents` gives each its width, or holds one width for all.
std::vector<RInstancesHeader> HeadersOf(const std::vector<RProperty>& properties, const std::vector<unsigned>& percents)
{
    std::vector<RInstancesHeader> headers;
    for (size_t i = 0; i < properties.size(); ++i) {
        RInstancesHeader header;
        header.name = properties[i].name;
        header.percent = percents.size() == properties.size() ? percents[i] : percents.front();
        header.bb = properties[i].bb;
        header.raw = properties[i].raw;
        header.filename = properties[i].filename;
        headers.push_back(header);
    }
    return headers;
}

// A before B at the first sorter that tells them apart, numbers compared as numbers.
class SorterOrder {
public:
    explicit SorterOrder(const std::vector<RInstancesSorter>& sorters) : sorters(sorters) {}

    bool operator()(const RInstance* a, const RInstance* b) const
    {
        for (const RInstancesSorter& sorter : sorters) {
            const std::string left = StringValue(*a, sorter.name);
            const std::string right = StringValue(*b, sorter.name);
            if (left == right) continue;
            // Sort keys are numeric: a text value raises bad_lexical_cast to the page's writer.
            const std::int64_t leftNumber = boost::lexical_cast<std::int64_t>(left);
            const std::int64_t rightNumber = boost::lexical_cast<std::int64_t>(right);
            if (leftNumber == rightNumber) continue;
            return sorter.ascending ? leftNumber < rightNumber : leftNumber > rightNumber;
        }
        return false;
    }

private:
    const std::vector<RInstancesSorter>& sorters;
};

InstanceList Filtered(const RInstancesWrapperPrivate& w)
{
    if (w.filters.empty()) return w.instances;
    InstanceList kept;
    for (RInstance* instance : w.instances) {
        bool keep = !w.filterInclude;
        for (const RInstancesFilter& filter : w.filters)
            if (Contains(StringValue(*instance, filter.name), filter.value)) {
                keep = w.filterInclude;
                break;
            }
        if (keep) kept.push_back(instance);
    }
    return kept;
}

// How a raw value is kept beside the page, by the kind of type it belongs to.
struct RawRule {
    const char* typePart;
    const char* header;  // empty: any header
    const char* logText;
    std::string (*write)(RInstancesWriter&, const RInstance&, const std::string& typeName, const RInstancesHeader&,
                         const std::string& value);
};

std::string WriteRawData(RInstancesWriter& writer, const RInstance& instance, const std::string&,
                         const RInstancesHeader&, const std::string& value)
{
    std::string file = writer.GetRawDataFileName(instance);
    if (!Contains(file, ".")) file += ".txt";
    return writer.WriteRawDataFile(value, file);
}

std::string WriteGraphics(RInstancesWriter& writer, const RInstance&, const std::string& typeName,
                          const RInstancesHeader&, const std::string& value)
{
    return writer.WriteRawDataFile(value, typeName + ".txt");
}

std::string WritePmemRawData(RInstancesWriter& writer, const RInstance& instance, const std::string&,
                             const RInstancesHeader&, const std::string& value)
{
    return writer.WriteRawDataFile(value, writer.GetRawDataFileName(instance) + ".txt");
}

std::string WriteLsiLink(RInstancesWriter& writer, const RInstance&, const std::string&,
                         const RInstancesHeader& header, const std::string& value)
{
    if (header.filename.empty()) return value;
    return writer.WriteRawDataFile(value, header.filename + ".txt");
}

std::string WritePmcLink(RInstancesWriter& writer, const RInstance&, const std::string&,
                         const RInstancesHeader& header, const std::string& value)
{
    if (header.filename.empty()) return value;
    const char* extension = Contains(header.filename, "SmartStats") ? ".xml" : ".txt";
    return writer.ParsePMCInfoRawData(value, header.filename + extension);
}

const RawRule kRawRules[] = {
    {"RawData", "RawData", "For RawData, to write the value: ", WriteRawData},
    {"Graphics", "RawData", "For Graphics, to write the value: ", WriteGraphics},
    {"PmemRawdata", "RawData", "For PmemRawdata, to write the value: ", WritePmemRawData},
    {"LSILINK", "", "For lsishowall RawData, to write the value: ", WriteLsiLink},
    {"PMCLINK", "", "For pmcinfo RawData, to write the value: ", WritePmcLink},
};

std::string RawCell(RInstancesWriter& writer, const RInstance& instance, const std::string& typeName,
                    const RInstancesHeader& header, const std::string& value)
{
    for (const RawRule& rule : kRawRules) {
        if (!Contains(typeName, rule.typePart)) continue;
        if (*rule.header && header.name != rule.header) continue;
        RLOG(3) << rule.logText << Shortened(value);
        return rule.write(writer, instance, typeName, header, value);
    }
    return writer.FormatPreformatted(value);
}

struct EventIcon {
    const char* word;
    const char* image;
};

const EventIcon kEventIcons[] = {
    {"Information", "<img src=\"data/i.gif\">"},
    {"Warning", "<img src=\"data/w.gif\">"},
    {"Error", "<img src=\"data/e.gif\">"},
};

bool IsEventType(const std::string& typeName)
{
    return Contains(typeName, "ApplicationEvent") || Contains(typeName, "SystemEvent");
}

std::vector<std::string> RowCells(RInstancesWriter& writer, const RInstance& instance, const std::string& typeName,
                                  const std::vector<RInstancesHeader>& headers)
{
    const bool eventType = IsEventType(typeName);
    std::vector<std::string> cells;
    for (const RInstancesHeader& header : headers) {
        // The "T" column's icon is made at the "Type" header that follows it.
        if (eventType && header.name == "T") continue;
        std::string value = writer.FormatComparedValue(writer.GetCellValue(instance, header.name, header.raw));
        if (header.bb)
            value = writer.FormatBBCode(value);
        else if (header.raw)
            value = RawCell(writer, instance, typeName, header, value);
        if (eventType && header.name == "Type")
            for (const EventIcon& icon : kEventIcons)
                if (Contains(value, icon.word)) {
                    cells.push_back(icon.image);
                    break;
                }
        cells.push_back(value);
    }
    return cells;
}

std::string ColumnCell(RInstancesWriter& writer, const RInstance& instance, const RInstancesHeader& header)
{
    std::string value = writer.FormatComparedValue(writer.GetCellValue(instance, header.name, header.raw));
    if (header.bb) return writer.FormatBBCode(value);
    if (header.raw) return writer.FormatPreformatted(value);
    return value;
}

void WriteTitle(RInstancesWriter& writer, const RInstance& first)
{
    const std::string title = first.GetDisplay();
    writer.WriteTableTitle(title);
    std::string tip;
    const bool hasTip = first.HasToolTip(tip);
    writer.WriteToolTip(title, tip, hasTip);
}

void WriteRowForm(const RInstancesWrapperPrivate& w, RInstancesWriter& writer, const InstanceList& rows)
{
    const RInstance& first = *rows.front();
    RLOG(4) << "Begin to write report for type: " << first.GetName();
    WriteTitle(writer, first);
    writer.BeginTable(true, w.sortable);
    std::vector<std::string> displays;
    std::vector<unsigned> percents;
    for (const RInstancesHeader& header : w.headers) {
        displays.push_back(first.GetPropertyDisplay(header.name));
        percents.push_back(header.percent);
    }
    writer.WriteColumnHeaderRow(displays, percents);
    for (const RInstance* instance : rows) writer.WriteDataRow(RowCells(writer, *instance, first.GetName(), w.headers));
    writer.EndTable();
}

void WriteColumnForm(const RInstancesWrapperPrivate& w, RInstancesWriter& writer, const InstanceList& rows)
{
    const RInstance& first = *rows.front();
    RLOG(3) << "Begin to write report for type: " << first.GetName();
    WriteTitle(writer, first);
    if (w.columns == 0) {
        RLOG(2) << "No instances per table for type: " << first.GetName();
        return;
    }
    const bool processor = Contains(first.GetName(), "Processor");
    unsigned cellPercent = 0;
    for (size_t start = 0; start < rows.size(); start += w.columns) {
        const InstanceList chunk(rows.begin() + start, rows.begin() + std::min(rows.size(), start + w.columns));
        const unsigned headerPercent = processor ? w.headers.back().percent : 0;
        if (processor && rows.size() > w.columns && chunk.size() < w.columns) {
            // The last, short table of processors keeps its cells as wide as those above it.
            writer.EndTable();
            cellPercent = (kWholeWidth - headerPercent) / w.columns;
            writer.BeginTableWithWidth(false, false, cellPercent * static_cast<unsigned>(chunk.size()) + headerPercent);
        } else {
            writer.BeginTable(false, false);
        }
        for (const RInstancesHeader& header : w.headers) {
            const std::string heading = first.GetPropertyDisplay(header.name);
            std::vector<std::string> cells;
            for (const RInstance* instance : chunk) cells.push_back(ColumnCell(writer, *instance, header));
            if (processor) {
                writer.WriteHeadedRowWithWidths(heading, header.percent, cells, cellPercent);
            } else {
                cells.resize(w.columns);
                writer.WriteHeadedRow(heading, header.percent, cells);
            }
        }
        writer.EndTable();
    }
}

}  // namespace

RInstancesWrapper::RInstancesWrapper(const std::string& type, const std::vector<RInstance*>& instances,
                                     const WrapCallback& callback)
    : d(new RInstancesWrapperPrivate)
{
    d->type = type;
    d->instances = instances;
    d->wrapCallback = callback;
    // An empty callback raises bad_function_call: a type without a table form is the caller's bug.
    callback(*this);
}

RInstancesWrapper::RInstancesWrapper(const RInstancesWrapper& other) : d(new RInstancesWrapperPrivate(*other.d)) {}

RInstancesWrapper::RInstancesWrapper(RInstancesWrapper&& other) noexcept = default;

RInstancesWrapper& RInstancesWrapper::operator=(const RInstancesWrapper& other)
{
    d.reset(new RInstancesWrapperPrivate(*other.d));
    return *this;
}

RInstancesWrapper& RInstancesWrapper::operator=(RInstancesWrapper&& other) noexcept = default;

RInstancesWrapper::~RInstancesWrapper() = default;

void RInstancesWrapper::SetColumnHeaders(const std::vector<std::string>&, unsigned percent, unsigned columns)
{
    if (d->instances.empty()) return;
    const std::vector<RProperty> properties = d->instances.front()->GetRProperty();
    LogHeaderNames(properties);
    d->rowForm = false;
    d->sortable = false;
    d->columns = columns;
    d->headers = HeadersOf(properties, std::vector<unsigned>(1, percent));
}

void RInstancesWrapper::SetRowHeaders(const std::vector<std::string>&, const std::vector<unsigned>& percents,
                                      bool sortable)
{
    if (d->instances.empty()) return;
    const std::vector<RProperty> properties = d->instances.front()->GetRProperty();
    LogHeaderNames(properties);
    std::vector<unsigned> widths = percents;
    if (widths.size() != properties.size()) {
        RLOG(2) << "Headers and percent have different sizes, need to mend percent.";
        const unsigned share = properties.empty() ? 0 : kWholeWidth / static_cast<unsigned>(properties.size());
        widths.assign(std::max<size_t>(properties.size(), 1), share);
    }
    d->rowForm = true;
    d->sortable = sortable;
    d->columns = 0;
    d->headers = HeadersOf(properties, widths);
}

void RInstancesWrapper::AddFilter(const std::string& name, const std::string& value, bool include)
{
    if (include != d->filterInclude) {
        d->filterInclude = include;
        d->filters.clear();
    }
    RInstancesFilter filter;
    filter.name = name;
    filter.value = value;
    d->filters.push_back(filter);
}

void RInstancesWrapper::AddSorter(const std::string& name, bool ascending)
{
    RInstancesSorter sorter;
    sorter.name = name;
    sorter.ascending = ascending;
    d->sorters.push_back(sorter);
}

void RInstancesWrapper::AddReferenceType(const std::string& type) { d->referenceTypes.push_back(type); }

void RInstancesWrapper::AddReferenceData(const RInstancesWrapper& data) { d->referenceData.push_back(data); }

std::vector<std::string> RInstancesWrapper::GetReferenceTypes() const { return d->referenceTypes; }

bool RInstancesWrapper::WriteReport(RInstancesWriter& writer) const
{
    RLOG(4) << "Enter RInstancesWrapper::WriteReport";
    if (d->instances.empty()) {
        RLOG(2) << "Data is empty for type: " << d->type;
        return false;
    }
    if (d->referenceData.empty()) return WriteSingleReport(writer);
    bool written = false;
    for (RInstance* instance : d->instances) {
        // Each parent gets a table of its own, its children's tables under it.
        const RInstancesWrapper single(d->type, InstanceList(1, instance), d->wrapCallback);
        if (!single.WriteSingleReport(writer)) continue;
        written = true;
        const int id = instance->GetID();
        const std::string name = instance->GetName();
        for (const RInstancesWrapper& reference : d->referenceData) {
            InstanceList children;
            for (RInstance* child : reference.d->instances)
                if (child->HasReference(name, id)) children.push_back(child);
            RInstancesWrapper childWrapper(reference.d->type, children, reference.d->wrapCallback);
            childWrapper.d->referenceData = reference.d->referenceData;
            writer.BeginIndent();
            childWrapper.WriteReport(writer);
            writer.EndIndent();
        }
    }
    return written;
}

bool RInstancesWrapper::WriteSingleReport(RInstancesWriter& writer) const
{
    RLOG(4) << "Enter RInstancesWrapper::WriteSingleReport";
    if (d->headers.empty()) {
        RLOG(2) << "Data header is empty for type: " << d->type;
        return false;
    }
    InstanceList rows = Filtered(*d);
    if (rows.empty()) return false;
    std::stable_sort(rows.begin(), rows.end(), SorterOrder(d->sorters));
    if (d->rowForm)
        WriteRowForm(*d, writer, rows);
    else
        WriteColumnForm(*d, writer, rows);
    RLOG(4) << "Exit RInstancesWrapper::WriteSingleReport";
    return true;
}

}  // namespace repository
}  // namespace kestro
