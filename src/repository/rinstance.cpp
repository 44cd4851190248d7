#include "kestro/repository/rinstance.h"

#include "rinstance_p.h"
#include "xmodule/rlog.h"
#include "rrepository_p.h"

#include "kestro/repository/rrepository.h"

#include <boost/archive/iterators/base64_from_binary.hpp>
#include <boost/archive/iterators/binary_from_base64.hpp>
#include <boost/archive/iterators/transform_width.hpp>
#include <boost/property_tree/json_parser.hpp>
#include <boost/property_tree/xml_parser.hpp>

#include <algorithm>
#include <cctype>
#include <codecvt>
#include <locale>
#include <sstream>
#include <stdexcept>

namespace kestro {
namespace repository {

namespace pt = boost::property_tree;
namespace bai = boost::archive::iterators;

namespace {

const char kEncodedMarker[] = "base64encode ";
const char kMarkerProbe[] = "base64encod";
const std::string::size_type kMarkerProbeLength = sizeof kMarkerProbe - 1;
const char kMarkedForRemoval = 11;

template <class T>
std::string ToText(const T& value)
{
    std::ostringstream out;
    out << value;
    return out.str();
}

template <class T>
T ParseNumber(const std::string& text)
{
    std::istringstream in(text);
    T parsed;
    return (in >> parsed) ? parsed : T();
}

typedef std::wstring_convert<std::codecvt_utf8<wchar_t>, wchar_t> Utf8Converter;

std::string WideToUtf8(const std::wstring& wide)
{
    try {
        return Utf8Converter().to_bytes(wide);
    } catch (const std::range_error&) {
        throw std::range_error("bad conversion");
    }
}

std::wstring Utf8ToWide(const std::string& narrow)
{
    try {
        return Utf8Converter().from_bytes(narrow);
    } catch (const std::range_error&) {
        throw std::range_error("bad conversion");
    }
}

std::string Base64Encode(const std::string& bytes)
{
    typedef bai::base64_from_binary<bai::transform_width<std::string::const_iterator, 6, 8> > Encoder;
    // Whole groups of three keep the iterator from reading past the end; padding replaces the filler.
    const std::string::size_type pad = (3 - bytes.size() % 3) % 3;
    const std::string whole = bytes + std::string(pad, '\0');
    std::string text(Encoder(whole.begin()), Encoder(whole.end()));
    text.replace(text.size() - pad, pad, pad, '=');
    return text;
}

std::string Base64Decode(std::string text)
{
    typedef bai::transform_width<bai::binary_from_base64<std::string::const_iterator>, 8, 6> Decoder;
    std::string::size_type pad = 0;
    while (pad < 2 && pad < text.size() && text[text.size() - 1 - pad] == '=') ++pad;
    text.replace(text.size() - pad, pad, pad, 'A');
    // "=" or "==" alone carry fewer bits than their padding claims: no byte, not a wrapped count.
    const std::string::size_type whole = text.size() * 6 / 8;
    const std::string::size_type meaningful = whole > pad ? whole - pad : 0;
    // Whole groups of four keep the iterator from reading past the end.
    text.append((4 - text.size() % 4) % 4, 'A');
    std::string bytes(Decoder(text.begin()), Decoder(text.end()));
    bytes.resize(meaningful);
    return bytes;
}

bool NeedsProtection(const std::string& text)
{
    for (std::string::const_iterator c = text.begin(); c != text.end(); ++c) {
        const signed char byte = static_cast<signed char>(*c);
        if (byte < 0 || (byte >= 1 && byte <= 7) || (byte >= 16 && byte <= 31)) return true;
    }
    return false;
}

bool IsStrippedControl(unsigned char byte)
{
    return byte <= 8 || byte == 11 || byte == 12 || (byte >= 14 && byte <= 31) || byte == 127;
}

bool AllPrintable(const std::string& text)
{
    for (std::string::const_iterator c = text.begin(); c != text.end(); ++c)
        if (!std::isprint(static_cast<unsigned char>(*c))) return false;
    return true;
}

bool StartsWithXmlAnyCase(const std::string& key)
{
    static const char xml[] = "XML";
    if (key.size() < 3) return false;
    for (int i = 0; i < 3; ++i)
        if (std::toupper(static_cast<unsigned char>(key[i])) != xml[i]) return false;
    return true;
}

// Stores `node` under `key`, replacing a node of that key in its place. A plain key is moved in
// without a copy; a dotted key is a path and makes nested nodes, as the tree does; an empty key
// is no path at all and stays a plain child.
void PutChild(pt::ptree& tree, const std::string& key, pt::ptree& node)
{
    if (key.find('.') != std::string::npos) {
        tree.put_child(key, node);
        return;
    }
    pt::ptree::assoc_iterator existing = tree.find(key);
    if (existing != tree.not_found()) {
        existing->second.swap(node);
        return;
    }
    tree.push_back(std::make_pair(key, pt::ptree()))->second.swap(node);
}

void AddScalar(pt::ptree& tree, const std::string& key, const std::string& display, const std::string& text,
               bool xmlonly)
{
    pt::ptree node;
    node.push_back(std::make_pair(
        "display", pt::ptree(RInstancePrivate::IsValidDisplayText(display) ? RInstancePrivate::EncodeText(display)
                                                                            : std::string())));
    std::string value = RInstancePrivate::EncodeText(text);
    RInstancePrivate::StripControlChars(value);
    node.push_back(std::make_pair("value", pt::ptree(value)));
    if (xmlonly) node.push_back(std::make_pair("xmlonly", pt::ptree("true")));
    if (RInstancePrivate::IsValidPropertyKey(key)) PutChild(tree, key, node);
}

template <class T>
void AddList(pt::ptree& tree, const std::string& key, const std::string& display, const std::vector<T>& values)
{
    pt::ptree node;
    node.push_back(std::make_pair("display", pt::ptree(RInstancePrivate::EncodeText(display))));
    for (typename std::vector<T>::const_iterator v = values.begin(); v != values.end(); ++v)
        node.push_back(std::make_pair("value", pt::ptree(RInstancePrivate::EncodeText(ToText(*v)))));
    PutChild(tree, key, node);
}

template <class T>
void ReadNumber(const pt::ptree& tree, const std::string& key, T& out)
{
    try {
        const pt::ptree& node = tree.get_child(key);
        const boost::optional<const pt::ptree&> value = node.get_child_optional("value");
        out = value ? ParseNumber<T>(value->data()) : T();
    } catch (const pt::ptree_error& e) {
        RLOG(2) << "Cannot get property value: " << e.what();
        out = T();
    }
}

template <class T, class Convert>
void ReadList(const pt::ptree& tree, const std::string& key, std::vector<T>& out, Convert convert)
{
    try {
        const pt::ptree& node = tree.get_child(key);
        for (pt::ptree::const_iterator child = node.begin(); child != node.end(); ++child)
            if (child->first == "value") out.push_back(convert(child->second.data()));
    } catch (const pt::ptree_error& e) {
        RLOG(2) << "Cannot get property values: " << e.what();
    }
}

std::string SameText(const std::string& text) { return text; }

std::string ReferenceText(const std::string& key, const std::string& value) { return key + "=" + value; }

pt::ptree WrapUnderName(RInstancePrivate& record)
{
    pt::ptree wrapper;
    wrapper.add_child(pt::ptree::path_type(record.name, '.'), record.Tree());
    return wrapper;
}

}  // namespace

std::string RInstancePrivate::EncodeText(const std::string& text)
{
    if (!NeedsProtection(text)) return text;
    // Narrow text is UTF-8 here, so the code-page step to UTF-8 is the identity.
    const std::string& utf8 = text;
    try {
        return kEncodedMarker + Base64Encode(utf8);
    } catch (const std::exception&) {
        return utf8;
    }
}

std::string RInstancePrivate::DecodeText(const std::string& text)
{
    std::string result = text;
    if (text.size() < kMarkerProbeLength) return result;
    if (text.find(kMarkerProbe) == std::string::npos) return result;
    std::istringstream tokens(text);
    std::string marker;
    std::string encoded;
    tokens >> marker >> encoded;
    result = Base64Decode(encoded);
    return result;
}

void RInstancePrivate::StripControlChars(std::string& text)
{
    for (std::string::iterator c = text.begin(); c != text.end(); ++c)
        if (IsStrippedControl(static_cast<unsigned char>(*c))) *c = kMarkedForRemoval;
    text.erase(std::remove(text.begin(), text.end(), kMarkedForRemoval), text.end());
}

bool RInstancePrivate::IsValidDisplayText(const std::string& text)
{
    if (text.empty() || text[0] == '-' || text.find(':') != std::string::npos) return false;
    return AllPrintable(text);
}

bool RInstancePrivate::IsValidPropertyKey(const std::string& key)
{
    if (key.empty() || StartsWithXmlAnyCase(key)) return false;
    const unsigned char first = static_cast<unsigned char>(key[0]);
    if (std::isdigit(first) || std::ispunct(first) || key[0] == '-') return false;
    if (key.find(':') != std::string::npos || key.find(' ') != std::string::npos) return false;
    return AllPrintable(key);
}

RInstance::RInstance(const std::string& name, const std::string& display, int id) : d(new RInstancePrivate)
{
    d->name = name;
    d->Tree().put("display", display);
    if (id >= 0) d->Tree().put("id", id);
}

RInstance::RInstance(std::unique_ptr<RInstancePrivate> takeOver) : d(std::move(takeOver)) {}

RInstance::RInstance(const RInstance& other) : d(new RInstancePrivate(*other.d)) {}

RInstance& RInstance::operator=(const RInstance& other)
{
    d.reset(new RInstancePrivate(*other.d));
    return *this;
}

RInstance::~RInstance() = default;

void RInstance::Swap(RInstance& other) { std::swap(d, other.d); }

void RInstance::AddProperty(const std::string& key, const std::string& display, int value, bool xmlonly)
{
    AddScalar(d->Tree(), key, display, ToText(value), xmlonly);
}

void RInstance::AddProperty(const std::string& key, const std::string& display, unsigned int value, bool xmlonly)
{
    AddScalar(d->Tree(), key, display, ToText(value), xmlonly);
}

void RInstance::AddProperty(const std::string& key, const std::string& display, double value, bool xmlonly)
{
    AddScalar(d->Tree(), key, display, ToText(value), xmlonly);
}

void RInstance::AddProperty(const std::string& key, const std::string& display, unsigned long long value,
                            bool xmlonly)
{
    AddScalar(d->Tree(), key, display, ToText(value), xmlonly);
}

void RInstance::AddProperty(const std::string& key, const std::string& display, const std::string& value,
                            bool xmlonly)
{
    AddScalar(d->Tree(), key, display, value, xmlonly);
}

void RInstance::AddProperty(const std::string& key, const std::string& display, const std::wstring& value,
                            bool xmlonly)
{
    AddScalar(d->Tree(), key, display, WideToUtf8(value), xmlonly);
}

void RInstance::AddProperty(const std::string& key, const std::string& display, const std::vector<int>& values)
{
    AddList(d->Tree(), key, display, values);
}

void RInstance::AddProperty(const std::string& key, const std::string& display,
                            const std::vector<unsigned int>& values)
{
    AddList(d->Tree(), key, display, values);
}

void RInstance::AddProperty(const std::string& key, const std::string& display, const std::vector<double>& values)
{
    AddList(d->Tree(), key, display, values);
}

void RInstance::AddProperty(const std::string& key, const std::string& display,
                            const std::vector<unsigned long long>& values)
{
    AddList(d->Tree(), key, display, values);
}

void RInstance::AddProperty(const std::string& key, const std::string& display,
                            const std::vector<std::string>& values)
{
    AddList(d->Tree(), key, display, values);
}

void RInstance::AddProperty(const std::string& key, const std::string& display,
                            const std::vector<std::wstring>& values)
{
    std::vector<std::string> narrow;
    narrow.reserve(values.size());
    for (std::vector<std::wstring>::const_iterator v = values.begin(); v != values.end(); ++v)
        narrow.push_back(WideToUtf8(*v));
    AddList(d->Tree(), key, display, narrow);
}

void RInstance::AddPropertyAttr(const std::string& key, const std::string& attr)
{
    AddPropertyAttr(key, attr, "true");
}

void RInstance::AddPropertyAttr(const std::string& key, const std::string& attr, const std::string& value)
{
    // A missing property raises "No such node" to the caller on purpose: it is a module's bug.
    d->Tree().get_child(key).put(attr, value);
}

void RInstance::AddReference(const std::string& key, const std::string& value)
{
    d->Tree().put("reference", ReferenceText(key, value));
}

void RInstance::AddReference(const std::string& key, int value) { AddReference(key, ToText(value)); }

bool RInstance::HasReference(const std::string& key, const std::string& value) const
{
    const boost::optional<std::string> reference = d->Tree().get_optional<std::string>("reference");
    return reference && !reference->empty() && *reference == ReferenceText(key, value);
}

bool RInstance::HasReference(const std::string& key, int value) const { return HasReference(key, ToText(value)); }

bool RInstance::HasReferenceTag() const
{
    const boost::optional<std::string> reference = d->Tree().get_optional<std::string>("reference");
    return reference && !reference->empty();
}

void RInstance::AddToolTip(const std::string& tip) { d->Tree().put("tooltip", tip); }

bool RInstance::HasToolTip(std::string& tip) const
{
    const boost::optional<std::string> stored = d->Tree().get_optional<std::string>("tooltip");
    if (!stored || stored->empty()) return false;
    tip = *stored;
    return true;
}

std::string RInstance::GetName() const { return d->name; }

std::string RInstance::GetDisplay() const { return d->Tree().get<std::string>("display", std::string()); }

int RInstance::GetID() const { return d->Tree().get<int>("id", -1); }

void RInstance::GetPropertyValue(const std::string& key, int& out) const { ReadNumber(d->Tree(), key, out); }

void RInstance::GetPropertyValue(const std::string& key, unsigned int& out) const { ReadNumber(d->Tree(), key, out); }

void RInstance::GetPropertyValue(const std::string& key, double& out) const { ReadNumber(d->Tree(), key, out); }

void RInstance::GetPropertyValue(const std::string& key, std::string& out) const
{
    try {
        const pt::ptree& node = d->Tree().get_child(key);
        out = node.get<std::string>("value", std::string());
    } catch (const pt::ptree_error& e) {
        RLOG(2) << "Cannot get property value: " << e.what();
        out.clear();
    }
}

void RInstance::GetPropertyValue(const std::string& key, std::wstring& out) const
{
    std::string narrow;
    GetPropertyValue(key, narrow);
    out = Utf8ToWide(narrow);
}

void RInstance::GetPropertyValue(const std::string& key, std::vector<int>& out) const
{
    ReadList(d->Tree(), key, out, ParseNumber<int>);
}

void RInstance::GetPropertyValue(const std::string& key, std::vector<unsigned int>& out) const
{
    ReadList(d->Tree(), key, out, ParseNumber<unsigned int>);
}

void RInstance::GetPropertyValue(const std::string& key, std::vector<double>& out) const
{
    ReadList(d->Tree(), key, out, ParseNumber<double>);
}

void RInstance::GetPropertyValue(const std::string& key, std::vector<std::string>& out) const
{
    ReadList(d->Tree(), key, out, SameText);
}

void RInstance::GetPropertyValue(const std::string& key, std::vector<std::wstring>& out) const
{
    ReadList(d->Tree(), key, out, Utf8ToWide);
}

std::string RInstance::GetPropertyDisplay(const std::string& key) const
{
    try {
        const pt::ptree& node = d->Tree().get_child(key);
        return RInstancePrivate::DecodeText(node.get<std::string>("display", std::string()));
    } catch (const pt::ptree_error& e) {
        RLOG(2) << "Cannot get display: " << e.what();
        return std::string();
    }
}

std::string RInstance::GetNormalizedValue(const std::string& key, const std::string& sep) const
{
    std::vector<std::string> values;
    GetPropertyValue(key, values);
    std::string joined;
    for (std::vector<std::string>::const_iterator v = values.begin(); v != values.end(); ++v) {
        if (v != values.begin()) joined += sep;
        joined += RInstancePrivate::DecodeText(*v);
    }
    return joined;
}

std::vector<RProperty> RInstance::GetRProperty() const
{
    std::vector<RProperty> shown;
    for (pt::ptree::const_iterator child = d->Tree().begin(); child != d->Tree().end(); ++child) {
        const pt::ptree& node = child->second;
        if (node.count("value") == 0 || node.count("xmlonly") != 0) continue;
        RProperty property;
        property.name = child->first;
        property.filename = node.get<std::string>("filename", std::string());
        property.raw = node.count("raw") != 0;
        property.bb = node.count("bb") != 0;
        shown.push_back(property);
    }
    return shown;
}

std::string RInstance::ToXML() const
{
    std::ostringstream out;
    pt::write_xml(out, WrapUnderName(*d), pt::xml_writer_make_settings<std::string>(' ', 2, "utf-8"));
    return out.str();
}

std::string RInstance::ToJSON() const
{
    std::ostringstream out;
    pt::write_json(out, WrapUnderName(*d), true);
    return out.str();
}

void RInstance::AddToRepository(RRepository& repo) const { repo.d->AddToRepository(d->name, d->Tree()); }

}  // namespace repository
}  // namespace kestro
