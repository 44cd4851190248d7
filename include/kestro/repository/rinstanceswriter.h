#ifndef KESTRO_REPOSITORY_RINSTANCESWRITER_H
#define KESTRO_REPOSITORY_RINSTANCESWRITER_H

#include <string>
#include <vector>

namespace kestro {
namespace repository {

class RInstance;

// Where report tables go: all mark-up of a page belongs to an implementation of this.
class RInstancesWriter {
public:
    virtual ~RInstancesWriter();

    virtual void WriteTableTitle(const std::string& title) = 0;
    virtual void WriteToolTip(const std::string& title, const std::string& tip, bool hasTip) = 0;
    virtual void BeginTable(bool rowTable, bool sortable) = 0;
    virtual void BeginTableWithWidth(bool rowTable, bool sortable, unsigned widthPercent) = 0;
    virtual void WriteColumnHeaderRow(const std::vector<std::string>& headings, std::vector<unsigned> percents) = 0;
    virtual void WriteDataRow(const std::vector<std::string>& cells) = 0;
    virtual void WriteHeadedRow(const std::string& heading, unsigned headingPercent,
                                const std::vector<std::string>& cells) = 0;
    virtual void WriteHeadedRowWithWidths(const std::string& heading, unsigned headingPercent,
                                          const std::vector<std::string>& cells, unsigned cellPercent) = 0;
    virtual void EndTable() = 0;
    virtual void BeginIndent() = 0;
    virtual void EndIndent() = 0;
    virtual std::string GetCellValue(const RInstance& instance, const std::string& key, bool raw) = 0;
    virtual std::string GetRawDataFileName(const RInstance& instance) = 0;
    virtual std::string FormatComparedValue(const std::string& value) = 0;
    virtual std::string FormatBBCode(const std::string& value) = 0;
    virtual std::string FormatPreformatted(const std::string& value) = 0;
    virtual std::string WriteRawDataFile(const std::string& content, const std::string& fileName) = 0;
    virtual std::string ParseNetworkRawData(const std::string& content, const std::string& fileName) = 0;
    virtual std::string ParsePMCInfoRawData(const std::string& content, const std::string& fileName) = 0;
};

}  // namespace repository
}  // namespace kestro

#endif
