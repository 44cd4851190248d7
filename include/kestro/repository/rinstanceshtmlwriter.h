#ifndef KESTRO_REPOSITORY_RINSTANCESHTMLWRITER_H
#define KESTRO_REPOSITORY_RINSTANCESHTMLWRITER_H

#include "kestro/repository/rinstanceswriter.h"

#include <sstream>
#include <string>
#include <vector>

namespace kestro {
namespace repository {

// One HTML page of the report: the constructor writes the top, Close (or the destructor) the
// bottom. The page and its raw-data files replace older ones only when whole, so a failed write
// leaves the previous file. Values are written as they come, never escaped: modules put mark-up
// into them on purpose.
class RInstancesHTMLWriter : public RInstancesWriter {
public:
    // Writes directory/name.html.
    RInstancesHTMLWriter(const std::string& directory, const std::string& name, const std::string& title);
    ~RInstancesHTMLWriter() override;
    // Finishes and stores the page; false (logged) when it or one of its raw-data files could
    // not be written.
    bool Close();

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

    void Store(const std::string& path, const std::string& content);

    unsigned rowIndex;
    std::ostringstream stream;
    std::string directory;
    std::string pagePath;
    bool closed;
    bool stored;
};

}  // namespace repository
}  // namespace kestro

#endif
