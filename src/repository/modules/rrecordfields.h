#ifndef KESTRO_REPOSITORY_MODULES_RRECORDFIELDS_H
#define KESTRO_REPOSITORY_MODULES_RRECORDFIELDS_H

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rrepository.h"

#include <cstddef>
#include <string>
#include <vector>

namespace kestro {
namespace repository {

// One property of a platform record: its key, its display, the record field it shows, and
// whether its value changes between any two runs of an unchanged host (see VOLATILE_ATTR).
template <class Record>
struct RRecordField {
    const char* key;
    const char* display;
    std::string Record::*member;
    bool changesByItself = false;
};

// The instance of one record, its properties in the table's order.
template <class Record, std::size_t N>
RInstance MakeRecordInstance(const char* type, const char* display, int id, const Record& record,
                             const RRecordField<Record> (&fields)[N])
{
    RInstance instance(type, display, id);
    for (const RRecordField<Record>& field : fields) {
        instance.AddProperty(field.key, field.display, record.*field.member, false);
        if (field.changesByItself) instance.AddPropertyAttr(field.key, RRepository::VOLATILE_ATTR);
    }
    return instance;
}

// Adds one instance per record, each with the id -1.
template <class Record, std::size_t N>
void AddRecordInstances(RRepository& repo, const char* type, const char* display, const std::vector<Record>& records,
                        const RRecordField<Record> (&fields)[N])
{
    for (const Record& record : records) MakeRecordInstance(type, display, -1, record, fields).AddToRepository(repo);
}

// One property of a record that may be kept for the XML file alone (`xmlonly`).
template <class Record>
struct RXmlRecordField {
    const char* key;
    const char* display;
    std::string Record::*member;
    bool xmlonly;
};

// Adds the properties of `record` in the table's order.
template <class Record, std::size_t N>
void AddRecordFields(RInstance& instance, const Record& record, const RXmlRecordField<Record> (&fields)[N])
{
    for (const RXmlRecordField<Record>& field : fields)
        instance.AddProperty(field.key, field.display, record.*field.member, field.xmlonly);
}

}  // namespace repository
}  // namespace kestro

#endif
