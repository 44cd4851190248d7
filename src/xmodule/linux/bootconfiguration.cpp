#include "xmodule/linux/bootconfiguration.h"

#include "xmodule/linux/hostfiles.h"
#include "xmodule/linux/hostsources.h"
#include "xmodule/linux/valueformat.h"

#include <boost/algorithm/string/join.hpp>
#include <boost/algorithm/string/predicate.hpp>

#include <sstream>
#include <vector>

namespace XModule {
namespace Linux {

namespace {

const char kCommandLine[] = "/proc/cmdline";
const char* const kGrubMenus[] = {"/boot/grub/grub.cfg", "/boot/grub2/grub.cfg"};
const char kBootEntries[] = "/boot/loader/entries";
const char kGrubDefaults[] = "/etc/default/grub";

// A report cell, not a copy of the files: a host with hundreds of kernels is cut here.
const std::size_t kLargestContents = 16384;
const char kKernelIndent[] = "    ";

const char* const kGrubTitleWords[] = {"menuentry", "submenu"};
const char* const kGrubKernelWords[] = {"linux", "linuxefi", "linux16", "multiboot", "multiboot2"};
const char* const kBootEntryKernelWords[] = {"linux", "efi", "options"};

template <std::size_t N>
bool IsOneOf(const std::string& word, const char* const (&words)[N])
{
    for (const char* candidate : words)
        if (word == candidate) return true;
    return false;
}

std::string FirstWord(const std::string& line) { return line.substr(0, line.find(' ')); }

// The quoted (or bare) title after "menuentry": grub's own quoting, 'Debian GNU/Linux'.
std::string GrubTitle(const std::string& line, const std::string& keyword)
{
    std::string rest = TrimText(line.substr(keyword.size()));
    if (!rest.empty() && (rest[0] == '\'' || rest[0] == '"')) {
        const std::size_t close = rest.find(rest[0], 1);
        return rest.substr(1, close == std::string::npos ? std::string::npos : close - 1);
    }
    return FirstWord(rest);
}

std::vector<std::string> TrimmedLines(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line)) {
        line = TrimText(line);
        if (!line.empty() && line[0] != '#') lines.push_back(line);
    }
    return lines;
}

std::string JoinLines(const std::vector<std::string>& lines) { return boost::algorithm::join(lines, "\n"); }

std::string CutToBound(const std::string& contents)
{
    if (contents.size() <= kLargestContents) return contents;
    const std::size_t lineEnd = contents.rfind('\n', kLargestContents);
    return contents.substr(0, lineEnd == std::string::npos ? kLargestContents : lineEnd) + "\n[...]";
}

struct BootText {
    std::vector<std::string> sources;
    std::vector<std::string> parts;

    void Add(const std::string& source, const std::string& part)
    {
        if (part.empty()) return;
        sources.push_back(source);
        parts.push_back(part);
    }
};

bool AddGrubMenu(BootText& boot)
{
    for (const char* path : kGrubMenus) {
        std::string text;
        if (!ReadOptionalSource(path, text)) continue;
        const std::string menu = ParseGrubMenu(text);
        boot.Add(path, menu);
        return !menu.empty();
    }
    return false;
}

bool AddBootEntries(BootText& boot)
{
    std::vector<std::string> entries;
    for (const std::string& name : HostFiles::List(kBootEntries)) {
        std::string text;
        if (boost::algorithm::ends_with(name, ".conf") &&
            ReadOptionalSource(std::string(kBootEntries) + "/" + name, text))
            entries.push_back(ParseBootEntry(text));
    }
    boot.Add(kBootEntries, boost::algorithm::join(entries, "\n"));
    return !entries.empty();
}

}  // namespace

std::string ParseGrubMenu(const std::string& text)
{
    std::vector<std::string> menu;
    for (const std::string& line : TrimmedLines(text)) {
        const std::string word = FirstWord(line);
        if (IsOneOf(word, kGrubTitleWords))
            menu.push_back(word + " '" + GrubTitle(line, word) + "'");
        else if (IsOneOf(word, kGrubKernelWords))
            menu.push_back(kKernelIndent + line);
    }
    return JoinLines(menu);
}

std::string ParseBootEntry(const std::string& text)
{
    std::vector<std::string> entry;
    for (const std::string& line : TrimmedLines(text)) {
        const std::string word = FirstWord(line);
        if (word == "title")
            entry.insert(entry.begin(), line);
        else if (IsOneOf(word, kBootEntryKernelWords))
            entry.push_back(kKernelIndent + line);
    }
    return JoinLines(entry);
}

std::string ParseGrubDefaults(const std::string& text) { return JoinLines(TrimmedLines(text)); }

void CollectBootConfiguration(protocol::BootConfigurationInfo& boot)
{
    BootText found;
    std::string text;
    if (ReadExpectedSource(kCommandLine, text)) found.Add(kCommandLine, TrimText(text));
    const bool menu = AddGrubMenu(found);
    const bool entries = AddBootEntries(found);
    if (!menu && !entries && ReadOptionalSource(kGrubDefaults, text)) found.Add(kGrubDefaults, ParseGrubDefaults(text));
    if (found.parts.empty()) return;
    boot.BootDataSource = boost::algorithm::join(found.sources, ", ");
    boot.Contents = CutToBound(boost::algorithm::join(found.parts, "\n\n"));
}

}  // namespace Linux
}  // namespace XModule
