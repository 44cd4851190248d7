#include "xmodule/linux/dpkgstatus.h"
#include "xmodule/linux/valueformat.h"
#include "xmodule/linux/hostfilestat.h"
#include "xmodule/linux/installedpackages.h"

#include "support/fixturehost.h"

#include <boost/filesystem/operations.hpp>
#include <gtest/gtest.h>

using namespace XModule::Linux;
using XModule::protocol::InstalledPackageInfo;

namespace {

const char kBash[] =
    "Package: bash\n"
    "Essential: yes\n"
    "Status: install ok installed\n"
    "Priority: required\n"
    "Section: shells\n"
    "Installed-Size: 7163\n"
    "Maintainer: Matthias Klose <doko@debian.org>\n"
    "Architecture: amd64\n"
    "Multi-Arch: foreign\n"
    "Version: 5.2.15-2+b7\n"
    "Replaces: bash-completion (<< 20060301-0), bash-doc (<= 2.05-1)\n"
    "Depends: base-files (>= 2.1.12), debianutils (>= 5.6-0.1)\n"
    "Conffiles:\n"
    " /etc/bash.bashrc 89269e1298235f1b12b4c16e4065ad0d\n"
    " /etc/skel/.bashrc 0ccf2f4b6d18c1b8b8b0b8a3d0a3c7b4\n"
    "Description: GNU Bourne Again SHell\n"
    " Bash is an sh-compatible command language interpreter that executes\n"
    " commands read from the standard input or from a file.\n"
    " .\n"
    " The Programmable Completion Code, by Ian Macdonald, is now found in\n"
    " the bash-completion package.\n"
    "Homepage: http://tiswww.case.edu/php/chet/bash/bashtop.html\n"
    "\n";

const char kLibc[] =
    "Package: libc6\n"
    "Status: install ok installed\n"
    "Priority: optional\n"
    "Section: libs\n"
    "Installed-Size: 13001\n"
    "Architecture: amd64\n"
    "Multi-Arch: same\n"
    "Source: glibc\n"
    "Version: 2.36-9+deb12u14\n"
    "Description: GNU C Library: Shared libraries\n"
    " Contains the standard libraries that are used by nearly all programs on\n"
    " the system.\n";

const char kRemoved[] =
    "Package: exim4-config\n"
    "Status: deinstall ok config-files\n"
    "Priority: standard\n"
    "Section: mail\n"
    "Installed-Size: 453\n"
    "Architecture: all\n"
    "Version: 4.96-15+deb12u4\n"
    "Conffiles:\n"
    " /etc/exim4/conf.d/acl/00_exim4-config_header 57d2e8ef5c2e3c8b2f7f1a2b3c4d5e6f\n"
    "Description: configuration for the exim MTA (v4)\n"
    "\n";

struct Case {
    const char* name;
    std::string text;
    std::vector<std::string> packages;  // Name|Version|Summary|Group|Size
};

std::string Row(const InstalledPackageInfo& p)
{
    return p.Name + "|" + p.Version + "|" + p.Summary + "|" + p.Group + "|" + p.Size;
}

}  // namespace

TEST(DpkgStatusTest, KeepsInstalledPackagesOfEveryStanzaThatReads)
{
    const std::string bashRow = "bash|5.2.15-2+b7|GNU Bourne Again SHell|shells|7334912";
    const std::string libcRow = "libc6:amd64|2.36-9+deb12u14|GNU C Library: Shared libraries|libs|13313024";
    std::string crlf;
    for (char c : std::string(kBash) + kLibc) crlf += c == '\n' ? std::string("\r\n") : std::string(1, c);
    const Case cases[] = {
        {"real stanzas, config-files left out", std::string(kBash) + kRemoved + kLibc, {bashRow, libcRow}},
        {"crlf line ends", crlf, {bashRow, libcRow}},
        {"cut after Status", std::string(kBash) + "Package: zlib1g\nStatus: install ok installed\nVersion: 1:1.2",
         {bashRow, "zlib1g|1:1.2|N/A|N/A|N/A"}},
        {"cut before Status", std::string(kBash) + "Package: zlib1g\nPriority: req", {bashRow}},
        {"held, half-installed, no status word, triggers pending",
         "Package: a\nStatus: hold ok installed\n\nPackage: b\nStatus: install reinstreq half-installed\n\n"
         "Package: c\nStatus: installed\n\nPackage: d\nStatus: install ok triggers-pending\nInstalled-Size: 9x\n",
         {"a|N/A|N/A|N/A|N/A", "d|N/A|N/A|N/A|N/A"}},
        {"latin-1 description, blank-only separator, bad line",
         "Package: e\nStatus: install ok installed\nDescription: caf\xe9 tools\n  \t\nno colon here\nPackage: f\n"
         "Status: install ok installed\nInstalled-Size: 99999999999999999999\n",
         {"e|N/A|caf\xe9 tools|N/A|N/A", "f|N/A|N/A|N/A|N/A"}},
        {"empty file", "", {}},
        {"blank lines only", "\n\n\r\n", {}},
    };
    for (const Case& c : cases) {
        std::vector<std::string> rows;
        for (const InstalledPackageInfo& package : ParseDpkgStatus(c.text)) rows.push_back(Row(package));
        EXPECT_EQ(c.packages, rows) << c.name;
    }
}

TEST(DpkgStatusTest, TakesTheLicenseOfTheFirstFilesParagraph)
{
    const struct {
        const char* text;
        const char* license;
    } cases[] = {
        {"Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/\nUpstream-Name: bash\n"
         "License: GPL-2+\n\nFiles: *\nCopyright: (C) 1987-2022 Free Software Foundation, Inc.\nLicense: GPL-3+\n\n"
         "Files: support/bash.xbm\nLicense: public-domain\n",
         "GPL-3+"},
        {"Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/\n\nFiles: *\nCopyright: x\n\n"
         "Files: debian/*\nLicense: MIT\n",
         "MIT"},
        {"This is the Debian prepackaged version of the GNU C Library.\n\nLicense: LGPL-2.1\n", ""},
        {"", ""},
    };
    for (const auto& c : cases) EXPECT_EQ(c.license, ParseCopyrightLicense(c.text)) << c.text;
}

TEST(DpkgStatusTest, ReadsAFixtureHostWithInstallDatesAndLicenses)
{
    FixtureHost host("");
    host.Dir().Write("var/lib/dpkg/status", std::string(kLibc) + "\n" + kRemoved + kBash);
    const std::time_t listed = 1700000000;
    for (const char* list : {"var/lib/dpkg/info/bash.list", "var/lib/dpkg/info/libc6:amd64.list"})
        boost::filesystem::last_write_time(host.Dir().Write(list, "/.\n/bin\n/bin/bash\n"), listed);
    host.Dir().Write("usr/share/doc/bash/copyright",
                     "Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/\n\n"
                     "Files: *\nCopyright: (C) 1987-2022 Free Software Foundation, Inc.\nLicense: GPL-3+\n");
    host.Dir().Write("usr/share/doc/libc6/copyright", "This is the Debian prepackaged version of the GNU C Library.\n");

    std::vector<InstalledPackageInfo> packages;
    CollectInstalledPackages(packages);
    ASSERT_EQ(2u, packages.size());
    EXPECT_EQ("bash", packages[0].Name);
    EXPECT_EQ("GPL-3+", packages[0].License);
    EXPECT_EQ(FormatDateTime(listed), packages[0].InstallDate);
    EXPECT_EQ("libc6:amd64", packages[1].Name);
    EXPECT_EQ("N/A", packages[1].License);
    EXPECT_EQ(FormatDateTime(listed), packages[1].InstallDate);
}
