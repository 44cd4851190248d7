#ifndef KESTRO_REPOSITORY_RINSTANCESWRAPPER_H
#define KESTRO_REPOSITORY_RINSTANCESWRAPPER_H

#include <boost/function.hpp>

#include <memory>
#include <string>
#include <vector>

namespace kestro {
namespace repository {

class RInstance;
class RInstancesWriter;
class RInstancesWrapperPrivate;

// One column of a row table, or one line of a column table.
struct RInstancesHeader {
    std::string name;
    unsigned percent = 0;
    bool bb = false;
    bool raw = false;
    std::string filename;
};

struct RInstancesSorter {
    std::string name;
    bool ascending = true;
};

struct RInstancesFilter {
    std::string name;
    std::string value;
};

// The records of one type as report tables: the owning module's wrap callback sets the form,
// and everything is written through an RInstancesWriter.
class RInstancesWrapper {
public:
    typedef boost::function<void(RInstancesWrapper&)> WrapCallback;

    // Runs `callback` on the new wrapper; the instances stay owned by the caller.
    RInstancesWrapper(const std::string& type, const std::vector<RInstance*>& instances, const WrapCallback& callback);
    RInstancesWrapper(const RInstancesWrapper& other);
    RInstancesWrapper(RInstancesWrapper&& other) noexcept;
    RInstancesWrapper& operator=(const RInstancesWrapper& other);
    RInstancesWrapper& operator=(RInstancesWrapper&& other) noexcept;
    ~RInstancesWrapper();

    // The columns are always the first instance's shown properties; `headers` is not read.
    void SetColumnHeaders(const std::vector<std::string>& headers, unsigned percent, unsigned columns);
    void SetRowHeaders(const std::vector<std::string>& headers, const std::vector<unsigned>& percents, bool sortable);
    void AddFilter(const std::string& name, const std::string& value, bool include);
    void AddSorter(const std::string& name, bool ascending);
    void AddReferenceType(const std::string& type);
    void AddReferenceData(const RInstancesWrapper& data);
    std::vector<std::string> GetReferenceTypes() const;

    // False when nothing was written for the type.
    bool WriteReport(RInstancesWriter& writer) const;

private:
    bool WriteSingleReport(RInstancesWriter& writer) const;

    // Owned from the first line of construction, so a throwing wrap callback leaks nothing.
    std::unique_ptr<RInstancesWrapperPrivate> d;
};

}  // namespace repository
}  // namespace kestro

#endif
