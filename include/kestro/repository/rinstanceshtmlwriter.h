#ifndef KESTRO_REPOSITORY_RINSTANCESHTMLWRITER_H
#define KESTRO_REPOSITORY_RINSTANCESHTMLWRITER_H

#include "kestro/repository/rinstanceswriter.h"

#include <fstream>
#include <string>
#include <vector>

namespace kestro {
namespace repository {

// One HTML page of the report: the constructor writes the top, the destructor the bottom.
// Values are written as they come, never escaped: modules put mark-up into them on purpose.
class RInstancesHTMLWriter : public RInstancesWriter {
public:
    // Writes directory/name.html.
    RInstancesHTMLWriter(const std::string& directory, const std::string& name, const std::string& title);
    ~RInstancesHTMLWriter() override;

    void WriteTableTitle(const std::string& title) override;
    void WriteToolTip(const std::string& title, const std::string& tip, bool hasTip) override;
    void BeginTable(bool rowTable, bool sortable) override;
    void BeginTableWithWidth(bool rowTable, bool sortable, unsigned widthPercent) override;
    void WriteColumnHeaderRow(const std::vector<std::string>& headings, std::vector<unsigned> percents) override;
    void WriteDataRow(const std::vector<std::string>& cells) override;
    void WriteHeadedRow(const std::string& heading, unsigned headingPercent,
                        const std::vector<std::string>& cells) override;
    void WriteHeadedRowWithWidths(const std::string& heading, unsigned headingPercent,
                                  const std::vector<std::string>& cells, unsigned cellPercent) override;
    void EndTable() override;
    void BeginIndent() override;
    void EndIndent() override;
    std::string GetCellValue(const RInstance& instance, const std::string& key, bool raw) override;
    std::string GetRawDataFileName(const RInstance& instance) override;
    std::string FormatComparedValue(const std::string& value) override;
    std::string FormatBBCode(const std::string& value) override;
    std::string FormatPreformatted(const std::string& value) override;
    std::string WriteRawDataFile(const std::string& content, const std::string& fileName) override;
    std::string ParseNetworkRawData(const std::string& content, const std::string& fileName) override;
    std::string ParsePMCInfoRawData(const std::string& content, const std::string& fileName) override;

private:
    RInstancesHTMLWriter(const RInstancesHTMLWriter&) = delete;
    RInstancesHTMLWriter& operator=(const RInstancesHTMLWriter&) = delete;

    unsigned rowIndex;
    std::ofstream stream;
    std::string directory;
};

}  // namespace repository
}  // namespace kestro

#endif
