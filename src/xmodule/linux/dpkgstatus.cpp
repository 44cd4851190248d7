#include "xmodule/linux/dpkgstatus.h"

#include "kestro/xmodule/log.h"
#include "kestro/xmodule/unreadable.h"
#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/hostfilestat.h"
#include "xmodule/linux/valueformat.h"

#include <charconv>
#include <cstdint>
#include <limits>
#include <string_view>
#include <strings.h>

namespace XModule {
namespace Linux {

namespace {

const char kDpkgStatus[] = "/var/lib/dpkg/status";
const char kDpkgInfo[] = "/var/lib/dpkg/info/";
const char kDocFolder[] = "/usr/share/doc/";

// The last word of Status: dpkg has the package's files on disk in these states.
const char* const kInstalledStates[] = {"installed", "triggers-awaited", "triggers-pending"};

bool IsBlank(std::string_view line) { return line.find_first_not_of(" \t") == std::string_view::npos; }

std::string_view TrimBlanks(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return std::string_view();
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

bool SameName(std::string_view name, const char* wanted)
{
    const std::size_t length = std::char_traits<char>::length(wanted);
    return name.size() == length && ::strncasecmp(name.data(), wanted, length) == 0;
}

// Walks RFC-822-like paragraphs one line at a time. Only the first line of a field is kept:
// no field read here needs its continuation lines, so they are passed over.
class ParagraphReader {
public:
    enum Kind { FIELD, PARAGRAPH_END, BAD_LINE, END };

    explicit ParagraphReader(const std::string& text) : text(text) {}

    Kind Next()
    {
        while (at < text.size()) {
            const std::string_view line = NextLine();
            if (IsBlank(line)) {
                if (inParagraph) return EndParagraph();
                continue;
            }
            inParagraph = true;
            if (line[0] == ' ' || line[0] == '\t') continue;
            const std::size_t colon = line.find(':');
            if (colon == std::string_view::npos || colon == 0) return BAD_LINE;
            name = line.substr(0, colon);
            value = TrimBlanks(line.substr(colon + 1));
            return FIELD;
        }
        return inParagraph ? EndParagraph() : END;
    }

    std::string_view name;
    std::string_view value;

private:
    std::string_view NextLine()
    {
        std::size_t end = text.find('\n', at);
        if (end == std::string::npos) end = text.size();
        std::string_view line(text.data() + at, end - at);
        at = end + 1;
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        return line;
    }

    Kind EndParagraph()
    {
        inParagraph = false;
        return PARAGRAPH_END;
    }

    const std::string& text;
    std::size_t at = 0;
    bool inParagraph = false;
};

struct Stanza {
    std::string package;
    std::string status;
    std::string architecture;
    std::string multiArch;
    std::string version;
    std::string section;
    std::string installedSize;
    std::string description;
};

struct StanzaField {
    const char* name;
    std::string Stanza::*member;
};

const StanzaField kStanzaFields[] = {
    {"Package", &Stanza::package},         {"Status", &Stanza::status},
    {"Architecture", &Stanza::architecture}, {"Multi-Arch", &Stanza::multiArch},
    {"Version", &Stanza::version},         {"Section", &Stanza::section},
    {"Installed-Size", &Stanza::installedSize}, {"Description", &Stanza::description},
};

void KeepField(Stanza& stanza, std::string_view name, std::string_view value)
{
    for (const StanzaField& field : kStanzaFields)
        if (SameName(name, field.name)) stanza.*field.member = std::string(value);
}

bool IsInstalled(const std::string& status)
{
    const std::size_t space = status.find_last_of(' ');
    if (space == std::string::npos) return false;
    const std::string state = status.substr(space + 1);
    for (const char* installed : kInstalledStates)
        if (state == installed) return true;
    return false;
}

// Installed-Size counts KiB.
std::string BytesOfKibibytes(const std::string& text)
{
    std::uint64_t kib = 0;
    const char* end = text.data() + text.size();
    const std::from_chars_result parsed = std::from_chars(text.data(), end, kib);
    if (text.empty() || parsed.ec != std::errc() || parsed.ptr != end ||
        kib > std::numeric_limits<std::uint64_t>::max() / 1024)
        return protocol::UNKNOWN_VALUE;
    return std::to_string(kib * 1024);
}

protocol::InstalledPackageInfo PackageOf(const Stanza& stanza)
{
    protocol::InstalledPackageInfo package;
    package.Name = stanza.package;
    if (stanza.multiArch == "same" && !stanza.architecture.empty()) package.Name += ":" + stanza.architecture;
    package.Version = TextOrUnknown(stanza.version);
    package.Summary = TextOrUnknown(stanza.description);
    package.Group = TextOrUnknown(stanza.section);
    package.Size = BytesOfKibibytes(stanza.installedSize);
    return package;
}

std::string BareName(const std::string& name) { return name.substr(0, name.find(':')); }

// dpkg rewrites a package's file list on every install or upgrade of it.
HostFileStat StatFileList(const std::string& name)
{
    HostFileStat list = StatHostFile(kDpkgInfo + name + ".list");
    if (!list.found && BareName(name) != name) list = StatHostFile(kDpkgInfo + BareName(name) + ".list");
    return list;
}

const std::size_t kCopyrightHead = 16384;

std::string ReadLicense(const std::string& bareName)
{
    std::string copyright;
    // The licence of the first Files paragraph stands near the top; some copyright files run to megabytes.
    if (!HostFiles::ReadHead(kDocFolder + bareName + "/copyright", kCopyrightHead, copyright))
        return protocol::UNKNOWN_VALUE;
    return TextOrUnknown(ParseCopyrightLicense(copyright));
}

void AddInstallFacts(protocol::InstalledPackageInfo& package)
{
    if (!IsPlainFileName(package.Name)) return;
    package.InstallDate = StatFileList(package.Name).ModifiedText();
    package.License = ReadLicense(BareName(package.Name));
}

}  // namespace

std::vector<protocol::InstalledPackageInfo> ParseDpkgStatus(const std::string& text)
{
    std::vector<protocol::InstalledPackageInfo> packages;
    ParagraphReader reader(text);
    Stanza stanza;
    unsigned badLines = 0;
    unsigned incomplete = 0;
    for (ParagraphReader::Kind kind; (kind = reader.Next()) != ParagraphReader::END;) {
        if (kind == ParagraphReader::FIELD) {
            KeepField(stanza, reader.name, reader.value);
        } else if (kind == ParagraphReader::BAD_LINE) {
            ++badLines;
        } else {
            if (stanza.package.empty() || stanza.status.empty())
                ++incomplete;
            else if (IsInstalled(stanza.status))
                packages.push_back(PackageOf(stanza));
            stanza = Stanza();
        }
    }
    if (badLines > 0 || incomplete > 0)
        XLOG(LOG_WARN) << "[repo] dpkg status: " << badLines << " malformed lines and " << incomplete
                       << " stanzas without Package or Status were passed over";
    return packages;
}

std::string ParseCopyrightLicense(const std::string& text)
{
    ParagraphReader reader(text);
    if (reader.Next() != ParagraphReader::FIELD || !SameName(reader.name, "Format")) return std::string();
    bool inFiles = false;
    for (ParagraphReader::Kind kind; (kind = reader.Next()) != ParagraphReader::END;) {
        if (kind == ParagraphReader::PARAGRAPH_END) inFiles = false;
        if (kind != ParagraphReader::FIELD) continue;
        if (SameName(reader.name, "Files")) inFiles = true;
        if (inFiles && SameName(reader.name, "License") && !reader.value.empty()) return std::string(reader.value);
    }
    return std::string();
}

bool ReadDpkgPackages(std::vector<protocol::InstalledPackageInfo>& packages)
{
    std::string text;
    std::string why;
    if (!HostFiles::Read(kDpkgStatus, text, &why)) {
        if (HostFiles::Exists(kDpkgStatus)) NoteUnreadable(kDpkgStatus, why);
        return false;
    }
    for (protocol::InstalledPackageInfo& package : ParseDpkgStatus(text)) {
        AddInstallFacts(package);
        packages.push_back(package);
    }
    return true;
}

}  // namespace Linux
}  // namespace XModule
