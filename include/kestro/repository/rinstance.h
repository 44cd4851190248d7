#ifndef KESTRO_REPOSITORY_RINSTANCE_H
#define KESTRO_REPOSITORY_RINSTANCE_H

#include <memory>
#include <string>
#include <vector>

namespace kestro {
namespace repository {

class RRepository;
class RRepositoryPrivate;
class RInstancePrivate;

// One shown property of a record, as GetRProperty hands it out.
struct RProperty {
    std::string name;
    std::string filename;
    bool raw = false;
    bool bb = false;
};

// One inventory record: a type name and a property tree, kept as the store and the XML file keep it.
class RInstance {
public:
    RInstance(const std::string& name, const std::string& display, int id);
    RInstance(const RInstance& other);
    RInstance& operator=(const RInstance& other);
    ~RInstance();
    void Swap(RInstance& other);

    void AddProperty(const std::string& key, const std::string& display, int value, bool xmlonly = false);
    void AddProperty(const std::string& key, const std::string& display, unsigned int value, bool xmlonly = false);
    void AddProperty(const std::string& key, const std::string& display, double value, bool xmlonly = false);
    void AddProperty(const std::string& key, const std::string& display, unsigned long long value,
                     bool xmlonly = false);
    void AddProperty(const std::string& key, const std::string& display, const std::string& value,
                     bool xmlonly = false);
    void AddProperty(const std::string& key, const std::string& display, const std::wstring& value,
                     bool xmlonly = false);
    void AddProperty(const std::string& key, const std::string& display, const std::vector<int>& values);
    void AddProperty(const std::string& key, const std::string& display, const std::vector<unsigned int>& values);
    void AddProperty(const std::string& key, const std::string& display, const std::vector<double>& values);
    void AddProperty(const std::string& key, const std::string& display,
                     const std::vector<unsigned long long>& values);
    void AddProperty(const std::string& key, const std::string& display, const std::vector<std::string>& values);
    void AddProperty(const std::string& key, const std::string& display, const std::vector<std::wstring>& values);

    void AddPropertyAttr(const std::string& key, const std::string& attr);
    void AddPropertyAttr(const std::string& key, const std::string& attr, const std::string& value);
    void AddReference(const std::string& key, const std::string& value);
    void AddReference(const std::string& key, int value);
    bool HasReference(const std::string& key, const std::string& value) const;
    bool HasReference(const std::string& key, int value) const;
    bool HasReferenceTag() const;
    void AddToolTip(const std::string& tip);
    bool HasToolTip(std::string& tip) const;

    std::string GetName() const;
    std::string GetDisplay() const;
    int GetID() const;
    void GetPropertyValue(const std::string& key, int& out) const;
    void GetPropertyValue(const std::string& key, unsigned int& out) const;
    void GetPropertyValue(const std::string& key, double& out) const;
    void GetPropertyValue(const std::string& key, std::string& out) const;
    void GetPropertyValue(const std::string& key, std::wstring& out) const;
    void GetPropertyValue(const std::string& key, std::vector<int>& out) const;
    void GetPropertyValue(const std::string& key, std::vector<unsigned int>& out) const;
    void GetPropertyValue(const std::string& key, std::vector<double>& out) const;
    void GetPropertyValue(const std::string& key, std::vector<std::string>& out) const;
    void GetPropertyValue(const std::string& key, std::vector<std::wstring>& out) const;
    std::string GetPropertyDisplay(const std::string& key) const;
    std::string GetNormalizedValue(const std::string& key, const std::string& sep) const;
    std::vector<RProperty> GetRProperty() const;

    std::string ToXML() const;
    // Throws boost::property_tree::json_parser::json_parser_error for a record read from a file where an
    // element holds both text and children, which JSON cannot show.
    std::string ToJSON() const;

    // Copies the record into the repository's store; this instance stays as it is.
    void AddToRepository(RRepository& repo) const;

private:
    friend class RRepositoryPrivate;
    explicit RInstance(std::unique_ptr<RInstancePrivate> takeOver);

    // Owned from the first line of construction, so a throwing constructor leaks nothing.
    std::unique_ptr<RInstancePrivate> d;
};

}  // namespace repository
}  // namespace kestro

#endif
